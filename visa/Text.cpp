// SPDX-License-Identifier: MIT
#include "visa/Text.h"

#include <algorithm>

namespace visa {

std::optional<std::uint64_t> parseNumber(std::string_view text, std::uint64_t maximum)
{
    unsigned base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        text.remove_prefix(2);
    }
    if (text.empty()) {
        return std::nullopt;
    }
    std::uint64_t value = 0;
    for (const char c : text) {
        unsigned digit = base;
        if (isDigit(c)) {
            digit = static_cast<unsigned>(c - '0');
        } else if (c >= 'a' && c <= 'f') {
            digit = static_cast<unsigned>(c - 'a') + 10;
        } else if (c >= 'A' && c <= 'F') {
            digit = static_cast<unsigned>(c - 'A') + 10;
        }
        if (digit >= base || digit > maximum || value > (maximum - digit) / base) {
            return std::nullopt;
        }
        value = value * base + digit;
    }
    return value;
}

namespace {

char toUpper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

} // namespace

std::string toUpperCase(std::string_view text)
{
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), toUpper);
    return upper;
}

bool equalsIgnoringCase(std::string_view text, std::string_view upper)
{
    return std::equal(text.begin(), text.end(), upper.begin(), upper.end(),
                      [](char a, char b) { return toUpper(a) == b; });
}

bool startsWithIgnoringCase(std::string_view text, std::string_view upper)
{
    return equalsIgnoringCase(text.substr(0, upper.size()), upper);
}

} // namespace visa
