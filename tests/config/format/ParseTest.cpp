// SPDX-License-Identifier: MIT
// The object that reads a file, and what a read that fails leaves in its tables and the caller's.
// What it makes of the lines: OracleTest.cpp and SpecimensTest.cpp.

#include "config/ModernConfigurationFile.h"
#include "tests/support/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <new>
#include <string>

using QvVisa::ModernConfigurationFile;
using QvVisa::SGpibProperties;
using QvVisa::SSerialProperties;
using support::CallAnswer;
using support::SystemCalls;

namespace {

const FileContents s_before{{{"OLD", "2"}, {"NEW", "3"}}, {"B", "C"}, {}, {}, 17};
const FileContents s_contents{
    {{"DMM", "ASRL1::INSTR"}}, {"GPIB0::12::INSTR"}, {{1, {2, 65535, 1}}}, {{3, {}}}, 42};
const std::string s_lines = ":QvVisaConfigurationFileVersion01\n"
                            ":Provider=42\n"
                            ":GPIBProperty[DeviceNo=1].PrimaryAddress=2\n"
                            ":SerialProperty[DeviceNo=3].Baudrate=9600\n"
                            "GPIB0::12::INSTR\n"
                            "DMM=ASRL1::INSTR\n";

class Parse : public testing::Test
{
protected:
    /// Through its interface, as the store does.
    void parse()
    {
        QvVisa::IConfigurationFileImpl& interface = m_file;
        interface.parse(m_callers.aliases, m_callers.resources, m_callers.provider);
    }

    /// The caller's tables and the file's records after a read of these lines.
    FileContents read(std::string_view lines)
    {
        support::writeFile(m_path, lines);
        parse();
        EXPECT_TRUE(m_file.wasRead());
        EXPECT_EQ(m_callers.provider, m_file.getProviderId());
        FileContents contents = m_callers;
        contents.gpib = m_file.getGpibPropertiesMap();
        contents.serial = m_file.getSerialPropertiesMap();
        return contents;
    }

    /// The caller has what it had before, and the file nothing but a provider.
    void expectNothingRead(int provider) const
    {
        EXPECT_EQ(m_callers, s_before);
        EXPECT_FALSE(m_file.wasRead());
        EXPECT_FALSE(m_file.hadHeader());
        EXPECT_TRUE(m_file.getGpibPropertiesMap().empty());
        m_file.save();
        EXPECT_EQ(support::readFile(m_path), ":QvVisaConfigurationFileVersion01\n:Provider=" +
                                                 std::to_string(provider) + '\n');
    }

    support::TemporaryFolder m_folder;
    const std::string m_path = m_folder.path() / "visa.conf";
    ModernConfigurationFile m_file{m_path};
    FileContents m_callers = s_before;
};

} // namespace

TEST_F(Parse, ReplacesTheCallersTables)
{
    EXPECT_EQ(read("NEW=1\nA\n"), (FileContents{{{"NEW", "1"}}, {"A"}, {}, {}, 3674}));
    EXPECT_FALSE(m_file.hadHeader()) << "the header is not required";
}

TEST_F(Parse, ASecondReadKeepsTheProviderOnly)
{
    EXPECT_EQ(read(s_lines), s_contents);
    EXPECT_TRUE(m_file.hadHeader());
    EXPECT_EQ(read("D\n:SerialProperty[DeviceNo=2].Parity=1\n"),
              (FileContents{{}, {"D"}, {}, {{2, {9600, 8, 0, 1, 0}}}, 42}));
}

TEST_F(Parse, ANumberThatTheFileDoesNotNameHasTheDefaultRecord)
{
    EXPECT_TRUE(m_file.getGpibProperties(0) == SGpibProperties()) << "before the first read";
    EXPECT_TRUE(m_file.getSerialProperties(0) == SSerialProperties()) << "before the first read";
    read(":GPIBProperty[DeviceNo=4].PrimaryAddress=9\n:SerialProperty[DeviceNo=3].Parity=2\n");
    EXPECT_TRUE(m_file.getGpibProperties(4) == (SGpibProperties{9, 65535, 1}));
    EXPECT_TRUE(m_file.getGpibProperties(3) == SGpibProperties());
    EXPECT_TRUE(m_file.getSerialProperties(3) == (SSerialProperties{9600, 8, 0, 2, 0}));
    EXPECT_TRUE(m_file.getSerialProperties(4) == SSerialProperties());
    EXPECT_EQ(m_file.getGpibPropertiesMap().size(), 1U) << "a query creates no record";
    EXPECT_EQ(m_file.getSerialPropertiesMap().size(), 1U) << "a query creates no record";
}

TEST_F(Parse, AMissingFileKeepsTheCallersTablesAndTheProvider)
{
    expectNothingRead(3674);
    std::filesystem::remove(m_path);
    parse();
    expectNothingRead(3674);

    EXPECT_EQ(read(s_lines), s_contents) << "after a read that failed";
    std::filesystem::remove(m_path);
    m_callers = s_before;
    parse();
    expectNothingRead(42);
}

TEST_F(Parse, AReadThatFailsAfterAnyByteKeepsTheCallersTables)
{
    for (std::size_t good = 0; good <= s_lines.size(); ++good) {
        SCOPED_TRACE(good);
        support::writeFile(m_path, s_lines);
        m_file = ModernConfigurationFile(m_path);
        {
            const SystemCalls calls(SystemCalls::readingOnly(good));
            parse();
        }
        expectNothingRead(3674);
    }
}

TEST_F(Parse, AReadWithoutEnoughMemoryKeepsTheCallersTables)
{
    support::writeFile(m_path, s_lines);
    {
        const SystemCalls calls(SystemCalls::answeringReads([](int number) {
            if (number == 2) {
                throw std::bad_alloc();
            }
            return CallAnswer();
        }));
        parse();
    }
    expectNothingRead(3674);
}
