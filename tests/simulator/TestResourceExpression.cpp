// SPDX-License-Identifier: MIT
#include "simulator/ResourceExpression.h"
#include "simulator/ResourceMatcher.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using simulator::ResourceExpression;
using simulator::ResourceMatcher;

namespace {

struct MatchCase
{
    const char* expression;
    const char* text;
    bool matches;
};

bool matches(const ResourceExpression& expression, const std::string& text)
{
    return ResourceMatcher(expression).matches(text);
}

void expectAll(const std::vector<MatchCase>& cases)
{
    for (const MatchCase& test : cases) {
        const auto compiled = ResourceExpression::compile(test.expression);
        ASSERT_TRUE(compiled) << "malformed: " << test.expression;
        EXPECT_EQ(matches(*compiled, test.text), test.matches)
            << test.expression << " on " << test.text;
    }
}

} // namespace

TEST(ResourceExpression, MatchesTheWholeText)
{
    expectAll({
        {"ASRL1::INSTR", "ASRL1::INSTR", true},
        {"ASRL1", "ASRL1::INSTR", false},
        {"INSTR", "ASRL1::INSTR", false},
        {"ASRL1::INSTR", "ASRL1::INST", false},
        {"ASRL1::INSTR", "", false},
    });
}

TEST(ResourceExpression, TakesUpperAndLowerCaseAlike)
{
    expectAll({
        {"asrl1::instr", "ASRL1::INSTR", true},
        {"ASRL1::INSTR", "asrl1::Instr", true},
        {"[a-c]", "B", true},
        {"[A-C]", "b", true},
        {"[^a-c]", "B", false},
        // Only letters have a case: these differ in the same bit.
        {"\\[", "{", false},
        {"@", "`", false},
    });
}

TEST(ResourceExpression, AnyCharacter)
{
    expectAll({
        {"?", "x", true},
        {"?", "", false},
        {"?", "xx", false},
        {"?", "\xE9", true},
        {"A?C", "ABC", true},
        {"A?C", "AC", false},
        {"?*", "", true},
        {"?*", "TCPIP0::10.0.0.5::inst0::INSTR", true},
        {"?+", "", false},
        {"?+", "x", true},
        {"?*::INSTR", "GPIB0::5::INSTR", true},
        {"?*::INSTR", "GPIB0::INTFC", false},
        {"?*::INSTR", "::INSTR", true},
    });
}

TEST(ResourceExpression, Repetition)
{
    expectAll({
        {"AB*", "A", true},
        {"AB*", "ABBB", true},
        {"AB*", "ABAB", false},
        {"AB+", "A", false},
        {"AB+", "AB", true},
        {"AB+", "ABBB", true},
        {"(AB)*", "", true},
        {"(AB)*", "ABAB", true},
        {"(AB)*", "ABA", false},
        {"(AB)+C", "ABABC", true},
        {"(AB)+C", "C", false},
        {"A**", "AAA", true},
        {"A+*", "", true},
        {"(A*)*", "AAAA", true},
        {"(A*)+B", "B", true},
        {"GPIB[0-9]*::?*INSTR", "GPIB::5::INSTR", true},
        {"GPIB[0-9]*::?*INSTR", "GPIB12::5::INSTR", true},
        {"GPIB[0-9]*::?*INSTR", "GPIB-VXI0::5::INSTR", false},
    });
}

TEST(ResourceExpression, Lists)
{
    expectAll({
        {"ASRL[13]::INSTR", "ASRL1::INSTR", true},
        {"ASRL[13]::INSTR", "ASRL3::INSTR", true},
        {"ASRL[13]::INSTR", "ASRL2::INSTR", false},
        {"ASRL[1-3]::INSTR", "ASRL2::INSTR", true},
        {"ASRL[1-3]::INSTR", "ASRL4::INSTR", false},
        {"ASRL[^1-3]::INSTR", "ASRL4::INSTR", true},
        {"ASRL[^1-3]::INSTR", "ASRL2::INSTR", false},
        {"ASRL[^1]::INSTR", "ASRL::INSTR", false},
        {"[0-9A-F]+", "0aF9", true},
        {"[a^]", "^", true},
        {"[a-]", "-", true},
        {"[-a]", "-", true},
        {"[-a]", "b", false},
        {"[?*+|()]", "?", true},
        {"[?*+|()]", "x", false},
        {"[\\]]", "]", true},
        {"[\\^a]", "^", true},
        {"[\\^a]", "b", false},
        {"[a\\-c]", "-", true},
        {"[a\\-c]", "b", false},
        {"[\x80-\xFF]", "\xE9", true},
        {"[\x80-\xFF]", "e", false},
        {"[^a]", "\xE9", true},
        {"[a-a]", "a", true},
    });
}

TEST(ResourceExpression, AlternativesTakeTheWholeSide)
{
    expectAll({
        {"VXI|GPIB", "VXI", true},
        {"VXI|GPIB", "GPIB", true},
        {"VXI|GPIB", "VXPIB", false},
        {"VX(I|G)PIB", "VXGPIB", true},
        {"VX(I|G)PIB", "VXI", false},
        {"A|B|C", "C", true},
        {"(GPIB|USB)?*INSTR", "USB0::1::2::3::INSTR", true},
        {"(GPIB|USB)?*INSTR", "ASRL1::INSTR", false},
        {"A|B*", "BBB", true},
        {"(A|B)*", "ABBA", true},
    });
}

TEST(ResourceExpression, BackslashMakesOrdinary)
{
    expectAll({
        {"\\?", "?", true},
        {"\\?", "x", false},
        {"A\\*", "A*", true},
        {"A\\*", "AA", false},
        {"\\\\", "\\", true},
        {"\\(\\)", "()", true},
        {"\\[a]", "[a]", true},
        {"\\a", "A", true},
        {"A]", "A]", true},
        {"A\\|B", "A|B", true},
        {"\\?+", "???", true},
    });
}

TEST(ResourceExpression, RefusesWhatIsMalformed)
{
    const std::vector<std::string> malformed{
        "",      "*",      "+",    "*A",  "|",    "A|",   "|A",  "A||B", "(",    ")",    "()",
        "(A",    "A)",     "(A))", "(*)", "(|A)", "(A|)", "[",   "[]",   "[^]",  "[a",   "[^a",
        "[z-a]", "[xz-a]", "\\",   "A\\", "[a\\", "[a-",  "A|*", "A(+)", "((A)", "[\\]", "[b-\\a]"};
    for (const std::string& text : malformed) {
        EXPECT_FALSE(ResourceExpression::compile(text)) << text;
    }
}

TEST(ResourceExpression, NestsAsDeepAsPromisedAndNoDeeper)
{
    const auto nested = [](int depth) {
        const auto count = static_cast<std::size_t>(depth);
        return std::string(count, '(') + "A" + std::string(count, ')');
    };
    const auto deepest = ResourceExpression::compile(nested(ResourceExpression::maximumDepth));
    ASSERT_TRUE(deepest);
    EXPECT_TRUE(matches(*deepest, "a"));
    EXPECT_FALSE(ResourceExpression::compile(nested(ResourceExpression::maximumDepth + 1)));
    EXPECT_FALSE(ResourceExpression::compile(nested(1'000'000)));
}

// All words of twelve letters, with an expression that has to remember the last eleven of them:
// more places than are kept.
TEST(ResourceExpression, OneMatcherTakesManyTexts)
{
    const auto compiled = ResourceExpression::compile("(A|B)*A(A|B)(A|B)(A|B)(A|B)(A|B)(A|B)(A|B)"
                                                      "(A|B)(A|B)(A|B)");
    ASSERT_TRUE(compiled);
    ResourceMatcher matcher(*compiled);
    constexpr unsigned letters = 12;
    for (unsigned word = 0; word < 1U << letters; ++word) {
        std::string text;
        for (unsigned letter = 0; letter < letters; ++letter) {
            text += (word >> letter & 1U) != 0 ? 'A' : 'B';
        }
        ASSERT_EQ(matcher.matches(text), text[1] == 'A') << text;
    }
}

// Each of these takes a backtracking matcher longer than the test's time limit.
TEST(ResourceExpression, HostileExpressionsTakeNoLonger)
{
    std::string optionals;
    for (int i = 0; i < 200; ++i) {
        optionals += "A*";
    }
    const std::string text(250, 'A');
    const std::vector<std::string> hostile{"(A*)*B",    "(A+)+B",     "(A|A)*B",      "(A*A*)*B",
                                           "((A+)+)+B", "(?*?*?*)*B", optionals + "B"};
    for (const std::string& expression : hostile) {
        const auto compiled = ResourceExpression::compile(expression);
        ASSERT_TRUE(compiled) << expression;
        EXPECT_FALSE(matches(*compiled, text)) << expression;
        EXPECT_TRUE(matches(*compiled, text + "B")) << expression;
    }
}

TEST(ResourceExpression, TakesLongExpressionsAndTexts)
{
    const std::string text(10'000, 'x');
    const auto literal = ResourceExpression::compile(text);
    ASSERT_TRUE(literal);
    EXPECT_TRUE(matches(*literal, text));
    EXPECT_FALSE(matches(*literal, text + "x"));

    std::string alternatives = "a";
    for (int i = 0; i < 20'000; ++i) {
        alternatives += "|b";
    }
    const auto wide = ResourceExpression::compile(alternatives + "|c");
    ASSERT_TRUE(wide);
    EXPECT_TRUE(matches(*wide, "a"));
    EXPECT_TRUE(matches(*wide, "c"));
    EXPECT_FALSE(matches(*wide, "d"));
}
