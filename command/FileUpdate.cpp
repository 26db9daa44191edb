// SPDX-License-Identifier: MIT
#include "command/FileUpdate.h"

#include "command/ConfigurationText.h"
#include "command/ExitCode.h"
#include "config/AtomicFileWrite.h"
#include "config/Encoding.h"
#include "config/TargetFile.h"
#include "config/WholeFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <memory>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

namespace QvVisa {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int s_mostAttempts = 10;
constexpr std::chrono::seconds s_longestWait(5);
/// While others take turns in replacing the file.
constexpr std::chrono::seconds s_longestWaitInAll(60);

CommandError errorAt(ExitCode code, const std::string& path, const std::string& reason)
{
    return {code, pathToUtf8(path) + ": " + reason};
}

CommandError notWritten(const std::string& path, int error)
{
    return errorAt(ExitCode::NotWritten, path,
                   "not written: " + std::generic_category().message(error));
}

/// False as well when the file cannot be read.
bool holds(int descriptor, const std::string& text)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 ||
        static_cast<std::size_t>(status.st_size) != text.size()) {
        return false;
    }
    // In pieces: a second copy of a large text would take longer than reading it.
    std::array<char, std::size_t{64} * 1024> piece{};
    std::size_t offset = 0;
    for (;;) {
        const ssize_t count = uninterrupted([&] {
            return ::pread(descriptor, piece.data(), piece.size(), static_cast<off_t>(offset));
        });
        if (count <= 0) {
            return count == 0 && offset == text.size();
        }
        const std::string_view read(piece.data(), static_cast<std::size_t>(count));
        if (std::string_view(text).substr(offset, read.size()) != read) {
            return false;
        }
        offset += read.size();
    }
}

FileDescriptor openInFolder(int folder, const std::string& name, int flags)
{
    return FileDescriptor(uninterrupted(
        [&] { return ::openat(folder, name.c_str(), flags | O_NOFOLLOW | O_CLOEXEC); }));
}

constexpr int s_forReading = O_RDONLY | O_NONBLOCK;
#ifdef O_PATH
// Needs no permission to read the file.
constexpr int s_forIdentity = O_PATH;
#else
constexpr int s_forIdentity = O_RDONLY | O_NONBLOCK;
#endif

/// True when both descriptors are open and belong to the same file.
bool isSameOpenFile(int left, int right)
{
    struct stat leftStatus = {};
    struct stat rightStatus = {};
    return ::fstat(left, &leftStatus) == 0 && ::fstat(right, &rightStatus) == 0 &&
           isSameFile(leftStatus, rightStatus);
}

/// A client that reads the file again only when its modification time in seconds has changed must
/// do so after this write.
constexpr WriteOptions s_options{std::nullopt, true};

/// One edit of one file.
class Update
{
public:
    Update(const std::string& path, const TextUpdate& update,
           const std::optional<std::string>& backupSuffix)
        : m_path(path),
          m_update(update),
          m_backupSuffix(backupSuffix)
    {}

    std::optional<std::string> run()
    {
        for (int attempt = 0; attempt < s_mostAttempts; ++attempt) {
            if (attemptOnce()) {
                return m_backup;
            }
        }
        throw errorAt(ExitCode::Conflict, m_path,
                      "not written: other programs changed the file ten times in a row");
    }

private:
    /// False when others changed the file meanwhile.
    bool attemptOnce();
    void lockTarget();
    void checkWithoutWriting();
    bool replaceTarget(std::unique_ptr<TemporaryFile> replacement);
    bool exchange(std::unique_ptr<TemporaryFile> replacement);
    void undoExchange(TemporaryFile& replacement);
    bool renameOver(std::unique_ptr<TemporaryFile> replacement);
    bool overwrite(std::unique_ptr<TemporaryFile> copy);

    bool targetStillHoldsOldText() const;
    std::string backupName() const { return m_target->name() + *m_backupSuffix; }
    std::string backupPath() const { return m_target->path().string() + *m_backupSuffix; }
    void copyToBackup();

    const std::string& m_path;
    const TextUpdate& m_update;
    const std::optional<std::string>& m_backupSuffix;
    const Clock::time_point m_deadline = Clock::now() + s_longestWaitInAll;
    std::optional<TargetFile> m_target;
    std::optional<Document> m_old;
    std::string m_newText;
    std::optional<std::string> m_backup;
};

/// Locks the file itself: whoever edits it next waits, and whoever waited sees that the name
/// belongs to another file by now.
void Update::lockTarget()
{
    constexpr std::chrono::milliseconds pause(2);
    for (;;) {
        m_target = TargetFile::open(m_path);
        if (!m_target || !m_target->exists()) {
            return;
        }
        const Clock::time_point deadline = Clock::now() + s_longestWait;
        while (uninterrupted(
                   [this] { return ::flock(m_target->descriptor(), LOCK_EX | LOCK_NB); }) != 0 &&
               errno == EWOULDBLOCK) {
            if (Clock::now() > deadline) {
                throw errorAt(ExitCode::Conflict, m_path,
                              "not written: another program has locked the file for 5 seconds");
            }
            std::this_thread::sleep_for(pause);
        }
        // Where the file system has no locks, the comparison after the exchange still protects.
        if (m_target->isStillNamed()) {
            return;
        }
        if (Clock::now() > m_deadline) {
            throw errorAt(ExitCode::Conflict, m_path, "not written: the file is being replaced");
        }
    }
}

/// For a file that may not be written: an edit that changes nothing is done all the same.
void Update::checkWithoutWriting()
{
    const int error = errno;
    if (m_update(Document(readWholeFile(m_path)))) {
        throw notWritten(m_path, error);
    }
}

bool Update::attemptOnce()
{
    lockTarget();
    if (!m_target || !m_target->exists()) {
        checkWithoutWriting();
        return true;
    }
    std::optional<std::string> text = readWholeFile(m_target->descriptor());
    if (!text) {
        // EBADF: opened for writing only, because reading is not permitted.
        const int error = errno == EBADF ? EACCES : errno;
        throw errorAt(ExitCode::NoFile, m_path, std::generic_category().message(error));
    }
    m_old.emplace(*std::move(text));
    std::optional<std::string> newText = m_update(*m_old);
    if (!newText) {
        return true;
    }
    m_newText = *std::move(newText);
    if (m_target->status().st_nlink > 1) {
        return overwrite(nullptr);
    }
    std::unique_ptr<TemporaryFile> replacement;
    switch (prepareReplacement(*m_target, m_newText, s_options, replacement)) {
    case ReplaceOutcome::Failed:
        throw notWritten(m_path, errno);
    case ReplaceOutcome::Impossible:
        return overwrite(std::move(replacement));
    case ReplaceOutcome::Ready:
        break;
    }
    // Others wait until the exchange has been checked.
    static_cast<void>(::flock(replacement->descriptor(), LOCK_EX | LOCK_NB));
    return replaceTarget(std::move(replacement));
}

bool Update::replaceTarget(std::unique_ptr<TemporaryFile> replacement)
{
    if (replacement->exchangeWith(m_target->name())) {
        return exchange(std::move(replacement));
    }
    switch (errno) {
    case ENOENT:
        return false;
    case EBUSY: // A mount point, such as a file that a container was given.
        return overwrite(std::move(replacement));
    case EINVAL:
    case ENOSYS:
    case ENOTSUP:
        return renameOver(std::move(replacement));
    default:
        throw notWritten(m_path, errno);
    }
}

/// The names are exchanged: looks at what came out.
bool Update::exchange(std::unique_ptr<TemporaryFile> replacement)
{
    const FileDescriptor cameOut =
        openInFolder(m_target->folder(), replacement->name(), s_forReading);
    if (!cameOut.isOpen() || !holds(cameOut.get(), m_old->text())) {
        undoExchange(*replacement);
        return false;
    }
    if (m_backupSuffix) {
        // What came out keeps its owner, rights and time under the backup's name.
        if (!replacement->renameTo(backupName())) {
            const int error = errno;
            undoExchange(*replacement);
            throw notWritten(backupPath(), error);
        }
        m_backup = backupPath();
    }
    return true;
}

/// Puts back what came out. If yet another save has come meanwhile, that is put back as well, and
/// so on until what comes out is what was put in.
void Update::undoExchange(TemporaryFile& replacement)
{
    // Open descriptors keep the files' numbers from being given to other files.
    const auto openCameOut = [&] {
        return openInFolder(m_target->folder(), replacement.name(), s_forIdentity);
    };
    FileDescriptor putIn(::dup(replacement.descriptor()));
    FileDescriptor cameOut = openCameOut();
    constexpr int mostExchanges = 1000;
    for (int exchanges = 0; exchanges < mostExchanges; ++exchanges) {
        if (!replacement.exchangeWith(m_target->name())) {
            // Nothing has the name any more, or the exchange failed: what came out must not be
            // removed as if it were our temporary file.
            static_cast<void>(replacement.renameTo(m_target->name()));
            return;
        }
        FileDescriptor next = openCameOut();
        if (isSameOpenFile(next.get(), putIn.get())) {
            return;
        }
        putIn = std::exchange(cameOut, std::move(next));
    }
}

bool Update::targetStillHoldsOldText() const
{
    const FileDescriptor file = openInFolder(m_target->folder(), m_target->name(), s_forReading);
    return file.isOpen() && holds(file.get(), m_old->text());
}

void Update::copyToBackup()
{
    if (m_backupSuffix) {
        if (!writeFileAtomically(backupPath(), m_old->text())) {
            throw notWritten(backupPath(), errno);
        }
        m_backup = backupPath();
    }
}

bool Update::renameOver(std::unique_ptr<TemporaryFile> replacement)
{
    copyToBackup();
    if (!targetStillHoldsOldText()) {
        return false;
    }
    if (!replacement->renameTo(m_target->name())) {
        if (errno == EBUSY) {
            return overwrite(std::move(replacement));
        }
        throw notWritten(m_path, errno);
    }
    return true;
}

bool Update::overwrite(std::unique_ptr<TemporaryFile> copy)
{
    copyToBackup();
    if (!targetStillHoldsOldText()) {
        return false;
    }
    if (!writeInPlaceWithCopy(*m_target, m_newText, s_options, std::move(copy))) {
        throw notWritten(m_path, errno);
    }
    return true;
}

} // namespace

std::optional<std::string> updateFile(const std::string& path, const TextUpdate& update,
                                      const std::optional<std::string>& backupSuffix)
{
    return Update(path, update, backupSuffix).run();
}

} // namespace QvVisa
