// SPDX-License-Identifier: MIT
#include "config/TemporaryFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <memory>
#include <string_view>

namespace QvVisa {

namespace {

constexpr std::string_view s_prefix = ".qvvisa-";
constexpr std::string_view s_suffix = ".tmp";

/// Calls create(name) with one temporary name after the other until one is free, and returns it.
/// Empty, with errno set, when create() fails otherwise than with EEXIST or no name is free.
template <typename Create>
std::string firstFreeName(Create create)
{
    constexpr int mostAttempts = 1000;
    const std::string prefix = std::string(s_prefix) + std::to_string(::getpid()) + '-';
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        std::string name = prefix + std::to_string(attempt) + std::string(s_suffix);
        if (create(name)) {
            // Moved: running out of memory here would leave the file behind.
            return name;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    return {};
}

/// The process ID in a temporary file's name; 0 for any other name.
pid_t creatorOf(std::string_view name)
{
    if (name.substr(0, s_prefix.size()) != s_prefix || name.size() < s_suffix.size() ||
        name.substr(name.size() - s_suffix.size()) != s_suffix) {
        return 0;
    }
    name.remove_prefix(s_prefix.size());
    pid_t process = 0;
    const auto result = std::from_chars(name.data(), name.data() + name.size(), process);
    const bool isFollowedByDash = result.ptr != name.data() + name.size() && *result.ptr == '-';
    return result.ec == std::errc() && isFollowedByDash && process > 0 ? process : 0;
}

bool isAlive(pid_t process)
{
    // This process's own ID may be a dead one's, too: containers number from the start again.
    return process != ::getpid() && (::kill(process, 0) == 0 || errno != ESRCH);
}

bool lock(int descriptor)
{
    return uninterrupted([=] { return ::flock(descriptor, LOCK_EX | LOCK_NB); }) == 0;
}

/// Locks a new file. True when another process took it for a leftover before that.
bool isBeingRemoved(int descriptor)
{
    struct stat status = {};
    return (!lock(descriptor) && errno == EWOULDBLOCK) ||
           (::fstat(descriptor, &status) == 0 && status.st_nlink == 0);
}

void removeLeftover(int folder, const char* name, uid_t owner)
{
    const FileDescriptor file(::openat(
        folder, name, O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC, mode_t{0}));
    struct stat status = {};
    // Its creator holds a lock on it, which works also where the process IDs of another container
    // are not visible.
    if (file.isOpen() && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
        (status.st_uid == ::geteuid() || (::geteuid() == 0 && status.st_uid == owner)) &&
        lock(file.get())) {
        ::unlinkat(folder, name, 0);
    }
}

/// Calls action(name) with each temporary file in the folder whose process has died.
template <typename Action>
void forEachLeftover(int folder, Action action)
{
    const int descriptor = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC, mode_t{0});
    const std::unique_ptr<DIR, int (*)(DIR*)> names(
        descriptor >= 0 ? ::fdopendir(descriptor) : nullptr, &::closedir);
    if (!names) {
        const FileDescriptor closing(descriptor);
        return;
    }
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread uses this stream.
    while (const dirent* entry = ::readdir(names.get())) {
        const pid_t process = creatorOf(entry->d_name);
        if (process != 0 && !isAlive(process)) {
            action(static_cast<const char*>(entry->d_name));
        }
    }
}

} // namespace

TemporaryFile::TemporaryFile(int folder, mode_t mode, Kind kind)
    : m_folder(::fcntl(folder, F_DUPFD_CLOEXEC, 0))
{
    if (m_folder.isOpen() && (kind != Kind::Unnamed || !createUnnamed(mode))) {
        createNamed(mode);
    }
}

bool TemporaryFile::createUnnamed([[maybe_unused]] mode_t mode)
{
#ifdef O_TMPFILE
    m_file = FileDescriptor(uninterrupted(
        [=] { return ::openat(m_folder.get(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, mode); }));
    if (m_file.isOpen()) {
        lock(m_file.get());
    }
#endif
    return m_file.isOpen();
}

bool TemporaryFile::createNamed(mode_t mode)
{
    m_name = firstFreeName([this, mode](const std::string& name) {
        m_file = FileDescriptor(uninterrupted([&] {
            return ::openat(m_folder.get(), name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC,
                            mode);
        }));
        if (m_file.isOpen() && isBeingRemoved(m_file.get())) {
            m_file.close();
            errno = EEXIST;
        }
        return m_file.isOpen();
    });
    return m_file.isOpen();
}

TemporaryFile::~TemporaryFile()
{
    if (!m_name.empty()) {
        // Callers examine errno after this object is gone.
        const int error = errno;
        ::unlinkat(m_folder.get(), m_name.c_str(), 0);
        errno = error;
    }
}

bool TemporaryFile::giveName()
{
    if (m_name.empty()) {
        const std::string file = "/proc/self/fd/" + std::to_string(m_file.get());
        m_name = firstFreeName([&](const std::string& name) {
            return ::linkat(AT_FDCWD, file.c_str(), m_folder.get(), name.c_str(),
                            AT_SYMLINK_FOLLOW) == 0;
        });
    }
    return !m_name.empty();
}

bool TemporaryFile::renameTo(const std::string& name)
{
    if (::renameat(m_folder.get(), m_name.c_str(), m_folder.get(), name.c_str()) != 0) {
        return false;
    }
    m_name.clear();
    return true;
}

bool TemporaryFile::exchangeWith(const std::string& name)
{
#if defined(RENAME_EXCHANGE)
    return ::renameat2(m_folder.get(), m_name.c_str(), m_folder.get(), name.c_str(),
                       RENAME_EXCHANGE) == 0;
#elif defined(RENAME_SWAP)
    return ::renameatx_np(m_folder.get(), m_name.c_str(), m_folder.get(), name.c_str(),
                          RENAME_SWAP) == 0;
#else
    static_cast<void>(name);
    errno = ENOTSUP;
    return false;
#endif
}

std::vector<std::string> TemporaryFile::leftovers(int folder)
{
    std::vector<std::string> names;
    forEachLeftover(folder, [&names](const char* name) { names.emplace_back(name); });
    return names;
}

void TemporaryFile::removeLeftovers(int folder, uid_t owner)
{
    forEachLeftover(folder, [=](const char* name) { removeLeftover(folder, name, owner); });
}

} // namespace QvVisa
