// SPDX-License-Identifier: MIT
#include "config/WholeFile.h"

#include "config/FileDescriptor.h"
#include "config/HugePages.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace QvVisa {

std::optional<std::string> readWholeFile(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0) {
        return std::nullopt;
    }
    if (status.st_size > maxFileSize) {
        errno = EFBIG;
        return std::nullopt;
    }
    // One byte more than the file has, so that its end is seen in the second read.
    const auto expected = static_cast<std::size_t>(status.st_size) + 1;
    constexpr std::size_t more = std::size_t{64} * 1024;
    std::string text;
    reserveLarge(text, expected);
    std::size_t length = 0;
    for (;;) {
        text.resize(length < expected ? expected : length + more);
        const ssize_t count = uninterrupted([&] {
            return ::pread(descriptor, text.data() + length, text.size() - length,
                           static_cast<off_t>(length));
        });
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            text.resize(length);
            return text;
        }
        length += static_cast<std::size_t>(count);
        if (length > static_cast<std::size_t>(maxFileSize)) {
            errno = EFBIG;
            return std::nullopt;
        }
    }
}

} // namespace QvVisa
