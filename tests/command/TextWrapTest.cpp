// SPDX-License-Identifier: MIT
#include "command/TextWrap.h"

#include <gtest/gtest.h>

namespace {

using QvVisa::wrapped;

TEST(TextWrap, BreaksBetweenWordsAtTheWidth)
{
    EXPECT_EQ(wrapped("aa bb cc", 5, 0), "aa bb\ncc");
    EXPECT_EQ(wrapped("aa bb cc", 4, 0), "aa\nbb\ncc");
    EXPECT_EQ(wrapped("aa bb cc", 8, 0), "aa bb cc");
}

TEST(TextWrap, IndentsAllLinesButTheFirst)
{
    EXPECT_EQ(wrapped("ok  aa bb cc", 9, 4), "ok  aa bb\n    cc");
}

TEST(TextWrap, KeepsBlanksWithinALine)
{
    EXPECT_EQ(wrapped("    -> aa  bb", 20, 7), "    -> aa  bb");
    EXPECT_EQ(wrapped("aa ", 20, 0), "aa ");
}

TEST(TextWrap, LongWordHasALineOfItsOwn)
{
    EXPECT_EQ(wrapped("aa bbbbbbbbbb cc", 6, 2), "aa\n  bbbbbbbbbb\n  cc");
    EXPECT_EQ(wrapped("bbbbbbbbbb", 6, 2), "bbbbbbbbbb");
}

TEST(TextWrap, CharacterOfSeveralBytesIsOneColumn)
{
    EXPECT_EQ(wrapped("\xC3\xA9\xC3\xA9 \xC3\xA9\xC3\xA9 a", 5, 0),
              "\xC3\xA9\xC3\xA9 \xC3\xA9\xC3\xA9\na");
}

TEST(TextWrap, WidthZeroLeavesTheTextAlone)
{
    EXPECT_EQ(wrapped("aa bb cc", 0, 4), "aa bb cc");
    EXPECT_EQ(wrapped("", 5, 4), "");
}

} // namespace
