// SPDX-License-Identifier: MIT
#include "config/LineReader.h"

#include "tests/config/FileContents.h"
#include "tests/config/ReaderReadCalls.h"
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

using namespace std::string_view_literals;
using QvVisa::LineReader;

namespace {

constexpr std::size_t s_bufferSize = std::size_t{256} * 1024;

class Reader : public testing::Test
{
protected:
    std::string path() const { return m_folder.path() / "lines"; }

    std::vector<std::string> linesOf(std::string_view bytes)
    {
        support::writeFile(path(), bytes);
        return lines();
    }

    std::vector<std::string> lines() const
    {
        LineReader reader(path());
        std::vector<std::string> result;
        std::string_view line;
        while (reader.next(line)) {
            result.emplace_back(line);
        }
        EXPECT_FALSE(reader.hasFailed());
        EXPECT_FALSE(reader.next(line)) << "after the end";
        return result;
    }

private:
    support::TemporaryFolder m_folder;
};

/// What a reader must make of these bytes, said once more in another way.
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

void expectSameLines(const std::vector<std::string>& actual,
                     const std::vector<std::string>& expected, const std::string& what)
{
    ASSERT_EQ(actual.size(), expected.size()) << what;
    const auto difference = std::mismatch(actual.begin(), actual.end(), expected.begin());
    if (difference.first != actual.end()) {
        ADD_FAILURE() << what << ": \"" << printable(*difference.first) << "\" for \""
                      << printable(*difference.second) << '"';
    }
}

} // namespace

TEST_F(Reader, SplitsAtLineFeedsOnly)
{
    const struct
    {
        std::string_view bytes;
        std::vector<std::string> lines;
    } rows[] = {
        {""sv, {}},
        {"\n"sv, {""}},
        {"\n\n"sv, {"", ""}},
        {"a"sv, {"a"}},
        {"a\n"sv, {"a"}},
        {"a\n\n"sv, {"a", ""}},
        {"\na"sv, {"", "a"}},
        {"a\nb"sv, {"a", "b"}},
        {"a\r\nb\r\n"sv, {"a\r", "b\r"}},
        {"a\rb\vc\fd"sv, {"a\rb\vc\fd"}},
        {"\r"sv, {"\r"}},
        {"\0\n\0\0"sv, {std::string(1, '\0'), std::string(2, '\0')}},
        {"\x80\xFF\n\x85"sv, {"\x80\xFF", "\x85"}},
    };
    for (const auto& row : rows) {
        expectSameLines(linesOf(row.bytes), row.lines, printable(std::string(row.bytes)));
    }
}

TEST_F(Reader, LinesThatEndAroundTheBuffersEnd)
{
    for (const std::size_t boundary : {s_bufferSize, 2 * s_bufferSize, 4 * s_bufferSize}) {
        for (std::size_t length = boundary - 2; length <= boundary + 2; ++length) {
            for (const char* end : {"", "\n", "\nx", "\n\n", "\nx\n"}) {
                const std::string bytes = std::string(length, 'a') + end;
                expectSameLines(linesOf(bytes), split(bytes), std::to_string(length) + end);
                const std::string behind = "short\n" + bytes;
                expectSameLines(linesOf(behind), split(behind),
                                "short, " + std::to_string(length) + end);
            }
        }
    }
}

TEST_F(Reader, ManyLinesOfEachLength)
{
    std::string bytes;
    for (std::size_t length = 0; length < 1500; ++length) {
        bytes += std::string(length, static_cast<char>('a' + length % 26)) + '\n';
    }
    ASSERT_GT(bytes.size(), 4 * s_bufferSize);
    expectSameLines(linesOf(bytes), split(bytes), "rising lengths");
}

TEST_F(Reader, WhatIsNoReadableFileHasFailedFromTheStart)
{
    const std::filesystem::path folder = std::filesystem::path(path()).parent_path();
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    for (const std::filesystem::path& place :
         {folder / "missing", folder, folder / "pipe", std::filesystem::path("/dev/zero"),
          std::filesystem::path("/dev/null"), std::filesystem::path()}) {
        LineReader reader(place);
        std::string_view line;
        EXPECT_TRUE(reader.hasFailed()) << place;
        EXPECT_FALSE(reader.next(line)) << place;
        EXPECT_TRUE(reader.hasFailed()) << place;
    }
}

TEST_F(Reader, ShortReadsAndInterruptedOnesChangeNothing)
{
    const std::string bytes = "first\n\nsecond\r\nthird" + std::string(1, '\0') + "\nlast";
    support::writeFile(path(), bytes);
    for (std::size_t most = 1; most <= bytes.size() + 1; ++most) {
        int calls = 0;
        const ReaderReadCalls calling([&](int descriptor, void* buffer, std::size_t size) {
            if (++calls % 3 == 1) {
                errno = EINTR;
                return ssize_t{-1};
            }
            return ReaderReadCalls::original(descriptor, buffer, std::min(most, size));
        });
        expectSameLines(lines(), split(bytes), "at most " + std::to_string(most) + " at once");
        EXPECT_GE(calls, 3);
    }
}

TEST_F(Reader, AFailingReadEndsTheLinesAndIsTold)
{
    support::writeFile(path(), "first\nsecond\nthird\n");
    const auto firstBytesThenError = [calls = 0](int descriptor, void* buffer,
                                                 std::size_t size) mutable {
        if (++calls == 1) {
            return ReaderReadCalls::original(descriptor, buffer, std::min<std::size_t>(size, 9));
        }
        errno = EIO;
        return ssize_t{-1};
    };
    const ReaderReadCalls calling(firstBytesThenError);
    LineReader reader(path());
    std::string_view line;
    ASSERT_TRUE(reader.next(line));
    EXPECT_EQ(line, "first");
    EXPECT_FALSE(reader.hasFailed());
    // "sec" was read: a part of a line is no line.
    EXPECT_FALSE(reader.next(line));
    EXPECT_TRUE(reader.hasFailed());
    EXPECT_FALSE(reader.next(line));
    EXPECT_TRUE(reader.hasFailed());
}

TEST_F(Reader, AFileThatShrinksMeanwhileEndsWhereItEndsNow)
{
    const std::string bytes(4 * s_bufferSize, 'a');
    support::writeFile(path(), "first\n" + bytes);
    int calls = 0;
    std::size_t total = 0;
    const ReaderReadCalls calling([&](int descriptor, void* buffer, std::size_t size) {
        const ssize_t count = ReaderReadCalls::original(descriptor, buffer, size);
        total += count > 0 ? static_cast<std::size_t>(count) : 0;
        if (++calls == 2) {
            std::filesystem::resize_file(path(), 3);
        }
        return count;
    });
    const std::vector<std::string> found = lines();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0], "first");
    EXPECT_LT(found[1].size(), bytes.size());
    EXPECT_EQ(found[0].size() + 1 + found[1].size(), total);
    EXPECT_EQ(found[1].find_first_not_of('a'), std::string::npos);
}

TEST_F(Reader, AFileThatGrowsMeanwhileIsReadToItsNewEnd)
{
    support::writeFile(path(), "first\nsec");
    const ReaderReadCalls calling(
        [calls = 0, this](int descriptor, void* buffer, std::size_t size) mutable {
            if (++calls == 2) {
                support::writeFile(path(), "first\nsecond\nthird");
            }
            return ReaderReadCalls::original(descriptor, buffer, size);
        });
    expectSameLines(lines(), {"first", "second", "third"}, "grown");
}

TEST_F(Reader, EachByteOfALineOfAMegabyteIsReadOnce)
{
    const std::string bytes = std::string(std::size_t{1024} * 1024, 'a') + "\nb";
    support::writeFile(path(), bytes);
    std::size_t total = 0;
    const ReaderReadCalls calling([&](int descriptor, void* buffer, std::size_t size) {
        const ssize_t count = ReaderReadCalls::original(descriptor, buffer, size);
        total += count > 0 ? static_cast<std::size_t>(count) : 0;
        return count;
    });
    expectSameLines(lines(), split(bytes), "a megabyte");
    EXPECT_EQ(total, bytes.size());
}
