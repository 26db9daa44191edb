// SPDX-License-Identifier: MIT
#include "tests/config/FileContents.h"
#include "tests/config/OracleLines.h"
#include "tests/config/OracleReader.h"
#include "tests/support/Files.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

using QvVisa::LineKind;

namespace {

constexpr std::size_t s_linesInFile = 1000;
constexpr std::size_t s_files = support::isSanitized ? 100 : 1000;

/// Another seed than the usual one can be had for the asking.
std::uint64_t seed()
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing here sets a variable.
    const char* asked = std::getenv("QVVISA_ORACLE_SEED");
    return asked != nullptr ? std::strtoull(asked, nullptr, 10) : 20240229U;
}

/// The first line that the two readers take differently, for the report.
std::string firstDifference(const std::string& file, const std::string& path)
{
    std::string::size_type begin = 0;
    while (begin < file.size()) {
        const auto end = std::min(file.find('\n', begin), file.size());
        const std::string line = file.substr(begin, end - begin);
        support::writeFile(path, line);
        OracleReader oracle;
        oracle.read(line);
        if (!(readWithModernConfigurationFile(path) == oracle.contents())) {
            return "the line \"" + printable(line) + '"';
        }
        begin = end + 1;
    }
    return "no single line, but all of them together";
}

} // namespace

TEST(OracleDifferential, AMillionHostileLinesAreReadAsTheExpressionsReadThem)
{
    const std::uint64_t usedSeed = seed();
    std::cout << "QVVISA_ORACLE_SEED=" << usedSeed << ", " << s_files << " files of "
              << s_linesInFile << " lines\n";
    const support::TemporaryFolder folder;
    const std::string path = folder.path() / "hostile.conf";
    OracleLines lines(usedSeed);
    OracleReader oracle;
    for (std::size_t i = 0; i < s_files; ++i) {
        const std::string file = lines.file(s_linesInFile);
        support::writeFile(path, file);
        const FileContents actual = readWithModernConfigurationFile(path);
        oracle.read(file);
        ASSERT_EQ(actual, oracle.contents()) << "file " << i << ", " << firstDifference(file, path);
    }

    // A generator that no longer reaches a kind would leave nothing to compare.
    const std::size_t atLeast = s_files * s_linesInFile / 100;
    for (std::size_t kind = 0; kind < OracleReader::kinds; ++kind) {
        EXPECT_GE(oracle.linesOfKind()[kind], atLeast) << "kind " << kind;
        std::cout << "kind " << kind << ": " << oracle.linesOfKind()[kind] << " lines\n";
    }
    EXPECT_GE(oracle.linesOutOfRange(), atLeast);
}

TEST(OracleDifferential, TheExpressionsKnowOneLineOfEachKind)
{
    const struct
    {
        const char* line;
        LineKind kind;
        const char* first;
        const char* second;
    } rows[] = {
        {":Provider=3674", LineKind::Provider, "3674", ""},
        {"GPIB0::12::INSTR ", LineKind::Resource, "GPIB0::12::INSTR ", ""},
        {"DMM = USB0::1::INSTR ", LineKind::Alias, "DMM", "USB0::1::INSTR"},
        {":GPIBProperty[DeviceNo=1].PrimaryAddress=2", LineKind::GpibPrimaryAddress, "1", "2"},
        {":GPIBProperty[DeviceNo=1].SecondaryAddress=2", LineKind::GpibSecondaryAddress, "1", "2"},
        {":GPIBProperty[DeviceNo=1].SystemController=0", LineKind::GpibSystemController, "1", "0"},
        {":SerialProperty[DeviceNo=1].Baudrate=2", LineKind::SerialBaudrate, "1", "2"},
        {":SerialProperty[DeviceNo=1].DataBits=2", LineKind::SerialDataBits, "1", "2"},
        {":SerialProperty[DeviceNo=1].StopBits=2", LineKind::SerialStopBits, "1", "2"},
        {":SerialProperty[DeviceNo=1].Parity=2", LineKind::SerialParity, "1", "2"},
        {":SerialProperty[DeviceNo=1].FlowControl=2", LineKind::SerialFlowControl, "1", "2"},
        {"# :Provider=3674", LineKind::None, "", ""},
    };
    for (const auto& row : rows) {
        const QvVisa::ConfigurationLine line = matchWithExpressions(row.line);
        EXPECT_EQ(line.kind, row.kind) << row.line;
        EXPECT_EQ(line.first, row.first) << row.line;
        EXPECT_EQ(line.second, row.second) << row.line;
    }
}
