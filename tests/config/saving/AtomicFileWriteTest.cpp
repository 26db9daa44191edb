// SPDX-License-Identifier: MIT
#include "config/AtomicFileWrite.h"
#include "tests/support/Files.h"
#include "tests/support/TestHome.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>

namespace {

namespace fs = std::filesystem;
using QvVisa::writeFileAtomically;
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

mode_t modeOf(const fs::path& path)
{
    return statusOf(path).st_mode & 07777;
}

class AtomicFileWrite : public testing::Test
{
protected:
    fs::path folder() const { return m_home.workingFolder(); }
    fs::path file() const { return folder() / "visa.conf"; }

    std::set<std::string> names() const
    {
        std::set<std::string> found;
        for (const auto& entry : fs::directory_iterator(folder())) {
            found.insert(entry.path().filename());
        }
        return found;
    }

    support::TestHome m_home;
};

using Names = std::set<std::string>;

TEST_F(AtomicFileWrite, PutsNewBytesOfAnyLengthInPlaceOfOldOnesOfAny)
{
    std::set<std::string> texts = {"", std::string(1, '\0'), s_old, std::string(4096, 'x'),
                                   std::string(3'000'000, '\n')};
    for (const std::string& old : texts) {
        for (const std::string& bytes : texts) {
            writeFile(file(), old);
            EXPECT_TRUE(writeFileAtomically(file(), bytes));
            EXPECT_EQ(readFile(file()).size(), bytes.size());
            EXPECT_TRUE(readFile(file()) == bytes) << bytes.size() << " bytes";
            EXPECT_EQ(names(), Names{"visa.conf"});
        }
    }
}

TEST_F(AtomicFileWrite, MakesAFileThatIsNotThereAsTheUmaskSays)
{
    for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{027}, mode_t{077}}) {
        fs::remove(file());
        const mode_t former = ::umask(mask);
        const bool isReplaced = writeFileAtomically(file(), s_new);
        ::umask(former);
        EXPECT_TRUE(isReplaced);
        EXPECT_EQ(readFile(file()), s_new);
        EXPECT_EQ(modeOf(file()), 0666U & ~mask);
        EXPECT_EQ(names(), Names{"visa.conf"});
    }
}

TEST_F(AtomicFileWrite, KeepsTheModeWhateverTheUmaskSays)
{
    for (const mode_t mode : {mode_t{0600}, mode_t{0644}, mode_t{0666}, mode_t{0640}, mode_t{0755},
                              mode_t{0200}, mode_t{01644}}) {
        fs::remove(file());
        writeFile(file(), s_old);
        ASSERT_EQ(::chmod(file().c_str(), mode), 0);
        const mode_t former = ::umask(077);
        const bool isReplaced = writeFileAtomically(file(), s_new);
        ::umask(former);
        EXPECT_TRUE(isReplaced);
        EXPECT_EQ(modeOf(file()), mode);
        ASSERT_EQ(::chmod(file().c_str(), 0600), 0);
        EXPECT_EQ(readFile(file()), s_new);
    }
}

TEST_F(AtomicFileWrite, LeavesTheOldFileToThoseWhoReadIt)
{
    writeFile(file(), s_old);
    const int reader = ::open(file().c_str(), O_RDONLY);
    ASSERT_GE(reader, 0);
    EXPECT_TRUE(writeFileAtomically(file(), s_new));
    std::string seen(100, '\0');
    const ssize_t count = ::read(reader, seen.data(), seen.size());
    struct stat held = {};
    EXPECT_EQ(::fstat(reader, &held), 0);
    ::close(reader);
    seen.resize(static_cast<std::size_t>(count));
    EXPECT_EQ(seen, s_old);
    EXPECT_NE(held.st_ino, statusOf(file()).st_ino);
    EXPECT_EQ(held.st_nlink, 0U);
}

TEST_F(AtomicFileWrite, WritesThroughToAllNamesOfALinkedFile)
{
    const std::string texts[] = {"", s_new, s_old, std::string(300'000, 'l')};
    for (const std::string& old : texts) {
        for (const std::string& bytes : texts) {
            fs::remove(file());
            fs::remove(folder() / "second");
            writeFile(file(), old);
            fs::create_hard_link(file(), folder() / "second");
            const ino_t inode = statusOf(file()).st_ino;
            EXPECT_TRUE(writeFileAtomically(file(), bytes));
            EXPECT_TRUE(readFile(file()) == bytes) << old.size() << " to " << bytes.size();
            EXPECT_TRUE(readFile(folder() / "second") == bytes);
            EXPECT_EQ(statusOf(file()).st_ino, inode);
            EXPECT_EQ(statusOf(folder() / "second").st_ino, inode);
            EXPECT_EQ(names(), (Names{"second", "visa.conf"}));
        }
    }
}

TEST_F(AtomicFileWrite, DoesNothingWithoutTheFolder)
{
    EXPECT_FALSE(writeFileAtomically(folder() / "missing/visa.conf", s_new));
    EXPECT_FALSE(writeFileAtomically("", s_new));
    EXPECT_FALSE(writeFileAtomically("/dev/null/visa.conf", s_new));
    EXPECT_EQ(names(), Names());
}

TEST_F(AtomicFileWrite, LeavesFoldersAndPipesAlone)
{
    fs::create_directory(file());
    EXPECT_FALSE(writeFileAtomically(file(), s_new));
    EXPECT_FALSE(writeFileAtomically(file().string() + "/", s_new));
    EXPECT_TRUE(fs::is_empty(file()));
    fs::remove(file());

    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    EXPECT_FALSE(writeFileAtomically(file(), s_new)) << "a pipe without a reader";
    const int reader = ::open(file().c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    EXPECT_FALSE(writeFileAtomically(file(), s_new)) << "a pipe with a reader";
    char byte = 0;
    EXPECT_EQ(::read(reader, &byte, 1), 0) << "bytes came through the pipe";
    ::close(reader);
    EXPECT_TRUE(fs::is_fifo(file()));
    fs::remove(file());
    EXPECT_EQ(names(), Names());
}

TEST_F(AtomicFileWrite, LeavesDevicesAlone)
{
    // Devices of the test's own: if this fails as root, the machine keeps its /dev/null.
    const fs::path device = folder() / "device";
    const struct stat model = statusOf("/dev/null");
    if (::mknod(device.c_str(), S_IFCHR | 0666, model.st_rdev) != 0) {
        GTEST_SKIP() << "this user may make no devices here";
    }
    EXPECT_FALSE(writeFileAtomically(device, s_new));
    fs::create_symlink(device, file());
    EXPECT_FALSE(writeFileAtomically(file(), s_new));
    EXPECT_TRUE(fs::is_character_file(device));
    EXPECT_EQ(names(), (Names{"device", "visa.conf"}));
}

TEST_F(AtomicFileWrite, TakesTheLongestNames)
{
    const fs::path longest = folder() / std::string(255, 'n');
    EXPECT_TRUE(writeFileAtomically(longest, s_old));
    EXPECT_TRUE(writeFileAtomically(longest, s_new));
    EXPECT_EQ(readFile(longest), s_new);
    EXPECT_FALSE(writeFileAtomically(longest.string() + "n", s_new));
    EXPECT_EQ(names(), Names{longest.filename()});
}

TEST_F(AtomicFileWrite, ReplacesAFileAtTheLongestPath)
{
    // One byte is left for the ending zero.
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
    const ino_t inode = statusOf(path).st_ino;
    EXPECT_TRUE(writeFileAtomically(path, s_new));
    EXPECT_EQ(readFile(path), s_new);
    EXPECT_NE(statusOf(path).st_ino, inode) << "overwritten in place";
}

TEST_F(AtomicFileWrite, TakesAPathWithoutAFolder)
{
    EXPECT_TRUE(writeFileAtomically("visa.conf", s_old));
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
    writeFileAtomically(file(), s_old);
    writeFileAtomically(file(), s_new);
    fs::create_hard_link(file(), folder() / "second");
    writeFileAtomically(file(), s_old);
    writeFileAtomically(folder(), s_old);
    const int after = ::dup(0);
    ::close(after);
    EXPECT_EQ(after, before) << "the lowest free descriptor is another";
}

TEST_F(AtomicFileWrite, LeavesAFileAloneThatIsTooLargeToPutAside)
{
    writeFile(file(), s_old);
    fs::create_hard_link(file(), folder() / "second");
    // Mostly a hole: it takes no room.
    constexpr off_t size = off_t{1} << 43;
    if (::truncate(file().c_str(), size) != 0) {
        GTEST_SKIP() << "this file system has no files of 8 TiB";
    }
    EXPECT_FALSE(writeFileAtomically(file(), s_new));
    EXPECT_EQ(statusOf(file()).st_size, size);
}

} // namespace
