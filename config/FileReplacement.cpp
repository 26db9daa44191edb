// SPDX-License-Identifier: MIT
#include "config/FileReplacement.h"

#include "config/FileDescriptor.h"
#include "config/NeighbourFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>

namespace QvVisa {

namespace {

enum class Outcome
{
    Replaced,
    Failed,     ///< The disk is full or broken: the file is better left alone.
    Impossible, ///< This folder or file system closes this way; another may be open.
};

Outcome outcomeOfError(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
    case EIO:
    case EMFILE:
    case ENFILE:
    case ENOMEM:
        return Outcome::Failed;
    default:
        return Outcome::Impossible;
    }
}

bool writeFromStart(int descriptor, std::string_view bytes)
{
    off_t offset = 0;
    while (!bytes.empty()) {
        const ssize_t count =
            uninterrupted([&] { return ::pwrite(descriptor, bytes.data(), bytes.size(), offset); });
        if (count <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
        offset += count;
    }
    return true;
}

bool flushToDisk(int descriptor)
{
#ifdef F_FULLFSYNC
    // fsync() on macOS stops at the drive's own cache.
    if (::fcntl(descriptor, F_FULLFSYNC) == 0) {
        return true;
    }
#endif
    const bool isFlushed = uninterrupted([descriptor] { return ::fsync(descriptor); }) == 0;
    // A file system that knows no flushing must not stand in the way of saving.
    return isFlushed || errno == EINVAL || errno == ENOTSUP;
}

void flushFolderOf(const std::filesystem::path& file)
{
    const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
    const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.isOpen()) {
        // Whether or not this succeeds, the name stands for one whole file.
        ::fsync(descriptor.get());
    }
}

/// The file at the end of a chain of symbolic links, which need not exist; none for a loop, and
/// when it cannot be told: replacing what might be a link would cost the link.
std::optional<std::filesystem::path> followLinks(std::filesystem::path path)
{
    constexpr int mostLinks = 40;
    for (int links = 0; links <= mostLinks; ++links) {
        std::error_code error;
        const std::filesystem::path next = std::filesystem::read_symlink(path, error);
        if (error == std::errc::invalid_argument || error == std::errc::no_such_file_or_directory) {
            return path; // Something else than a link, or nothing.
        }
        if (error) {
            return std::nullopt;
        }
        path = next.is_absolute() ? next : path.parent_path() / next;
    }
    return std::nullopt;
}

/// False when the system does not allow it, or fails; errno tells.
bool changeOwner(int descriptor, uid_t user, gid_t group)
{
    return uninterrupted([=] { return ::fchown(descriptor, user, group); }) == 0;
}

bool takeOverOwnerAndMode(int descriptor, const struct stat& old)
{
    struct stat own = {};
    if (::fstat(descriptor, &own) != 0) {
        return false;
    }
    if (own.st_uid != old.st_uid) {
        if (changeOwner(descriptor, old.st_uid, old.st_gid)) {
            own.st_gid = old.st_gid;
        } else if (outcomeOfError(errno) == Outcome::Failed) {
            return false;
        }
    }
    // Only root may give files away, but an owner may choose among their groups. A file whose
    // group cannot be kept must not open itself to the members of another one.
    mode_t mode = old.st_mode & 07777;
    if (own.st_gid != old.st_gid && !changeOwner(descriptor, static_cast<uid_t>(-1), old.st_gid)) {
        if (outcomeOfError(errno) == Outcome::Failed) {
            return false;
        }
        mode &= ~static_cast<mode_t>(S_IRWXG | S_ISGID);
    }
    return uninterrupted([=] { return ::fchmod(descriptor, mode); }) == 0;
}

/// old: the status of the file to be replaced, null when there is none.
Outcome replaceWithNeighbour(const std::filesystem::path& target, std::string_view bytes,
                             const struct stat* old)
{
    const mode_t mode = old != nullptr ? S_IRUSR | S_IWUSR : 0666;
    NeighbourFile neighbour(target, mode);
    if (!neighbour.isOpen()) {
        return outcomeOfError(errno);
    }
    if (!writeFromStart(neighbour.descriptor(), bytes)) {
        return Outcome::Failed;
    }
    if (old != nullptr && !takeOverOwnerAndMode(neighbour.descriptor(), *old)) {
        return outcomeOfError(errno);
    }
    if (!flushToDisk(neighbour.descriptor())) {
        return Outcome::Failed;
    }
    if (!neighbour.takeTargetsName()) {
        return outcomeOfError(errno);
    }
    flushFolderOf(target);
    return Outcome::Replaced;
}

std::optional<std::string> readContents(const std::filesystem::path& path, off_t size)
{
    constexpr off_t mostKept = off_t{256} * 1024 * 1024;
    const FileDescriptor file = FileDescriptor::openForReading(path.string());
    if (!file.isOpen() || size > mostKept) {
        return std::nullopt;
    }
    std::string contents(static_cast<std::size_t>(size), '\0');
    std::size_t length = 0;
    while (length < contents.size()) {
        const ssize_t count = uninterrupted(
            [&] { return ::read(file.get(), contents.data() + length, contents.size() - length); });
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        length += static_cast<std::size_t>(count);
    }
    contents.resize(length);
    return contents;
}

/// length: how long the file is, or 0 to add no byte that need not be. What is left of it behind
/// the bytes becomes empty lines in the same write and is cut off last, so that a kill between the
/// two leaves a text that means the same, and an error finds the old bytes' room still there to
/// take the write back.
bool overwrite(int descriptor, std::string_view bytes, std::size_t length)
{
    std::string padded(bytes);
    padded.resize(std::max(bytes.size(), length), '\n');
    return writeFromStart(descriptor, padded) &&
           uninterrupted(
               [=] { return ::ftruncate(descriptor, static_cast<off_t>(bytes.size())); }) == 0 &&
           flushToDisk(descriptor);
}

bool replaceInPlace(const std::filesystem::path& target, const FileDescriptor& file,
                    std::string_view bytes, off_t oldSize)
{
    const std::optional<std::string> old = readContents(target, oldSize);
    if (!old) {
        return false;
    }
    if (overwrite(file.get(), bytes, old->size())) {
        return true;
    }
    overwrite(file.get(), *old, 0);
    return false;
}

} // namespace

bool replaceFileContents(const std::string& path, std::string_view bytes)
{
    const std::optional<std::filesystem::path> target = followLinks(path);
    if (!target) {
        return false;
    }
    const FileDescriptor file(uninterrupted(
        [&target] { return ::open(target->c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC); }));
    if (!file.isOpen()) {
        return errno == ENOENT &&
               replaceWithNeighbour(*target, bytes, nullptr) == Outcome::Replaced;
    }
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return false;
    }
    // Not a single link: another save has put its file in this one's place since the open.
    if (status.st_nlink <= 1) {
        const Outcome outcome = replaceWithNeighbour(*target, bytes, &status);
        if (outcome != Outcome::Impossible) {
            return outcome == Outcome::Replaced;
        }
    }
    return replaceInPlace(*target, file, bytes, status.st_size);
}

} // namespace QvVisa
