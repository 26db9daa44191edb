// SPDX-License-Identifier: MIT
#include "config/LineReader.h"

#include "tests/config/ReaderReadCalls.h"
#include "tests/support/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

using QvVisa::LineReader;

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
    ASSERT_EQ(::mkfifo((m_folder.path() / "pipe").c_str(), 0600), 0);
    for (const std::filesystem::path& path :
         {m_folder.path() / "missing", m_folder.path(), m_folder.path() / "pipe",
          std::filesystem::path("/dev/zero"), std::filesystem::path()}) {
        LineReader reader(path);
        std::string_view line;
        EXPECT_TRUE(reader.hasFailed()) << path;
        EXPECT_FALSE(reader.next(line)) << path;
        EXPECT_TRUE(reader.hasFailed()) << path;
    }
}

TEST_F(Reader, ShortAndInterruptedReadsChangeNothing)
{
    const std::string bytes = "first\n\nsecond\r\nthird" + std::string(1, '\0') + "\nlast";
    for (std::size_t most = 1; most <= bytes.size() + 1; ++most) {
        support::writeFile(m_path, bytes);
        int calls = 0;
        const ReaderReadCalls calling([&](int descriptor, void* buffer, std::size_t size) {
            if (++calls % 3 == 1) {
                errno = EINTR;
                return ssize_t{-1};
            }
            return ReaderReadCalls::original(descriptor, buffer, std::min(most, size));
        });
        EXPECT_EQ(lines(), split(bytes)) << most << " bytes at once";
        EXPECT_GE(calls, 3);
    }
}

TEST_F(Reader, AFailedReadEndsTheLinesWithAFailure)
{
    support::writeFile(m_path, "first\nsecond\nthird\n");
    const ReaderReadCalls calling([calls = 0](int descriptor, void* buffer,
                                              std::size_t size) mutable {
        if (++calls == 1) {
            return ReaderReadCalls::original(descriptor, buffer, std::min<std::size_t>(size, 9));
        }
        errno = EIO;
        return ssize_t{-1};
    });
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
        const ReaderReadCalls calling(
            [&, calls = 0](int descriptor, void* buffer, std::size_t size) mutable {
                if (++calls == 2) {
                    support::writeFile(m_path, now);
                }
                return ReaderReadCalls::original(descriptor, buffer, size);
            });
        const bool grows = now.size() > start.size();
        EXPECT_EQ(lines(), split(grows ? now : start)) << now;
    }
}

TEST_F(Reader, EachByteOfALongLineIsReadOnce)
{
    const std::string bytes = std::string(std::size_t{1024} * 1024, 'a') + "\nb";
    support::writeFile(m_path, bytes);
    std::size_t total = 0;
    const ReaderReadCalls calling([&](int descriptor, void* buffer, std::size_t size) {
        const ssize_t count = ReaderReadCalls::original(descriptor, buffer, size);
        total += count > 0 ? static_cast<std::size_t>(count) : 0;
        return count;
    });
    EXPECT_TRUE(lines() == split(bytes));
    EXPECT_EQ(total, bytes.size());
}
