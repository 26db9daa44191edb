// SPDX-License-Identifier: MIT
#include "config/Encoding.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

using namespace std::string_view_literals;

TEST(Encoding, EveryLatin1ByteComesBackFromUtf8)
{
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    const std::string utf8 = QvVisa::latin1ToUtf8(bytes);
    EXPECT_TRUE(QvVisa::isUtf8(utf8));
    EXPECT_EQ(QvVisa::utf8ToLatin1(utf8), bytes);
    EXPECT_EQ(QvVisa::latin1ToUtf8("\xE9"), "\xC3\xA9");
}

TEST(Encoding, WhatLatin1LacksIsRefused)
{
    EXPECT_EQ(QvVisa::utf8ToLatin1("\xC4\x80"), std::nullopt);     // U+0100
    EXPECT_EQ(QvVisa::utf8ToLatin1("\xE2\x82\xAC"), std::nullopt); // The euro sign.
    EXPECT_EQ(QvVisa::utf8ToLatin1("\xC3\xBF"), "\xFF");
}

TEST(Encoding, MalformedUtf8IsRefused)
{
    const std::string_view malformed[] = {
        "\x80"sv,             // A continuation byte alone.
        "\xC3"sv,             // Cut off.
        "\xC3z"sv,            // No continuation.
        "\xC0\x80"sv,         // Overlong.
        "\xE0\x80\x80"sv,     // Overlong.
        "\xF0\x80\x80\x80"sv, // Overlong.
        "\xED\xA0\x80"sv,     // A surrogate.
        "\xF4\x90\x80\x80"sv, // Beyond U+10FFFF.
        "\xF5\x80\x80\x80"sv, // Never a first byte.
        "\xFF"sv,
    };
    for (const std::string_view text : malformed) {
        EXPECT_FALSE(QvVisa::isUtf8(text));
        EXPECT_EQ(QvVisa::utf8ToLatin1(text), std::nullopt);
    }
    for (const std::string_view text : {"\xF4\x8F\xBF\xBF"sv, "\xEE\x80\x80"sv, ""sv, "\0"sv}) {
        EXPECT_TRUE(QvVisa::isUtf8(text));
    }
}

TEST(Encoding, PathThatIsNotUtf8IsReadAsLatin1)
{
    EXPECT_EQ(QvVisa::pathToUtf8("/\xC3\xA9"), "/\xC3\xA9");
    EXPECT_EQ(QvVisa::pathToUtf8("/\xE9"), "/\xC3\xA9");
}

TEST(Encoding, PrintableShowsControlCharactersAsEscapes)
{
    EXPECT_EQ(QvVisa::printable("a\x1B[1m\r\n\x7F\xC2\x9B\xC3\xA9"),
              "a\\x1B[1m\\x0D\\x0A\\x7F\\x9B\xC3\xA9");
    EXPECT_EQ(QvVisa::printable("\0"sv), "\\x00");
    EXPECT_EQ(QvVisa::printable("not \xFF UTF-8"), "not ? UTF-8");
}
