// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <string>

namespace QvVisa {

/// Makes a system call, again as long as a signal interrupts it. Not for close(), which has closed
/// the file then.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

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

    /// Opens a regular file for reading. Anything else (a folder, a device, a pipe, which might
    /// block or never end) gives a descriptor that is not open, like a file that cannot be read.
    static FileDescriptor openForReading(const std::string& path);

    bool isOpen() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }

    /// Closes early; false when the system reports that what was written may be lost.
    bool close();

private:
    int m_descriptor = -1;
};

} // namespace QvVisa
