// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace visa {

/// ASCII only, whatever the locale.
constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

constexpr bool isLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// A whole number from 0 to maximum, decimal or, with 0x, hexadecimal; no sign and no white space.
/// Nothing for any other text.
std::optional<std::uint64_t> parseNumber(std::string_view text, std::uint64_t maximum);

/// A copy with the ASCII letters in upper case; other bytes are unchanged.
std::string toUpperCase(std::string_view text);

/// True when the texts are equal but for the case of ASCII letters; the second is in upper case.
bool equalsIgnoringCase(std::string_view text, std::string_view upper);

/// True when the text begins with the other, which is in upper case, in any case.
bool startsWithIgnoringCase(std::string_view text, std::string_view upper);

} // namespace visa
