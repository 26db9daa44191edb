// SPDX-License-Identifier: MIT
// Reading and writing do not depend on the process's locale.

#include "config/ModernConfigurationFile.h"
#include "tests/config/format/HostileLines.h"
#include "tests/support/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <locale>
#include <sstream>
#include <string>
#include <utility>

namespace {

/// Formats 9600 as "9.6.0.0".
class OddPunctuation : public std::numpunct<char>
{
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\1"; }
};

/// Digits are white space, white space and '=' are digits, upper case is always 'q'.
class OddCharacters : public std::ctype<char>
{
public:
    OddCharacters() : std::ctype<char>(table()) {}

private:
    static const mask* table()
    {
        static const auto s_table = [] {
            std::array<mask, table_size> masks{};
            for (const char c : {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9'}) {
                masks[static_cast<unsigned char>(c)] = space;
            }
            for (const char c : {' ', '\t', '\v', '\f', '\r', '=', ':'}) {
                masks[static_cast<unsigned char>(c)] = digit;
            }
            return masks;
        }();
        return s_table.data();
    }

    char do_toupper(char) const override { return 'q'; }
    const char* do_toupper(char* begin, const char* end) const override
    {
        std::fill_n(begin, end - begin, 'q');
        return end;
    }
};

class Locale : public testing::Test
{
protected:
    Locale() { support::writeFile(m_file, HostileLines(1).file(2000)); }

    /// What is read from a file, and the bytes that are written for it.
    std::pair<FileContents, std::string> readAndWritten() const
    {
        const FileContents contents = readWithModernConfigurationFile(m_file);
        const std::string copy = m_folder.path() / "copy.conf";
        QvVisa::ModernConfigurationFile::write(copy, contents.aliases, contents.resources,
                                               contents.serial, contents.provider);
        return {contents, support::readFile(copy)};
    }

private:
    support::TemporaryFolder m_folder;
    const std::string m_file = m_folder.path() / "visa.conf";
};

} // namespace

TEST_F(Locale, FacetsOfTheGlobalLocaleHaveNoEffect)
{
    const auto expected = readAndWritten();
    // The locale owns its facets.
    const std::locale punctuation(std::locale::classic(), new OddPunctuation);
    std::locale::global(std::locale(punctuation, new OddCharacters));
    std::ostringstream probe;
    probe << 9600;
    ASSERT_EQ(probe.str(), "9.6.0.0") << "the odd locale is not in force";
    ASSERT_TRUE(std::isspace('7', std::locale()));
    ASSERT_EQ(std::toupper('d', std::locale()), 'q');
    EXPECT_TRUE(readAndWritten() == expected);
}

TEST_F(Locale, InstalledLocalesHaveNoEffect)
{
    const auto expected = readAndWritten();
    int tried = 0;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "en_US.UTF-8", "tr_TR.UTF-8",
                             "hi_IN.UTF-8", "C.UTF-8", "C.utf8"}) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread.
        if (std::setlocale(LC_ALL, name) != nullptr) {
            ++tried;
            EXPECT_TRUE(readAndWritten() == expected) << name;
        }
    }
    if (tried == 0) {
        GTEST_SKIP() << "none of the locales is installed";
    }
}
