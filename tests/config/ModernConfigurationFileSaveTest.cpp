// SPDX-License-Identifier: MIT
#include "config/ModernConfigurationFile.h"

#include "tests/config/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

using namespace std::string_view_literals;
using QvVisa::ModernConfigurationFile;
using QvVisa::SerialPropertiesMap;

namespace {

using Aliases = std::unordered_map<std::string, std::string>;

const std::string s_start = ":QvVisaConfigurationFileVersion01\n:Provider=3674\n";

const std::string s_example = ":QvVisaConfigurationFileVersion01\n"
                              ":Provider=3674\n"
                              ":SerialProperty[DeviceNo=1].Baudrate=9600\n"
                              ":SerialProperty[DeviceNo=1].DataBits=8\n"
                              ":SerialProperty[DeviceNo=1].StopBits=0\n"
                              ":SerialProperty[DeviceNo=1].Parity=0\n"
                              ":SerialProperty[DeviceNo=1].FlowControl=0\n"
                              "GPIB0::12::INSTR\n"
                              "DMM=TCPIP0::10.0.0.5::INSTR\n";

class ModernConfigurationFileSave : public testing::Test
{
protected:
    std::string path() const { return m_folder.path() / "visa.conf"; }

    std::string written(const Aliases& aliases, const std::vector<std::string>& resources,
                        const SerialPropertiesMap& ports, unsigned short provider) const
    {
        ModernConfigurationFile::write(path(), aliases, resources, ports, provider);
        return support::readFile(path());
    }

    /// What a save makes of a file that was read.
    std::string savedAgain(std::string_view lines) const
    {
        support::writeFile(path(), lines);
        ModernConfigurationFile file(path());
        Aliases aliases;
        std::vector<std::string> resources;
        unsigned short provider = 0;
        file.parse(aliases, resources, provider);
        EXPECT_TRUE(file.wasRead());
        file.save();
        return support::readFile(path());
    }

private:
    support::TemporaryFolder m_folder;
};

} // namespace

TEST_F(ModernConfigurationFileSave, WritesEachKindInItsPlace)
{
    EXPECT_EQ(written({{"DMM", "TCPIP0::10.0.0.5::INSTR"}}, {"GPIB0::12::INSTR"}, {{1, {}}}, 3674),
              s_example);
}

TEST_F(ModernConfigurationFileSave, WritesWhatItHasReadFromItsOwnFile)
{
    EXPECT_EQ(savedAgain(s_example), s_example);
}

TEST_F(ModernConfigurationFileSave, WithNothingToSayWritesHeaderAndProvider)
{
    EXPECT_EQ(written({}, {}, {}, 3674), s_start);
    EXPECT_EQ(savedAgain(""), s_start);
    ModernConfigurationFile(path()).save();
    EXPECT_EQ(support::readFile(path()), s_start);
}

TEST_F(ModernConfigurationFileSave, WritesProvidersInPlainDecimal)
{
    for (const int provider : {0, 1, 42, 999, 1000, 32768, 65535}) {
        EXPECT_EQ(written({}, {}, {}, static_cast<unsigned short>(provider)),
                  ":QvVisaConfigurationFileVersion01\n:Provider=" + std::to_string(provider) +
                      '\n');
    }
}

TEST_F(ModernConfigurationFileSave, WritesPortsInRisingOrderWithAllFiveLines)
{
    const SerialPropertiesMap ports = {{65535, {4294967295U, 255, 254, 128, 127}},
                                       {0, {}},
                                       {10, {1000000, 65, 48, 10, 6}},
                                       {9, {}}};
    EXPECT_EQ(written({}, {}, ports, 3674),
              s_start + ":SerialProperty[DeviceNo=0].Baudrate=9600\n"
                        ":SerialProperty[DeviceNo=0].DataBits=8\n"
                        ":SerialProperty[DeviceNo=0].StopBits=0\n"
                        ":SerialProperty[DeviceNo=0].Parity=0\n"
                        ":SerialProperty[DeviceNo=0].FlowControl=0\n"
                        ":SerialProperty[DeviceNo=9].Baudrate=9600\n"
                        ":SerialProperty[DeviceNo=9].DataBits=8\n"
                        ":SerialProperty[DeviceNo=9].StopBits=0\n"
                        ":SerialProperty[DeviceNo=9].Parity=0\n"
                        ":SerialProperty[DeviceNo=9].FlowControl=0\n"
                        ":SerialProperty[DeviceNo=10].Baudrate=1000000\n"
                        ":SerialProperty[DeviceNo=10].DataBits=65\n"
                        ":SerialProperty[DeviceNo=10].StopBits=48\n"
                        ":SerialProperty[DeviceNo=10].Parity=10\n"
                        ":SerialProperty[DeviceNo=10].FlowControl=6\n"
                        ":SerialProperty[DeviceNo=65535].Baudrate=4294967295\n"
                        ":SerialProperty[DeviceNo=65535].DataBits=255\n"
                        ":SerialProperty[DeviceNo=65535].StopBits=254\n"
                        ":SerialProperty[DeviceNo=65535].Parity=128\n"
                        ":SerialProperty[DeviceNo=65535].FlowControl=127\n");
}

TEST_F(ModernConfigurationFileSave, OneParityLineBecomesAllFiveOfItsPort)
{
    EXPECT_EQ(savedAgain(":SerialProperty[DeviceNo=3].Parity=2\n"),
              s_start + ":SerialProperty[DeviceNo=3].Baudrate=9600\n"
                        ":SerialProperty[DeviceNo=3].DataBits=8\n"
                        ":SerialProperty[DeviceNo=3].StopBits=0\n"
                        ":SerialProperty[DeviceNo=3].Parity=2\n"
                        ":SerialProperty[DeviceNo=3].FlowControl=0\n");
}

TEST_F(ModernConfigurationFileSave, ABaudRateBeyondTheReadersNumbersComesBackAsTheDefault)
{
    // Written unsigned, but the reader skips what does not fit a signed number.
    written({}, {}, {{1, {2147483648U, 7, 0, 0, 0}}, {2, {2147483647U, 7, 0, 0, 0}}}, 3674);
    const SerialPropertiesMap ports = readWithModernConfigurationFile(path()).serial;
    EXPECT_TRUE(ports ==
                (SerialPropertiesMap{{1, {9600, 7, 0, 0, 0}}, {2, {2147483647U, 7, 0, 0, 0}}}));
}

TEST_F(ModernConfigurationFileSave, WritesResourcesInTheirOrderAndAsOftenAsTheyStandThere)
{
    EXPECT_EQ(written({}, {"B", "A", "B", "B "}, {}, 3674), s_start + "B\nA\nB\nB \n");
    EXPECT_EQ(savedAgain("B\nA\nB\nB \n"), s_start + "B\nA\nB\nB \n");
}

TEST_F(ModernConfigurationFileSave, WritesBytesAsTheyAre)
{
    const std::string resource("GPIB\0\x80\xE4\xFF\t \r", 11);
    EXPECT_EQ(written({}, {resource}, {}, 3674), s_start + resource + '\n');
    EXPECT_EQ(savedAgain(resource + '\n'), s_start + resource + '\n');
    const std::string name("\0A\xE4", 3);
    EXPECT_EQ(written({{name, "\xFF"}}, {}, {}, 3674), s_start + name + "=\xFF\n");
}

TEST_F(ModernConfigurationFileSave, WritesAliasNamesAsTheyAreGiven)
{
    EXPECT_EQ(written({{"dmm", "tcpip0::Meter::instr"}}, {}, {}, 3674),
              s_start + "dmm=tcpip0::Meter::instr\n");
    EXPECT_EQ(savedAgain("dmm = tcpip0::Meter::instr\n"), s_start + "DMM=tcpip0::Meter::instr\n");
}

TEST_F(ModernConfigurationFileSave, WritesAliasesInTheirTablesOrder)
{
    for (const float load : {1.0F, 0.1F, 25.0F}) {
        Aliases aliases;
        aliases.max_load_factor(load);
        for (int i = 0; i < 1000; ++i) {
            aliases["A" + std::to_string(i * 7919 % 1000)] = "ASRL" + std::to_string(i) + "::INSTR";
        }
        std::string expected = s_start;
        for (const auto& [alias, resource] : aliases) {
            expected.append(alias).append("=").append(resource).append("\n");
        }
        ModernConfigurationFile::write(path(), aliases, {}, {}, 3674);
        EXPECT_EQ(support::readFile(path()), expected) << load;
    }
}

TEST_F(ModernConfigurationFileSave, DropsGpibLinesCommentsAndWhatWasSkipped)
{
    EXPECT_EQ(savedAgain(":QvVisaConfigurationFileVersion01 written by hand\n"
                         ":Comment\n"
                         "# comment\n"
                         "\n"
                         " GPIB0::1::INSTR\n"
                         ":provider = 42\n"
                         "A = B C\n"
                         ":GPIBProperty[DeviceNo=0].PrimaryAddress=1\n"
                         ":GPIBProperty[DeviceNo=0].SecondaryAddress=2\n"
                         ":GPIBProperty[DeviceNo=0].SystemController=0\n"
                         ":SerialProperty[DeviceNo=1].Baudrate=2147483648\n"
                         "DMM = ASRL1::INSTR\n"
                         "GPIB0::12::INSTR"),
              ":QvVisaConfigurationFileVersion01\n"
              ":Provider=42\n"
              "GPIB0::12::INSTR\n"
              "DMM=ASRL1::INSTR\n");
}

TEST_F(ModernConfigurationFileSave, ReplacesALongerFileWhole)
{
    support::writeFile(path(), std::string(100000, 'A') + '\n');
    ModernConfigurationFile::write(path(), {}, {"B"}, {}, 1);
    EXPECT_EQ(support::readFile(path()), ":QvVisaConfigurationFileVersion01\n:Provider=1\nB\n");
}

TEST_F(ModernConfigurationFileSave, KeepsWhatItReadForASecondSave)
{
    support::writeFile(path(), s_example);
    ModernConfigurationFile file(path());
    Aliases aliases;
    std::vector<std::string> resources;
    unsigned short provider = 0;
    file.parse(aliases, resources, provider);
    aliases.clear();
    resources.clear();
    for (int i = 0; i < 2; ++i) {
        std::filesystem::remove(path());
        file.save();
        EXPECT_EQ(support::readFile(path()), s_example);
    }
}

TEST_F(ModernConfigurationFileSave, WhereNothingCanBeWrittenSaysNothing)
{
    const std::filesystem::path folder = std::filesystem::path(path()).parent_path();
    for (const std::filesystem::path& place :
         {folder / "missing" / "visa.conf", folder, std::filesystem::path()}) {
        EXPECT_NO_THROW(ModernConfigurationFile(place).save()) << place;
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}
