// SPDX-License-Identifier: MIT
#include "tests/config/format/HostileLines.h"
#include "tests/support/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/OracleReader.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

namespace {

/// Compares the product's reader with the oracle.
class Oracle : public testing::Test
{
protected:
    FileContents contentsOf(const std::string& bytes) const
    {
        const std::string path = m_folder.path() / "visa.conf";
        support::writeFile(path, bytes);
        return readWithModernConfigurationFile(path);
    }

    testing::AssertionResult readsLikeTheOracle(const std::string& bytes)
    {
        const FileContents contents = contentsOf(bytes);
        m_oracle.read(bytes);
        if (contents == m_oracle.contents()) {
            return testing::AssertionSuccess();
        }
        // Names the line, if one line alone makes the difference.
        std::istringstream lines(bytes);
        for (std::string line; bytes.size() > line.size() + 1 && std::getline(lines, line);) {
            if (auto result = readsLikeTheOracle(line); !result) {
                return result;
            }
        }
        return testing::AssertionFailure() << '"' << printable(bytes) << "\"\nread as\n"
                                           << testing::PrintToString(contents);
    }

    OracleReader m_oracle;

private:
    support::TemporaryFolder m_folder;
};

/// QVVISA_ORACLE_SEED chooses another seed.
std::uint64_t seed()
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing here sets a variable.
    const char* chosen = std::getenv("QVVISA_ORACLE_SEED");
    return chosen != nullptr ? std::strtoull(chosen, nullptr, 10) : 20240229U;
}

} // namespace

TEST_F(Oracle, HostileLinesAreReadAsTheExpressionsReadThem)
{
    constexpr std::size_t linesInFile = 1000;
    constexpr std::size_t files = support::isSanitized ? 50 : 500;
    const std::uint64_t usedSeed = seed();
    std::cout << "QVVISA_ORACLE_SEED=" << usedSeed << '\n';
    HostileLines lines(usedSeed);
    for (std::size_t i = 0; i < files; ++i) {
        ASSERT_TRUE(readsLikeTheOracle(lines.file(linesInFile))) << "file " << i;
    }

    // Fails when the generator no longer reaches a kind of line.
    constexpr std::size_t atLeast = files * linesInFile / 100;
    for (const std::size_t count : m_oracle.linesOfKind()) {
        EXPECT_GE(count, atLeast) << testing::PrintToString(m_oracle.linesOfKind());
    }
    EXPECT_GE(m_oracle.linesOutOfRange(), atLeast);
}

TEST_F(Oracle, NumbersInEachFieldAreTruncatedOrSkipTheLine)
{
    for (const std::string_view pattern : s_templateLines) {
        for (const char digit : {'1', '2'}) {
            const std::size_t place = pattern.find(digit);
            if (pattern.front() != ':' || place == std::string_view::npos) {
                continue;
            }
            for (const std::string_view number : s_numbers) {
                std::string line = std::string(pattern).replace(place, 1, number);
                EXPECT_TRUE(readsLikeTheOracle(line));
                EXPECT_TRUE(readsLikeTheOracle(std::string(pattern) + '\n' + line));
            }
        }
    }
}

TEST_F(Oracle, ANumberOfAHundredThousandDigitsIsReadLikeAShortOne)
{
    const std::string zeros(100'000, '0');
    FileContents expected;
    expected.provider = 5;
    EXPECT_EQ(contentsOf(":Provider=5\n:Provider=1" + zeros + '\n'), expected);
    EXPECT_EQ(contentsOf(":Provider=" + zeros + "5\n"), expected);
}
