// SPDX-License-Identifier: MIT
#include "tests/config/StoreFixture.h"
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace {

namespace fs = std::filesystem;
using QvVisa::SGpibProperties;
using QvVisa::SSerialProperties;
using Aliases = std::unordered_map<std::string, std::string>;
using Resources = std::vector<std::string>;

constexpr const char* s_firstLines = ":Provider=17\n"
                                     "GPIB0::12::INSTR\n"
                                     "dmm = TCPIP0::10.0.0.5::INSTR\n"
                                     ":GPIBProperty[DeviceNo=2].PrimaryAddress=5\n"
                                     ":SerialProperty[DeviceNo=1].Baudrate=115200\n";

class StoreLoad : public StoreTest
{
protected:
    void writeWithTime(std::string_view bytes, std::int64_t seconds) const
    {
        support::writeFile(file(), bytes);
        support::setModificationTime(file(), seconds);
    }

    static void expectFirstLines(QvVisa::ConfigurationFile& store)
    {
        EXPECT_EQ(store.m_provider, 17);
        EXPECT_EQ(store.m_resources, Resources{"GPIB0::12::INSTR"});
        EXPECT_EQ(store.m_aliases, (Aliases{{"DMM", "TCPIP0::10.0.0.5::INSTR"}}));
        EXPECT_EQ(store.m_serialProperties.size(), 1U);
        EXPECT_EQ(store.m_serialProperties[1].baudrate, 115200U);
        SGpibProperties board;
        EXPECT_TRUE(store.getGpibProperties(2, board));
        EXPECT_EQ(board.primaryAddress, 5);
    }

    static void expectEmpty(const QvVisa::ConfigurationFile& store)
    {
        EXPECT_EQ(store.m_provider, 3674);
        EXPECT_TRUE(store.m_resources.empty());
        EXPECT_TRUE(store.m_aliases.empty());
        EXPECT_TRUE(store.m_serialProperties.empty());
        SGpibProperties board;
        EXPECT_FALSE(store.getGpibProperties(0, board));
    }
};

TEST_F(StoreLoad, ReadsTheFileOnFirstUse)
{
    m_configuration.write(s_firstLines);
    expectFirstLines(store());
    EXPECT_EQ(SearchSandbox::takeQueries(), std::vector<std::string>{file()});
}

TEST_F(StoreLoad, IsOneForTheProcess)
{
    EXPECT_EQ(QvVisa::ConfigurationFile::getInstance(), QvVisa::ConfigurationFile::getInstance());
    EXPECT_EQ(QvVisa::ConfigurationFile::getInstance(),
              QvVisa::ConfigurationFile::getInstanceUnsafe());
}

TEST_F(StoreLoad, StartsEmptyWithoutAFile)
{
    fs::remove(file());
    expectEmpty(store());
    EXPECT_EQ(SearchSandbox::takeQueries().size(), 8U) << "once when made, once when it loads";

    std::string alias = "left over";
    EXPECT_EQ(store().getResource(0, alias), "");
    EXPECT_EQ(alias, "");
    EXPECT_EQ(store().lookupAlias("GPIB0::12::INSTR"), "");
    EXPECT_TRUE(store().getAllResources().empty());
}

TEST_F(StoreLoad, LooksForItsFileAgainOnlyWhenItIsLoaded)
{
    fs::remove(file());
    store();
    m_configuration.write(s_firstLines);
    SearchSandbox::takeQueries();
    expectEmpty(store());
    EXPECT_TRUE(SearchSandbox::takeQueries().empty()) << "the change check needs a path";

    store().load();
    expectFirstLines(store());
}

TEST_F(StoreLoad, StaysWithTheFileItFound)
{
    ::unsetenv("QVVISACONFFILE");
    const fs::path inHome = m_configuration.home().home() / ".quorvane/visa.conf";
    fs::create_directory(inHome.parent_path());
    fs::rename(file(), inHome);
    store();

    const fs::path better = m_configuration.home().workingFolder() / "visa.conf";
    support::writeFile(better, m_configuration.header() + "FROM::WORK\n");
    support::writeFile(inHome, m_configuration.header() + "FROM::HOME\n");
    EXPECT_EQ(store().m_resources, Resources{"FROM::HOME"});
}

TEST_F(StoreLoad, IgnoresAFileWithoutTheHeader)
{
    support::writeFile(file(), s_firstLines);
    expectEmpty(store());
}

TEST_F(StoreLoad, KeepsEverythingWhenTheHeaderIsGone)
{
    m_configuration.write(s_firstLines);
    store();
    writeWithTime("OTHER::INSTR\n", 2'000'000'000);
    expectFirstLines(store());
    support::writeFile(file(), "");
    expectFirstLines(store());
}

TEST_F(StoreLoad, TriesAFileWithoutTheHeaderAtEachCall)
{
    m_configuration.write(s_firstLines);
    store();
    writeWithTime("OTHER::INSTR\n", 2'000'000'000);
    store();
    // The failed attempt recorded no time: the same one again is still another.
    writeWithTime(m_configuration.header() + "OTHER::INSTR\n", 2'000'000'000);
    EXPECT_EQ(store().m_resources, Resources{"OTHER::INSTR"});
}

TEST_F(StoreLoad, TriesAFileThatHadNoHeaderWhenTheStoreWasMade)
{
    writeWithTime(s_firstLines, 2'000'000'000);
    store();
    writeWithTime(m_configuration.header() + s_firstLines, 2'000'000'000);
    expectFirstLines(store());
}

TEST_F(StoreLoad, KeepsEverythingWhenTheFileVanishes)
{
    m_configuration.write(s_firstLines);
    store();
    fs::remove(file());
    expectFirstLines(store());
    store().load();
    expectFirstLines(store());

    m_configuration.write("BACK::INSTR\n");
    EXPECT_EQ(store().m_resources, Resources{"BACK::INSTR"});
}

TEST_F(StoreLoad, KeepsEverythingWhenTheFolderVanishes)
{
    const fs::path folder = m_configuration.home().root() / "folder";
    fs::create_directory(folder);
    support::writeFile(folder / "visa.conf", m_configuration.header() + s_firstLines);
    ::setenv("QVVISACONFFILE", (folder / "visa.conf").c_str(), 1);
    store();
    fs::remove_all(folder);
    expectFirstLines(store());
}

TEST_F(StoreLoad, ReadsAFileWithAnotherTimeAgain)
{
    m_configuration.write(s_firstLines);
    store();
    for (const std::int64_t seconds : {2'000'000'000, 1, 0, 2'000'000'001}) {
        const std::string resource = "TIME::" + std::to_string(seconds);
        writeWithTime(m_configuration.header() + resource + "\n", seconds);
        EXPECT_EQ(store().m_resources, Resources{resource});
    }
    writeWithTime(m_configuration.header() + "UNSAFE::INSTR\n", 1'500'000'000);
    EXPECT_EQ(QvVisa::ConfigurationFile::getInstanceUnsafe()->m_resources,
              Resources{"UNSAFE::INSTR"});
}

TEST_F(StoreLoad, TakesTheSameSecondForTheSameFile)
{
    writeWithTime(m_configuration.header() + s_firstLines, 1'500'000'000);
    store();
    // Deliberate: the resolution of the change check is a second.
    support::writeFile(file(), m_configuration.header() + "OTHER::INSTR\n");
    const struct timespec times[2] = {{1'500'000'000, 0}, {1'500'000'000, 999'999'999}};
    ASSERT_EQ(::utimensat(AT_FDCWD, file().c_str(), times, 0), 0);
    expectFirstLines(store());

    store().load();
    EXPECT_EQ(store().m_resources, Resources{"OTHER::INSTR"}) << "load() does not ask for the time";
}

TEST_F(StoreLoad, KeepsWhatWasSetWhileTheFileStaysTheSame)
{
    store().m_provider = 5;
    store().m_resources = {"SET::INSTR"};
    EXPECT_EQ(store().m_provider, 5);
    EXPECT_EQ(store().m_resources, Resources{"SET::INSTR"});
}

TEST_F(StoreLoad, KeepsEverythingWhenSomethingElseTakesTheFilesPlace)
{
    m_configuration.write(s_firstLines);
    store();
    fs::remove(file());

    // A pipe without a writer: an open that waits for one would hang here.
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    expectFirstLines(store());
    fs::remove(file());

    fs::create_directory(file());
    expectFirstLines(store());
    fs::remove(file());

    for (const char* target : {"/dev/null", "/dev/zero", "visa.conf"}) {
        fs::create_symlink(target, file());
        expectFirstLines(store());
        fs::remove(file());
    }
}

TEST_F(StoreLoad, KeepsEverythingWhenTheFileMayNoLongerBeRead)
{
    m_configuration.write(s_firstLines);
    ASSERT_EQ(::chmod(m_configuration.home().root().c_str(), 0711), 0);
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(file().c_str(), support::ordinaryUser, support::ordinaryGroup), 0);
    }
    EXPECT_TRUE(support::asOrdinaryUser([this] {
        const bool wasRead = store().m_provider == 17;
        return wasRead && ::chmod(file().c_str(), 0) == 0 && store().m_provider == 17 &&
               store().m_resources == Resources{"GPIB0::12::INSTR"};
    }));
}

TEST_F(StoreLoad, ReplacesAllTablesTogether)
{
    m_configuration.write(s_firstLines);
    store().m_serialProperties[7] = SSerialProperties();
    store().m_aliases["SET"] = "SET::INSTR";

    m_configuration.write(":SerialProperty[DeviceNo=3].Parity=2\n");
    EXPECT_EQ(store().m_provider, 3674) << "a file without a provider line";
    EXPECT_TRUE(store().m_resources.empty());
    EXPECT_TRUE(store().m_aliases.empty());
    EXPECT_EQ(store().m_serialProperties.size(), 1U);
    EXPECT_EQ(store().m_serialProperties[3].parity, 2);
    SGpibProperties board;
    EXPECT_TRUE(store().getGpibProperties(2, board));
    EXPECT_EQ(board, SGpibProperties()) << "the earlier file's board is forgotten";
}

TEST_F(StoreLoad, FollowsASymbolicLinkThatIsTurned)
{
    const fs::path first = m_configuration.home().root() / "first.conf";
    const fs::path second = m_configuration.home().root() / "second.conf";
    support::writeFile(first, m_configuration.header() + "FIRST::INSTR\n");
    support::writeFile(second, m_configuration.header() + "SECOND::INSTR\n");
    support::setModificationTime(second, 1'500'000'000);
    fs::remove(file());
    fs::create_symlink(first, file());
    EXPECT_EQ(store().m_resources, Resources{"FIRST::INSTR"});
    fs::remove(file());
    fs::create_symlink(second, file());
    EXPECT_EQ(store().m_resources, Resources{"SECOND::INSTR"});
}

} // namespace
