// SPDX-License-Identifier: MIT
#include "command/TextTable.h"

#include <gtest/gtest.h>

namespace {

using QvVisa::textTable;

const std::vector<std::vector<std::string>> s_rows{
    {"TCPIP0::10.0.0.5::inst0::INSTR", "DMM", "Quorvane,Multimeter"},
    {"ASRL1::INSTR", "-", "M\xC3\xBCller"},
};
const std::string s_inColumns = "TCPIP0::10.0.0.5::inst0::INSTR  DMM  Quorvane,Multimeter\n"
                                "ASRL1::INSTR                    -    M\xC3\xBCller\n";
const std::string s_inLines = "TCPIP0::10.0.0.5::inst0::INSTR\n  DMM\n  Quorvane,Multimeter\n"
                              "ASRL1::INSTR\n  -\n  M\xC3\xBCller\n";

TEST(TextTable, FittingRowsAreInColumns)
{
    for (const std::size_t width : {0U, 80U, 300U, 56U}) {
        EXPECT_EQ(textTable(s_rows, width), s_inColumns) << width;
    }
}

TEST(TextTable, RowsThatDoNotFitHaveALineForEachCell)
{
    for (const std::size_t width : {55U, 20U, 1U}) {
        EXPECT_EQ(textTable(s_rows, width), s_inLines) << width;
    }
}

TEST(TextTable, SingleColumnIsNeitherPaddedNorCut)
{
    const std::string longText(300, 'x');
    EXPECT_EQ(textTable({{"a"}, {longText}}, 20), "a\n" + longText + '\n');
}

TEST(TextTable, VeryLongCellDoesNotPadTheOthers)
{
    const std::string text = textTable({{"a", "b"}, {std::string(1000, 'x'), "c"}}, 0);
    EXPECT_EQ(text, "a" + std::string(61, ' ') + "b\n" + std::string(1000, 'x') + "  c\n");
}

TEST(TextTable, NoRowsGiveNoText)
{
    EXPECT_EQ(textTable({}, 80), "");
}

} // namespace
