// SPDX-License-Identifier: MIT
#include "simulator/RegularFile.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace simulator {

namespace {

constexpr const char* tooLarge = "it is limited to 64 MiB";

class Descriptor
{
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    ~Descriptor()
    {
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_descriptor; }

private:
    int m_descriptor;
};

std::string errorText()
{
    return std::generic_category().message(errno);
}

/// Opens a file that must be regular and stay within the limit with this much more in it.
/// O_NONBLOCK, and the type is checked before and after: opening a FIFO or a device can block or
/// have effects, and the name can change its meaning in between.
std::string problemOfOpening(const std::string& path, int flags, std::size_t more, int& descriptor)
{
    constexpr const char* notRegular = "it is not a regular file";
    struct stat status = {};
    if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        return notRegular;
    }
    descriptor = ::open(path.c_str(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0644);
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0) {
        return errorText();
    }
    if (!S_ISREG(status.st_mode)) {
        return notRegular;
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    return more > largestFile || size > largestFile - more ? tooLarge : "";
}

} // namespace

std::string readRegularFile(const std::string& path, std::string& text)
{
    int opened = -1;
    std::string problem = problemOfOpening(path, O_RDONLY, 0, opened);
    const Descriptor file(opened);
    if (!problem.empty()) {
        return problem;
    }
    std::array<char, 65536> block{};
    for (;;) {
        const ssize_t length = ::read(file.get(), block.data(), block.size());
        if (length == 0) {
            return {};
        }
        if (length < 0 && errno != EINTR) {
            return errorText();
        }
        if (length > 0) {
            text.append(block.data(), static_cast<std::size_t>(length));
        }
        // It may have grown since its size was asked for.
        if (text.size() > largestFile) {
            return tooLarge;
        }
    }
}

std::string appendToRegularFile(const std::string& path, const std::string& text)
{
    int opened = -1;
    std::string problem =
        problemOfOpening(path, O_WRONLY | O_APPEND | O_CREAT, text.size(), opened);
    const Descriptor file(opened);
    if (!problem.empty()) {
        return problem;
    }
    const ssize_t written = ::write(file.get(), text.data(), text.size());
    if (written < 0) {
        return errorText();
    }
    return written == static_cast<ssize_t>(text.size()) ? "" : "it took a part of the line only";
}

std::string environmentValue(const char* name)
{
    // Clients set it before they start threads.
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? value : "";
}

} // namespace simulator
