// SPDX-License-Identifier: MIT
#include "lint/LineText.h"

#include "config/ConfigurationValue.h"

#include <algorithm>

namespace lint {

bool equalsIgnoringCase(std::string_view left, std::string_view right)
{
    return left.size() == right.size() && beginsWithIgnoringCase(left, right);
}

bool beginsWithIgnoringCase(std::string_view text, std::string_view start)
{
    return text.size() >= start.size() &&
           std::equal(start.begin(), start.end(), text.begin(),
                      [](char a, char b) { return toUpper(a) == toUpper(b); });
}

std::size_t skipSpaces(std::string_view text, std::size_t from)
{
    while (from < text.size() && isSpace(text[from])) {
        ++from;
    }
    return from;
}

std::string_view trimmedRight(std::string_view text)
{
    while (!text.empty() && isSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool isDecimal(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

std::optional<std::uint32_t> numberOf(std::string_view digits)
{
    return isDecimal(digits) ? QvVisa::toNumber(digits) : std::nullopt;
}

std::string quoted(std::string_view text)
{
    constexpr std::size_t most = 60;
    constexpr std::string_view hexDigits = "0123456789abcdef";
    std::string result = "'";
    for (const char c : text.substr(0, most)) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\t') {
            result += "\\t";
        } else if (c == '\r') {
            result += "\\r";
        } else if (byte < 0x20 || (byte >= 0x7F && byte < 0xA0)) {
            result.append("\\x").append(1, hexDigits[byte >> 4U]).append(1, hexDigits[byte & 15U]);
        } else {
            result += c;
        }
    }
    return result.append(text.size() > most ? "..." : "").append("'");
}

} // namespace lint
