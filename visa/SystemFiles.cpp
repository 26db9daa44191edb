// SPDX-License-Identifier: MIT
#include "visa/SystemFiles.h"

#include "visa/Text.h"

#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <string_view>
#include <utility>

namespace visa {

namespace {

std::string lastPart(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}

std::optional<std::string> linkText(const std::string& path)
{
    std::array<char, PATH_MAX> text{};
    const ssize_t length = ::readlink(path.c_str(), text.data(), text.size());
    if (length <= 0) {
        return std::nullopt;
    }
    return std::string(text.data(), static_cast<std::size_t>(length));
}

std::optional<std::string> readAndClose(int descriptor, std::size_t mostBytes)
{
    if (descriptor < 0) {
        return std::nullopt;
    }
    std::string text(mostBytes, '\0');
    std::size_t size = 0;
    ssize_t count = 0;
    do {
        count = ::read(descriptor, text.data() + size, text.size() - size);
        size += count > 0 ? static_cast<std::size_t>(count) : 0;
    } while (count > 0 || (count < 0 && errno == EINTR));
    ::close(descriptor);
    text.resize(size);
    return count == 0 ? std::optional(std::move(text)) : std::nullopt;
}

/// Takes a run of digits off the text's front, without leading zeros.
std::string_view takeDigits(std::string_view& text)
{
    std::size_t length = 0;
    while (length < text.size() && isDigit(text[length])) {
        ++length;
    }
    std::string_view digits = text.substr(0, length);
    text.remove_prefix(length);
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

} // namespace

std::optional<std::string> SystemFiles::read(const std::string& path) const
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg)
    const int descriptor = ::open((m_root + path).c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    constexpr std::size_t page = 4096;
    auto text = readAndClose(descriptor, page);
    if (text && !text->empty() && text->back() == '\n') {
        text->pop_back();
    }
    return text;
}

std::optional<std::string> SystemFiles::readRegularFile(const std::string& path) const
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg)
    const int descriptor =
        ::open((m_root + path).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    struct stat status = {};
    if (descriptor >= 0 && (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        ::close(descriptor);
        return std::nullopt;
    }
    constexpr std::size_t mostBytes = 65536;
    return readAndClose(descriptor, mostBytes);
}

std::vector<std::string> SystemFiles::names(const std::string& folder) const
{
    std::vector<std::string> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir((m_root + folder).c_str()),
                                                      ::closedir);
    if (entries == nullptr) {
        return names;
    }
    // Each caller has a stream of its own.
    while (const dirent* entry = ::readdir(entries.get())) { // NOLINT(concurrency-mt-unsafe)
        const std::string name = static_cast<const char*>(entry->d_name);
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    std::sort(names.begin(), names.end(), naturalLess);
    return names;
}

std::optional<std::string> SystemFiles::linkName(const std::string& path) const
{
    const auto text = linkText(m_root + path);
    return text ? std::optional(lastPart(*text)) : std::nullopt;
}

std::string SystemFiles::finalName(const std::string& path) const
{
    constexpr int mostLinks = 16;
    std::string current = path;
    for (int i = 0; i < mostLinks; ++i) {
        const auto text = linkText(m_root + current);
        if (!text) {
            break;
        }
        current = text->front() == '/' ? *text : current.substr(0, current.rfind('/') + 1) + *text;
    }
    return lastPart(current);
}

bool SystemFiles::exists(const std::string& path) const
{
    return ::access((m_root + path).c_str(), F_OK) == 0;
}

bool SystemFiles::isAccessible(const std::string& path) const
{
    return ::access((m_root + path).c_str(), R_OK | W_OK) == 0;
}

std::string SystemFiles::groupOf(const std::string& path) const
{
    struct stat status = {};
    if (::stat((m_root + path).c_str(), &status) != 0) {
        return {};
    }
    group entry = {};
    group* found = nullptr;
    std::array<char, 4096> buffer{};
    ::getgrgid_r(status.st_gid, &entry, buffer.data(), buffer.size(), &found);
    return found != nullptr ? found->gr_name : std::to_string(status.st_gid);
}

bool naturalLess(const std::string& left, const std::string& right)
{
    std::string_view leftRest = left;
    std::string_view rightRest = right;
    while (!leftRest.empty() && !rightRest.empty()) {
        if (isDigit(leftRest.front()) && isDigit(rightRest.front())) {
            const std::string_view leftDigits = takeDigits(leftRest);
            const std::string_view rightDigits = takeDigits(rightRest);
            if (leftDigits != rightDigits) {
                return leftDigits.size() != rightDigits.size()
                           ? leftDigits.size() < rightDigits.size()
                           : leftDigits < rightDigits;
            }
        } else if (leftRest.front() != rightRest.front()) {
            return leftRest.front() < rightRest.front();
        } else {
            leftRest.remove_prefix(1);
            rightRest.remove_prefix(1);
        }
    }
    return leftRest.size() != rightRest.size() ? leftRest.size() < rightRest.size() : left < right;
}

} // namespace visa
