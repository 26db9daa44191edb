// SPDX-License-Identifier: MIT
// The bytes that a save writes. How they reach the disk: tests/config/saving.

#include "config/ModernConfigurationFile.h"
#include "tests/config/format/HostileLines.h"
#include "tests/support/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/OracleReader.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

using QvVisa::ModernConfigurationFile;

namespace {

class Write : public testing::Test
{
protected:
    std::string written(const FileContents& contents) const
    {
        ModernConfigurationFile::write(m_path, contents.aliases, contents.resources,
                                       contents.serial, contents.provider);
        return support::readFile(m_path);
    }

    void expectWrittenAsByTheOracle(const FileContents& contents) const
    {
        EXPECT_EQ(written(contents), expectedStart(contents) + expectedAliases(contents));
    }

    support::TemporaryFolder m_folder;
    const std::string m_path = m_folder.path() / "visa.conf";
};

} // namespace

// The other cases compare with the oracle's text; this one shows that both are right.
TEST_F(Write, EachKindOfLineIsInItsPlace)
{
    const FileContents contents{{{"dmm", "TCPIP0::10.0.0.5::Instr"}},
                                {"B ", "A", "B "},
                                {{0, {}}},
                                {{10, {4294967295U, 255, 48, 10, 6}}, {9, {}}},
                                65535};
    EXPECT_EQ(written(contents), ":QvVisaConfigurationFileVersion01\n"
                                 ":Provider=65535\n"
                                 ":SerialProperty[DeviceNo=9].Baudrate=9600\n"
                                 ":SerialProperty[DeviceNo=9].DataBits=8\n"
                                 ":SerialProperty[DeviceNo=9].StopBits=0\n"
                                 ":SerialProperty[DeviceNo=9].Parity=0\n"
                                 ":SerialProperty[DeviceNo=9].FlowControl=0\n"
                                 ":SerialProperty[DeviceNo=10].Baudrate=4294967295\n"
                                 ":SerialProperty[DeviceNo=10].DataBits=255\n"
                                 ":SerialProperty[DeviceNo=10].StopBits=48\n"
                                 ":SerialProperty[DeviceNo=10].Parity=10\n"
                                 ":SerialProperty[DeviceNo=10].FlowControl=6\n"
                                 "B \n"
                                 "A\n"
                                 "B \n"
                                 "dmm=TCPIP0::10.0.0.5::Instr\n");
    expectWrittenAsByTheOracle(contents);
    expectWrittenAsByTheOracle({});
}

TEST_F(Write, AliasesAreInTheTablesOrder)
{
    for (const float load : {1.0F, 0.1F, 25.0F}) {
        FileContents contents;
        contents.aliases.max_load_factor(load);
        for (int i = 0; i < 1000; ++i) {
            contents.aliases["A" + std::to_string(i * 7919 % 1000)] = std::to_string(i);
        }
        expectWrittenAsByTheOracle(contents);
    }
}

TEST_F(Write, AFileThatWasReadIsWrittenWithoutBoardsAndSkippedLines)
{
    HostileLines lines(20240229);
    for (int i = 0; i < 20; ++i) {
        const std::string bytes = lines.file(1000);
        support::writeFile(m_path, bytes);
        OracleReader oracle;
        oracle.read(bytes);
        FileContents expected = oracle.contents();
        ASSERT_FALSE(expected.gpib.empty());
        expected.gpib.clear();

        ModernConfigurationFile file(m_path);
        FileContents callers;
        file.parse(callers.aliases, callers.resources, callers.provider);
        callers = {};
        // A second save writes the same.
        for (int save = 0; save < 2; ++save) {
            std::filesystem::remove(m_path);
            file.save();
            const std::string saved = support::readFile(m_path);
            const std::string start = expectedStart(expected);
            EXPECT_EQ(saved.compare(0, start.size(), start), 0);
            EXPECT_EQ(saved.size(), start.size() + expectedAliases(expected).size());
            oracle.read(saved);
            EXPECT_EQ(oracle.contents(), expected);
        }
    }
}

TEST_F(Write, ABaudRateAboveTheReadersLimitComesBackAsTheDefault)
{
    // Written unsigned, but the reader skips what does not fit a signed number.
    written({{}, {}, {}, {{1, {2147483648U, 7, 0, 0, 0}}, {2, {2147483647U, 7, 0, 0, 0}}}, 1});
    EXPECT_EQ(
        readWithModernConfigurationFile(m_path),
        (FileContents{{}, {}, {}, {{1, {9600, 7, 0, 0, 0}}, {2, {2147483647U, 7, 0, 0, 0}}}, 1}));
}
