// SPDX-License-Identifier: MIT
#include "tests/doctor/DoctorFixture.h"

#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#ifndef __APPLE__
#include <linux/fs.h>
#include <sys/mount.h>
#endif

#include <cstdlib>
#include <iostream>

namespace {

using namespace QvVisa;
using std::filesystem::perms;

class FileWrite : public support::DoctorFixture
{
protected:
    const std::string m_writable = "ok: This user can write the file.\n";
    const std::string m_replaced = "ok: A save replaces the file as a whole.\n";

    /// The file belongs to the ordinary user, who may write its folder.
    void giveToOrdinaryUser(gid_t group = support::ordinaryGroup) const
    {
        writeFile();
        std::filesystem::permissions(file().parent_path(), perms::all);
        if (::geteuid() == 0) {
            ASSERT_EQ(::chown(file().c_str(), support::ordinaryUser, group), 0);
        }
    }

    bool finds(const std::string& check, const std::string& expected) const
    {
        const std::string found = results(check);
        if (found != expected) {
            std::cout << "expected: " << expected << "found: " << found << std::flush;
        }
        return found == expected;
    }
};

TEST_F(FileWrite, WritableFileIsOk)
{
    giveToOrdinaryUser();
    EXPECT_TRUE(ordinaryUserFinds("file.write", m_writable));
    EXPECT_TRUE(ordinaryUserFinds("file.how", m_replaced));
}

TEST_F(FileWrite, RightsOfAnOwnFileAreRepairedWithChmod)
{
    giveToOrdinaryUser();
    std::filesystem::permissions(file(), perms::owner_read);
    EXPECT_TRUE(ordinaryUserFinds("file.write",
                                  "problem: FOLDER/home/.quorvane/visa.conf may not be written: "
                                  "its rights are 0400.\n"));
    EXPECT_TRUE(ordinaryUserFinds("file.how",
                                  "note: The file is not written at all; file.write says why.\n"));
}

TEST_F(FileWrite, FileOfAnotherUserNamesItsOwner)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs a file of another user";
    }
    writeFile();
    EXPECT_TRUE(ordinaryUserFinds("file.write",
                                  "problem: FOLDER/home/.quorvane/visa.conf may not be written by "
                                  "this user: it belongs to root, its rights are 0644.\n"));
}

TEST_F(FileWrite, FileOfAnotherUserOutsideHomeIsAWarning)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs a file of another user";
    }
    m_fileOption = writeFile().string();
    ::setenv("HOME", "/nowhere", 1);
    EXPECT_TRUE(ordinaryUserFinds("file.write",
                                  "warning: FOLDER/home/.quorvane/visa.conf may not be written by "
                                  "this user: it belongs to root, its rights are 0644.\n"));
}

TEST_F(FileWrite, SeveralReasonsForInPlaceAreOneNote)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs a group that this user is not in";
    }
    giveToOrdinaryUser(0);
    std::filesystem::create_hard_link(file(), m_home.root() / "other.conf");
    EXPECT_TRUE(ordinaryUserFinds(
        "file.how", "note: A save overwrites the file in place, since it has 2 names (hard links) "
                    "and this user is not in its group, root; a power cut may tear it.\n"));
}

TEST_F(FileWrite, WritableFileOfAnotherUserIsWrittenInPlace)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs a file of another user";
    }
    writeFile();
    std::filesystem::permissions(file(), perms::all);
    std::filesystem::permissions(file().parent_path(), perms::all);
    EXPECT_TRUE(ordinaryUserFinds("file.how",
                                  "note: A save overwrites the file in place, since a new file "
                                  "would not belong to root, its owner; a power cut may tear "
                                  "it.\n"));
}

TEST_F(FileWrite, GroupThatThisUserIsNotInIsKeptByWritingInPlace)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs a group that this user is not in";
    }
    giveToOrdinaryUser(0);
    EXPECT_TRUE(ordinaryUserFinds("file.how",
                                  "note: A save overwrites the file in place, since this user is "
                                  "not in its group, root; a power cut may tear it.\n"));
    EXPECT_TRUE(support::asOrdinaryUser([this] { return finds("file.how", m_replaced); }, {0}));
}

TEST_F(FileWrite, FolderThatTakesNoNewFileIsNoted)
{
    giveToOrdinaryUser();
    std::filesystem::permissions(file().parent_path(), perms::owner_read | perms::owner_exec |
                                                           perms::others_read | perms::others_exec);
    EXPECT_TRUE(ordinaryUserFinds(
        "file.how", "note: A save overwrites the file in place, since its folder "
                    "FOLDER/home/.quorvane takes no new file from this user; a power cut may "
                    "tear it.\n"));
}

TEST_F(FileWrite, HardLinksAreNoted)
{
    writeFile();
    std::filesystem::create_hard_link(file(), m_home.root() / "other.conf");
    EXPECT_EQ(remedies("file.how"),
              "note: A save overwrites the file in place, since it has 2 names (hard links); a "
              "power cut may tear it. -> To separate it from the others: cp -p "
              "FOLDER/home/.quorvane/visa.conf FOLDER/home/.quorvane/visa.conf.new "
              "&& mv FOLDER/home/.quorvane/visa.conf.new FOLDER/home/.quorvane/visa.conf\n");
    EXPECT_EQ(results("file.link"), "note: The file has 2 names (hard links): a save changes what "
                                    "all of them show.\n");
}

TEST_F(FileWrite, FileWithOneNameIsOk)
{
    writeFile();
    EXPECT_EQ(results("file.link"), "ok: The file has one name, and no link leads to it.\n");
}

TEST_F(FileWrite, SymbolicLinkIsNotedWithItsTarget)
{
    m_fileOption = (m_home.root() / "link.conf").string();
    std::filesystem::create_symlink(writeFile(), *m_fileOption);
    EXPECT_EQ(results("file.link"),
              "note: FOLDER/link.conf is a symbolic link to FOLDER/home/.quorvane/visa.conf; a "
              "save writes that file, and the link stays.\n");
    EXPECT_EQ(results("file.write"), m_writable);
}

TEST_F(FileWrite, LinkOfAnotherUserInASharedFolderIsNotFollowed)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs a link of another user";
    }
    giveToOrdinaryUser();
    const std::filesystem::path shared = m_home.root() / "everyones";
    std::filesystem::create_directory(shared);
    std::filesystem::permissions(shared, perms::all | perms::sticky_bit);
    ASSERT_EQ(::chown(shared.c_str(), support::ordinaryUser, support::ordinaryGroup), 0);
    m_fileOption = (shared / "link.conf").string();
    std::filesystem::create_symlink(file(), *m_fileOption);
    ASSERT_EQ(::lchown(m_fileOption->c_str(), 1, 1), 0);
    EXPECT_EQ(results("file.link"),
              "problem: The links of FOLDER/everyones/link.conf are not followed by a save: one of "
              "them, in a folder that everyone may write, belongs to another user.\n");
    EXPECT_EQ(results("file.write"),
              "problem: FOLDER/everyones/link.conf cannot be written: permission denied.\n");
}

#ifndef __APPLE__
TEST_F(FileWrite, ImmutableFileIsAProblem)
{
    const int descriptor = ::open(writeFile().c_str(), O_RDONLY);
    int flags = FS_IMMUTABLE_FL;
    if (::ioctl(descriptor, FS_IOC_SETFLAGS, &flags) != 0) {
        ::close(descriptor);
        GTEST_SKIP() << "this user or file system cannot make files immutable";
    }
    const std::string found = remedies("file.write");
    flags = 0;
    EXPECT_EQ(::ioctl(descriptor, FS_IOC_SETFLAGS, &flags), 0);
    ::close(descriptor);
    EXPECT_EQ(found, "problem: FOLDER/home/.quorvane/visa.conf is immutable: nobody can write it, "
                     "not even root. -> sudo chattr -i FOLDER/home/.quorvane/visa.conf\n");
}

TEST_F(FileWrite, ReadOnlyFileSystemIsAProblem)
{
    writeFile();
    const std::string folder = m_home.home().string();
    const auto isFound = support::withOwnMounts([&] {
        return ::mount(folder.c_str(), folder.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
               ::mount(nullptr, folder.c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY,
                       nullptr) == 0 &&
               finds("file.write", "problem: FOLDER/home/.quorvane/visa.conf is on a file system "
                                   "that is mounted read-only.\n");
    });
    if (!isFound) {
        GTEST_SKIP() << "no mount namespace";
    }
    EXPECT_TRUE(*isFound);
}

TEST_F(FileWrite, FileSystemWithoutSpaceIsAProblem)
{
    const std::string folder = m_home.home().string();
    const auto isFound = support::withOwnMounts([&] {
        if (::mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=16k") != 0) {
            return false;
        }
        writeFile();
        return finds("file.write", "problem: The file system of FOLDER/home/.quorvane has 12.2 kB "
                                   "left; a save needs 65.5 kB.\n");
    });
    if (!isFound) {
        GTEST_SKIP() << "no mount namespace";
    }
    EXPECT_TRUE(*isFound);
}

TEST_F(FileWrite, MountPointIsWrittenInPlace)
{
    writeFile();
    const std::string path = file().string();
    const auto isFound = support::withOwnMounts([&] {
        return ::mount(path.c_str(), path.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
               finds("file.how", "note: A save overwrites the file in place, since it is a mount "
                                 "point, as in a container; a power cut may tear it.\n");
    });
    if (!isFound) {
        GTEST_SKIP() << "no mount namespace";
    }
    EXPECT_TRUE(*isFound);
}
#endif

} // namespace
