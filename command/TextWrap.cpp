// SPDX-License-Identifier: MIT
#include "command/TextWrap.h"

#include "command/TextTable.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace QvVisa {

std::size_t terminalWidth()
{
    if (::isatty(STDOUT_FILENO) != 1) {
        return 0;
    }
    struct winsize size = {};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        return size.ws_col;
    }
    // Nothing in the program changes the environment.
    const char* columns = std::getenv("COLUMNS"); // NOLINT(concurrency-mt-unsafe)
    constexpr long usual = 80;
    const long width = columns != nullptr ? std::strtol(columns, nullptr, 10) : usual;
    return static_cast<std::size_t>(std::clamp(width, 0L, 10'000L));
}

std::string wrapped(std::string_view utf8, std::size_t width, std::size_t indent)
{
    if (width == 0) {
        return std::string(utf8);
    }
    std::string text;
    std::size_t column = 0;
    bool hasWord = false;
    while (!utf8.empty()) {
        // A word with the blanks before it: those are left out where the line is broken.
        const std::size_t begin = std::min(utf8.find_first_not_of(' '), utf8.size());
        const std::size_t end = std::min(utf8.find(' ', begin), utf8.size());
        const std::string_view word = utf8.substr(begin, end - begin);
        const std::size_t length = characterCount(word);
        if (hasWord && column + begin + length > width) {
            text.append(1, '\n').append(indent, ' ');
            column = indent;
        } else {
            text.append(begin, ' ');
            column += begin;
        }
        text.append(word);
        column += length;
        hasWord = true;
        utf8.remove_prefix(end);
    }
    return text;
}

} // namespace QvVisa
