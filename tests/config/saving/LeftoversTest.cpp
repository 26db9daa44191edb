// SPDX-License-Identifier: MIT
// Temporary files that killed saves leave in the folder.

#include "config/TemporaryFile.h"
#include "tests/config/saving/SavingTest.h"
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/SystemCalls.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace {

namespace fs = std::filesystem;
using support::readFile;
using support::writeFile;

class Leftovers : public SavingTest
{
protected:
    Leftovers()
    {
        if (isRoot()) {
            give(folder(), 0, 0);
            give(file(), 0, 0);
        }
    }

    static std::string nameOf(pid_t process, int number = 0)
    {
        return ".qvvisa-" + std::to_string(process) + "-" + std::to_string(number) + ".tmp";
    }
};

/// The ID of a process that has ended.
pid_t deadProcess()
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(0);
    }
    ::waitpid(child, nullptr, 0);
    return child;
}

TEST_F(Leftovers, OfDeadProcessesAreRemovedByTheNextSave)
{
    const pid_t dead = deadProcess();
    for (const std::string& name : {nameOf(dead), nameOf(dead, 999), nameOf(::getpid())}) {
        writeFile(folder() / name, "left over");
        EXPECT_TRUE(save());
        EXPECT_EQ(names(), Names{"visa.conf"}) << name;
    }
    // After a write in place, too.
    writeFile(folder() / nameOf(dead), "left over");
    fs::create_hard_link(file(), folder() / "second");
    EXPECT_TRUE(save());
    EXPECT_EQ(names(), (Names{"second", "visa.conf"}));
}

TEST_F(Leftovers, AreKeptWhenTheSaveFails)
{
    writeFile(folder() / nameOf(deadProcess()), "perhaps the only whole copy");
    const Names before = names();
    support::writeFile(file(), s_old);
    permit(file(), 0444);
    EXPECT_FALSE(saveAsOrdinaryUser());
    EXPECT_EQ(names(), before);
}

TEST_F(Leftovers, OfOthersAndFilesOfOtherKindsAreKept)
{
    const std::string dead = std::to_string(deadProcess());
    writeFile(folder() / "precious", "precious");
    fs::create_directory(folder() / (".qvvisa-" + dead + "-1.tmp"));
    fs::create_symlink("precious", folder() / (".qvvisa-" + dead + "-2.tmp"));
    fs::create_symlink("missing", folder() / (".qvvisa-" + dead + "-3.tmp"));
    for (const std::string& name :
         {".qvvisa-" + dead + "-4.tm", ".qvvisa-" + dead + ".tmp", "qvvisa-" + dead + "-4.tmp",
          std::string(".qvvisa--4.tmp"), std::string(".qvvisa-0-4.tmp"),
          std::string(".qvvisa-.tmp"), std::string(".qvvisa-99999999999999999999-4.tmp"),
          std::string(".tmp"), nameOf(::getppid())}) {
        writeFile(folder() / name, "not ours");
    }
    if (isRoot()) {
        writeFile(folder() / (".qvvisa-" + dead + "-5.tmp"), "another user's");
        give(folder() / (".qvvisa-" + dead + "-5.tmp"), 1234, 1234);
    }
    const Names before = names();
    EXPECT_TRUE(save());
    EXPECT_EQ(names(), before);
    EXPECT_EQ(readFile(folder() / "precious"), "precious");
}

TEST_F(Leftovers, ThatALivingSaveStillWritesAreKept)
{
    const int descriptor = ::open(folder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (const auto kind :
         {QvVisa::TemporaryFile::Kind::Unnamed, QvVisa::TemporaryFile::Kind::Named}) {
        QvVisa::TemporaryFile file(descriptor, 0600, kind);
        ASSERT_TRUE(file.isOpen());
        ASSERT_TRUE(file.giveName());
        // The lock counts even where the process ID seems to be a dead one's.
        const std::string renamed = nameOf(deadProcess());
        fs::rename(folder() / file.name(), folder() / renamed);
        EXPECT_TRUE(save());
        EXPECT_EQ(names(), (Names{renamed, "visa.conf"}));
        fs::rename(folder() / renamed, folder() / file.name());
    }
    ::close(descriptor);
    EXPECT_EQ(names(), Names{"visa.conf"});
}

TEST_F(Leftovers, ANewFileThatAnotherSaveRemovesAsALeftoverIsMadeAgain)
{
    const ino_t inode = inodeOf(file());
    const support::SystemCalls calls([this, isRemoved = false](const auto& call) mutable {
        if (call.name == "flock" && !isRemoved) {
            isRemoved = fs::remove(folder() / nameOf(::getpid()));
        }
        return support::CallAnswer{call.name == "openat(O_TMPFILE)" ? EOPNOTSUPP : 0};
    });
    EXPECT_TRUE(save());
    EXPECT_EQ(readFile(file()), s_new);
    EXPECT_NE(inodeOf(file()), inode) << "overwritten in place";
    EXPECT_EQ(names(), Names{"visa.conf"});
}

TEST_F(Leftovers, InAllNamesLeadToAWriteInPlace)
{
    // Directories are not removed.
    for (int number = 0; number < 1000; ++number) {
        fs::create_directory(folder() / nameOf(::getpid(), number));
    }
    const ino_t inode = inodeOf(file());
    EXPECT_TRUE(save());
    EXPECT_EQ(readFile(file()), s_new);
    EXPECT_EQ(inodeOf(file()), inode);
    EXPECT_TRUE(fs::is_empty(m_home.home())) << "the copy was left there";
}

} // namespace
