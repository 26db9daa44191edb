// SPDX-License-Identifier: MIT
#include "config/FileDescriptor.h"
#include "config/LineReader.h"
#include "config/ModernConfigurationFile.h"
#include "tests/config/saving/SavingTest.h"
#include "tests/support/Files.h"

#include <fcntl.h>
#include <unistd.h>

#include <string_view>

namespace {

using QvVisa::FileDescriptor;
using QvVisa::ModernConfigurationFile;

class SizeLimit : public SavingTest
{
protected:
    /// Mostly a hole: it takes no room.
    void grow(off_t size) const { ASSERT_EQ(::truncate(file().c_str(), size), 0); }
};

TEST_F(SizeLimit, OfOneGibibyteMakesLargerFilesUnreadable)
{
    support::writeFile(file(), ":QvVisaConfigurationFileVersion01\n");
    grow(off_t{1} << 30);
    EXPECT_TRUE(ModernConfigurationFile::isParseAble(file()));
    EXPECT_TRUE(FileDescriptor::openForReading(file()).isOpen());
    grow((off_t{1} << 30) + 1);
    EXPECT_FALSE(ModernConfigurationFile::isParseAble(file()));
    EXPECT_FALSE(FileDescriptor::openForReading(file()).isOpen());
}

constexpr off_t s_line = off_t{1} << 20;

TEST_F(SizeLimit, HoldsForAFileThatGrowsWhileItIsRead)
{
    support::writeFile(file(), "\n");
    QvVisa::LineReader reader(file());
    // Lines of 1 MiB.
    const FileDescriptor writing(::open(file().c_str(), O_WRONLY | O_CLOEXEC));
    for (off_t end = s_line; end <= 1025 * s_line; end += s_line) {
        ASSERT_EQ(::pwrite(writing.get(), "\n", 1, end - 1), 1);
    }
    off_t size = 0;
    for (std::string_view line; reader.next(line);) {
        size += static_cast<off_t>(line.size()) + 1;
    }
    EXPECT_TRUE(reader.hasFailed());
    EXPECT_LE(size, off_t{1} << 30);
    EXPECT_GT(size, off_t{1} << 29);
}

} // namespace
