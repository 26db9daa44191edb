// SPDX-License-Identifier: MIT
// What a read that fails leaves in the tables of its caller and in its own.

#include "config/ModernConfigurationFile.h"
#include "config/ProcessEnvironment.h"
#include "tests/support/Files.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <new>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

using QvVisa::ModernConfigurationFile;
using support::CallAnswer;
using support::SystemCalls;

class FailedRead : public testing::Test
{
protected:
    std::string path() const { return m_folder.path() / "visa.conf"; }

    void parse() { m_file.parse(m_aliases, m_resources, m_provider); }

    void expectCallersTablesKept() const
    {
        EXPECT_EQ(m_aliases, (std::unordered_map<std::string, std::string>{{"OLD", "ASRL9"}}));
        EXPECT_EQ(m_resources, (std::vector<std::string>{"ASRL8::INSTR"}));
        EXPECT_EQ(m_provider, 17);
    }

    void expectOwnTablesEmpty(int provider) const
    {
        EXPECT_FALSE(m_file.wasRead());
        EXPECT_FALSE(m_file.hadHeader());
        EXPECT_TRUE(m_file.getGpibPropertiesMap().empty());
        EXPECT_TRUE(m_file.getSerialPropertiesMap().empty());
        EXPECT_EQ(m_file.getProviderId(), provider);
        m_file.save();
        EXPECT_EQ(support::readFile(path()), ":QvVisaConfigurationFileVersion01\n:Provider=" +
                                                 std::to_string(provider) + '\n');
    }

    static inline const std::string s_lines = ":QvVisaConfigurationFileVersion01\n"
                                              ":Provider=42\n"
                                              ":GPIBProperty[DeviceNo=1].PrimaryAddress=2\n"
                                              ":SerialProperty[DeviceNo=3].Parity=2\n"
                                              "GPIB0::12::INSTR\n"
                                              "DMM=TCPIP0::10.0.0.5::INSTR\n";

private:
    support::TemporaryFolder m_folder;

protected:
    ModernConfigurationFile m_file{path()};
    std::unordered_map<std::string, std::string> m_aliases{{"OLD", "ASRL9"}};
    std::vector<std::string> m_resources{"ASRL8::INSTR"};
    unsigned short m_provider = 17;
};

TEST_F(FailedRead, OfAMissingFileKeepsTheCallersTables)
{
    parse();
    expectCallersTablesKept();
    expectOwnTablesEmpty(3674);
}

TEST_F(FailedRead, OfAFileReadBeforeKeepsItsProvider)
{
    support::writeFile(path(), s_lines);
    std::unordered_map<std::string, std::string> aliases;
    std::vector<std::string> resources;
    unsigned short provider = 0;
    m_file.parse(aliases, resources, provider);
    ASSERT_TRUE(m_file.wasRead());
    ASSERT_EQ(provider, 42);

    std::filesystem::remove(path());
    parse();
    expectCallersTablesKept();
    expectOwnTablesEmpty(42);
}

TEST_F(FailedRead, AfterAnyByteKeepsTheCallersTables)
{
    for (std::size_t good = 0; good <= s_lines.size(); ++good) {
        SCOPED_TRACE(good);
        support::writeFile(path(), s_lines);
        m_file = ModernConfigurationFile(path());
        {
            const SystemCalls calls(SystemCalls::readingOnly(good));
            parse();
        }
        expectCallersTablesKept();
        expectOwnTablesEmpty(3674);
    }
}

TEST_F(FailedRead, ForWantOfMemoryKeepsTheCallersTables)
{
    support::writeFile(path(), s_lines);
    {
        const SystemCalls calls(SystemCalls::answeringReads([](int number) {
            if (number == 2) {
                throw std::bad_alloc();
            }
            return CallAnswer();
        }));
        parse();
    }
    expectCallersTablesKept();
    expectOwnTablesEmpty(3674);
}

TEST_F(FailedRead, IsForgottenAtTheNextGoodOne)
{
    parse();
    ASSERT_FALSE(m_file.wasRead());
    support::writeFile(path(), s_lines);
    parse();
    EXPECT_TRUE(m_file.wasRead());
    EXPECT_TRUE(m_file.hadHeader());
    EXPECT_EQ(m_provider, 42);
    EXPECT_EQ(m_resources, (std::vector<std::string>{"GPIB0::12::INSTR"}));
}

TEST_F(FailedRead, OfAProcessThatEndsMeansNoEnvironment)
{
    const std::string own = std::to_string(::getpid());
    ASSERT_TRUE(QvVisa::searchEnvironmentOf(own).has_value());
    for (const int number : {1, 2}) {
        const SystemCalls calls(SystemCalls::answeringReads([number](int read) {
            CallAnswer answer;
            answer.error = read == number ? ESRCH : 0;
            answer.mostBytes = 8;
            return answer;
        }));
        EXPECT_FALSE(QvVisa::searchEnvironmentOf(own).has_value()) << number;
    }
}

TEST_F(FailedRead, WithinTheHeaderMeansThereIsNone)
{
    support::writeFile(path(), s_lines);
    for (std::size_t good = 0; good <= 33; ++good) {
        const SystemCalls calls(SystemCalls::readingOnly(good));
        EXPECT_EQ(ModernConfigurationFile::isParseAble(path()), good == 33) << good;
    }
}

TEST_F(FailedRead, DiffersFromShortAndInterruptedReadsOfTheHeader)
{
    support::writeFile(path(), s_lines);
    for (std::size_t most = 1; most <= 34; ++most) {
        const SystemCalls calls(SystemCalls::answeringReads([most](int number) {
            CallAnswer answer;
            answer.error = number % 2 == 1 ? EINTR : 0;
            answer.mostBytes = most;
            return answer;
        }));
        EXPECT_TRUE(ModernConfigurationFile::isParseAble(path())) << most;
    }
}

} // namespace
