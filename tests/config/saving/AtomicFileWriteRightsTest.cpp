// SPDX-License-Identifier: MIT
#include "config/AtomicFileWrite.h"
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TestHome.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using support::readFile;
using support::writeFile;

const std::string s_old = "the old bytes\n";
const std::string s_new = "new\n";

struct stat statusOf(const fs::path& path)
{
    struct stat status = {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status;
}

bool isRoot()
{
    return ::geteuid() == 0;
}

/// A file in a folder, both belonging to whoever saves unless a test says otherwise.
class AtomicFileWriteRights : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(::chmod(m_home.root().c_str(), 0711), 0);
        ASSERT_TRUE(support::asOrdinaryUser([this] {
            return ::access(m_home.root().c_str(), X_OK) == 0;
        })) << "TMPDIR must let ordinary users pass";
        writeFile(file(), s_old);
        if (isRoot()) {
            give(folder(), support::ordinaryUser, support::ordinaryGroup);
            give(file(), support::ordinaryUser, support::ordinaryGroup);
        }
    }

    static void give(const fs::path& path, uid_t user, gid_t group)
    {
        ASSERT_EQ(::chown(path.c_str(), user, group), 0);
    }

    static void permit(const fs::path& path, mode_t mode)
    {
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
    }

    bool save(const std::vector<gid_t>& groups = {}) const
    {
        return support::asOrdinaryUser(
            [this] { return QvVisa::writeFileAtomically(file(), s_new); }, groups);
    }

    std::ptrdiff_t count() const
    {
        return std::distance(fs::directory_iterator(folder()), fs::directory_iterator());
    }

    fs::path folder() const { return m_home.workingFolder(); }
    fs::path file() const { return folder() / "visa.conf"; }

    support::TestHome m_home;
};

TEST_F(AtomicFileWriteRights, LeaveAFileAloneThatMayNotBeWritten)
{
    permit(file(), 0444);
    const ino_t inode = statusOf(file()).st_ino;
    EXPECT_FALSE(save());
    EXPECT_EQ(readFile(file()), s_old);
    EXPECT_EQ(statusOf(file()).st_ino, inode);
    EXPECT_EQ(statusOf(file()).st_mode & 07777U, 0444U);
    EXPECT_EQ(count(), 1);
}

TEST_F(AtomicFileWriteRights, LeaveAFileAloneThatCannotBeReached)
{
    permit(folder(), 0600);
    EXPECT_FALSE(save());
    permit(folder(), 0700);
    EXPECT_EQ(readFile(file()), s_old);
}

TEST_F(AtomicFileWriteRights, MakeNoFileInAFolderThatTakesNone)
{
    fs::remove(file());
    permit(folder(), 0555);
    EXPECT_FALSE(save());
    EXPECT_EQ(count(), 0);
    permit(folder(), 0755);
}

TEST_F(AtomicFileWriteRights, OverwriteInAFolderThatTakesNoNewFile)
{
    permit(folder(), 0555);
    const ino_t inode = statusOf(file()).st_ino;
    EXPECT_TRUE(save());
    EXPECT_EQ(readFile(file()), s_new);
    EXPECT_EQ(statusOf(file()).st_ino, inode);
    EXPECT_EQ(count(), 1);
    permit(folder(), 0755);
}

TEST_F(AtomicFileWriteRights, ReplaceAFileThatMayNotBeRead)
{
    permit(file(), 0222);
    EXPECT_TRUE(save());
    EXPECT_EQ(statusOf(file()).st_mode & 07777U, 0222U);
    permit(file(), 0600);
    EXPECT_EQ(readFile(file()), s_new);
}

TEST_F(AtomicFileWriteRights, OverwriteNothingThatCouldNotBePutBack)
{
    permit(file(), 0222);
    fs::create_hard_link(file(), folder() / "second");
    EXPECT_FALSE(save());
    permit(file(), 0600);
    EXPECT_EQ(readFile(file()), s_old);
}

TEST_F(AtomicFileWriteRights, OverwriteAnothersFileInASharedFolder)
{
    if (!isRoot()) {
        GTEST_SKIP() << "only root can make a file of another user";
    }
    // Like /tmp: everyone may make files, but not put one in the place of another's.
    give(folder(), 0, 0);
    permit(folder(), 01777);
    give(file(), 0, 0);
    permit(file(), 0666);
    const ino_t inode = statusOf(file()).st_ino;
    EXPECT_TRUE(save());
    EXPECT_EQ(readFile(file()), s_new);
    EXPECT_EQ(statusOf(file()).st_ino, inode);
    EXPECT_EQ(statusOf(file()).st_uid, 0U);
    EXPECT_EQ(count(), 1) << "the temporary file stayed";
}

} // namespace
