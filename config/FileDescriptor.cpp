// SPDX-License-Identifier: MIT
#include "config/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <utility>

namespace QvVisa {

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
{}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept
{
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
}

FileDescriptor::~FileDescriptor()
{
    close();
}

FileDescriptor FileDescriptor::openForReading(const std::string& path)
{
    FileDescriptor file = openPatiently(AT_FDCWD, path, O_RDONLY | O_CLOEXEC);
    struct stat status = {};
    int error = 0;
    if (file.isOpen() && ::fstat(file.get(), &status) != 0) {
        error = errno;
    } else if (file.isOpen() && !S_ISREG(status.st_mode)) {
        error = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    } else if (status.st_size > maxFileSize) {
        error = EFBIG;
    }
    if (error != 0) {
        file.close();
        errno = error;
    }
    return file;
}

FileDescriptor FileDescriptor::openPatiently(int folder, const std::string& path, int flags)
{
    constexpr int mostAttempts = 101;
    constexpr struct timespec pause = {0, 10'000'000};
    for (int attempt = 1;; ++attempt) {
        // O_NONBLOCK: opening a pipe that has taken the file's place must not block.
        FileDescriptor file(uninterrupted(
            [&] { return ::openat(folder, path.c_str(), flags | O_NONBLOCK, mode_t{0}); }));
        if (file.isOpen() || errno != EAGAIN || attempt == mostAttempts) {
            return file;
        }
        ::nanosleep(&pause, nullptr);
        errno = EAGAIN;
    }
}

FileDescriptor FileDescriptor::openFolder(int folder, const std::string& path)
{
#if defined(O_PATH)
    constexpr int access = O_PATH;
#elif defined(O_SEARCH)
    constexpr int access = O_SEARCH;
#else
    constexpr int access = O_RDONLY;
#endif
    constexpr int flags = access | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    return FileDescriptor(
        uninterrupted([&] { return ::openat(folder, path.c_str(), flags, mode_t{0}); }));
}

bool FileDescriptor::close()
{
    const int descriptor = std::exchange(m_descriptor, -1);
    return descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR;
}

ssize_t readFully(int descriptor, char* bytes, std::size_t size)
{
    std::size_t length = 0;
    while (length < size) {
        const ssize_t count = uninterrupted([=] {
            return ::pread(descriptor, bytes + length, size - length, static_cast<off_t>(length));
        });
        if (count < 0) {
            return -1;
        }
        if (count == 0) {
            break;
        }
        length += static_cast<std::size_t>(count);
    }
    return static_cast<ssize_t>(length);
}

bool writeFully(int descriptor, std::string_view bytes)
{
    off_t offset = 0;
    while (!bytes.empty()) {
        const ssize_t count =
            uninterrupted([=] { return ::pwrite(descriptor, bytes.data(), bytes.size(), offset); });
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
    // fsync() on macOS only reaches the drive's cache.
    if (::fcntl(descriptor, F_FULLFSYNC) == 0) {
        return true;
    }
#endif
    const bool isFlushed = uninterrupted([descriptor] { return ::fsync(descriptor); }) == 0;
    if (!isFlushed && errno != EINVAL && errno != ENOTSUP) {
        return false;
    }
    // Some network file systems report failed writes only when a descriptor is closed. A duplicate
    // keeps the file open.
    FileDescriptor duplicate(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
    return duplicate.isOpen() && duplicate.close();
}

} // namespace QvVisa
