// SPDX-License-Identifier: MIT
#include "config/AtomicFileWrite.h"

#include "config/FileAttributes.h"
#include "config/InPlaceWrite.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

namespace QvVisa {

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

void flushFolder(int folder)
{
    const FileDescriptor descriptor(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.isOpen()) {
        ::fsync(descriptor.get());
    }
}

ReplaceOutcome prepareReplacement(const TargetFile& target, std::string_view bytes,
                                  std::unique_ptr<TemporaryFile>& replacement)
{
    const mode_t mode = target.exists() ? S_IRUSR | S_IWUSR : 0666;
    auto file = std::make_unique<TemporaryFile>(target.folder(), mode);
    if (!file->isOpen()) {
        return outcomeOfError(errno);
    }
    if (!writeFully(file->descriptor(), bytes)) {
        return ReplaceOutcome::Failed;
    }
    if (target.exists() &&
        !copyAttributes(target.descriptor(), target.status(), file->descriptor())) {
        return outcomeOfError(errno);
    }
    if (!flushToDisk(file->descriptor())) {
        return ReplaceOutcome::Failed;
    }
    replacement = std::move(file);
    return ReplaceOutcome::Done;
}

namespace {

ReplaceOutcome replace(const TargetFile& target, std::string_view bytes)
{
    std::unique_ptr<TemporaryFile> replacement;
    const ReplaceOutcome outcome = prepareReplacement(target, bytes, replacement);
    if (outcome != ReplaceOutcome::Done) {
        return outcome;
    }
    if (!replacement->renameTo(target.name())) {
        return outcomeOfError(errno);
    }
    flushFolder(target.folder());
    return ReplaceOutcome::Done;
}

} // namespace

bool writeFileAtomically(const std::string& path, std::string_view bytes)
{
    const std::optional<TargetFile> target = TargetFile::open(path);
    if (!target) {
        return false;
    }
    if (!target->exists()) {
        return replace(*target, bytes) == ReplaceOutcome::Done;
    }
    // No link at all: another save has put its file in this one's place since it was opened.
    if (target->status().st_nlink <= 1) {
        const ReplaceOutcome outcome = replace(*target, bytes);
        if (outcome != ReplaceOutcome::Impossible) {
            return outcome == ReplaceOutcome::Done;
        }
    }
    return writeInPlace(*target, bytes);
}

} // namespace QvVisa
