// SPDX-License-Identifier: MIT
#include "config/AtomicFileWrite.h"

#include "tests/config/saving/SavingTest.h"
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <string>
#include <string_view>

namespace {

namespace fs = std::filesystem;
using QvVisa::writeFileAtomically;
using support::readFile;
using support::writeFile;

class AtomicFileWrite : public SavingTest
{
protected:
    /// Saves under a umask.
    bool save(mode_t mask) const
    {
        const mode_t former = ::umask(mask);
        const bool isSaved = SavingTest::save();
        ::umask(former);
        return isSaved;
    }
};

TEST_F(AtomicFileWrite, ReplacesContentsOfAnyLengthByOthers)
{
    const std::string texts[] = {"", std::string(1, '\0'), s_old, std::string(4096, 'x'),
                                 std::string(3'000'000, '\n')};
    for (const bool isInPlace : {false, true}) {
        if (isInPlace) {
            fs::create_hard_link(file(), folder() / "second");
        }
        for (const std::string& old : texts) {
            for (const std::string& bytes : texts) {
                writeFile(file(), old);
                const ino_t inode = inodeOf(file());
                EXPECT_TRUE(writeFileAtomically(file(), bytes));
                EXPECT_TRUE(readFile(file()) == bytes) << old.size() << " to " << bytes.size();
                EXPECT_EQ(inodeOf(file()) == inode, isInPlace);
            }
        }
    }
    EXPECT_EQ(inodeOf(folder() / "second"), inodeOf(file()));
    EXPECT_EQ(names(), (Names{"second", "visa.conf"}));
}

TEST_F(AtomicFileWrite, CreatesAMissingFileAsTheUmaskSays)
{
    for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{027}, mode_t{077}}) {
        fs::remove(file());
        EXPECT_TRUE(save(mask));
        EXPECT_EQ(readFile(file()), s_new);
        EXPECT_EQ(modeOf(file()), 0666U & ~mask);
        EXPECT_EQ(names(), Names{"visa.conf"});
    }
}

TEST_F(AtomicFileWrite, KeepsTheModeWhateverTheUmask)
{
    for (const mode_t mode : {mode_t{0600}, mode_t{0644}, mode_t{0666}, mode_t{0640}, mode_t{0755},
                              mode_t{0200}, mode_t{01644}}) {
        permit(file(), mode);
        EXPECT_TRUE(save(077));
        EXPECT_EQ(modeOf(file()), mode);
    }
}

TEST_F(AtomicFileWrite, LeavesTheOldFileToItsReaders)
{
    const int reader = ::open(file().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    EXPECT_TRUE(SavingTest::save());
    std::string seen(100, '\0');
    const ssize_t count = ::read(reader, seen.data(), seen.size());
    ::close(reader);
    seen.resize(static_cast<std::size_t>(count));
    EXPECT_EQ(seen, s_old);
}

TEST_F(AtomicFileWrite, DoesNothingWithoutTheFolder)
{
    for (const std::string& path : {(folder() / "missing/visa.conf").string(), std::string(),
                                    std::string("/dev/null/visa.conf"), file().string() + "/"}) {
        EXPECT_FALSE(writeFileAtomically(path, s_new)) << path;
    }
    EXPECT_EQ(readFile(file()), s_old);
    EXPECT_EQ(names(), Names{"visa.conf"});
}

TEST_F(AtomicFileWrite, LeavesFoldersPipesAndDevicesAlone)
{
    fs::remove(file());
    fs::create_directory(folder() / "folder");
    ASSERT_EQ(::mkfifo((folder() / "pipe").c_str(), 0600), 0);
    // A device of the test's own: if this fails as root, the machine keeps its /dev/null.
    const bool hasDevice =
        ::mknod((folder() / "device").c_str(), S_IFCHR | 0666, statusOf("/dev/null").st_rdev) == 0;
    const Names before = names();
    for (const std::string& name : before) {
        EXPECT_FALSE(writeFileAtomically(folder() / name, s_new)) << name;
        fs::create_symlink(name, file());
        EXPECT_FALSE(SavingTest::save()) << "link to " << name;
        fs::remove(file());
    }
    const int reader = ::open((folder() / "pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    EXPECT_FALSE(writeFileAtomically(folder() / "pipe", s_new)) << "a pipe with a reader";
    char byte = 0;
    EXPECT_EQ(::read(reader, &byte, 1), 0) << "bytes came through the pipe";
    ::close(reader);
    EXPECT_EQ(names(), before);
    EXPECT_TRUE(fs::is_empty(folder() / "folder"));
    EXPECT_TRUE(fs::is_fifo(folder() / "pipe"));
    EXPECT_TRUE(!hasDevice || fs::is_character_file(folder() / "device"));
}

TEST_F(AtomicFileWrite, TakesTheLongestNamesAndPaths)
{
    const fs::path longest = folder() / std::string(255, 'n');
    EXPECT_TRUE(writeFileAtomically(longest, s_old));
    EXPECT_TRUE(writeFileAtomically(longest, s_new));
    EXPECT_EQ(readFile(longest), s_new);
    EXPECT_FALSE(writeFileAtomically(longest.string() + "n", s_new));

    // One byte is left for the final zero.
    constexpr std::size_t folderSize = PATH_MAX - 1 - std::string_view("/abc").size();
    fs::path deep = folder();
    while (deep.string().size() + 202 < folderSize) {
        deep /= std::string(100, 'd');
    }
    deep /= std::string(folderSize - deep.string().size() - 1, 'd');
    fs::create_directories(deep);
    const std::string path = deep / "abc";
    ASSERT_EQ(path.size(), PATH_MAX - 1U);
    writeFile(path, s_old);
    const ino_t inode = inodeOf(path);
    EXPECT_TRUE(writeFileAtomically(path, s_new));
    EXPECT_EQ(readFile(path), s_new);
    EXPECT_NE(inodeOf(path), inode) << "overwritten in place";
}

TEST_F(AtomicFileWrite, TakesAPathWithoutAFolder)
{
    EXPECT_TRUE(writeFileAtomically("visa.conf", s_new));
    EXPECT_EQ(readFile(file()), s_new);
    fs::create_symlink("visa.conf", "link");
    EXPECT_TRUE(writeFileAtomically("link", s_old));
    EXPECT_EQ(readFile(file()), s_old);
    EXPECT_EQ(names(), (Names{"link", "visa.conf"}));
}

TEST_F(AtomicFileWrite, HoldsNoFileOpen)
{
    const int before = ::dup(0);
    ::close(before);
    SavingTest::save();
    fs::create_hard_link(file(), folder() / "second");
    SavingTest::save();
    writeFileAtomically(folder(), s_old);
    const int after = ::dup(0);
    ::close(after);
    EXPECT_EQ(after, before) << "the lowest free descriptor is another";
}

TEST_F(AtomicFileWrite, LeavesALinkedFileAloneThatIsTooLargeToRestore)
{
    fs::create_hard_link(file(), folder() / "second");
    // Mostly a hole: it takes no room.
    constexpr off_t size = off_t{1} << 43;
    if (::truncate(file().c_str(), size) != 0) {
        GTEST_SKIP() << "this file system has no files of 8 TiB";
    }
    EXPECT_FALSE(SavingTest::save());
    EXPECT_EQ(statusOf(file()).st_size, size);
}

/// Rights of the file and its folder, and what a save by the ordinary user does.
struct RightsCase
{
    const char* name;
    mode_t folderMode;
    mode_t fileMode; ///< 0: there is no file.
    bool isLinked;
    bool isSaved;
    bool isReplaced;
};

class AtomicFileWriteRights : public SavingTest, public testing::WithParamInterface<RightsCase>
{};

TEST_P(AtomicFileWriteRights, DecideWhatASaveDoes)
{
    const RightsCase& row = GetParam();
    const ino_t inode = inodeOf(file());
    if (row.fileMode == 0) {
        fs::remove(file());
    } else {
        permit(file(), row.fileMode);
    }
    if (row.isLinked) {
        fs::create_hard_link(file(), folder() / "second");
    }
    const Names before = names();
    permit(folder(), row.folderMode);
    EXPECT_EQ(saveAsOrdinaryUser(), row.isSaved);
    permit(folder(), 0755);
    EXPECT_EQ(names(), before);
    if (row.fileMode != 0) {
        EXPECT_EQ(modeOf(file()), row.fileMode);
        EXPECT_EQ(inodeOf(file()) != inode, row.isReplaced);
        permit(file(), 0600);
        EXPECT_EQ(readFile(file()), row.isSaved ? s_new : s_old);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, AtomicFileWriteRights,
    testing::Values(RightsCase{"AWritableFile", 0755, 0600, false, true, true},
                    RightsCase{"AReadOnlyFile", 0755, 0444, false, false, false},
                    RightsCase{"AFolderThatCannotBeEntered", 0600, 0600, false, false, false},
                    RightsCase{"AReadOnlyFolderWithoutTheFile", 0555, 0, false, false, false},
                    RightsCase{"AReadOnlyFolder", 0555, 0600, false, true, false},
                    RightsCase{"AnUnreadableFolder", 0311, 0600, false, true, true},
                    RightsCase{"AnUnreadableFile", 0755, 0222, false, true, true},
                    RightsCase{"AnUnreadableLinkedFile", 0755, 0222, true, false, false}),
    [](const auto& row) { return row.param.name; });

TEST_F(AtomicFileWrite, OverwritesAnothersFileInASharedFolder)
{
    if (!isRoot()) {
        GTEST_SKIP() << "only root can make a file of another user";
    }
    // Like /tmp: everyone may create files, but not replace those of others.
    give(folder(), 0, 0);
    permit(folder(), 01777);
    give(file(), 0, support::ordinaryGroup);
    permit(file(), 0666);
    const ino_t inode = inodeOf(file());
    EXPECT_TRUE(saveAsOrdinaryUser());
    EXPECT_EQ(readFile(file()), s_new);
    EXPECT_EQ(inodeOf(file()), inode);
    EXPECT_EQ(statusOf(file()).st_uid, 0U);
    EXPECT_EQ(names(), Names{"visa.conf"});
}

} // namespace
