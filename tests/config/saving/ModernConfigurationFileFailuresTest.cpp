// SPDX-License-Identifier: MIT
#include "config/ModernConfigurationFile.h"

#include "tests/support/FileContents.h"
#include "tests/config/ReaderReadCalls.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <new>
#include <string>

using QvVisa::ModernConfigurationFile;

namespace {

/// A caller's tables, and a file to be read into them that fails on the way.
class ModernConfigurationFileFailures : public testing::Test
{
protected:
    std::string path() const { return m_folder.path() / "visa.conf"; }

    void parse() { m_file.parse(m_aliases, m_resources, m_provider); }

    void expectCallersTablesAsTheyWere() const
    {
        EXPECT_EQ(m_aliases, (std::unordered_map<std::string, std::string>{{"OLD", "ASRL9"}}));
        EXPECT_EQ(m_resources, (std::vector<std::string>{"ASRL8::INSTR"}));
        EXPECT_EQ(m_provider, 17);
    }

    void expectOwnTablesEmpty() const
    {
        EXPECT_FALSE(m_file.wasRead());
        EXPECT_FALSE(m_file.hadHeader());
        EXPECT_TRUE(m_file.getGpibPropertiesMap().empty());
        EXPECT_TRUE(m_file.getSerialPropertiesMap().empty());
        m_file.save();
        EXPECT_EQ(support::readFile(path()), ":QvVisaConfigurationFileVersion01\n:Provider=" +
                                                 std::to_string(m_file.getProviderId()) + '\n');
    }

    static constexpr const char* s_lines = ":QvVisaConfigurationFileVersion01\n"
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

} // namespace

TEST_F(ModernConfigurationFileFailures, AMissingFileLeavesTheCallersTables)
{
    parse();
    expectCallersTablesAsTheyWere();
    EXPECT_EQ(m_file.getProviderId(), 3674);
    expectOwnTablesEmpty();
}

TEST_F(ModernConfigurationFileFailures, AFileThatVanishedSinceTheLastReadLeavesTheCallersTables)
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
    expectCallersTablesAsTheyWere();
    EXPECT_EQ(m_file.getProviderId(), 42) << "the provider stays";
    expectOwnTablesEmpty();
}

TEST_F(ModernConfigurationFileFailures, AReadThatFailsAfterAnyByteLeavesTheCallersTables)
{
    const std::string lines = s_lines;
    for (std::size_t good = 0; good <= lines.size(); ++good) {
        SCOPED_TRACE(good);
        support::writeFile(path(), lines);
        m_file = ModernConfigurationFile(path());
        {
            const ReaderReadCalls calling(
                [good, calls = 0](int descriptor, void* buffer, std::size_t size) mutable {
                    if (++calls == 1 && good > 0) {
                        return ReaderReadCalls::original(descriptor, buffer, std::min(good, size));
                    }
                    errno = EIO;
                    return ssize_t{-1};
                });
            parse();
        }
        expectCallersTablesAsTheyWere();
        EXPECT_EQ(m_file.getProviderId(), 3674) << "no file has named another";
        expectOwnTablesEmpty();
    }
}

TEST_F(ModernConfigurationFileFailures, RunningOutOfMemoryLeavesTheCallersTables)
{
    support::writeFile(path(), s_lines);
    {
        const ReaderReadCalls calling(
            [calls = 0](int descriptor, void* buffer, std::size_t size) mutable {
                if (++calls == 2) {
                    throw std::bad_alloc();
                }
                return ReaderReadCalls::original(descriptor, buffer, size);
            });
        parse();
    }
    expectCallersTablesAsTheyWere();
    EXPECT_EQ(m_file.getProviderId(), 3674) << "no file has named another";
    expectOwnTablesEmpty();
}

TEST_F(ModernConfigurationFileFailures, AFailedReadIsForgottenAtTheNextGoodOne)
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

TEST_F(ModernConfigurationFileFailures, HeaderIsFoundThroughShortAndInterruptedReads)
{
    support::writeFile(path(), s_lines);
    for (std::size_t most = 1; most <= 34; ++most) {
        int calls = 0;
        const ReaderReadCalls calling([&](int descriptor, void* buffer, std::size_t size) {
            if (++calls % 2 == 1) {
                errno = EINTR;
                return ssize_t{-1};
            }
            return ReaderReadCalls::original(descriptor, buffer, std::min(most, size));
        });
        EXPECT_TRUE(ModernConfigurationFile::isParseAble(path())) << most;
    }
}

TEST_F(ModernConfigurationFileFailures, AReadThatFailsWithinTheHeaderIsNoHeader)
{
    support::writeFile(path(), s_lines);
    for (std::size_t good = 0; good <= 33; ++good) {
        const ReaderReadCalls calling(
            [good, calls = 0](int descriptor, void* buffer, std::size_t size) mutable {
                if (++calls == 1 && good > 0) {
                    return ReaderReadCalls::original(descriptor, buffer, std::min(good, size));
                }
                errno = EIO;
                return ssize_t{-1};
            });
        EXPECT_EQ(ModernConfigurationFile::isParseAble(path()), good == 33) << good;
    }
}
