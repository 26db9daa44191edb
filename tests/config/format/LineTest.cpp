// SPDX-License-Identifier: MIT
#include "config/ConfigurationLine.h"
#include "tests/config/format/HostileLines.h"
#include "tests/support/FileContents.h"
#include "tests/support/OracleReader.h"
#include "tests/support/Sanitizers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

using QvVisa::ConfigurationLine;
using QvVisa::LineKind;

namespace {

void expectAsTheExpressions(const std::string& line)
{
    const ConfigurationLine found = QvVisa::matchConfigurationLine(line);
    const ConfigurationLine expected = matchWithExpressions(line);
    EXPECT_TRUE(found.kind == expected.kind && found.first == expected.first &&
                found.second == expected.second)
        << '"' << printable(line) << '"';
}

} // namespace

// The other cases compare with the oracle's expressions; this one shows that both are right.
TEST(Line, OneOfEachKindIsRecognised)
{
    const struct
    {
        std::string_view line;
        LineKind kind = LineKind::None;
        std::string_view first{};
        std::string_view second{};
    } rows[] = {
        {""},
        {"# :Provider=3674"},
        {" GPIB0::12::INSTR"},
        {":QvVisaConfigurationFileVersion01"},
        {"A = B C"},
        {"=A"},
        {":PROVIDER = 3674 ", LineKind::Provider, "3674"},
        {"GPIB0::12::INSTR \r", LineKind::Resource, "GPIB0::12::INSTR \r"},
        {"; spare", LineKind::Resource, "; spare"},
        {"dmm = USB0::1::INSTR\r", LineKind::Alias, "dmm", "USB0::1::INSTR"},
        {"A==B", LineKind::Alias, "A", "=B"},
        {":GPIBProperty[DeviceNo=1].PrimaryAddress=2", LineKind::GpibPrimaryAddress, "1", "2"},
        {":GPIBProperty[DeviceNo=1].SecondaryAddress=2", LineKind::GpibSecondaryAddress, "1", "2"},
        {":GPIBProperty[DeviceNo=1].SystemController=0", LineKind::GpibSystemController, "1", "0"},
        {":SerialProperty[DeviceNo= 1 ].Baudrate= 2 ", LineKind::SerialBaudrate, "1", "2"},
        {":SerialProperty[DeviceNo=1].DataBits=2", LineKind::SerialDataBits, "1", "2"},
        {":SerialProperty[DeviceNo=1].StopBits=2", LineKind::SerialStopBits, "1", "2"},
        {":SerialProperty[DeviceNo=1].Parity=2", LineKind::SerialParity, "1", "2"},
        {":SerialProperty[DeviceNo=1].FlowControl=2", LineKind::SerialFlowControl, "1", "2"},
        {":serialproperty[DeviceNo=1].FlowControl=2"},
        {":SerialProperty[DeviceNo=1].PrimaryAddress=2"},
    };
    for (const auto& row : rows) {
        const ConfigurationLine line = matchWithExpressions(row.line);
        EXPECT_EQ(line.kind, row.kind) << row.line;
        EXPECT_EQ(line.first, row.first) << row.line;
        EXPECT_EQ(line.second, row.second) << row.line;
        expectAsTheExpressions(std::string(row.line));
    }
}

TEST(Line, AnyByteChangedAddedOrMissingIsMatchedAsByTheExpressions)
{
    for (const std::string_view pattern : s_templateLines) {
        const std::string line(pattern);
        expectAsTheExpressions(line);
        for (std::size_t place = 0; place < line.size(); ++place) {
            for (int byte = 0; byte < 256; byte += support::isSanitized ? 5 : 1) {
                std::string changed = line;
                changed[place] = static_cast<char>(byte);
                expectAsTheExpressions(changed);
            }
            for (const char byte : s_hostileBytes) {
                expectAsTheExpressions(std::string(line).insert(place, 1, byte));
            }
            expectAsTheExpressions(std::string(line).insert(place, 1, line[place]));
            expectAsTheExpressions(std::string(line).erase(place, 1));
            expectAsTheExpressions(line.substr(0, place));
        }
        for (const char byte : s_hostileBytes) {
            expectAsTheExpressions(line + byte);
        }
    }
}

// The expressions recurse for each byte, so they judge a run of three bytes instead of a megabyte.
TEST(Line, ARunOfAMegabyteIsMatchedLikeARunOfThreeBytes)
{
    constexpr std::size_t more = std::size_t{1024} * 1024;
    for (const std::string_view pattern : s_templateLines) {
        for (std::size_t place = 0; place < pattern.size(); ++place) {
            std::string line(pattern);
            line.insert(place, 2, line[place]);
            const ConfigurationLine expected = matchWithExpressions(line);
            // A part with a byte of the run has all that are added to the run.
            const auto lengthened = [&](std::string_view part) {
                std::string text(part);
                const auto begin = static_cast<std::size_t>(part.data() - line.data());
                if (!part.empty() && begin < place + 3 && begin + part.size() > place) {
                    text.insert(std::max(begin, place) - begin, more, line[place]);
                }
                return text;
            };
            const std::string longLine = std::string(line).insert(place, more, line[place]);
            const ConfigurationLine found = QvVisa::matchConfigurationLine(longLine);
            // A failure must not print megabytes.
            EXPECT_EQ(found.kind, expected.kind) << line;
            EXPECT_TRUE(found.first == lengthened(expected.first)) << line;
            EXPECT_TRUE(found.second == lengthened(expected.second)) << line;
        }
    }
}
