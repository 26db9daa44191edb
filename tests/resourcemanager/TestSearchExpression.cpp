// SPDX-License-Identifier: MIT
#include "resourcemanager/SearchExpression.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using resourcemanager::SearchExpression;

namespace {

struct MatchCase
{
    const char* expression;
    const char* text;
    bool matches;
};

void expectAll(const std::vector<MatchCase>& cases)
{
    for (const MatchCase& test : cases) {
        const auto compiled = SearchExpression::compile(test.expression);
        ASSERT_TRUE(compiled) << "malformed: " << test.expression;
        EXPECT_EQ(compiled->matches(test.text), test.matches)
            << test.expression << " on " << test.text;
    }
}

} // namespace

TEST(SearchExpression, MatchesTheWholeText)
{
    expectAll({
        {"ASRL1::INSTR", "ASRL1::INSTR", true},
        {"ASRL1", "ASRL1::INSTR", false},
        {"INSTR", "ASRL1::INSTR", false},
        {"ASRL1::INSTR", "ASRL1::INST", false},
        {"ASRL1::INSTR", "", false},
    });
}

TEST(SearchExpression, TakesUpperAndLowerCaseAlike)
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

TEST(SearchExpression, AnyCharacter)
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

TEST(SearchExpression, Repetition)
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

TEST(SearchExpression, Lists)
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

TEST(SearchExpression, AlternativesTakeTheWholeSide)
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

TEST(SearchExpression, BackslashMakesOrdinary)
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
        {"odd\\{1\\}", "odd{1}", true},
        {"odd[{]1[}]", "odd{1}", true},
    });
}

TEST(SearchExpression, RefusesWhatIsMalformed)
{
    const std::vector<std::string> malformed{"",       "*",
                                             "+",      "*A",
                                             "|",      "A|",
                                             "|A",     "A||B",
                                             "(",      ")",
                                             "()",     "(A",
                                             "A)",     "(A))",
                                             "(*)",    "(|A)",
                                             "(A|)",   "[",
                                             "[]",     "[^]",
                                             "[a",     "[^a",
                                             "[z-a]",  "{",
                                             "}",      "?*{VI_ATTR_INTF_NUM == 3}",
                                             "[xz-a]", "\\",
                                             "A\\",    "[a\\",
                                             "[a-",    "A|*",
                                             "A(+)",   "((A)",
                                             "[\\]",   "[b-\\a]"};
    for (const std::string& text : malformed) {
        EXPECT_FALSE(SearchExpression::compile(text)) << text;
    }
}

TEST(SearchExpression, NestsAsDeepAsPromisedAndNoDeeper)
{
    const auto nested = [](int depth) {
        const auto count = static_cast<std::size_t>(depth);
        return std::string(count, '(') + "A" + std::string(count, ')');
    };
    const auto deepest = SearchExpression::compile(nested(SearchExpression::maximumDepth));
    ASSERT_TRUE(deepest);
    EXPECT_TRUE(deepest->matches("a"));
    EXPECT_FALSE(SearchExpression::compile(nested(SearchExpression::maximumDepth + 1)));
    EXPECT_FALSE(SearchExpression::compile(nested(1'000'000)));
}

// Each of these takes a backtracking matcher longer than the test's time limit.
TEST(SearchExpression, HostileExpressionsTakeNoLonger)
{
    std::string optionals;
    for (int i = 0; i < 200; ++i) {
        optionals += "A*";
    }
    const std::string text(250, 'A');
    const std::vector<std::string> hostile{"(A*)*B",    "(A+)+B",     "(A|A)*B",      "(A*A*)*B",
                                           "((A+)+)+B", "(?*?*?*)*B", optionals + "B"};
    for (const std::string& expression : hostile) {
        const auto compiled = SearchExpression::compile(expression);
        ASSERT_TRUE(compiled) << expression;
        EXPECT_FALSE(compiled->matches(text)) << expression;
        EXPECT_TRUE(compiled->matches(text + "B")) << expression;
    }
}

TEST(SearchExpression, TakesLongExpressionsAndTexts)
{
    const std::string text(10'000, 'x');
    const auto literal = SearchExpression::compile(text);
    ASSERT_TRUE(literal);
    EXPECT_TRUE(literal->matches(text));
    EXPECT_FALSE(literal->matches(text + "x"));

    std::string alternatives = "a";
    for (int i = 0; i < 20'000; ++i) {
        alternatives += "|b";
    }
    const auto wide = SearchExpression::compile(alternatives + "|c");
    ASSERT_TRUE(wide);
    EXPECT_TRUE(wide->matches("a"));
    EXPECT_TRUE(wide->matches("c"));
    EXPECT_FALSE(wide->matches("d"));
}

TEST(SearchExpression, SaysWhetherATextWithAPrefixCanMatch)
{
    struct Case
    {
        const char* expression;
        const char* prefix;
        bool canMatch;
    };
    for (const Case& test : std::vector<Case>{
             {"?*", "TCPIP", true},
             {"?*::INSTR", "TCPIP", true},
             {"TCPIP?*", "TCPIP", true},
             {"tcpip?*", "TCPIP", true},
             {"ASRL?*", "TCPIP", false},
             {"TCP", "TCPIP", false}, // the whole text must match
             {"TCPIP", "TCPIP", true},
             {"(USB|TCPIP)[0-9]*::?*", "TCPIP", true},
             {"(USB|GPIB)[0-9]*::?*", "TCPIP", false},
             {"USB?*|?*SOCKET", "TCPIP", true},
             {"[^T]?*", "TCPIP", false},
             {"[A-Z]+", "TCPIP", true},
             {"?????", "TCPIP", true},
             {"????", "TCPIP", false},
             {"T*C*P*I*P*", "TCPIP", true},
             {"T*P*C*I*P*", "TCPIP", false},
             {"USB", "", true},
             {"TCPIP[^\x01-\xFF]", "TCPIP", true},
         }) {
        const auto compiled = SearchExpression::compile(test.expression);
        ASSERT_TRUE(compiled) << test.expression;
        EXPECT_EQ(compiled->canMatchPrefix(test.prefix), test.canMatch) << test.expression;
    }
    // A list of no character at all: nothing that leads through it can match.
    const std::string all{'[', '^', '\0', '-', '\xFF', ']'};
    EXPECT_FALSE(SearchExpression::compile("TCPIP" + all)->canMatchPrefix("TCPIP"));
    EXPECT_FALSE(SearchExpression::compile("TCPIP" + all)->canMatchPrefix(""));
    EXPECT_TRUE(SearchExpression::compile("TCPIP(" + all + "|0)")->canMatchPrefix("TCPIP"));
}
