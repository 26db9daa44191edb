// SPDX-License-Identifier: MIT
#include "tests/config/store/StoreTest.h"
#include "tests/support/Files.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>

namespace {

namespace fs = std::filesystem;

class StoreLoad : public StoreTest
{
protected:
    const std::string m_header = support::ConfigurationFixture::header();
};

TEST_F(StoreLoad, ReadsTheFileOnFirstUse)
{
    m_configuration.write(s_lines);
    EXPECT_EQ(held(store()), contentsOfLines());
    EXPECT_EQ(SearchSandbox::takeQueries(), std::vector<std::string>{file()});
    EXPECT_EQ(&store(), &store());
    EXPECT_EQ(&store(), QvVisa::ConfigurationFile::getInstanceUnsafe());
}

TEST_F(StoreLoad, WithoutAFileEverythingIsEmptyUntilLoadFindsOne)
{
    fs::remove(file());
    EXPECT_EQ(held(store()), FileContents());
    EXPECT_EQ(SearchSandbox::takeQueries().size(), 8U) << "two searches, each of four places";
    EXPECT_TRUE(store().getAllResources().empty());

    m_configuration.write(s_lines);
    EXPECT_EQ(held(store()), FileContents());
    EXPECT_TRUE(SearchSandbox::takeQueries().empty()) << "a change check does not search";
    store().load();
    EXPECT_EQ(held(store()), contentsOfLines());
}

TEST_F(StoreLoad, KeepsThePathThatItFound)
{
    ::unsetenv("QVVISACONFFILE");
    const fs::path inHome = m_configuration.home().home() / ".quorvane/visa.conf";
    fs::create_directory(inHome.parent_path());
    fs::rename(file(), inHome);
    store();
    // The working folder has precedence, but not for a store that has its path.
    support::writeFile(m_configuration.home().workingFolder() / "visa.conf", m_header + "WORK\n");
    support::writeFile(inHome, m_header + "HOME\n");
    EXPECT_EQ(store().m_resources, Resources{"HOME"});
}

TEST_F(StoreLoad, AFileWithoutHeaderIsIgnoredAndTriedAtEachChangeCheck)
{
    write(s_lines, 2'000'000'000);
    EXPECT_EQ(held(store()), FileContents());
    // A failed load records no time, so the same second counts as a change.
    write(m_header + s_lines, 2'000'000'000);
    EXPECT_EQ(held(store()), contentsOfLines());
    for (const std::string& bytes : {std::string("OTHER\n"), std::string()}) {
        write(bytes, 2'000'000'001);
        EXPECT_EQ(held(store()), contentsOfLines());
    }
    write(m_header + "OTHER\n", 2'000'000'001);
    EXPECT_EQ(store().m_resources, Resources{"OTHER"});
}

TEST_F(StoreLoad, KeepsEverythingWhileThePathIsNoReadableFile)
{
    m_configuration.write(s_lines);
    EXPECT_EQ(held(store()), contentsOfLines());
    fs::remove(file());
    EXPECT_EQ(held(store()), contentsOfLines()) << "no file";
    store().load();
    EXPECT_EQ(held(store()), contentsOfLines()) << "no file";

    // An open that waited for the pipe's writer would hang.
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    EXPECT_EQ(held(store()), contentsOfLines()) << "pipe";
    fs::remove(file());

    m_configuration.write("BACK\n");
    EXPECT_EQ(store().m_resources, Resources{"BACK"});
    fs::remove_all(root());
    EXPECT_EQ(store().m_resources, Resources{"BACK"}) << "no folder";
}

TEST_F(StoreLoad, AnotherModificationTimeIsAChange)
{
    store();
    for (const std::int64_t seconds : {2'000'000'000, 1, 0, 2'000'000'001}) {
        const std::string resource = "TIME" + std::to_string(seconds);
        write(m_header + resource + '\n', seconds);
        EXPECT_EQ(store().m_resources, Resources{resource});
    }
    write(m_header + "UNSAFE\n", 1'500'000'000);
    EXPECT_EQ(QvVisa::ConfigurationFile::getInstanceUnsafe()->m_resources, Resources{"UNSAFE"});

    // The path may be a link that is changed to another file.
    const fs::path other = root() / "other.conf";
    support::writeFile(other, m_header + "OTHER\n");
    fs::remove(file());
    fs::create_symlink(other, file());
    EXPECT_EQ(store().m_resources, Resources{"OTHER"});
}

TEST_F(StoreLoad, TheSameSecondIsNoChange)
{
    write(m_header + s_lines, 1'500'000'000);
    EXPECT_EQ(held(store()), contentsOfLines());
    store().m_provider = 5;
    store().m_resources = {"SET"};
    // Deliberate: the change check compares seconds.
    support::writeFile(file(), m_header + "OTHER\n");
    const struct timespec times[2] = {{1'500'000'000, 0}, {1'500'000'000, 999'999'999}};
    ASSERT_EQ(::utimensat(AT_FDCWD, file().c_str(), times, 0), 0);
    EXPECT_EQ(store().m_provider, 5);
    EXPECT_EQ(store().m_resources, Resources{"SET"});
    store().load();
    EXPECT_EQ(store().m_resources, Resources{"OTHER"}) << "load() does not compare";
}

TEST_F(StoreLoad, ReplacesAllTablesAndRecords)
{
    m_configuration.write(s_lines);
    store().m_serialProperties[7] = {};
    store().m_aliases["SET"] = "SET";
    m_configuration.write(":SerialProperty[DeviceNo=3].Parity=2\n");
    EXPECT_EQ(held(store()), (FileContents{{}, {}, {{2, {}}}, {{3, {9600, 8, 0, 2, 0}}}, 3674}));
}

} // namespace
