// SPDX-License-Identifier: MIT
// Saves within the limits of the system, on unusual folders, and beside other programs.

#include "config/AtomicFileWrite.h"
#include "config/WriteSignals.h"
#include "tests/config/saving/SavingTest.h"
#include "tests/support/Files.h"
#include "tests/support/Mounts.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/SystemCalls.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#endif

#include <cerrno>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using QvVisa::writeFileAtomically;
using support::readFile;
using support::SystemCalls;
using support::writeFile;

class SaveInSystem : public SavingTest
{};

bool replaceWithinLimit(const fs::path& file, std::size_t size, rlim_t limit)
{
    return support::inChildProcess([&] {
        QvVisa::ignoreWriteSignals();
        const struct rlimit limits = {limit, limit};
        if (::setrlimit(RLIMIT_FSIZE, &limits) != 0) {
            ::_exit(1);
        }
        return writeFileAtomically(file, std::string(size, 'n'));
    });
}

TEST_F(SaveInSystem, KeepTheOldFileWhenFilesMayNotGrowThatLong)
{
    fs::remove(file());
    EXPECT_FALSE(replaceWithinLimit(file(), 20'000, 10'000));
    EXPECT_EQ(names(), Names());

    for (const std::size_t oldSize : {std::size_t{100}, std::size_t{30'000}}) {
        const std::string old(oldSize, 'o');
        writeFile(file(), old);
        EXPECT_FALSE(replaceWithinLimit(file(), 20'000, 10'000));
        EXPECT_TRUE(readFile(file()) == old);
        EXPECT_EQ(names(), Names{"visa.conf"});

        fs::create_hard_link(file(), folder() / "second");
        EXPECT_FALSE(replaceWithinLimit(file(), 20'000, 10'000));
        EXPECT_TRUE(readFile(file()) == old) << "overwritten in place";
        EXPECT_EQ(names(), (Names{"second", "visa.conf"}));
        fs::remove(folder() / "second");
    }
    EXPECT_TRUE(replaceWithinLimit(file(), 10'000, 10'000));
    EXPECT_EQ(readFile(file()), std::string(10'000, 'n'));
}

TEST_F(SaveInSystem, WritesToClosedPipesFailWithoutEndingTheProgram)
{
    EXPECT_TRUE(support::inChildProcess([] {
        QvVisa::ignoreWriteSignals();
        int ends[2] = {};
        return ::pipe(ends) == 0 && ::close(ends[0]) == 0 && ::write(ends[1], "x", 1) < 0 &&
               errno == EPIPE;
    }));
}

/// Takes all room but about this much.
void fillFileSystem(const fs::path& folder, std::size_t room)
{
    writeFile(folder / "room", std::string(room, 'r'));
    std::ofstream filler(folder / "filler", std::ios::binary);
    while (filler.write("filler", 6).flush()) {
    }
    fs::remove(folder / "room");
}

TEST_F(SaveInSystem, KeepTheOldFileWhenTheDiskIsFull)
{
    if (!support::inChildProcess([this] { return support::mountSmallFileSystem(folder()); })) {
        GTEST_SKIP() << "this user may not mount a small file system";
    }
    for (const bool isLinked : {false, true}) {
        for (const std::size_t room : {std::size_t{0}, std::size_t{8192}}) {
            EXPECT_TRUE(support::inChildProcess([&] {
                support::mountSmallFileSystem(folder());
                const std::string old(20'000, 'o');
                const std::string bytes(40'000, 'n');
                writeFile(file(), old);
                if (isLinked) {
                    fs::create_hard_link(file(), folder() / "second");
                }
                fillFileSystem(folder(), room);
                const Names before = names();
                const bool isKept = !writeFileAtomically(file(), bytes) &&
                                    readFile(file()) == old && names() == before;
                fs::remove(folder() / "filler");
                return isKept && writeFileAtomically(file(), bytes) && readFile(file()) == bytes;
            })) << (isLinked ? "linked" : "plain")
                << ", room " << room;
        }
    }
}

TEST_F(SaveInSystem, AMountedFileIsOverwrittenInPlace)
{
    const auto mountFile = [this] { return support::mountOverItself(file()); };
    if (!support::inChildProcess(mountFile)) {
        GTEST_SKIP() << "this user may not mount a file";
    }
    const ino_t inode = inodeOf(file());
    EXPECT_TRUE(support::inChildProcess([&] { return mountFile() && save(); }));
    EXPECT_EQ(readFile(file()), s_new);
    EXPECT_EQ(inodeOf(file()), inode);
    EXPECT_EQ(names(), Names{"visa.conf"});
}

#ifdef __linux__
/// Sets the flags of chattr for as long as the object lives.
class FolderFlags
{
public:
    FolderFlags(const fs::path& folder, int flags)
        : m_folder(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
          m_isSet(::ioctl(m_folder, FS_IOC_GETFLAGS, &m_former) == 0 && set(m_former | flags))
    {}
    ~FolderFlags()
    {
        set(m_former);
        ::close(m_folder);
    }
    FolderFlags(const FolderFlags&) = delete;
    FolderFlags& operator=(const FolderFlags&) = delete;

    bool isSet() const { return m_isSet; }

private:
    bool set(int flags) const { return ::ioctl(m_folder, FS_IOC_SETFLAGS, &flags) == 0; }

    int m_folder;
    int m_former = 0;
    bool m_isSet;
};

TEST_F(SaveInSystem, InFoldersThatTakeOrReleaseNoNamesWritesInPlaceWithACopyInHome)
{
    const ino_t inode = inodeOf(file());
    for (const int flags : {FS_IMMUTABLE_FL, FS_APPEND_FL}) {
        writeFile(file(), s_old);
        std::string copied;
        {
            const FolderFlags set(folder(), flags);
            if (!set.isSet()) {
                GTEST_SKIP() << "this user or file system has no such flags";
            }
            const SystemCalls calls([&](const support::SystemCall& call) {
                if (call.name == "ftruncate") {
                    for (const auto& entry : fs::directory_iterator(m_home.home())) {
                        copied += readFile(entry);
                    }
                }
                return support::CallAnswer();
            });
            EXPECT_TRUE(save());
        }
        EXPECT_EQ(readFile(file()), s_new);
        EXPECT_EQ(inodeOf(file()), inode);
        EXPECT_EQ(names(), Names{"visa.conf"});
        EXPECT_EQ(copied, s_new);
        EXPECT_TRUE(fs::is_empty(m_home.home())) << "the copy was left there";
    }
}
#endif

class SaveBesideOthers : public SavingTest
{
protected:
    /// In a child process, which exits with 0 if all saves succeed.
    pid_t startSaving(int first) const
    {
        constexpr int saves = 500;
        const pid_t child = ::fork();
        for (int i = 0; child == 0 && i < saves; ++i) {
            if (!writeFileAtomically(file(), textOf(first + i, s_longest))) {
                ::_exit(1);
            }
        }
        if (child == 0) {
            ::_exit(0);
        }
        return child;
    }

    static constexpr int s_longest = 5'000;
};

TEST_F(SaveBesideOthers, LeaveOneWholeFileToAReaderAtAnyTime)
{
    writeFile(file(), textOf(0, s_longest));
    int reads = 0;
    int broken = 0;
    for (const pid_t writer : {startSaving(1), startSaving(1000)}) {
        ASSERT_GT(writer, 0);
        int status = 0;
        while (::waitpid(writer, &status, WNOHANG) == 0) {
            broken += isWhole(readFile(file())) ? 0 : 1;
            ++reads;
        }
        EXPECT_EQ(status, 0) << "a save failed";
    }
    EXPECT_TRUE(isWhole(readFile(file())));
    EXPECT_EQ(broken, 0) << "of " << reads << " reads";
    EXPECT_GT(reads, 0);
    EXPECT_EQ(names(), Names{"visa.conf"});
}

} // namespace
