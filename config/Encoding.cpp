// SPDX-License-Identifier: MIT
#include "config/Encoding.h"

#include <array>
#include <cstdint>

namespace QvVisa {

namespace {

constexpr std::uint32_t s_invalid = 0xFFFFFFFF;

/// The code point at the front, which is taken off; s_invalid for a sequence that is not UTF-8.
std::uint32_t takeCodePoint(std::string_view& text)
{
    const auto byteAt = [&text](std::size_t index) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(text[index]));
    };
    const std::uint32_t first = byteAt(0);
    std::size_t length = 1;
    std::uint32_t codePoint = first;
    if (first >= 0xC2 && first <= 0xDF) {
        length = 2;
        codePoint = first & 0x1FU;
    } else if (first >= 0xE0 && first <= 0xEF) {
        length = 3;
        codePoint = first & 0x0FU;
    } else if (first >= 0xF0 && first <= 0xF4) {
        length = 4;
        codePoint = first & 0x07U;
    } else if (first >= 0x80) {
        return s_invalid;
    }
    if (text.size() < length) {
        return s_invalid;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0U) != 0x80U) {
            return s_invalid;
        }
        codePoint = codePoint << 6U | (byteAt(i) & 0x3FU);
    }
    constexpr std::array<std::uint32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    if (codePoint < smallest[length] || codePoint > 0x10FFFF || isSurrogate) {
        return s_invalid;
    }
    text.remove_prefix(length);
    return codePoint;
}

} // namespace

std::string latin1ToUtf8(std::string_view latin1)
{
    std::string utf8;
    utf8.reserve(latin1.size());
    for (const char c : latin1) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0U | byte >> 6U);
            utf8 += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return utf8;
}

std::optional<std::string> utf8ToLatin1(std::string_view utf8)
{
    std::string latin1;
    latin1.reserve(utf8.size());
    while (!utf8.empty()) {
        const std::uint32_t codePoint = takeCodePoint(utf8);
        if (codePoint > 0xFF) {
            return std::nullopt;
        }
        latin1 += static_cast<char>(codePoint);
    }
    return latin1;
}

bool isUtf8(std::string_view bytes)
{
    while (!bytes.empty()) {
        if (takeCodePoint(bytes) == s_invalid) {
            return false;
        }
    }
    return true;
}

std::string pathToUtf8(std::string_view path)
{
    return isUtf8(path) ? std::string(path) : latin1ToUtf8(path);
}

std::string printable(std::string_view utf8)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(utf8.size());
    while (!utf8.empty()) {
        const std::string_view before = utf8;
        const std::uint32_t codePoint = takeCodePoint(utf8);
        if (codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0)) {
            text += "\\x";
            text += digits[codePoint >> 4U];
            text += digits[codePoint & 0xFU];
        } else if (codePoint == s_invalid) {
            text += '?';
            utf8.remove_prefix(1);
        } else {
            text += before.substr(0, before.size() - utf8.size());
        }
    }
    return text;
}

} // namespace QvVisa
