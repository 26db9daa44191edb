// SPDX-License-Identifier: MIT
#include "simulator/BenchFile.h"
#include "simulator/SearchExpression.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using simulator::AttributeCondition;
using simulator::Bench;
using simulator::BenchFile;
using simulator::SearchExpression;

namespace {

constexpr const char* benchText = "resource ASRL1::INSTR\n"
                                  "resource ASRL3::INSTR\n"
                                  "resource GPIB0::5::INSTR\n"
                                  "resource GPIB0::5::2::INSTR\n"
                                  "resource TCPIP0::meter::5025::SOCKET\n"
                                  "resource USB1::0x1234::0x5678::SN7::INSTR\n"
                                  "resource odd{1}name interface=ASRL,9\n";

std::vector<std::string> found(const std::string& expression)
{
    const Bench bench = BenchFile::parse(benchText).bench();
    const auto compiled = SearchExpression::compile(expression);
    if (!compiled) {
        return {"malformed"};
    }
    std::vector<std::string> names;
    for (const Bench::Hit& hit : compiled->search(bench)) {
        names.push_back(bench.description(hit));
    }
    return names;
}

using Names = std::vector<std::string>;

} // namespace

TEST(SearchExpression, WithoutConditionFindsInTheOrderOfTheBench)
{
    EXPECT_EQ(found("?*"), (Names{"ASRL1::INSTR", "ASRL3::INSTR", "GPIB0::5::INSTR",
                                  "GPIB0::5::2::INSTR", "TCPIP0::meter::5025::SOCKET",
                                  "USB1::0x1234::0x5678::SN7::INSTR", "odd{1}name"}));
    EXPECT_EQ(found("USB?*|ASRL?*"),
              (Names{"ASRL1::INSTR", "ASRL3::INSTR", "USB1::0x1234::0x5678::SN7::INSTR"}));
    EXPECT_EQ(found("VXI?*"), Names{});
}

TEST(SearchExpression, ConditionsNarrowTheSearch)
{
    EXPECT_EQ(found("?*{VI_ATTR_INTF_NUM == 3}"), Names{"ASRL3::INSTR"});
    EXPECT_EQ(found("?*{VI_ATTR_INTF_NUM==0x3}"), Names{"ASRL3::INSTR"});
    EXPECT_EQ(found("ASRL?*INSTR{VI_ATTR_ASRL_BAUD == 9600}"),
              (Names{"ASRL1::INSTR", "ASRL3::INSTR"}));
    EXPECT_EQ(found("ASRL?*INSTR{VI_ATTR_ASRL_BAUD != 9600}"), Names{});
    EXPECT_EQ(found("?*{VI_ATTR_GPIB_PRIMARY_ADDR == 5 && VI_ATTR_GPIB_SECONDARY_ADDR < 10}"),
              Names{"GPIB0::5::2::INSTR"});
    EXPECT_EQ(found("?*{VI_ATTR_GPIB_SECONDARY_ADDR == 0xFFFF}"), Names{"GPIB0::5::INSTR"});
    EXPECT_EQ(found("?*{VI_ATTR_TCPIP_PORT >= 5025 || VI_ATTR_INTF_NUM > 2}"),
              (Names{"ASRL3::INSTR", "TCPIP0::meter::5025::SOCKET", "odd{1}name"}));
    EXPECT_EQ(found("?*{VI_ATTR_RSRC_CLASS == \"socket\"}"), Names{"TCPIP0::meter::5025::SOCKET"});
    EXPECT_EQ(found("?*{VI_ATTR_USB_SERIAL_NUM != \"SN8\"}"),
              Names{"USB1::0x1234::0x5678::SN7::INSTR"});
    EXPECT_EQ(found("?*{VI_ATTR_MANF_ID == 0x1234 && VI_ATTR_MODEL_CODE == 0x5678}"),
              Names{"USB1::0x1234::0x5678::SN7::INSTR"});
}

TEST(SearchExpression, AndBindsCloserThanOr)
{
    EXPECT_EQ(found("ASRL?*{VI_ATTR_INTF_NUM == 1 || VI_ATTR_INTF_NUM == 3 && "
                    "VI_ATTR_INTF_TYPE == 99}"),
              Names{"ASRL1::INSTR"});
    EXPECT_EQ(found("ASRL?*{(VI_ATTR_INTF_NUM == 1 || VI_ATTR_INTF_NUM == 3) && "
                    "VI_ATTR_INTF_TYPE == 99}"),
              Names{});
    EXPECT_EQ(found("ASRL?*{!(VI_ATTR_INTF_NUM == 1) && !!(VI_ATTR_INTF_TYPE == 4)}"),
              Names{"ASRL3::INSTR"});
}

TEST(SearchExpression, ComparisonsWithWhatIsNotThereAreFalse)
{
    EXPECT_EQ(found("?*{VI_ATTR_ASRL_BAUD == 9600}"),
              (Names{"ASRL1::INSTR", "ASRL3::INSTR", "odd{1}name"}));
    EXPECT_EQ(found("?*{VI_ATTR_NOBODY_HAS_IT != 0}"), Names{});
    EXPECT_EQ(found("?*{VI_ATTR_INTF_NUM == \"3\"}"), Names{});
    EXPECT_EQ(found("GPIB?*{VI_ATTR_GPIB_PRIMARY_ADDR <= 4}"), Names{});
    EXPECT_EQ(found("GPIB?*{VI_ATTR_GPIB_PRIMARY_ADDR <= 5}"),
              (Names{"GPIB0::5::INSTR", "GPIB0::5::2::INSTR"}));
}

TEST(SearchExpression, EscapedAndListedBracesBeginNoCondition)
{
    EXPECT_EQ(found("odd\\{1}name"), Names{"odd{1}name"});
    EXPECT_EQ(found("odd[{]1}name"), Names{"odd{1}name"});
    EXPECT_EQ(found("odd\\{1}name{VI_ATTR_INTF_NUM == 9}"), Names{"odd{1}name"});
}

TEST(SearchExpression, RefusesMalformedConditions)
{
    const std::vector<std::string> conditions{
        "",
        " ",
        "1 == 1",
        "VI_ATTR_INTF_NUM",
        "VI_ATTR_INTF_NUM ==",
        "VI_ATTR_INTF_NUM = 3",
        "VI_ATTR_INTF_NUM == 3 &&",
        "VI_ATTR_INTF_NUM == 3 & VI_ATTR_INTF_NUM == 3",
        "&& VI_ATTR_INTF_NUM == 3",
        "VI_ATTR_INTF_NUM == 3 VI_ATTR_INTF_NUM == 3",
        "(VI_ATTR_INTF_NUM == 3",
        "VI_ATTR_INTF_NUM == 3)",
        "!",
        "()",
        "INTF_NUM == 3",
        "VI_ATTR_INTF_NUM == -3",
        "VI_ATTR_INTF_NUM == 0x",
        "VI_ATTR_INTF_NUM == 99999999999999999999",
        "VI_ATTR_RSRC_CLASS == \"INSTR",
        "VI_ATTR_RSRC_CLASS < \"INSTR\"",
    };
    for (const std::string& condition : conditions) {
        EXPECT_FALSE(AttributeCondition::compile(condition)) << condition;
        EXPECT_FALSE(SearchExpression::compile("?*{" + condition + "}")) << condition;
    }
}

TEST(SearchExpression, RefusesHalvesThatAreMissingOrUnclosed)
{
    const std::string good = "VI_ATTR_INTF_NUM == 3";
    ASSERT_TRUE(SearchExpression::compile("?*{" + good + "}"));
    EXPECT_FALSE(SearchExpression::compile("?*{" + good));
    EXPECT_FALSE(SearchExpression::compile("?*{"));
    EXPECT_FALSE(SearchExpression::compile("{" + good + "}"));
    EXPECT_FALSE(SearchExpression::compile("(?*{" + good + "}"));
    EXPECT_FALSE(SearchExpression::compile("?*{" + good + "}x"));
    EXPECT_FALSE(SearchExpression::compile(""));
}

TEST(SearchExpression, NestsAsDeepAsPromisedAndNoDeeper)
{
    const auto nested = [](char opening, const char* closing, int depth) {
        std::string text(static_cast<std::size_t>(depth), opening);
        text += "VI_ATTR_INTF_NUM == 3";
        for (int i = 0; i < depth; ++i) {
            text += closing;
        }
        return text;
    };
    constexpr int deepest = AttributeCondition::maximumDepth;
    EXPECT_TRUE(AttributeCondition::compile(nested('(', ")", deepest)));
    EXPECT_FALSE(AttributeCondition::compile(nested('(', ")", deepest + 1)));
    EXPECT_FALSE(AttributeCondition::compile(nested('(', ")", 1'000'000)));
    EXPECT_TRUE(AttributeCondition::compile(nested('!', "", deepest)));
    EXPECT_FALSE(AttributeCondition::compile(nested('!', "", 1'000'000)));
}
