// SPDX-License-Identifier: MIT
#include "config/AtomicFileWrite.h"

#include "config/FileAttributes.h"
#include "config/InPlaceWrite.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace QvVisa {

namespace {

constexpr mode_t s_private = S_IRUSR | S_IWUSR;
constexpr mode_t s_usual = 0666;

/// The bytes as a named, complete file in the folder, with the target's attributes if it is to
/// replace an existing one.
ReplaceOutcome writeTemporaryFile(int folder, const TargetFile& target, std::string_view bytes,
                                  const WriteOptions& options, TemporaryFile::Kind kind,
                                  std::unique_ptr<TemporaryFile>& written)
{
    auto file =
        std::make_unique<TemporaryFile>(folder, target.exists() ? s_private : s_usual, kind);
    if (!file->isOpen()) {
        return outcomeOfError(errno);
    }
    if (!writeFully(file->descriptor(), bytes)) {
        return ReplaceOutcome::Failed;
    }
    adjustModificationTime(file->descriptor(), target, options);
    ReplaceOutcome outcome = ReplaceOutcome::Ready;
    // With further links the target is written in place: the file is only a copy of the bytes. No
    // link at all: another save has put its file in the target's place since it was opened.
    if (target.exists() && target.status().st_nlink > 1) {
        outcome = ReplaceOutcome::Impossible;
    } else if (target.exists() &&
               !copyAttributes(target.descriptor(), target.status(), file->descriptor())) {
        outcome = outcomeOfError(errno);
    }
    if (outcome == ReplaceOutcome::Failed || !flushToDisk(file->descriptor())) {
        return ReplaceOutcome::Failed;
    }
    if (!file->giveName()) {
        return outcomeOfError(errno);
    }
    written = std::move(file);
    return outcome;
}

ReplaceOutcome writeTemporaryFile(int folder, const TargetFile& target, std::string_view bytes,
                                  const WriteOptions& options,
                                  std::unique_ptr<TemporaryFile>& written)
{
    using Kind = TemporaryFile::Kind;
    ReplaceOutcome outcome =
        writeTemporaryFile(folder, target, bytes, options, Kind::Unnamed, written);
    if (outcome == ReplaceOutcome::Impossible && !written) {
        // Perhaps the unnamed file could get no name, for want of /proc.
        outcome = writeTemporaryFile(folder, target, bytes, options, Kind::Named, written);
    }
    return outcome;
}

/// A complete copy outside the target's folder; null when there is no place for one.
std::unique_ptr<TemporaryFile> writeCopyElsewhere(const TargetFile& target, std::string_view bytes)
{
    std::error_code ignored;
    // Nothing in the program changes the environment.
    const char* home = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe)
    std::unique_ptr<TemporaryFile> copy;
    for (const std::filesystem::path& place : {std::filesystem::path(home != nullptr ? home : ""),
                                               std::filesystem::temp_directory_path(ignored)}) {
        const FileDescriptor folder = FileDescriptor::openFolder(AT_FDCWD, place / ".");
        if (!copy && folder.isOpen() && !isAppendOnly(folder.get())) {
            writeTemporaryFile(folder.get(), target, bytes, {}, copy);
        }
    }
    return copy;
}

/// Waits until the folder's names have reached the disk. A failure is ignored: the copy is needed
/// only if the machine stops in the middle of the write.
void flushFolder(int folder)
{
    const FileDescriptor descriptor(
        ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC, mode_t{0}));
    if (descriptor.isOpen()) {
        ::fsync(descriptor.get());
    }
}

} // namespace

ReplaceOutcome outcomeOfError(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
    case EIO:
    case EMFILE:
    case ENFILE:
    case ENOMEM:
        return ReplaceOutcome::Failed;
    default:
        return ReplaceOutcome::Impossible;
    }
}

ReplaceOutcome prepareReplacement(const TargetFile& target, std::string_view bytes,
                                  const WriteOptions& options,
                                  std::unique_ptr<TemporaryFile>& replacement)
{
    if (target.exists() && isAppendOnly(target.folder())) {
        // A temporary file could be created there, but never removed.
        return ReplaceOutcome::Impossible;
    }
    return writeTemporaryFile(target.folder(), target, bytes, options, replacement);
}

bool writeInPlaceWithCopy(const TargetFile& target, std::string_view bytes,
                          const WriteOptions& options, std::unique_ptr<TemporaryFile> copy)
{
    if (!copy) {
        copy = writeCopyElsewhere(target, bytes);
    }
    if (copy) {
        flushFolder(copy->folder());
    }
    const InPlaceOutcome outcome = writeInPlace(target, bytes, options);
    if (copy && outcome == InPlaceOutcome::Torn) {
        copy->keep();
    } else if (copy && outcome == InPlaceOutcome::Written) {
        TemporaryFile::removeLeftovers(copy->folder(), target.status().st_uid);
    }
    return outcome == InPlaceOutcome::Written;
}

bool writeFileAtomically(const std::string& path, std::string_view bytes,
                         const WriteOptions& options)
{
    const std::optional<TargetFile> target = TargetFile::open(path);
    if (!target) {
        return false;
    }
    std::unique_ptr<TemporaryFile> file;
    ReplaceOutcome outcome = prepareReplacement(*target, bytes, options, file);
    if (outcome == ReplaceOutcome::Ready) {
        if (file->renameTo(target->name())) {
            TemporaryFile::removeLeftovers(target->folder(), target->status().st_uid);
            return true;
        }
        outcome = outcomeOfError(errno);
    }
    return outcome == ReplaceOutcome::Impossible && target->exists() &&
           writeInPlaceWithCopy(*target, bytes, options, std::move(file));
}

} // namespace QvVisa
