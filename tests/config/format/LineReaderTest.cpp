// SPDX-License-Identifier: MIT
#include "config/LineReader.h"

#include "tests/support/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

using QvVisa::LineReader;
using support::CallAnswer;
using support::SystemCalls;

namespace {

constexpr std::size_t s_bufferSize = std::size_t{256} * 1024;

/// The lines of these bytes: one for each line feed, and one for what follows the last.
std::vector<std::string> split(const std::string& bytes)
{
    std::vector<std::string> result(1);
    for (const char c : bytes) {
        if (c == '\n') {
            result.emplace_back();
        } else {
            result.back() += c;
        }
    }
    if (result.back().empty()) {
        result.pop_back();
    }
    return result;
}

class Reader : public testing::Test
{
protected:
    std::vector<std::string> lines() const
    {
        LineReader reader(m_path);
        std::vector<std::string> result;
        std::string_view line;
        while (reader.next(line)) {
            result.emplace_back(line);
        }
        EXPECT_FALSE(reader.hasFailed());
        EXPECT_FALSE(reader.next(line)) << "after the end";
        return result;
    }

    void expectLinesOf(const std::string& bytes)
    {
        support::writeFile(m_path, bytes);
        // A failure must not print megabytes.
        EXPECT_TRUE(lines() == split(bytes)) << '"' << printable(bytes) << '"';
    }

    support::TemporaryFolder m_folder;
    const std::filesystem::path m_path = m_folder.path() / "lines";
};

} // namespace

TEST_F(Reader, SplitsAtLineFeedsOnly)
{
    support::writeFile(m_path, "a\r\n\nb\rc\v\f");
    EXPECT_EQ(lines(), (std::vector<std::string>{"a\r", "", "b\rc\v\f"}));
    for (const char* bytes :
         {"", "\n", "\n\n", "a", "a\n", "a\n\n", "\na", "\r", "\x80\xFF\n\x85"}) {
        expectLinesOf(bytes);
    }
    expectLinesOf(std::string("\0\n\0\0", 4));
}

TEST_F(Reader, LinesMayEndAnywhereInTheBuffer)
{
    for (const std::size_t boundary : {s_bufferSize, 2 * s_bufferSize, 4 * s_bufferSize}) {
        for (std::size_t length = boundary - 2; length <= boundary + 2; ++length) {
            for (const char* end : {"", "\n", "\nx", "\n\n"}) {
                expectLinesOf(std::string(length, 'a') + end);
                expectLinesOf("short\n" + std::string(length, 'a') + end);
            }
        }
    }
    std::string bytes;
    for (std::size_t length = 0; length < 1500; ++length) {
        bytes += std::string(length, static_cast<char>('a' + length % 26)) + '\n';
    }
    ASSERT_GT(bytes.size(), 4 * s_bufferSize);
    expectLinesOf(bytes);
}

TEST_F(Reader, APathWithoutReadableFileHasFailedFromTheStart)
{
    LineReader reader(m_folder.path());
    std::string_view line;
    EXPECT_TRUE(reader.hasFailed());
    EXPECT_FALSE(reader.next(line));
    EXPECT_TRUE(reader.hasFailed());
}

TEST_F(Reader, ShortAndInterruptedReadsChangeNothing)
{
    const std::string bytes = "first\n\nsecond\r\nthird" + std::string(1, '\0') + "\nlast";
    support::writeFile(m_path, bytes);
    for (std::size_t most = 1; most <= bytes.size() + 1; ++most) {
        const SystemCalls calls(SystemCalls::answeringReads([most](int number) {
            return CallAnswer{number % 3 == 1 ? EINTR : 0, most};
        }));
        EXPECT_EQ(lines(), split(bytes)) << most << " bytes at once";
    }
}

TEST_F(Reader, AFailedReadEndsTheLinesWithAFailure)
{
    support::writeFile(m_path, "first\nsecond\nthird\n");
    const SystemCalls calls(SystemCalls::readingOnly(9));
    LineReader reader(m_path);
    std::string_view line;
    ASSERT_TRUE(reader.next(line));
    EXPECT_EQ(line, "first");
    EXPECT_FALSE(reader.hasFailed());
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(reader.next(line)) << "\"sec\" is not a line";
        EXPECT_TRUE(reader.hasFailed());
    }
}

TEST_F(Reader, AFileThatChangesItsSizeIsReadToItsNewEnd)
{
    const std::string start = "first\nsec";
    for (const std::string& now : {std::string("first\nsecond\nthird"), std::string("fir")}) {
        support::writeFile(m_path, start);
        const SystemCalls calls(SystemCalls::answeringReads([&](int number) {
            if (number == 2) {
                support::writeFile(m_path, now);
            }
            return CallAnswer();
        }));
        EXPECT_EQ(lines(), split(now.size() > start.size() ? now : start)) << now;
    }
}

TEST_F(Reader, AFileThatGrowsBeyondAGibibyteIsReadUpToThere)
{
    support::writeFile(m_path, "\n");
    LineReader reader(m_path);
    constexpr std::uintmax_t lineSize = std::uintmax_t{1} << 20;
    std::ofstream file(m_path);
    for (std::uintmax_t end = lineSize; end <= 1025 * lineSize; end += lineSize) {
        // Mostly holes: they take no room.
        ASSERT_TRUE(file.seekp(static_cast<std::streamoff>(end) - 1) << '\n');
    }
    file.close();
    std::uintmax_t size = 0;
    for (std::string_view line; reader.next(line);) {
        size += line.size() + 1;
    }
    EXPECT_TRUE(reader.hasFailed());
    EXPECT_LE(size, std::uintmax_t{1} << 30);
    EXPECT_GT(size, std::uintmax_t{1} << 29);
}

TEST_F(Reader, EachByteOfALongLineIsReadOnce)
{
    constexpr std::size_t atOnce = 4096;
    const std::string bytes = std::string(256 * atOnce - 2, 'a') + "\nb";
    support::writeFile(m_path, bytes);
    int reads = 0;
    const SystemCalls calls(SystemCalls::answeringReads([&reads](int number) {
        reads = number;
        return CallAnswer{0, atOnce};
    }));
    EXPECT_TRUE(lines() == split(bytes));
    EXPECT_EQ(reads, 256 + 3) << "three calls of next() find the end";
}
