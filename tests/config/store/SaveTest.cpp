// SPDX-License-Identifier: MIT
#include "tests/config/store/StoreTest.h"
#include "tests/support/Files.h"
#include "tests/support/OracleReader.h"

#include <cstdlib>

namespace {

namespace fs = std::filesystem;
using QvVisa::ConfigurationFile;

class StoreSave : public StoreTest
{
protected:
    /// Whether the path is the only file below the test's folder.
    bool isTheOnlyFile(const fs::path& path) const
    {
        std::vector<fs::path> files;
        for (const auto& entry : fs::recursive_directory_iterator(root())) {
            if (!entry.is_directory()) {
                files.push_back(entry.path());
            }
        }
        return files == std::vector<fs::path>{path};
    }

    static std::string fileWith(const Resources& resources)
    {
        return expectedStart({{}, resources, {}, {}, 3674});
    }
};

TEST_F(StoreSave, SetDataReplacesBothTablesOnly)
{
    m_configuration.write(s_lines);
    FileContents expected = contentsOfLines();
    EXPECT_TRUE(store().setData({{"b", ""}, {"GPIB0::1::INSTR", "dmm"}, {"a", ""}, {"b", ""}}));
    expected.resources = {"b", "a", "b"};
    expected.aliases = {{"dmm", "GPIB0::1::INSTR"}};
    EXPECT_EQ(held(store()), expected);

    EXPECT_TRUE(store().setData({{"first", "A"}, {"lower", "a"}, {"second", "A"}}));
    EXPECT_EQ(store().m_aliases, (Aliases{{"A", "second"}, {"a", "lower"}})) << "the later wins";
    EXPECT_TRUE(store().setData({{"", ""}, {"", "A"}}));
    EXPECT_EQ(store().m_resources, Resources{""});
    EXPECT_EQ(store().m_aliases, (Aliases{{"A", ""}}));
    EXPECT_TRUE(store().setData({}));
    EXPECT_TRUE(store().m_resources.empty() && store().m_aliases.empty());
}

TEST_F(StoreSave, WritesTheTablesInTheirOrderWithoutBoards)
{
    m_configuration.write("# comment\n" + s_lines);
    std::vector<std::pair<std::string, std::string>> entries{{"GPIB0::12::INSTR", ""}};
    for (int i = 0; i < 200; ++i) {
        entries.emplace_back("GPIB0::1::INSTR", "alias" + std::to_string(i));
    }
    // The load factor decides the order.
    store().m_aliases.max_load_factor(3.0F);
    store().setData(entries);
    EXPECT_EQ(store().m_aliases.max_load_factor(), 3.0F);
    store().m_serialProperties = {{65535, {4294967295U, 255, 254, 253, 6}}, {1, {}}};
    store().setProvider(65535);
    ConfigurationFile& saved = store();
    const FileContents before = held(saved);
    saved.save();
    EXPECT_EQ(held(saved), before) << "a save changes nothing in the store";
    EXPECT_EQ(m_configuration.read(), expectedStart(before) + expectedAliases(before));
}

TEST_F(StoreSave, TheNextChangeCheckReadsTheFileBack)
{
    ConfigurationFile& saved = store();
    saved.setData({{"TCPIP0::10.0.0.5::INSTR", "dmm"}, {"GPIB0::1::INSTR", ""}});
    saved.m_serialProperties[2].baudrate = 1200;
    saved.save();
    EXPECT_EQ(saved.m_aliases, (Aliases{{"dmm", "TCPIP0::10.0.0.5::INSTR"}}));
    EXPECT_EQ(store().m_aliases, (Aliases{{"DMM", "TCPIP0::10.0.0.5::INSTR"}}));
    EXPECT_EQ(store().m_resources, Resources{"GPIB0::1::INSTR"});
    QvVisa::SSerialProperties port;
    EXPECT_TRUE(store().getSerialProperties(2, port));
    EXPECT_EQ(port.baudrate, 1200U) << "the records are those of the saved file";
}

TEST_F(StoreSave, TheRecordedModificationTimeStaysThatOfTheLastLoad)
{
    support::setModificationTime(file(), 1'500'000'000);
    ConfigurationFile& saved = store();
    saved.setData({{"GPIB0::1::INSTR", "dmm"}});
    saved.save();
    support::setModificationTime(file(), 1'500'000'000);
    EXPECT_EQ(store().m_aliases.count("dmm"), 1U) << "not read back";
    support::setModificationTime(file(), 1'500'000'001);
    EXPECT_EQ(store().m_aliases.count("DMM"), 1U) << "read back";
}

TEST_F(StoreSave, WithoutAPathSearchesForAFileAndElseWritesNothing)
{
    fs::remove(file());
    store().setData({{"GPIB0::1::INSTR", ""}});
    SearchSandbox::takeQueries();
    store().save();
    EXPECT_EQ(SearchSandbox::takeQueries().size(), 4U) << "one search";
    EXPECT_TRUE(fs::is_empty(m_configuration.home().home()));
    EXPECT_EQ(store().m_resources, Resources{"GPIB0::1::INSTR"});

    const fs::path inHome = m_configuration.home().home() / ".quorvane/visa.conf";
    fs::create_directory(inHome.parent_path());
    support::writeFile(inHome, "no header here");
    store().save();
    EXPECT_TRUE(isTheOnlyFile(inHome));
    EXPECT_EQ(support::readFile(inHome), fileWith({"GPIB0::1::INSTR"}));
    // From now on this is the store's file.
    support::writeFile(inHome, m_configuration.header() + "HOME\n");
    support::setModificationTime(inHome, 1);
    EXPECT_EQ(store().m_resources, Resources{"HOME"});
}

TEST_F(StoreSave, OverwritesAFileThatChangedAndCreatesOneThatVanished)
{
    m_configuration.write("GPIB0::1::INSTR\n");
    ConfigurationFile& saved = store();
    support::writeFile(file(), "no header\n");
    saved.save();
    EXPECT_EQ(m_configuration.read(), fileWith({"GPIB0::1::INSTR"}));
    m_configuration.write("GPIB0::2::INSTR\n");
    saved.save();
    EXPECT_EQ(m_configuration.read(), fileWith({"GPIB0::1::INSTR"}));
    fs::remove(file());
    saved.save();
    EXPECT_EQ(m_configuration.read(), fileWith({"GPIB0::1::INSTR"}));
    EXPECT_TRUE(isTheOnlyFile(file()));
}

TEST_F(StoreSave, WritesNothingWhileTheFolderIsGone)
{
    const fs::path path = root() / "folder/visa.conf";
    fs::create_directory(path.parent_path());
    support::writeFile(path, m_configuration.header() + "GPIB0::1::INSTR\n");
    ::setenv("QVVISACONFFILE", path.c_str(), 1);
    store();
    fs::remove_all(path.parent_path());
    store().save();
    EXPECT_FALSE(fs::exists(path.parent_path()));
    EXPECT_EQ(store().m_resources, Resources{"GPIB0::1::INSTR"});

    fs::create_directory(path.parent_path());
    store().save();
    EXPECT_EQ(support::readFile(path), fileWith({"GPIB0::1::INSTR"}));
}

} // namespace
