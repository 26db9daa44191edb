// SPDX-License-Identifier: MIT
// The object that reads a file. What it makes of the lines: OracleTest.cpp and SpecimensTest.cpp.

#include "config/ModernConfigurationFile.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <unordered_map>
#include <vector>

using QvVisa::ModernConfigurationFile;
using QvVisa::SGpibProperties;
using QvVisa::SSerialProperties;

namespace {

using Aliases = std::unordered_map<std::string, std::string>;
using Resources = std::vector<std::string>;

class Parse : public testing::Test
{
protected:
    void read(std::string_view lines)
    {
        support::writeFile(m_path, lines);
        // Through its interface, as the store does.
        QvVisa::IConfigurationFileImpl& interface = m_file;
        interface.parse(m_aliases, m_resources, m_provider);
        EXPECT_EQ(m_provider, interface.getProviderId());
        EXPECT_TRUE(m_file.wasRead());
    }

    support::TemporaryFolder m_folder;
    const std::string m_path = m_folder.path() / "visa.conf";
    ModernConfigurationFile m_file{m_path};
    Aliases m_aliases{{"OLD", "2"}, {"NEW", "3"}};
    Resources m_resources{"B", "C"};
    unsigned short m_provider = 17;
};

} // namespace

TEST_F(Parse, BeforeTheFirstReadTheTablesAreEmpty)
{
    EXPECT_FALSE(m_file.wasRead());
    EXPECT_FALSE(m_file.hadHeader());
    EXPECT_EQ(m_file.getProviderId(), 3674);
    EXPECT_TRUE(m_file.getGpibPropertiesMap().empty());
    EXPECT_TRUE(m_file.getSerialPropertiesMap().empty());
    EXPECT_TRUE(m_file.getGpibProperties(0) == SGpibProperties());
    EXPECT_TRUE(m_file.getSerialProperties(0) == SSerialProperties());
}

TEST_F(Parse, ReplacesTheCallersTables)
{
    read("NEW=1\nA\n");
    EXPECT_EQ(m_aliases, (Aliases{{"NEW", "1"}}));
    EXPECT_EQ(m_resources, Resources{"A"});
    EXPECT_EQ(m_provider, 3674);
    EXPECT_FALSE(m_file.hadHeader()) << "the header is not required";
}

TEST_F(Parse, ASecondReadKeepsTheProviderOnly)
{
    read(":Provider=42\nA\nB=C\n:SerialProperty[DeviceNo=1].Parity=1\n"
         ":GPIBProperty[DeviceNo=1].PrimaryAddress=1\n");
    read("D\n:SerialProperty[DeviceNo=2].Parity=1\n");
    EXPECT_TRUE(m_aliases.empty());
    EXPECT_EQ(m_resources, Resources{"D"});
    EXPECT_TRUE(m_file.getGpibPropertiesMap().empty());
    EXPECT_EQ(m_file.getSerialPropertiesMap().size(), 1U);
    EXPECT_EQ(m_file.getSerialPropertiesMap().count(2), 1U);
    EXPECT_EQ(m_provider, 42);
}

TEST_F(Parse, ANumberThatTheFileDoesNotNameHasTheDefaultRecord)
{
    read(":GPIBProperty[DeviceNo=4].PrimaryAddress=9\n:SerialProperty[DeviceNo=3].Parity=2\n");
    EXPECT_TRUE(m_file.getGpibProperties(4) == (SGpibProperties{9, 65535, 1}));
    EXPECT_TRUE(m_file.getGpibProperties(3) == SGpibProperties());
    EXPECT_TRUE(m_file.getSerialProperties(3) == (SSerialProperties{9600, 8, 0, 2, 0}));
    EXPECT_TRUE(m_file.getSerialProperties(4) == SSerialProperties());
    EXPECT_EQ(m_file.getGpibPropertiesMap().size(), 1U) << "a query creates no record";
    EXPECT_EQ(m_file.getSerialPropertiesMap().size(), 1U) << "a query creates no record";
}
