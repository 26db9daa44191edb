// SPDX-License-Identifier: MIT
#include "config/EntryFilter.h"

#include "config/ConfigurationLine.h"
#include "config/UpperCase.h"
#include "tests/config/format/HostileLines.h"
#include "tests/support/FileContents.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

using QvVisa::ConfigurationLine;
using QvVisa::EntryFilter;
using QvVisa::LineKind;

TEST(EntryFilter, LineOfAnAddedEntryPasses)
{
    constexpr std::size_t count = 100'000;
    constexpr std::uint64_t seed = 1;
    std::istringstream lines(HostileLines(seed).file(count));
    for (std::string text; std::getline(lines, text);) {
        const ConfigurationLine line = QvVisa::matchConfigurationLine(text);
        EntryFilter filter;
        if (line.kind == LineKind::Alias || line.kind == LineKind::Resource) {
            filter.addText("another");
            filter.addText(QvVisa::toUpperCase(line.first));
        } else if (line.kind != LineKind::None) {
            filter.addKeys();
        } else {
            continue;
        }
        ASSERT_TRUE(filter.passes(text)) << printable(text);
    }
}

TEST(EntryFilter, LinesOfOtherEntriesDoNotPass)
{
    EntryFilter filter;
    EXPECT_FALSE(filter.passes("DMM=GPIB0::1::INSTR"));
    filter.addText("dmm");
    filter.addText("scope");
    EXPECT_TRUE(filter.passes("Dmm=GPIB0::1::INSTR"));
    EXPECT_TRUE(filter.passes("SCOPE"));
    for (const char* other : {"", "DM", "GPIB0::1::INSTR", "PSU=GPIB0::1::INSTR", ":Provider=1"}) {
        EXPECT_FALSE(filter.passes(other)) << other;
    }
    filter.addKeys();
    EXPECT_TRUE(filter.passes(":Provider=1"));
}

TEST(EntryFilter, EveryLinePassesForManyTexts)
{
    EntryFilter filter;
    for (int i = 0; i < 100; ++i) {
        filter.addText(std::to_string(i));
        EXPECT_TRUE(filter.passes(std::to_string(i) + "=X"));
    }
    EXPECT_TRUE(filter.passes("DMM=X"));
}
