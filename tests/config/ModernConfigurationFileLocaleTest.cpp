// SPDX-License-Identifier: MIT
#include "config/ModernConfigurationFile.h"

#include "tests/config/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <locale>
#include <sstream>
#include <string>

namespace {

/// 9600 becomes "9.6.0.0".
class OddPunctuation : public std::numpunct<char>
{
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\1"; }
    char do_decimal_point() const override { return ','; }
};

/// Digits are white space, white space is digits, 'A' to 'Z' are nothing, and everything becomes
/// 'q' in upper case.
class OddCharacters : public std::ctype<char>
{
public:
    OddCharacters() : std::ctype<char>(table()) {}

private:
    static const mask* table()
    {
        static const auto s_table = [] {
            std::array<mask, table_size> masks{};
            for (char c = '0'; c <= '9'; ++c) {
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
        for (; begin != end; ++begin) {
            *begin = 'q';
        }
        return end;
    }
};

const std::string s_lines = ":QvVisaConfigurationFileVersion01\n"
                            ":PROVIDER = 12345\n"
                            ":SerialProperty[DeviceNo= 10000 ].Baudrate=\t1000000\r\n"
                            ":GPIBProperty[DeviceNo=1].SecondaryAddress=65535\n"
                            "GPIB0::12::INSTR \n"
                            "\xE4\xF6 b\n"
                            "\xA0x\n"
                            "Dmm\xE4 = TCPIP0::10.0.0.5::inst0::INSTR\r\n"
                            ":Provider=1.000\n"
                            ":Provider=1,000\n";

FileContents expectedContents()
{
    FileContents contents;
    contents.provider = 12345;
    contents.serial = {{10000, {1000000, 8, 0, 0, 0}}};
    contents.gpib = {{1, {0, 65535, 1}}};
    contents.resources = {"GPIB0::12::INSTR ", "\xE4\xF6 b", "\xA0x"};
    contents.aliases = {{"DMM\xE4", "TCPIP0::10.0.0.5::inst0::INSTR"}};
    return contents;
}

const std::string s_saved = ":QvVisaConfigurationFileVersion01\n"
                            ":Provider=12345\n"
                            ":SerialProperty[DeviceNo=10000].Baudrate=1000000\n"
                            ":SerialProperty[DeviceNo=10000].DataBits=8\n"
                            ":SerialProperty[DeviceNo=10000].StopBits=0\n"
                            ":SerialProperty[DeviceNo=10000].Parity=0\n"
                            ":SerialProperty[DeviceNo=10000].FlowControl=0\n"
                            "GPIB0::12::INSTR \n"
                            "\xE4\xF6 b\n"
                            "\xA0x\n"
                            "DMM\xE4=TCPIP0::10.0.0.5::inst0::INSTR\n";

void expectReadingAndWritingAsUsual(const std::string& locale)
{
    const support::TemporaryFolder folder;
    const std::string path = folder.path() / "visa.conf";
    support::writeFile(path, s_lines);
    EXPECT_TRUE(QvVisa::ModernConfigurationFile::isParseAble(path)) << locale;
    const FileContents contents = readWithModernConfigurationFile(path);
    EXPECT_TRUE(contents == expectedContents()) << locale << '\n' << printable(s_lines);
    QvVisa::ModernConfigurationFile::write(path, contents.aliases, contents.resources,
                                           contents.serial, contents.provider);
    EXPECT_EQ(support::readFile(path), s_saved) << locale;
}

/// The C++ locale, and the C locale with it, come back at the end.
class ModernConfigurationFileLocale : public testing::Test
{
protected:
    ~ModernConfigurationFileLocale() override
    {
        std::locale::global(m_before);
        // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread.
        std::setlocale(LC_ALL, "C");
    }

private:
    std::locale m_before;
};

} // namespace

TEST_F(ModernConfigurationFileLocale, TheUsualOne)
{
    expectReadingAndWritingAsUsual("C");
}

TEST_F(ModernConfigurationFileLocale, OddFacetsHaveNoSay)
{
    // The locale owns its facets.
    const std::locale punctuation(std::locale::classic(), new OddPunctuation);
    std::locale::global(std::locale(punctuation, new OddCharacters));
    std::ostringstream probe;
    probe << 9600;
    ASSERT_EQ(probe.str(), "9.6.0.0") << "the odd locale is not in force";
    ASSERT_TRUE(std::isspace('7', std::locale()));
    ASSERT_FALSE(std::isspace(' ', std::locale()));
    ASSERT_EQ(std::toupper('d', std::locale()), 'q');
    expectReadingAndWritingAsUsual("odd facets");
}

TEST_F(ModernConfigurationFileLocale, TheMachinesOnesHaveNoSay)
{
    int tried = 0;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "en_US.UTF-8", "tr_TR.UTF-8",
                             "hi_IN.UTF-8", "C.UTF-8", "C.utf8"}) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread.
        if (std::setlocale(LC_ALL, name) != nullptr) {
            ++tried;
            expectReadingAndWritingAsUsual(name);
        }
    }
    if (tried == 0) {
        GTEST_SKIP() << "the machine has none of the locales";
    }
}
