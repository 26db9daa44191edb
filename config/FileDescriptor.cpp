// SPDX-License-Identifier: MIT
#include "config/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
    // O_NONBLOCK: a pipe that took the file's place must not hold us up in open().
    FileDescriptor file(
        uninterrupted([&path] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC); }));
    struct stat status = {};
    if (file.isOpen() && (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))) {
        file.close();
    }
    return file;
}

bool FileDescriptor::close()
{
    const int descriptor = std::exchange(m_descriptor, -1);
    return descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR;
}

} // namespace QvVisa
