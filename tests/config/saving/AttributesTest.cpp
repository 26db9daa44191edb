// SPDX-License-Identifier: MIT
// Owner, group, rights, access control list and extended attributes of a saved file.

#include "tests/config/saving/SavingTest.h"
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"

#ifdef __linux__
#include <sys/xattr.h>
#endif
#include <unistd.h>

#include <cerrno>
#include <map>
#include <string>

namespace {

namespace fs = std::filesystem;
using support::readFile;

struct OwnerCase
{
    const char* name;
    uid_t owner;
    gid_t group;
    mode_t mode;
    bool savedByRoot;
    bool isReplaced; ///< Else written in place.
    mode_t modeAfter;
};

class Owners : public SavingTest, public testing::WithParamInterface<OwnerCase>
{};

TEST_P(Owners, AndRightsAreKept)
{
    if (!isRoot()) {
        GTEST_SKIP() << "only root can give files away";
    }
    const OwnerCase& row = GetParam();
    give(file(), row.owner, row.group);
    permit(file(), row.mode);
    const ino_t inode = inodeOf(file());
    EXPECT_TRUE(row.savedByRoot ? save() : saveAsOrdinaryUser({100}));
    const struct stat status = statusOf(file());
    EXPECT_EQ(status.st_uid, row.owner);
    EXPECT_EQ(status.st_gid, row.group);
    EXPECT_EQ(status.st_mode & 07777U, row.modeAfter) << std::oct << status.st_mode;
    EXPECT_EQ(status.st_ino != inode, row.isReplaced);
    EXPECT_EQ(readFile(file()), s_new);
    EXPECT_EQ(names(), Names{"visa.conf"});
}

constexpr uid_t s_user = support::ordinaryUser;
constexpr gid_t s_group = support::ordinaryGroup;

INSTANTIATE_TEST_SUITE_P(
    File, Owners,
    testing::Values(OwnerCase{"OfRootsFile", 0, 0, 0640, true, true, 0640},
                    OwnerCase{"OfAnothersFileSavedByRoot", 1234, 5678, 06750, true, true, 06750},
                    OwnerCase{"OfOnesOwnFile", s_user, s_group, 04640, false, true, 04640},
                    OwnerCase{"OfAMembersGroup", s_user, 100, 02664, false, true, 02664},
                    OwnerCase{"OfAGroupWithoutMembership", s_user, 5678, 0664, false, false, 0664},
                    OwnerCase{"OfAnothersFile", 1234, s_group, 0664, false, false, 0664},
                    // The system itself takes set-ID bits from a file that others write.
                    OwnerCase{"WithoutSetIdBits", 1234, 100, 06676, false, false, 0676}),
    [](const auto& row) { return row.param.name; });

#ifdef __linux__

using Attributes = std::map<std::string, std::string>;

const char* const s_list = "system.posix_acl_access";
const char* const s_defaultList = "system.posix_acl_default";

/// The bytes of an access control list as the kernel takes them, for
/// user::rw-, user:1700:rw-, group::---, mask::rw-, other::---.
std::string accessList()
{
    std::string bytes("\2\0\0\0", 4);
    const auto add = [&bytes](char tag, char rights, std::string_view id) {
        bytes.append({tag, '\0', rights, '\0'}).append(id);
    };
    const std::string_view none = "\xff\xff\xff\xff";
    add(0x01, 6, none);
    add(0x02, 6, std::string_view("\xa4\x06\0\0", 4));
    add(0x04, 0, none);
    add(0x10, 6, none);
    add(0x20, 0, none);
    return bytes;
}

Attributes attributesOf(const fs::path& path)
{
    std::string names(4096, '\0');
    const ssize_t length = ::listxattr(path.c_str(), names.data(), names.size());
    EXPECT_GE(length, 0) << path;
    Attributes attributes;
    for (std::size_t i = 0; i < static_cast<std::size_t>(length);) {
        const std::string name = names.c_str() + i;
        std::string value(4096, '\0');
        const ssize_t size = ::getxattr(path.c_str(), name.c_str(), value.data(), value.size());
        value.resize(static_cast<std::size_t>(size));
        attributes[name] = value;
        i += name.size() + 1;
    }
    return attributes;
}

class ExtendedAttributes : public SavingTest
{
protected:
    void SetUp() override
    {
        if (::setxattr(file().c_str(), s_list, accessList().data(), accessList().size(), 0) != 0) {
            GTEST_SKIP() << "this file system has no access control lists";
        }
        ::removexattr(file().c_str(), s_list);
    }

    static void set(const fs::path& path, const char* name, const std::string& value)
    {
        ASSERT_EQ(::setxattr(path.c_str(), name, value.data(), value.size(), 0), 0) << name;
    }
};

TEST_F(ExtendedAttributes, AndAccessListAreKeptByAReplacement)
{
    permit(file(), 0660);
    set(file(), s_list, accessList());
    set(file(), "user.note", "kept");
    set(file(), "user.empty", "");
    for (const std::size_t attributes : {3U, 2U}) {
        const Attributes before = attributesOf(file());
        ASSERT_EQ(before.size(), attributes);
        for (const bool isByRoot : {false, true}) {
            const ino_t inode = inodeOf(file());
            EXPECT_TRUE(isByRoot ? save() : saveAsOrdinaryUser());
            EXPECT_EQ(attributesOf(file()), before);
            EXPECT_EQ(modeOf(file()), 0660U);
            EXPECT_NE(inodeOf(file()), inode);
        }
        ::removexattr(file().c_str(), s_list);
    }
}

TEST_F(ExtendedAttributes, AnInheritedAccessListIsRemoved)
{
    set(folder(), s_defaultList, accessList());
    permit(file(), 0640);
    EXPECT_TRUE(saveAsOrdinaryUser());
    EXPECT_EQ(attributesOf(file()), Attributes());
    EXPECT_EQ(modeOf(file()), 0640U);
    EXPECT_EQ(readFile(file()), s_new);
}

TEST_F(ExtendedAttributes, ANewFileInheritsTheFoldersAccessList)
{
    set(folder(), s_defaultList, accessList());
    fs::remove(file());
    EXPECT_TRUE(saveAsOrdinaryUser());
    EXPECT_EQ(attributesOf(file()), (Attributes{{s_list, accessList()}}));
}

TEST_F(ExtendedAttributes, ThatTheUserMayNotSetAreKeptInPlace)
{
    if (!isRoot()) {
        GTEST_SKIP() << "only root can set such an attribute";
    }
    set(file(), "security.note", "root's");
    set(file(), "user.note", "kept");
    const Attributes before = attributesOf(file());
    const ino_t inode = inodeOf(file());
    EXPECT_TRUE(saveAsOrdinaryUser());
    EXPECT_EQ(attributesOf(file()), before);
    EXPECT_EQ(inodeOf(file()), inode);
    EXPECT_EQ(readFile(file()), s_new);
    EXPECT_EQ(names(), Names{"visa.conf"});
}

#endif

} // namespace
