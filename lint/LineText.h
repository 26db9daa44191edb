// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lint {

/// White space as the reader has it.
constexpr bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

constexpr char toUpper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// Upper and lower case ASCII letters are equal.
bool equalsIgnoringCase(std::string_view left, std::string_view right);
bool beginsWithIgnoringCase(std::string_view text, std::string_view start);

/// The first byte that is not white space; the size if there is none.
std::size_t skipSpaces(std::string_view text, std::size_t from = 0);

/// Without the white space at its end.
std::string_view trimmedRight(std::string_view text);

/// Whether the text is decimal digits, one at least.
bool isDecimal(std::string_view text);

/// The number of a decimal text, as the reader takes it: none for any other text, and none above
/// 2147483647.
std::optional<std::uint32_t> numberOf(std::string_view digits);

/// Up to 60 bytes of the text between single quotes, control characters as escapes (\t, \x1b).
std::string quoted(std::string_view text);

} // namespace lint
