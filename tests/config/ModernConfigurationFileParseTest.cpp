// SPDX-License-Identifier: MIT
#include "config/ModernConfigurationFile.h"

#include "tests/config/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

using namespace std::string_view_literals;
using QvVisa::ModernConfigurationFile;

namespace {

using Aliases = std::unordered_map<std::string, std::string>;
using Resources = std::vector<std::string>;

class ModernConfigurationFileParse : public testing::Test
{
protected:
    std::string path() const { return m_folder.path() / "visa.conf"; }

    FileContents contentsOf(std::string_view lines) const
    {
        support::writeFile(path(), lines);
        return readWithModernConfigurationFile(path());
    }

    void expectContents(std::string_view lines, const FileContents& expected) const
    {
        EXPECT_EQ(contentsOf(lines), expected) << '"' << printable(std::string(lines)) << '"';
    }

private:
    support::TemporaryFolder m_folder;
};

FileContents withProvider(unsigned short provider)
{
    FileContents contents;
    contents.provider = provider;
    return contents;
}

FileContents withAliases(const Aliases& aliases)
{
    FileContents contents;
    contents.aliases = aliases;
    return contents;
}

FileContents withResources(const Resources& resources)
{
    FileContents contents;
    contents.resources = resources;
    return contents;
}

} // namespace

TEST_F(ModernConfigurationFileParse, AnObjectThatHasReadNothing)
{
    const ModernConfigurationFile file(path());
    EXPECT_FALSE(file.wasRead());
    EXPECT_FALSE(file.hadHeader());
    EXPECT_EQ(file.getProviderId(), 3674);
    EXPECT_TRUE(file.getGpibPropertiesMap().empty());
    EXPECT_TRUE(file.getSerialPropertiesMap().empty());
    EXPECT_TRUE(file.getGpibProperties(0) == QvVisa::SGpibProperties());
    EXPECT_TRUE(file.getSerialProperties(0) == QvVisa::SSerialProperties());
}

TEST_F(ModernConfigurationFileParse, Providers)
{
    expectContents("", withProvider(3674));
    expectContents(":QvVisaConfigurationFileVersion01\n", withProvider(3674));
    expectContents(":Provider=42\n", withProvider(42));
    expectContents(":Provider=42", withProvider(42));
    expectContents(":PROVIDER = 42\n", withProvider(42));
    expectContents(":Provider=1\n:provider=2\n:PROVIDER=3\n", withProvider(3));
    expectContents(":Provider=1\n:Provider=\n:Provider=-2\n", withProvider(1));
    expectContents(":Provider=0\n", withProvider(0));
    expectContents(":Provider=65535\n", withProvider(65535));
    expectContents(":Provider=65536\n", withProvider(0));
}

TEST_F(ModernConfigurationFileParse, Resources)
{
    expectContents("GPIB0::12::INSTR\n", withResources({"GPIB0::12::INSTR"}));
    expectContents("GPIB0::12::INSTR", withResources({"GPIB0::12::INSTR"}));
    expectContents("GPIB0::12::INSTR  \n", withResources({"GPIB0::12::INSTR  "}));
    expectContents("B\nA\nB\nB\n", withResources({"B", "A", "B", "B"}));
    expectContents("a\nA\n", withResources({"a", "A"}));
    expectContents("; spare\n", withResources({"; spare"}));
    expectContents("\n \n\n#A\n A\n\tA\n=A\n:A\n", withResources({}));
    expectContents("A\0B\n\xFF\n"sv, withResources({std::string("A\0B", 3), "\xFF"}));
}

TEST_F(ModernConfigurationFileParse, Aliases)
{
    expectContents("myalias = ASRL1::INSTR\n", withAliases({{"MYALIAS", "ASRL1::INSTR"}}));
    expectContents("myalias = ASRL1::INSTR\nMyAlias=GPIB0::1::INSTR\n",
                   withAliases({{"MYALIAS", "GPIB0::1::INSTR"}}));
    expectContents("dmm=tcpip0::Meter::inst0::instr\n",
                   withAliases({{"DMM", "tcpip0::Meter::inst0::instr"}}));
    expectContents("A=1\nB=1\n", withAliases({{"A", "1"}, {"B", "1"}}));
    expectContents("A = B C\n", withAliases({}));
    expectContents("A=B\nA = C D\n", withAliases({{"A", "B"}}));
    expectContents("A==B\n", withAliases({{"A", "=B"}}));
    expectContents("A= =B\n", withAliases({{"A", "=B"}}));
    expectContents("A=\n=B\nA =  \n", withAliases({}));
    expectContents("\xE4z\x80=B\n", withAliases({{"\xE4Z\x80", "B"}}));
    expectContents("a\0z=b\0z\n"sv,
                   withAliases({{std::string("A\0Z", 3), std::string("b\0z", 3)}}));
}

TEST_F(ModernConfigurationFileParse, CarriageReturnsStickToResourcesOnly)
{
    FileContents expected;
    expected.provider = 42;
    expected.resources = {"GPIB0::12::INSTR\r"};
    expected.aliases = {{"DMM", "TCPIP0::10.0.0.5::INSTR"}};
    expected.gpib = {{1, {2, 65535, 1}}};
    expected.serial = {{3, {19200, 8, 0, 0, 0}}};
    expectContents(":QvVisaConfigurationFileVersion01\r\n"
                   ":Provider=42\r\n"
                   "\r\n"
                   "GPIB0::12::INSTR\r\n"
                   "DMM=TCPIP0::10.0.0.5::INSTR\r\n"
                   ":GPIBProperty[DeviceNo=1].PrimaryAddress=2\r\n"
                   ":SerialProperty[DeviceNo=3].Baudrate=19200\r\n",
                   expected);
}

TEST_F(ModernConfigurationFileParse, AFileWrittenByHand)
{
    FileContents expected;
    expected.resources = {"GPIB0::12::INSTR"};
    expected.aliases = {{"DMM", "TCPIP0::10.0.0.5::INSTR"}};
    expected.gpib = {{0, {0, 65535, 1}}};
    expected.serial = {{1, {9600, 8, 0, 0, 0}}};
    expectContents(":QvVisaConfigurationFileVersion01 written by hand\n"
                   ":Comment lines may also be written as unknown keys like this one\n"
                   ":provider = 3674\n"
                   "dmm = TCPIP0::10.0.0.5::INSTR\n"
                   "GPIB0::12::INSTR\n"
                   ":GPIBProperty[DeviceNo= 0 ].PrimaryAddress= 0\n"
                   ":GPIBProperty[DeviceNo=0].SystemController=1\n"
                   ":SerialProperty[DeviceNo=1].Baudrate=9600\n",
                   expected);
}

TEST_F(ModernConfigurationFileParse, OneLineMakesABoardOfDefaults)
{
    FileContents expected;
    expected.gpib = {{4, {9, 65535, 1}}};
    expectContents(":GPIBProperty[DeviceNo=4].PrimaryAddress=9\n", expected);
    expected.gpib = {{4, {0, 9, 1}}};
    expectContents(":GPIBProperty[DeviceNo=4].SecondaryAddress=9\n", expected);
    expected.gpib = {{4, {0, 65535, 0}}};
    expectContents(":GPIBProperty[DeviceNo=4].SystemController=0\n", expected);
    expected.gpib = {{4, {0, 65535, 1}}};
    expectContents(":GPIBProperty[DeviceNo=4].SystemController=1\n", expected);
    expectContents(":GPIBPROPERTY[DeviceNo=0].PrimaryAddress=1\n", {});
}

TEST_F(ModernConfigurationFileParse, OneLineMakesAPortOfDefaults)
{
    const struct
    {
        std::string line;
        QvVisa::SSerialProperties port;
    } rows[] = {
        {"Baudrate=115200", {115200, 8, 0, 0, 0}}, {"DataBits=7", {9600, 7, 0, 0, 0}},
        {"StopBits=2", {9600, 8, 2, 0, 0}},        {"Parity=2", {9600, 8, 0, 2, 0}},
        {"FlowControl=6", {9600, 8, 0, 0, 6}},
    };
    for (const auto& row : rows) {
        FileContents expected;
        expected.serial = {{3, row.port}};
        expectContents(":SerialProperty[DeviceNo=3]." + row.line + '\n', expected);
    }
}

TEST_F(ModernConfigurationFileParse, LaterLinesChangeOnlyTheirField)
{
    FileContents expected;
    expected.gpib = {{0, {5, 6, 0}}, {1, {7, 65535, 1}}};
    expected.serial = {{1, {1200, 7, 2, 4, 6}}, {2, {300, 8, 0, 0, 0}}};
    expectContents(":SerialProperty[DeviceNo=1].FlowControl=6\n"
                   ":GPIBProperty[DeviceNo=0].PrimaryAddress=4\n"
                   ":SerialProperty[DeviceNo=2].Baudrate=300\n"
                   ":SerialProperty[DeviceNo=1].Parity=4\n"
                   ":SerialProperty[DeviceNo=1].StopBits=1\n"
                   ":GPIBProperty[DeviceNo=0].SystemController=0\n"
                   ":GPIBProperty[DeviceNo=1].PrimaryAddress=7\n"
                   ":SerialProperty[DeviceNo=1].DataBits=7\n"
                   ":GPIBProperty[DeviceNo=0].SecondaryAddress=6\n"
                   ":SerialProperty[DeviceNo=1].Baudrate=1200\n"
                   ":SerialProperty[DeviceNo=1].StopBits=2\n"
                   ":GPIBProperty[DeviceNo=0].PrimaryAddress=5\n",
                   expected);
}

TEST_F(ModernConfigurationFileParse, RecordsAreAskedForByNumber)
{
    support::writeFile(path(), ":GPIBProperty[DeviceNo=4].PrimaryAddress=9\n"
                               ":SerialProperty[DeviceNo=3].Parity=2\n");
    ModernConfigurationFile file(path());
    Aliases aliases;
    std::vector<std::string> resources;
    unsigned short provider = 0;
    file.parse(aliases, resources, provider);
    EXPECT_TRUE(file.getGpibProperties(4) == (QvVisa::SGpibProperties{9, 65535, 1}));
    EXPECT_TRUE(file.getGpibProperties(3) == QvVisa::SGpibProperties());
    EXPECT_TRUE(file.getSerialProperties(3) == (QvVisa::SSerialProperties{9600, 8, 0, 2, 0}));
    EXPECT_TRUE(file.getSerialProperties(4) == QvVisa::SSerialProperties());
    EXPECT_EQ(file.getGpibPropertiesMap().size(), 1U) << "asking makes no record";
    EXPECT_EQ(file.getSerialPropertiesMap().size(), 1U) << "asking makes no record";
}

TEST_F(ModernConfigurationFileParse, CallersTablesAreReplaced)
{
    support::writeFile(path(), "NEW=1\nA\n");
    ModernConfigurationFile file(path());
    Aliases aliases{{"OLD", "2"}, {"NEW", "3"}};
    std::vector<std::string> resources{"B", "C"};
    unsigned short provider = 17;
    file.parse(aliases, resources, provider);
    EXPECT_TRUE(file.wasRead());
    EXPECT_EQ(aliases, (Aliases{{"NEW", "1"}}));
    EXPECT_EQ(resources, (std::vector<std::string>{"A"}));
    EXPECT_EQ(provider, 3674);
}

TEST_F(ModernConfigurationFileParse, ReadingAgainStartsFromEmptyTablesButKeepsTheProvider)
{
    ModernConfigurationFile file(path());
    Aliases aliases;
    std::vector<std::string> resources;
    unsigned short provider = 0;
    support::writeFile(path(), ":Provider=42\nA\nB=C\n:SerialProperty[DeviceNo=1].Parity=1\n"
                               ":GPIBProperty[DeviceNo=1].PrimaryAddress=1\n");
    file.parse(aliases, resources, provider);
    ASSERT_EQ(file.getSerialPropertiesMap().size(), 1U);

    support::writeFile(path(), "D\n:SerialProperty[DeviceNo=2].Parity=1\n");
    file.parse(aliases, resources, provider);
    EXPECT_TRUE(aliases.empty());
    EXPECT_EQ(resources, (std::vector<std::string>{"D"}));
    EXPECT_TRUE(file.getGpibPropertiesMap().empty());
    EXPECT_EQ(file.getSerialPropertiesMap().count(1), 0U);
    EXPECT_EQ(file.getSerialPropertiesMap().count(2), 1U);
    EXPECT_EQ(provider, 42);
    EXPECT_EQ(file.getProviderId(), 42);
}

TEST_F(ModernConfigurationFileParse, DoesNotAskForTheHeader)
{
    expectContents("A\n", withResources({"A"}));
}

TEST_F(ModernConfigurationFileParse, IsReachedThroughItsInterface)
{
    support::writeFile(path(), ":Provider=42\nA\n:GPIBProperty[DeviceNo=1].PrimaryAddress=2\n");
    std::unique_ptr<QvVisa::IConfigurationFileImpl> file =
        std::make_unique<ModernConfigurationFile>(path());
    Aliases aliases;
    std::vector<std::string> resources;
    unsigned short provider = 0;
    file->parse(aliases, resources, provider);
    EXPECT_EQ(provider, 42);
    EXPECT_EQ(file->getProviderId(), 42);
    EXPECT_EQ(file->getGpibProperties(1).primaryAddress, 2);
    EXPECT_EQ(file->getGpibPropertiesMap().size(), 1U);
    EXPECT_TRUE(file->getSerialPropertiesMap().empty());
    EXPECT_EQ(file->getSerialProperties(1).baudrate, 9600U);
}
