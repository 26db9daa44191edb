// SPDX-License-Identifier: MIT
#include "command/FileUpdate.h"

#include "command/ConfigurationText.h"
#include "command/ExitCode.h"
#include "tests/support/Files.h"
#include "tests/support/Mounts.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string>

using QvVisa::CommandError;
using QvVisa::ExitCode;
using QvVisa::updateFile;

namespace fs = std::filesystem;

namespace {

const std::string s_old = "old\n";

std::optional<std::string> appendLine(const QvVisa::Document& old)
{
    return old.text() + "new\n";
}

std::optional<std::string> leaveAlone(const QvVisa::Document& /*old*/)
{
    return std::nullopt;
}

class FileUpdate : public testing::Test
{
protected:
    FileUpdate() { support::writeFile(path(), s_old); }

    fs::path path() const { return m_folder.path() / "visa.conf"; }

    struct stat status() const
    {
        struct stat status = {};
        EXPECT_EQ(::stat(path().c_str(), &status), 0);
        return status;
    }

    std::size_t filesInFolder() const
    {
        const fs::directory_iterator files(m_folder.path());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    ExitCode exitCodeOf(const QvVisa::TextUpdate& update) const
    {
        try {
            updateFile(path(), update, std::nullopt);
            return ExitCode::Done;
        } catch (const CommandError& error) {
            return error.code();
        }
    }

    support::TemporaryFolder m_folder;
};

TEST_F(FileUpdate, WritesTheNewTextAndKeepsTheMode)
{
    ASSERT_EQ(::chmod(path().c_str(), 0640), 0);
    EXPECT_EQ(updateFile(path(), appendLine, std::nullopt), std::nullopt);
    EXPECT_EQ(support::readFile(path()), "old\nnew\n");
    EXPECT_EQ(status().st_mode & 07777U, 0640U);
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(FileUpdate, WithoutChangeTouchesNothing)
{
    support::setModificationTime(path(), 1'000'000'000);
    const struct stat before = status();
    EXPECT_EQ(updateFile(path(), leaveAlone, ".old"), std::nullopt);
    const struct stat after = status();
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mtime, before.st_mtime);
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(FileUpdate, ModificationTimeIsAtLeastASecondLater)
{
    const std::time_t now = std::time(nullptr);
    for (const std::time_t old : {std::time_t{1'000'000'000}, now, now + 1000}) {
        support::setModificationTime(path(), old);
        updateFile(path(), appendLine, std::nullopt);
        EXPECT_GE(status().st_mtime, old + 1);
        EXPECT_LE(status().st_mtime, std::max(old + 1, std::time(nullptr)));
    }
}

TEST_F(FileUpdate, LinkStaysOneAndItsTargetIsReplaced)
{
    fs::create_directory(m_folder.path() / "real");
    fs::rename(path(), m_folder.path() / "real" / "other.conf");
    fs::create_symlink("real/other.conf", path());
    const auto backup = updateFile(path(), appendLine, ".bak");
    EXPECT_EQ(fs::read_symlink(path()), "real/other.conf");
    EXPECT_EQ(support::readFile(path()), "old\nnew\n");
    ASSERT_TRUE(backup);
    EXPECT_TRUE(fs::equivalent(*backup, m_folder.path() / "real" / "other.conf.bak"));
    EXPECT_EQ(support::readFile(*backup), s_old);
}

TEST_F(FileUpdate, FolderLinkThatEndsInASlashIsFollowed)
{
    fs::create_symlink(m_folder.path().string() + "/", m_folder.path() / "absolute");
    fs::create_symlink("absolute/", m_folder.path() / "relative");
    updateFile(m_folder.path() / "relative" / "visa.conf", appendLine, std::nullopt);
    EXPECT_EQ(support::readFile(path()), "old\nnew\n");
    fs::create_symlink("visa.conf/", m_folder.path() / "not-a-folder");
    EXPECT_THROW(updateFile(m_folder.path() / "not-a-folder", appendLine, std::nullopt),
                 CommandError);
}

TEST_F(FileUpdate, BackupIsTheOldFileAndReplacesAnOlderOne)
{
    support::writeFile(path().string() + ".old", "older\n");
    const struct stat old = status();
    ASSERT_EQ(updateFile(path(), appendLine, ".old"), path().string() + ".old");
    struct stat backup = {};
    ASSERT_EQ(::stat((path().string() + ".old").c_str(), &backup), 0);
    EXPECT_EQ(backup.st_ino, old.st_ino);
    EXPECT_EQ(backup.st_nlink, 1U);
    EXPECT_EQ(status().st_nlink, 1U);
    EXPECT_EQ(filesInFolder(), 2U);
}

TEST_F(FileUpdate, BackupThatCannotTakeItsNameLeavesTheFileAlone)
{
    fs::create_directory(path().string() + ".old");
    EXPECT_THROW(updateFile(path(), appendLine, ".old"), CommandError);
    EXPECT_EQ(support::readFile(path()), s_old);
    EXPECT_EQ(filesInFolder(), 2U);
    fs::create_hard_link(path(), m_folder.path() / "second");
    EXPECT_THROW(updateFile(path(), appendLine, ".old"), CommandError);
    EXPECT_EQ(support::readFile(path()), s_old) << "in place";
    EXPECT_EQ(filesInFolder(), 3U);
}

TEST_F(FileUpdate, FileWithTwoNamesIsWrittenInPlace)
{
    const fs::path second = m_folder.path() / "second";
    fs::create_hard_link(path(), second);
    ASSERT_EQ(updateFile(path(), appendLine, ".old"), path().string() + ".old");
    EXPECT_EQ(support::readFile(second), "old\nnew\n");
    EXPECT_TRUE(fs::equivalent(path(), second));
    EXPECT_EQ(support::readFile(path().string() + ".old"), s_old);
}

TEST_F(FileUpdate, MountedFileIsWrittenInPlace)
{
    const auto mountFile = [this] { return support::mountOverItself(path()); };
    if (!support::inChildProcess(mountFile)) {
        GTEST_SKIP() << "this user may not mount a file";
    }
    const ino_t inode = status().st_ino;
    EXPECT_TRUE(support::inChildProcess([&] {
        return mountFile() && updateFile(path(), appendLine, ".old") == path().string() + ".old";
    }));
    EXPECT_EQ(support::readFile(path()), "old\nnew\n");
    EXPECT_EQ(status().st_ino, inode);
    EXPECT_EQ(support::readFile(path().string() + ".old"), s_old);
    EXPECT_EQ(filesInFolder(), 2U);
}

TEST_F(FileUpdate, UnwritableFileIsLeftAloneAndReadAllTheSame)
{
    ASSERT_EQ(::chmod(m_folder.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(path().c_str(), 0444), 0);
    EXPECT_TRUE(support::asOrdinaryUser([this] {
        return exitCodeOf(appendLine) == ExitCode::NotWritten &&
               exitCodeOf(leaveAlone) == ExitCode::Done;
    }));
    EXPECT_EQ(support::readFile(path()), s_old);
}

TEST_F(FileUpdate, WhatCannotBeReadIsNoFile)
{
    fs::remove(path());
    EXPECT_EQ(exitCodeOf(appendLine), ExitCode::NoFile);
    fs::create_directory(path());
    EXPECT_EQ(exitCodeOf(appendLine), ExitCode::NoFile);
}

TEST_F(FileUpdate, FileOfMoreThanOneGibibyteIsNoFile)
{
    fs::resize_file(path(), (std::uintmax_t{1} << 30U) + 1); // Mostly a hole: it takes no room.
    EXPECT_EQ(exitCodeOf(appendLine), ExitCode::NoFile);
    try {
        QvVisa::readWholeFile(path());
        FAIL();
    } catch (const CommandError& error) {
        EXPECT_EQ(error.what(), path().string() + ": File too large");
    }
}

TEST_F(FileUpdate, ChangesByOthersBetweenReadingAndWritingAreNotLost)
{
    int calls = 0;
    updateFile(
        path(),
        [&](const QvVisa::Document& old) {
            if (++calls == 1) {
                support::writeFile(m_folder.path() / "other", "saved by another\n");
                fs::rename(m_folder.path() / "other", path());
            } else if (calls == 2) {
                support::writeFile(path(), "written in place\n");
            }
            return appendLine(old);
        },
        std::nullopt);
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(support::readFile(path()), "written in place\nnew\n");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(FileUpdate, ChangesByOthersToAFileWithTwoNamesAreNotLost)
{
    fs::create_hard_link(path(), m_folder.path() / "second");
    int calls = 0;
    updateFile(
        path(),
        [&](const QvVisa::Document& old) {
            if (++calls == 1) {
                support::writeFile(path(), "written in place\n");
            }
            return appendLine(old);
        },
        std::nullopt);
    EXPECT_EQ(support::readFile(path()), "written in place\nnew\n");
}

TEST_F(FileUpdate, FileThatOthersRemoveStaysRemoved)
{
    EXPECT_EQ(exitCodeOf([&](const QvVisa::Document& old) {
                  fs::remove(path());
                  return appendLine(old);
              }),
              ExitCode::NoFile);
    EXPECT_EQ(filesInFolder(), 0U);
}

TEST_F(FileUpdate, TenChangesByOthersInARowAreAConflict)
{
    int calls = 0;
    const ExitCode code = exitCodeOf([&](const QvVisa::Document& old) {
        support::writeFile(path(), "change " + std::to_string(++calls) + '\n');
        return appendLine(old);
    });
    EXPECT_EQ(code, ExitCode::Conflict);
    EXPECT_EQ(calls, 10);
    EXPECT_EQ(support::readFile(path()), "change 10\n");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(FileUpdate, LockHeldByAnotherForFiveSecondsIsAConflict)
{
    const int other = ::open(path().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    EXPECT_EQ(exitCodeOf(appendLine), ExitCode::Conflict);
    EXPECT_EQ(support::readFile(path()), s_old);
    ::close(other);
    EXPECT_EQ(exitCodeOf(appendLine), ExitCode::Done);
}

} // namespace
