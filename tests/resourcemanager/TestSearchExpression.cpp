// SPDX-License-Identifier: MIT
#include "resourcemanager/SearchExpression.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

using resourcemanager::SearchExpression;

namespace {

struct Case
{
    const char* expression;
    std::vector<const char*> matching;
    std::vector<const char*> others;
};

void expectAll(const std::vector<Case>& cases)
{
    for (const Case& test : cases) {
        SCOPED_TRACE(test.expression);
        const auto compiled = SearchExpression::compile(test.expression);
        ASSERT_TRUE(compiled);
        for (const char* const text : test.matching) {
            EXPECT_TRUE(compiled->matches(text)) << text;
        }
        for (const char* const text : test.others) {
            EXPECT_FALSE(compiled->matches(text)) << text;
        }
    }
}

} // namespace

TEST(SearchExpression, MatchesTheWholeText)
{
    expectAll({
        {"ASRL1::INSTR", {"ASRL1::INSTR"}, {"ASRL1::INST", ""}},
        {"ASRL1", {}, {"ASRL1::INSTR"}},
        {"INSTR", {}, {"ASRL1::INSTR"}},
    });
}

TEST(SearchExpression, TakesUpperAndLowerCaseAlike)
{
    expectAll({
        {"asrl1::instr", {"ASRL1::INSTR"}, {}},
        {"ASRL1::INSTR", {"asrl1::Instr"}, {}},
        {"[a-c]", {"B"}, {}},
        {"[A-C]", {"b"}, {}},
        {"[^a-c]", {}, {"B"}},
        {"z", {"Z"}, {}},
        {"Z", {"z"}, {}},
        // Only letters have a case: these differ in the same bit.
        {"\\[", {}, {"{"}},
        {"@", {}, {"`"}},
    });
}

TEST(SearchExpression, AnyCharacter)
{
    expectAll({
        {"?", {"x", "\xE9"}, {"", "xx"}},
        {"A?C", {"ABC"}, {"AC"}},
        {"?*", {"", "TCPIP0::10.0.0.5::inst0::INSTR"}, {}},
        {"?+", {"x"}, {""}},
        {"?*::INSTR", {"GPIB0::5::INSTR", "::INSTR"}, {"GPIB0::INTFC"}},
    });
}

TEST(SearchExpression, Repetition)
{
    expectAll({
        {"AB*", {"A", "ABBB"}, {"ABAB"}},
        {"AB+", {"AB", "ABBB"}, {"A"}},
        {"(AB)*", {"", "ABAB"}, {"ABA"}},
        {"(AB)+C", {"ABABC"}, {"C"}},
        {"A**", {"AAA"}, {}},
        {"A+*", {""}, {}},
        {"(A*)*", {"AAAA"}, {}},
        {"(A*)+B", {"B"}, {}},
        {"GPIB[0-9]*::?*INSTR", {"GPIB::5::INSTR", "GPIB12::5::INSTR"}, {"GPIB-VXI0::5::INSTR"}},
    });
}

TEST(SearchExpression, Lists)
{
    expectAll({
        {"ASRL[13]::INSTR", {"ASRL1::INSTR", "ASRL3::INSTR"}, {"ASRL2::INSTR"}},
        {"ASRL[1-3]::INSTR", {"ASRL2::INSTR"}, {"ASRL4::INSTR"}},
        {"ASRL[^1-3]::INSTR", {"ASRL4::INSTR"}, {"ASRL2::INSTR"}},
        {"ASRL[^1]::INSTR", {}, {"ASRL::INSTR"}},
        {"[0-9A-F]+", {"0aF9"}, {}},
        {"[a^]", {"^"}, {}},
        {"[a-]", {"-"}, {}},
        {"[-a]", {"-"}, {"b"}},
        {"[?*+|()]", {"?"}, {"x"}},
        {"[\\]]", {"]"}, {}},
        {"[\\^a]", {"^"}, {"b"}},
        {"[a\\-c]", {"-"}, {"b"}},
        {"[\x80-\xFF]", {"\xE9"}, {"e"}},
        {"[^a]", {"\xE9"}, {}},
        {"[a-a]", {"a"}, {}},
    });
}

TEST(SearchExpression, AlternativesTakeTheWholeSide)
{
    expectAll({
        {"VXI|GPIB", {"VXI", "GPIB"}, {"VXPIB"}},
        {"VX(I|G)PIB", {"VXGPIB"}, {"VXI"}},
        {"A|B|C", {"C"}, {}},
        {"(GPIB|USB)?*INSTR", {"USB0::1::2::3::INSTR"}, {"ASRL1::INSTR"}},
        {"A|B*", {"BBB"}, {}},
        {"(A|B)*", {"ABBA"}, {}},
    });
}

TEST(SearchExpression, BackslashMakesOrdinary)
{
    expectAll({
        {"\\?", {"?"}, {"x"}},
        {"A\\*", {"A*"}, {"AA"}},
        {"\\\\", {"\\"}, {}},
        {"\\(\\)", {"()"}, {}},
        {"\\[a]", {"[a]"}, {}},
        {"\\a", {"A"}, {}},
        {"A]", {"A]"}, {}},
        {"A\\|B", {"A|B"}, {}},
        {"\\?+", {"???"}, {}},
        {"odd\\{1\\}", {"odd{1}"}, {}},
        {"odd[{]1[}]", {"odd{1}"}, {}},
    });
}

TEST(SearchExpression, RefusesWhatIsMalformed)
{
    std::istringstream malformed(R"text(* + *A | A| |A A||B A|* ( ) () (A A) (A)) ((A) (*) (|A) (A|)
                                        A(+) [ [] [^] [a [^a [a- [z-a] [xz-a] [\] [b-\a] [a\
                                        { } ?*{VI_ATTR_INTF_NUM==3} \ A\)text");
    for (std::string text; malformed >> text;) {
        EXPECT_FALSE(SearchExpression::compile(text)) << text;
    }
    EXPECT_FALSE(SearchExpression::compile(""));
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
    for (const char* const expression :
         {"?*", "?*::INSTR", "TCPIP?*", "tcpip?*", "TCPIP", "(USB|TCPIP)[0-9]*::?*",
          "USB?*|?*SOCKET", "[A-Z]+", "?????", "T*C*P*I*P*", "TCPIP[^\x01-\xFF]"}) {
        EXPECT_TRUE(SearchExpression::compile(expression)->canMatchPrefix("TCPIP")) << expression;
    }
    // The whole text must match, so one that ends before the prefix does cannot.
    for (const char* const expression :
         {"ASRL?*", "TCP", "(USB|GPIB)[0-9]*::?*", "[^T]?*", "????", "T*P*C*I*P*"}) {
        EXPECT_FALSE(SearchExpression::compile(expression)->canMatchPrefix("TCPIP")) << expression;
    }
    EXPECT_TRUE(SearchExpression::compile("USB")->canMatchPrefix(""));
    // A list of no character at all: nothing that leads through it can match.
    const std::string all{'[', '^', '\0', '-', '\xFF', ']'};
    EXPECT_FALSE(SearchExpression::compile("TCPIP" + all)->canMatchPrefix("TCPIP"));
    EXPECT_FALSE(SearchExpression::compile("TCPIP" + all)->canMatchPrefix(""));
    EXPECT_TRUE(SearchExpression::compile("TCPIP(" + all + "|0)")->canMatchPrefix("TCPIP"));
}
