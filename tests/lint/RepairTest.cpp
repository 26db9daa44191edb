// SPDX-License-Identifier: MIT
#include "lint/Repair.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>

namespace {

const std::string s_header = ":QvVisaConfigurationFileVersion01\n";

struct Repair
{
    const char* name;
    /// What follows the header's line; after '!' the whole file.
    std::string before;
    std::string after;

    friend void PrintTo(const Repair& repair, std::ostream* out) { *out << repair.name; }
};

std::string fileOf(const std::string& text)
{
    return text.front() == '!' ? text.substr(1) : s_header + text;
}

class Repaired : public testing::TestWithParam<Repair>
{};

TEST_P(Repaired, IsTheTextWithNoOtherByteChanged)
{
    const QvVisa::Document document(fileOf(GetParam().before));
    EXPECT_EQ(lint::repaired(document), fileOf(GetParam().after));
    const QvVisa::Document again(fileOf(GetParam().after));
    EXPECT_EQ(lint::repaired(again), again.text());
}

const Repair s_repairs[] = {
    {"ByteOrderMark", "!\xEF\xBB\xBF" + s_header + "; x\n", '!' + s_header + "# x\n"},
    {"CarriageReturnsAlone", "!:QvVisaConfigurationFileVersion01\rDMM=ASRL1::INSTR\r",
     "!:QvVisaConfigurationFileVersion01\nDMM=ASRL1::INSTR\n"},
    {"CarriageReturnInHeader", "!:QvVisaConfigurationFileVersion01\rDMM=ASRL1::INSTR\r\n",
     "!:QvVisaConfigurationFileVersion01\nDMM=ASRL1::INSTR\r\n"},
    {"NoLastLineFeed", "ASRL1::INSTR", "ASRL1::INSTR\n"},
    {"IndentedAlias", " \tDMM = ASRL1::INSTR\n", "DMM = ASRL1::INSTR\n"},
    {"KeyCase", ":serialproperty[deviceno= 1].PARITY=2\r\n",
     ":SerialProperty[DeviceNo= 1].Parity=2\r\n"},
    {"WhiteSpaceInKey", ": GPIBProperty [ DeviceNo = 1 ] . PrimaryAddress = 2 \n",
     ":GPIBProperty[DeviceNo= 1 ].PrimaryAddress= 2 \n"},
    {"MissingColon", "provider = 3674\n", ":provider = 3674\n"},
    {"IndentedWithoutColonInTheWrongCase", "  serialproperty[DeviceNo=1].Parity = 2",
     ":SerialProperty[DeviceNo=1].Parity= 2\n"},
    {"Semicolon", ";DMM=ASRL1::INSTR \r\n", "#DMM=ASRL1::INSTR \r\n"},
    {"Slashes", "// spare\n", "# spare\n"},
    {"CommentAfterResource", "ASRL1::INSTR \t; spare // x \r\n", "# spare // x\nASRL1::INSTR\n"},
    {"TrailingSpace", "ASRL1::INSTR \t\nGPIB0::1::INSTR\n", "ASRL1::INSTR\nGPIB0::1::INSTR\n"},
    {"CarriageReturn", "ASRL1::INSTR\r\nDMM=GPIB0::1::INSTR\r\n",
     "ASRL1::INSTR\nDMM=GPIB0::1::INSTR\r\n"},
    {"Section", "[aliases]\n", "# [aliases]\n"},
    {"NothingToRepair", "DMM=ASRL1::INSTR # x\nDMM=\n  a comment\n",
     "DMM=ASRL1::INSTR # x\nDMM=\n  a comment\n"},
};

TEST(RepairedWithIgnoredCodes, LeavesTheirFindings)
{
    const QvVisa::Document document(s_header + "; a\n  ; b\nASRL1::INSTR ; c \n");
    EXPECT_EQ(lint::repaired(document, {lint::FindingCode::WrongCommentSign}),
              s_header + "; a\n  ; b\n# c\nASRL1::INSTR\n");
}

std::string caseName(const testing::TestParamInfo<Repair>& row)
{
    return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(Lint, Repaired, testing::ValuesIn(s_repairs), caseName);

} // namespace
