// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <string_view>

namespace QvVisa {

/// Makes a system call and repeats it as long as a signal interrupts it. Not for close(): the
/// descriptor is gone even if close() was interrupted.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// Larger files count as unreadable.
inline constexpr off_t maxFileSize = off_t{1024} * 1024 * 1024;

/// Owns an open POSIX file descriptor, or none.
class FileDescriptor
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept;
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor();

    /// Opens a regular file of at most maxFileSize bytes for reading, as openPatiently() does.
    /// Anything else (a folder, a device, a pipe, which might block or never end) gives a
    /// descriptor that is not open, with errno set, like a file that cannot be read.
    static FileDescriptor openForReading(const std::string& path);

    /// openat() with O_NONBLOCK. While another process holds a lease on the file (file servers do),
    /// that fails with EAGAIN and the holder is asked to give the lease up: opening is repeated for
    /// about a second then. Without a lease it never waits.
    static FileDescriptor openPatiently(int folder, const std::string& path, int flags);

    /// Opens a folder, which must not be a symbolic link, for calls like openat(). It need not be
    /// readable. A relative path is one below the given folder.
    static FileDescriptor openFolder(int folder, const std::string& path);

    bool isOpen() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }

    /// Closes early; false when the system reports that written data may be lost.
    bool close();

private:
    int m_descriptor = -1;
};

/// Reads from the file's start until size bytes are read or the file ends, and returns the number
/// of bytes read; -1, with errno set, when a read fails. Does not move the file offset.
ssize_t readFully(int descriptor, char* bytes, std::size_t size);

/// Writes all bytes at the file's start. False, with errno set, when a write fails: any part of the
/// bytes may have been written. Does not move the file offset.
bool writeFully(int descriptor, std::string_view bytes);

/// Waits until the file's data has reached the disk. False, with errno set, when that failed; true
/// on a file system that cannot flush.
bool flushToDisk(int descriptor);

} // namespace QvVisa
