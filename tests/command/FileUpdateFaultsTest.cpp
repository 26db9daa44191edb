// SPDX-License-Identifier: MIT
// Updates in which system calls fail, others save in between, or the process is killed.

#include "command/FileUpdate.h"

#include "command/ExitCode.h"
#include "tests/support/Files.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

using support::CallAnswer;
using support::SystemCall;
using support::SystemCalls;

namespace fs = std::filesystem;

namespace {

const std::string s_old = "old\n";
const std::string s_new = "old\nnew\n";

std::optional<std::string> appendLine(const QvVisa::Document& old)
{
    return old.text() + "new\n";
}

class FileUpdateFaults : public testing::Test
{
protected:
    fs::path path() const { return m_folder.path() / "visa.conf"; }

    void arrange() const
    {
        for (const auto& entry : fs::directory_iterator(m_folder.path())) {
            fs::remove(entry.path());
        }
        support::writeFile(path(), s_old);
    }

    /// True when the update did not throw.
    bool update() const
    {
        try {
            QvVisa::updateFile(path(), appendLine, std::nullopt);
            return true;
        } catch (const QvVisa::CommandError&) {
            return false;
        }
    }

    /// How many calls an update makes that nothing disturbs.
    int callsOfAnUpdate() const
    {
        arrange();
        SystemCalls calls;
        EXPECT_TRUE(update());
        EXPECT_EQ(calls.count("renameat2"), 1);
        return calls.count();
    }

    ino_t inodeOfTarget() const
    {
        struct stat status = {};
        EXPECT_EQ(::stat(path().c_str(), &status), 0);
        return status.st_ino;
    }

    std::size_t filesInFolder() const
    {
        const fs::directory_iterator files(m_folder.path());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    /// Another program's save.
    void saveForeign(const std::string& text) const
    {
        support::writeFile(m_folder.path() / "foreign", text);
        fs::rename(m_folder.path() / "foreign", path());
    }

    support::TemporaryFolder m_folder;
};

} // namespace

TEST_F(FileUpdateFaults, FailingCallLeavesTheOldOrTheNewText)
{
    const int count = callsOfAnUpdate();
    for (const int error : {ENOSPC, EIO, EACCES}) {
        for (int number = 1; number <= count; ++number) {
            SCOPED_TRACE("call " + std::to_string(number) + ", error " + std::to_string(error));
            arrange();
            bool isDone = false;
            std::string failed;
            {
                SystemCalls calls(SystemCalls::failing(number, error));
                isDone = update();
                failed = calls.names().at(static_cast<std::size_t>(number) - 1);
            }
            EXPECT_EQ(support::readFile(path()), isDone ? s_new : s_old) << failed;
            EXPECT_EQ(filesInFolder(), failed == "unlinkat" ? 2U : 1U) << failed;
        }
    }
}

TEST_F(FileUpdateFaults, CallsThatFailFromOneOnLeaveTheOldOrTheNewText)
{
    const int count = callsOfAnUpdate();
    for (int number = 1; number <= count; ++number) {
        SCOPED_TRACE("from call " + std::to_string(number));
        arrange();
        {
            const SystemCalls calls(SystemCalls::failing(number, EIO, true));
            update();
        }
        const std::string text = support::readFile(path());
        EXPECT_TRUE(text == s_old || text == s_new) << text;
    }
}

TEST_F(FileUpdateFaults, SaveByAnotherBeforeAnyTwoCallsIsNotLost)
{
    const int count = callsOfAnUpdate();
    for (int first = 1; first <= count; ++first) {
        for (int second = first; second <= first + count; second += 2) {
            SCOPED_TRACE("before calls " + std::to_string(first) + " and " +
                         std::to_string(second));
            arrange();
            std::string last = s_old;
            {
                const SystemCalls calls([&](const SystemCall& call) {
                    if (call.number == first || call.number == second) {
                        last = "save " + std::to_string(call.number) + '\n';
                        saveForeign(last);
                    }
                    CallAnswer answer;
                    answer.isSkipped = call.name == "fsync";
                    return answer;
                });
                EXPECT_TRUE(update());
            }
            // The last save, with the edit unless it came after the edit.
            const std::string text = support::readFile(path());
            EXPECT_TRUE(text == last || text == last + "new\n") << text << "last: " << last;
            EXPECT_EQ(filesInFolder(), 1U);
            if (HasFailure()) {
                return;
            }
        }
    }
}

TEST_F(FileUpdateFaults, FileSystemWithoutExchangeAndUnnamedFilesGetsTheNewText)
{
    for (const int exchangeError : {EINVAL, ENOSYS, ENOTSUP}) {
        // EBUSY: a mount point, which keeps its file.
        for (const int renameError : {0, EBUSY}) {
            SCOPED_TRACE("exchange " + std::to_string(exchangeError) + ", rename " +
                         std::to_string(renameError));
            arrange();
            const ino_t inode = inodeOfTarget();
            {
                const SystemCalls calls([&](const SystemCall& call) {
                    CallAnswer answer;
                    if (call.name == "renameat2") {
                        answer.error = exchangeError;
                    } else if (call.name == "openat(O_TMPFILE)") {
                        answer.error = EOPNOTSUPP;
                    } else if (call.name == "renameat" && call.path == "visa.conf") {
                        answer.error = renameError;
                    }
                    return answer;
                });
                EXPECT_EQ(QvVisa::updateFile(path(), appendLine, ".old"), path().string() + ".old");
            }
            EXPECT_EQ(support::readFile(path()), s_new);
            EXPECT_EQ(support::readFile(path().string() + ".old"), s_old);
            EXPECT_EQ(filesInFolder(), 2U);
            EXPECT_EQ(inodeOfTarget() == inode, renameError == EBUSY);
        }
    }
}

TEST_F(FileUpdateFaults, WithoutExchangeASaveByAnotherBeforeTheExchangeFailedIsNotLost)
{
    int exchange = 0;
    for (int number = 0; number <= exchange; ++number) {
        arrange();
        {
            const SystemCalls calls([&](const SystemCall& call) {
                CallAnswer answer;
                if (call.name == "renameat2") {
                    answer.error = EINVAL;
                    exchange = number == 0 ? call.number : exchange;
                }
                if (call.number == number) {
                    saveForeign("foreign\n");
                }
                return answer;
            });
            EXPECT_TRUE(update());
        }
        EXPECT_EQ(support::readFile(path()), number == 0 ? s_new : "foreign\nnew\n")
            << "before call " << number;
        EXPECT_EQ(filesInFolder(), 1U);
    }
    EXPECT_GT(exchange, 0);
}

TEST_F(FileUpdateFaults, KillBeforeAnyCallLeavesTheOldOrTheNewText)
{
    const int count = callsOfAnUpdate();
    for (int number = 1; number <= count; ++number) {
        arrange();
        const pid_t child = ::fork();
        if (child == 0) {
            const SystemCalls calls(SystemCalls::killing(number));
            update();
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << number;
        const std::string text = support::readFile(path());
        EXPECT_TRUE(text == s_old || text == s_new) << number << ": " << text;
        // The next update works, whatever is left.
        EXPECT_TRUE(update());
    }
}
