// SPDX-License-Identifier: MIT
#include "finder/SearchLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace finder {

SearchLog::SearchLog(const std::string& target)
{
    if (target == "-") {
        m_descriptor = STDERR_FILENO;
        return;
    }
    if (target.empty()) {
        return;
    }
    constexpr mode_t ownerOnly = 0600;
    // O_NONBLOCK: a pipe without a reader must not hold up the search.
    m_descriptor =
        ::open(target.c_str(), // NOLINT(cppcoreguidelines-pro-type-vararg)
               O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, ownerOnly);
    m_isOwned = m_descriptor >= 0;
    struct stat status = {};
    if (m_isOwned && (::fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        ::close(m_descriptor);
        m_descriptor = -1;
        m_isOwned = false;
    }
}

SearchLog::~SearchLog()
{
    if (m_isOwned) {
        ::close(m_descriptor);
    }
}

void SearchLog::line(std::string_view text)
{
    if (!isOpen()) {
        return;
    }
    const std::string bytes = "qvfind: " + escaped(text) + '\n';
    const std::lock_guard<std::mutex> lock(m_mutex);
    // A log that cannot be written changes nothing else.
    [[maybe_unused]] const ssize_t written = ::write(m_descriptor, bytes.data(), bytes.size());
}

std::string escaped(std::string_view text)
{
    constexpr std::string_view hexadecimal = "0123456789abcdef";
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\\') {
            result += "\\\\";
        } else if (c >= ' ' && c <= '~') {
            result += c;
        } else {
            result += "\\x";
            result += hexadecimal[byte >> 4];
            result += hexadecimal[byte & 0xFU];
        }
    }
    return result;
}

} // namespace finder
