// SPDX-License-Identifier: MIT
#include "config/ConfigurationFile.h"
#include "config/ProcessEnvironment.h"
#include "tests/config/store/SearchSandbox.h"
#include "tests/support/Files.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/TestHome.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>

namespace {

namespace fs = std::filesystem;
using support::CallAnswer;
using support::SystemCalls;
using Paths = std::vector<std::string>;

std::string found(bool forWriting = false)
{
    return QvVisa::ConfigurationFile::searchConfigFile(forWriting);
}

class Search : public testing::Test
{
protected:
    Search()
    {
        fs::create_directory(m_home.home() / ".quorvane");
        ::setenv("QVVISACONFFILE", named().c_str(), 1);
    }

    fs::path named() const { return m_home.root() / "named.conf"; }
    fs::path inWorkingFolder() const { return m_home.workingFolder() / "visa.conf"; }
    fs::path inHome() const { return m_home.home() / ".quorvane/visa.conf"; }

    support::TestHome m_home;
    SearchSandbox m_sandbox{m_home.root()};
};

TEST_F(Search, QueriesTheFourPathsInOrderUpToTheFirstFile)
{
    const Paths paths = {named(), inWorkingFolder(), inHome(), SearchSandbox::systemWidePath};
    for (const bool forWriting : {false, true}) {
        EXPECT_EQ(found(forWriting), "");
        EXPECT_EQ(SearchSandbox::takeQueries(), paths);
    }
    support::writeFile(inWorkingFolder(), "");
    EXPECT_EQ(found(), inWorkingFolder());
    EXPECT_EQ(SearchSandbox::takeQueries(), (Paths{named(), inWorkingFolder()}));
    fs::remove(inWorkingFolder());
    EXPECT_EQ(found(true), "") << "the status of an earlier search has no effect";
}

TEST_F(Search, FindsTheFirstRegularFileForReadingAndForWriting)
{
    const std::array<fs::path, 4> paths = {named(), inWorkingFolder(), inHome(),
                                           m_sandbox.systemWideFile()};
    const std::array<std::string, 4> results = {named(), inWorkingFolder(), inHome(),
                                                SearchSandbox::systemWidePath};
    // Each path is missing (0), a folder (1) or a file (2), in all combinations. The shared status
    // is never a regular file before the first one, so forWriting makes no difference.
    for (int combination = 0; combination < 3 * 3 * 3 * 3; ++combination) {
        std::string expected;
        int kinds = combination;
        for (std::size_t i = paths.size(); i-- > 0; kinds /= 3) {
            fs::remove_all(paths[i]);
            if (kinds % 3 == 1) {
                fs::create_directory(paths[i]);
            } else if (kinds % 3 == 2) {
                support::writeFile(paths[i], "");
                expected = results[i];
            }
        }
        EXPECT_EQ(found(false), expected) << "combination " << combination;
        EXPECT_EQ(found(true), expected) << "combination " << combination;
    }
}

TEST_F(Search, ReturnsTheVariablesValueUnchanged)
{
    const fs::path odd = m_home.root() / "M\xe4\xdf ger\xe4te = #1.conf";
    support::writeFile(odd, "");
    const std::string relative =
        "./../" + m_home.workingFolder().filename().string() + "/relative.conf";
    support::writeFile(relative, "");
    for (const std::string& value : {odd.string(), relative}) {
        ::setenv("QVVISACONFFILE", value.c_str(), 1);
        EXPECT_EQ(found(), value);
    }
}

TEST_F(Search, FollowsLinksToFilesAndSkipsPipesAndDevices)
{
    fs::create_symlink(inHome(), named());
    EXPECT_EQ(found(), "") << "the link dangles";
    EXPECT_EQ(found(true), "") << "the link dangles";
    support::writeFile(inHome(), "");
    EXPECT_EQ(found(), named());

    fs::remove(named());
    // Opening the pipe would hang.
    ASSERT_EQ(::mkfifo(named().c_str(), 0600), 0);
    fs::create_symlink("/dev/null", inWorkingFolder());
    EXPECT_EQ(found(), inHome());
    EXPECT_EQ(found(true), inHome());
}

TEST_F(Search, SkipsUnsetVariablesButNotEmptyOnes)
{
    ::setenv("QVVISACONFFILE", "", 1);
    ::setenv("HOME", "", 1);
    EXPECT_EQ(found(), "");
    EXPECT_EQ(SearchSandbox::takeQueries(), (Paths{"", inWorkingFolder(), "/.quorvane/visa.conf",
                                                   SearchSandbox::systemWidePath}));
    ::unsetenv("QVVISACONFFILE");
    ::unsetenv("HOME");
    EXPECT_EQ(found(), "");
    EXPECT_EQ(SearchSandbox::takeQueries(),
              (Paths{inWorkingFolder(), SearchSandbox::systemWidePath}));
}

TEST_F(Search, EnvironmentOfAProcessThatEndsIsUnknown)
{
    const std::string own = std::to_string(::getpid());
    ASSERT_TRUE(QvVisa::searchEnvironmentOf(own).has_value());
    for (const int failed : {1, 2}) {
        const SystemCalls calls(SystemCalls::answeringReads([failed](int number) {
            return CallAnswer{number == failed ? ESRCH : 0, 8};
        }));
        EXPECT_FALSE(QvVisa::searchEnvironmentOf(own).has_value()) << failed;
    }
}

TEST_F(Search, SkipsADeletedWorkingFolder)
{
    const fs::path gone = m_home.root() / "gone";
    fs::create_directory(gone);
    fs::current_path(gone);
    fs::remove(gone);
    support::writeFile(inHome(), "");
    EXPECT_EQ(found(), inHome());
    EXPECT_EQ(SearchSandbox::takeQueries(), (Paths{named(), inHome()}));
}

/// Makes a working folder whose path has this length, with a visa.conf in it.
void enterFolderOfLength(const fs::path& start, std::size_t length)
{
    fs::current_path(start);
    std::size_t missing = length - start.string().size();
    while (missing > 0) {
        // Within the limit of a file name; the rest is never a lone slash.
        const std::size_t part = missing > 200 ? 100 : missing;
        const std::string name(part - 1, 'd');
        fs::create_directories(name);
        fs::current_path(name);
        missing -= part;
    }
    support::writeFile("visa.conf", "");
}

TEST_F(Search, SkipsAWorkingFolderWhosePathNeedsMoreThan1024Bytes)
{
    support::writeFile(inHome(), "");
    // 1024 bytes with the terminating zero.
    enterFolderOfLength(m_home.workingFolder(), 1023);
    EXPECT_EQ(found().size(), 1023 + std::string("/visa.conf").size());
    enterFolderOfLength(m_home.workingFolder(), 1024);
    EXPECT_EQ(found(), inHome());
}

} // namespace
