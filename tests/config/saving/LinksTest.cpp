// SPDX-License-Identifier: MIT
// Which file a save writes when the path is a symbolic link, or becomes one.

#include "config/AtomicFileWrite.h"
#include "tests/config/saving/SavingTest.h"
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/SystemCalls.h"

#include <fcntl.h>
#include <unistd.h>

#include <string>

namespace {

namespace fs = std::filesystem;
using QvVisa::writeFileAtomically;
using support::readFile;
using support::writeFile;

class Links : public SavingTest
{
protected:
    void replaceByLink(const fs::path& target) const
    {
        fs::remove(file());
        fs::create_symlink(target, file());
    }
};

class LinksOfOthers : public Links
{
protected:
    void SetUp() override
    {
        if (!isRoot()) {
            GTEST_SKIP() << "only root can make links of other users";
        }
    }

    fs::path victim() const { return m_home.home() / "victim"; }
};

constexpr uid_t s_attacker = 1234;
constexpr uid_t s_folderOwner = 4321;

struct FollowCase
{
    mode_t folderMode;
    uid_t linkOwner;
    bool isFollowed;
};

TEST_F(LinksOfOthers, InStickyFoldersAreFollowedOnlyIfOnesOwnOrTheFolderOwners)
{
    const FollowCase rows[] = {{01777, s_attacker, false},   {01777, support::ordinaryUser, true},
                               {01777, s_folderOwner, true}, {0777, s_attacker, true},
                               {01775, s_attacker, true},    {01757, s_attacker, false}};
    give(m_home.home(), support::ordinaryUser, support::ordinaryGroup);
    for (const bool exists : {true, false}) {
        for (const FollowCase& row : rows) {
            SCOPED_TRACE(testing::Message() << std::oct << row.folderMode << " link of " << std::dec
                                            << row.linkOwner << " exists " << exists);
            fs::remove(victim());
            if (exists) {
                writeFile(victim(), s_old);
                give(victim(), support::ordinaryUser, support::ordinaryGroup);
            }
            replaceByLink(victim());
            give(file(), row.linkOwner, 0);
            give(folder(), s_folderOwner, 0);
            permit(folder(), row.folderMode);
            EXPECT_EQ(saveAsOrdinaryUser(), row.isFollowed);
            EXPECT_EQ(fs::exists(victim()), exists || row.isFollowed);
            if (fs::exists(victim())) {
                EXPECT_EQ(readFile(victim()), row.isFollowed ? s_new : s_old);
            }
            EXPECT_EQ(names(), Names{"visa.conf"});
        }
    }
}

TEST_F(LinksOfOthers, ToFoldersInStickyFoldersFollowTheSameRule)
{
    writeFile(m_home.home() / "visa.conf", s_old);
    give(m_home.home(), support::ordinaryUser, support::ordinaryGroup);
    give(m_home.home() / "visa.conf", support::ordinaryUser, support::ordinaryGroup);
    fs::create_symlink("../home/.", folder() / "link");
    give(folder(), s_folderOwner, 0);
    permit(folder(), 01777);
    for (const uid_t owner : {s_attacker, uid_t{support::ordinaryUser}}) {
        give(folder() / "link", owner, 0);
        const bool isFollowed = owner != s_attacker;
        EXPECT_EQ(support::asOrdinaryUser(
                      [this] { return writeFileAtomically(folder() / "link/visa.conf", s_new); }),
                  isFollowed);
        EXPECT_EQ(readFile(m_home.home() / "visa.conf"), isFollowed ? s_new : s_old);
    }
}

TEST_F(LinksOfOthers, PutInPlaceDuringASaveAreNotFollowed)
{
    give(folder(), s_folderOwner, 0);
    permit(folder(), 01777);
    int calls = 0;
    for (int number = 1; number == 1 || number <= calls; ++number) {
        writeFile(victim(), s_old);
        fs::remove(file());
        writeFile(file(), s_old);
        const support::SystemCalls intercepted([&](const support::SystemCall& call) {
            if (call.number == number) {
                replaceByLink(victim());
                give(file(), s_attacker, 0);
            }
            return support::CallAnswer();
        });
        save();
        calls = intercepted.count();
        EXPECT_EQ(readFile(victim()), s_old) << "link at call " << number;
    }
    EXPECT_GT(calls, 10);
}

TEST_F(Links, OfDescriptorsLeadToTheFileUnlessItIsDeleted)
{
    const int descriptor = ::open(file().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_GE(descriptor, 0);
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    if (!fs::exists(link)) {
        ::close(descriptor);
        GTEST_SKIP() << "no /proc here";
    }
    const Names before = names();
    fs::rename(file(), folder() / "other");
    EXPECT_TRUE(writeFileAtomically(link, s_old + s_new));
    EXPECT_EQ(readFile(folder() / "other"), s_old + s_new);
    // That save replaced the opened file: it is deleted now.
    const Names kept = names();
    EXPECT_FALSE(writeFileAtomically(link, s_new));
    EXPECT_EQ(names(), kept);
    writeFile(folder() / "other (deleted)", "not this one");
    EXPECT_FALSE(writeFileAtomically(link, s_new));
    EXPECT_EQ(readFile(folder() / "other (deleted)"), "not this one");
    ::close(descriptor);
}

TEST_F(Links, StayLinksAndTheirFileIsReplaced)
{
    const fs::path elsewhere = m_home.home() / "real.conf";
    for (const fs::path& target : {elsewhere, fs::path("../home/real.conf")}) {
        writeFile(elsewhere, s_old);
        permit(elsewhere, 0640);
        replaceByLink(target);
        EXPECT_TRUE(save());
        EXPECT_EQ(fs::read_symlink(file()), target);
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(elsewhere)));
        EXPECT_EQ(readFile(elsewhere), s_new);
        EXPECT_EQ(modeOf(elsewhere), 0640U);
        EXPECT_EQ(names(), Names{"visa.conf"});
    }
}

TEST_F(Links, AreFollowedAsFarAsTheSystemDoes)
{
    // Through two folders, relative to each link's own.
    fs::create_directory(folder() / "sub");
    writeFile(folder() / "sub/real.conf", s_old);
    fs::create_symlink("real.conf", folder() / "sub/link0");
    fs::create_symlink("sub/link0", folder() / "link0");
    for (int i = 1; i < 41; ++i) {
        fs::create_symlink("link" + std::to_string(i - 1), folder() / ("link" + std::to_string(i)));
    }
    int followed = 0;
    for (int i = 0; i < 41; ++i) {
        const fs::path link = folder() / ("link" + std::to_string(i));
        struct stat status = {};
        const bool isReadable = ::stat(link.c_str(), &status) == 0;
        followed += isReadable ? 1 : 0;
        const std::string bytes = "through " + std::to_string(i) + "\n";
        EXPECT_EQ(writeFileAtomically(link, bytes), isReadable) << link;
        EXPECT_EQ(readFile(folder() / "sub/real.conf") == bytes, isReadable) << link;
        EXPECT_TRUE(fs::is_symlink(fs::symlink_status(link))) << link;
    }
    EXPECT_GE(followed, 8) << "as any system must";
}

TEST_F(Links, ThatDangleCreateTheFileTheyName)
{
    replaceByLink("../home/new.conf");
    EXPECT_TRUE(save());
    EXPECT_TRUE(fs::is_symlink(fs::symlink_status(file())));
    EXPECT_EQ(readFile(m_home.home() / "new.conf"), s_new);

    replaceByLink("missing/new.conf");
    EXPECT_FALSE(save());
    EXPECT_EQ(names(), Names{"visa.conf"});
}

TEST_F(Links, InALoopAreLeftAlone)
{
    replaceByLink("other");
    fs::create_symlink("visa.conf", folder() / "other");
    fs::create_symlink("self", folder() / "self");
    EXPECT_FALSE(save());
    EXPECT_FALSE(writeFileAtomically(folder() / "self", s_new));
    EXPECT_EQ(fs::read_symlink(file()), "other");
    EXPECT_EQ(names(), (Names{"visa.conf", "other", "self"}));
}

} // namespace
