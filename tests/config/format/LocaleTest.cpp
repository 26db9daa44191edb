// SPDX-License-Identifier: MIT
// Reading and writing do not depend on the process's locale.

#include "config/ModernConfigurationFile.h"
#include "tests/support/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/OracleReader.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <locale>
#include <sstream>
#include <string>

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

void expectClassicReadingAndWriting(const std::string& locale)
{
    const support::TemporaryFolder folder;
    const std::string path = folder.path() / "visa.conf";
    support::writeFile(path, ":QvVisaConfigurationFileVersion01\n"
                             ":PROVIDER = 12345\n"
                             ":SerialProperty[DeviceNo= 10000 ].Baudrate=\t1000000\r\n"
                             ":GPIBProperty[DeviceNo=1].SecondaryAddress=65535\n"
                             "GPIB0::12::INSTR \n"
                             "\xE4\xF6 b\n"
                             "\xA0x\n"
                             "Dmm\xE4 = TCPIP0::10.0.0.5::inst0::INSTR\r\n"
                             ":Provider=1.000\n"
                             ":Provider=1,000\n");
    const FileContents expected{{{"DMM\xE4", "TCPIP0::10.0.0.5::inst0::INSTR"}},
                                {"GPIB0::12::INSTR ", "\xE4\xF6 b", "\xA0x"},
                                {{1, {0, 65535, 1}}},
                                {{10000, {1000000, 8, 0, 0, 0}}},
                                12345};
    EXPECT_TRUE(QvVisa::ModernConfigurationFile::isParseAble(path)) << locale;
    EXPECT_TRUE(readWithModernConfigurationFile(path) == expected) << locale;
    QvVisa::ModernConfigurationFile::write(path, expected.aliases, expected.resources,
                                           expected.serial, expected.provider);
    EXPECT_EQ(support::readFile(path), expectedStart(expected) + expectedAliases(expected))
        << locale;
}

} // namespace

TEST(Locale, FacetsOfTheGlobalLocaleHaveNoEffect)
{
    expectClassicReadingAndWriting("C");
    // The locale owns its facets.
    const std::locale punctuation(std::locale::classic(), new OddPunctuation);
    std::locale::global(std::locale(punctuation, new OddCharacters));
    std::ostringstream probe;
    probe << 9600;
    ASSERT_EQ(probe.str(), "9.6.0.0") << "the odd locale is not in force";
    ASSERT_TRUE(std::isspace('7', std::locale()));
    ASSERT_EQ(std::toupper('d', std::locale()), 'q');
    expectClassicReadingAndWriting("odd facets");
}

TEST(Locale, InstalledLocalesHaveNoEffect)
{
    int tried = 0;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "en_US.UTF-8", "tr_TR.UTF-8",
                             "hi_IN.UTF-8", "C.UTF-8", "C.utf8"}) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread.
        if (std::setlocale(LC_ALL, name) != nullptr) {
            ++tried;
            expectClassicReadingAndWriting(name);
        }
    }
    if (tried == 0) {
        GTEST_SKIP() << "none of the locales is installed";
    }
}
