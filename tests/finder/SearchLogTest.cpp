// SPDX-License-Identifier: MIT
#include "finder/SearchLog.h"

#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

using finder::SearchLog;

TEST(SearchLog, BytesOutsidePrintableAsciiAreEscaped)
{
    EXPECT_EQ(finder::escaped(std::string("a b~\x1B[1m\n\0\xFF\\x41", 15)),
              "a b~\\x1b[1m\\x0a\\x00\\xff\\\\x41");
}

TEST(SearchLog, LinesAreAppendedToAFileForItsUserAlone)
{
    const support::TemporaryFolder folder;
    const auto path = folder.path() / "log";
    for (const char* const text : {"one", "two\nthree"}) {
        SearchLog(path.string()).line(text);
    }
    EXPECT_EQ(support::readFile(path), "qvfind: one\nqvfind: two\\x0athree\n");
    struct stat status = {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST(SearchLog, LogThatCannotBeOpenedChangesNothing)
{
    const support::TemporaryFolder folder;
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& target : {std::string(), folder.path().string(),
                                      (folder.path() / "no/log").string(), pipe.string()}) {
        SearchLog log(target);
        EXPECT_FALSE(log.isOpen()) << target;
        log.line("text");
    }
}

} // namespace
