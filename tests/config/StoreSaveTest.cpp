// SPDX-License-Identifier: MIT
#include "tests/config/StoreFixture.h"
#include "tests/support/Files.h"

#include <cstdlib>

namespace {

namespace fs = std::filesystem;
using QvVisa::SSerialProperties;
using Aliases = std::unordered_map<std::string, std::string>;
using Resources = std::vector<std::string>;

class StoreSave : public StoreTest
{
protected:
    /// The paths of all files beneath the test's folder.
    std::vector<fs::path> files() const
    {
        std::vector<fs::path> paths;
        for (const auto& entry : fs::recursive_directory_iterator(m_configuration.home().root())) {
            if (!entry.is_directory()) {
                paths.push_back(entry.path());
            }
        }
        return paths;
    }
};

TEST_F(StoreSave, TakesTheTablesFromPairs)
{
    m_configuration.write(":Provider=9\n:SerialProperty[DeviceNo=1].Parity=1\nOLD\nOLD=OLD\n");
    store().setData({{"b", ""}, {"GPIB0::1::INSTR", "dmm"}, {"a", ""}, {"b", ""}});
    EXPECT_EQ(store().m_resources, (Resources{"b", "a", "b"}));
    EXPECT_EQ(store().m_aliases, (Aliases{{"dmm", "GPIB0::1::INSTR"}}));
    EXPECT_EQ(store().m_provider, 9);
    EXPECT_EQ(store().m_serialProperties.size(), 1U);
    EXPECT_EQ(store().m_serialProperties[1].parity, 1);
}

TEST_F(StoreSave, LetsTheLaterPairOfAnAliasWin)
{
    store().setData({{"first", "A"}, {"lower", "a"}, {"second", "A"}});
    EXPECT_EQ(store().m_aliases, (Aliases{{"A", "second"}, {"a", "lower"}}));
}

TEST_F(StoreSave, TakesEmptyTextsAsTheyAre)
{
    store().setData({{"", ""}, {"", "A"}});
    EXPECT_EQ(store().m_resources, Resources{""});
    EXPECT_EQ(store().m_aliases, (Aliases{{"A", ""}}));
    store().setData({});
    EXPECT_TRUE(store().m_resources.empty());
    EXPECT_TRUE(store().m_aliases.empty());
}

TEST_F(StoreSave, WritesTheWholeFile)
{
    m_configuration.write("# gone\n:GPIBProperty[DeviceNo=0].PrimaryAddress=3\nOLD::INSTR\n");
    store().setData({{"GPIB0::12::INSTR", ""}, {"TCPIP0::10.0.0.5::INSTR", "dmm"}});
    store().m_serialProperties = {{65535, {4294967295U, 255, 254, 253, 252}}, {1, {}}};
    store().setProvider(65535);
    store().save();
    EXPECT_EQ(m_configuration.read(), ":QvVisaConfigurationFileVersion01\n"
                                      ":Provider=65535\n"
                                      ":SerialProperty[DeviceNo=1].Baudrate=9600\n"
                                      ":SerialProperty[DeviceNo=1].DataBits=8\n"
                                      ":SerialProperty[DeviceNo=1].StopBits=0\n"
                                      ":SerialProperty[DeviceNo=1].Parity=0\n"
                                      ":SerialProperty[DeviceNo=1].FlowControl=0\n"
                                      ":SerialProperty[DeviceNo=65535].Baudrate=4294967295\n"
                                      ":SerialProperty[DeviceNo=65535].DataBits=255\n"
                                      ":SerialProperty[DeviceNo=65535].StopBits=254\n"
                                      ":SerialProperty[DeviceNo=65535].Parity=253\n"
                                      ":SerialProperty[DeviceNo=65535].FlowControl=252\n"
                                      "GPIB0::12::INSTR\n"
                                      "dmm=TCPIP0::10.0.0.5::INSTR\n");
}

TEST_F(StoreSave, WritesAliasesInTheTablesOrder)
{
    std::vector<std::pair<std::string, std::string>> entries;
    for (int i = 0; i < 200; ++i) {
        entries.emplace_back("GPIB0::1::INSTR", "ALIAS" + std::to_string(i));
    }
    store().setData(entries);
    store().m_aliases.max_load_factor(3.0F);
    store().m_aliases.rehash(0);
    std::string expected = m_configuration.header() + ":Provider=3674\n";
    for (const auto& [alias, resource] : store().m_aliases) {
        expected.append(alias).append("=").append(resource).append("\n");
    }
    store().save();
    EXPECT_EQ(m_configuration.read(), expected);
}

TEST_F(StoreSave, KeepsWhatItHoldsUntilTheNextLook)
{
    QvVisa::ConfigurationFile& held = store();
    held.setData({{"GPIB0::1::INSTR", "dmm"}});
    held.setProvider(4);
    held.save();
    EXPECT_EQ(held.m_aliases, (Aliases{{"dmm", "GPIB0::1::INSTR"}}));
    EXPECT_EQ(held.m_provider, 4);
}

TEST_F(StoreSave, IsReadBackByTheNextLook)
{
    QvVisa::ConfigurationFile& held = store();
    held.setData({{"TCPIP0::10.0.0.5::INSTR", "dmm"}, {"GPIB0::1::INSTR", ""}});
    held.m_serialProperties[2].baudrate = 1200;
    held.save();
    // The file's former time was long ago, the save's is now: the look sees another one.
    EXPECT_EQ(store().m_aliases, (Aliases{{"DMM", "TCPIP0::10.0.0.5::INSTR"}}));
    EXPECT_EQ(store().m_resources, Resources{"GPIB0::1::INSTR"});
    SSerialProperties port;
    EXPECT_TRUE(store().getSerialProperties(2, port));
    EXPECT_EQ(port.baudrate, 1200U) << "the records come from the file that was read back";
}

TEST_F(StoreSave, LeavesTheRecordedTimeAlone)
{
    support::setModificationTime(file(), 1'500'000'000);
    QvVisa::ConfigurationFile& held = store();
    held.setData({{"GPIB0::1::INSTR", "dmm"}});
    held.save();
    support::setModificationTime(file(), 1'500'000'000);
    EXPECT_EQ(store().m_aliases.count("dmm"), 1U) << "the recorded time is the last load's";
    support::setModificationTime(file(), 1'500'000'001);
    EXPECT_EQ(store().m_aliases.count("DMM"), 1U);
}

TEST_F(StoreSave, DoesNothingWithoutAnyFile)
{
    fs::remove(file());
    store().setData({{"GPIB0::1::INSTR", ""}});
    SearchSandbox::takeQueries();
    store().save();
    EXPECT_EQ(SearchSandbox::takeQueries().size(), 4U) << "it looked for one";
    EXPECT_EQ(files(), std::vector<fs::path>());
    EXPECT_EQ(store().m_resources, Resources{"GPIB0::1::INSTR"});
}

TEST_F(StoreSave, FindsAFileThatCameInTheMeantime)
{
    fs::remove(file());
    store().setData({{"GPIB0::1::INSTR", ""}});
    const fs::path inHome = m_configuration.home().home() / ".quorvane/visa.conf";
    fs::create_directory(inHome.parent_path());
    support::writeFile(inHome, "no header here");

    store().save();
    EXPECT_EQ(files(), std::vector<fs::path>{inHome});
    const std::string saved = m_configuration.header() + ":Provider=3674\nGPIB0::1::INSTR\n";
    EXPECT_EQ(support::readFile(inHome), saved);

    // From now on that is the store's file.
    support::writeFile(inHome, m_configuration.header() + "FROM::HOME\n");
    EXPECT_EQ(store().m_resources, Resources{"FROM::HOME"});
}

TEST_F(StoreSave, WritesOverAFileThatLostItsHeader)
{
    m_configuration.write("GPIB0::1::INSTR\n");
    QvVisa::ConfigurationFile& held = store();
    support::writeFile(file(), "something else\n");
    held.save();
    EXPECT_EQ(m_configuration.read(),
              m_configuration.header() + ":Provider=3674\nGPIB0::1::INSTR\n");
}

TEST_F(StoreSave, WritesOverAnotherProgramsChange)
{
    m_configuration.write("GPIB0::1::INSTR\n");
    QvVisa::ConfigurationFile& held = store();
    m_configuration.write("GPIB0::2::INSTR\n");
    held.save();
    EXPECT_EQ(m_configuration.read(),
              m_configuration.header() + ":Provider=3674\nGPIB0::1::INSTR\n");
    EXPECT_EQ(store().m_resources, Resources{"GPIB0::1::INSTR"});
}

TEST_F(StoreSave, MakesAFileAnewThatVanished)
{
    m_configuration.write("GPIB0::1::INSTR\n");
    store();
    fs::remove(file());
    store().save();
    EXPECT_EQ(files(), std::vector<fs::path>{file()});
    EXPECT_EQ(store().m_resources, Resources{"GPIB0::1::INSTR"});
}

TEST_F(StoreSave, DoesNothingWhileItsFolderIsGone)
{
    const fs::path folder = m_configuration.home().root() / "folder";
    fs::create_directory(folder);
    support::writeFile(folder / "visa.conf", m_configuration.header() + "GPIB0::1::INSTR\n");
    ::setenv("QVVISACONFFILE", (folder / "visa.conf").c_str(), 1);
    store();
    fs::remove_all(folder);
    store().save();
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_EQ(store().m_resources, Resources{"GPIB0::1::INSTR"});

    fs::create_directory(folder);
    store().save();
    EXPECT_EQ(support::readFile(folder / "visa.conf"),
              m_configuration.header() + ":Provider=3674\nGPIB0::1::INSTR\n");
}

} // namespace
