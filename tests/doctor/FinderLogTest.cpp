// SPDX-License-Identifier: MIT
#include "doctor/FinderLog.h"

#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace {

using QvVisa::FinderLog;

class FinderLogTest : public testing::Test
{
protected:
    /// Appends to the log as a library does that finds the variable in its environment.
    static void write(const FinderLog& log, const std::string& text)
    {
        const auto variables = log.variables();
        ASSERT_EQ(variables.size(), 1U);
        EXPECT_EQ(variables.front().first, "QVFIND_LOG");
        std::ofstream(variables.front().second, std::ios::app) << text;
    }

    support::TemporaryFolder m_folder;
    const std::string m_users = m_folder.path() / "users.log";
};

TEST_F(FinderLogTest, LinesAreThoseOfTheFinder)
{
    ::unsetenv("QVFIND_LOG");
    const FinderLog log;
    write(log, "qvfind: search for ?*\nqvfind: \nsomething else\nqvfind: asked 1");
    EXPECT_EQ(log.takeLines(), (std::vector<std::string>{"search for ?*", "", "asked 1"}));
}

TEST_F(FinderLogTest, LogOfTheUserGetsWhatWasWritten)
{
    support::writeFile(m_users, "before\n");
    ::setenv("QVFIND_LOG", m_users.c_str(), 1);
    const FinderLog log;
    write(log, "qvfind: one\nqvfind: two\n");
    EXPECT_EQ(log.takeLines().size(), 2U);
    EXPECT_EQ(support::readFile(m_users), "before\nqvfind: one\nqvfind: two\n");
}

TEST_F(FinderLogTest, LogOfTheUserIsNotMadeWithoutTheFinder)
{
    ::setenv("QVFIND_LOG", m_users.c_str(), 1);
    const FinderLog log;
    EXPECT_TRUE(log.takeLines().empty());
    EXPECT_FALSE(std::filesystem::exists(m_users));
}

TEST_F(FinderLogTest, LogOfTheUserThatCannotBeWrittenChangesNothing)
{
    ::setenv("QVFIND_LOG", m_folder.path().c_str(), 1);
    const FinderLog log;
    write(log, "qvfind: one\n");
    EXPECT_EQ(log.takeLines(), std::vector<std::string>{"one"});
}

} // namespace
