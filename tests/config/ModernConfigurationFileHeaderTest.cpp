// SPDX-License-Identifier: MIT
#include "config/ModernConfigurationFile.h"

#include "tests/config/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

using namespace std::string_view_literals;
using QvVisa::ModernConfigurationFile;

namespace {

constexpr auto s_header = ":QvVisaConfigurationFileVersion01"sv;

class ModernConfigurationFileHeader : public testing::Test
{
protected:
    std::filesystem::path folder() const { return m_folder.path(); }
    std::string path() const { return folder() / "visa.conf"; }

    bool isParseAble(std::string_view bytes) const
    {
        support::writeFile(path(), bytes);
        const bool isParseAble = ModernConfigurationFile::isParseAble(path());
        ModernConfigurationFile file(path());
        std::unordered_map<std::string, std::string> aliases;
        std::vector<std::string> resources;
        unsigned short provider = 0;
        file.parse(aliases, resources, provider);
        EXPECT_EQ(file.hadHeader(), isParseAble) << printable(std::string(bytes));
        return isParseAble;
    }

private:
    support::TemporaryFolder m_folder;
};

} // namespace

TEST_F(ModernConfigurationFileHeader, HasThirtyThreeCharacters)
{
    EXPECT_EQ(ModernConfigurationFile::GetVersionString(), s_header);
    EXPECT_EQ(ModernConfigurationFile::GetVersionString().size(), 33U);
}

TEST_F(ModernConfigurationFileHeader, StandsAtTheFrontOfTheFirstLine)
{
    const std::string header(s_header);
    const struct
    {
        const char* what;
        std::string bytes;
        bool isParseAble;
    } rows[] = {
        {"header and line feed", header + '\n', true},
        {"header without line feed", header, true},
        {"header and carriage return", header + "\r\nA=B\r\n", true},
        {"header and text", header + " written by hand\n", true},
        {"header and more digits", header + "23\n", true},
        {"header and NUL", header + std::string(1, '\0'), true},
        {"header and high bytes", header + "\xFF\xFE", true},
        {"header and a blank line", header + "\n\n", true},
        {"empty file", "", false},
        {"empty first line", '\n' + header + '\n', false},
        {"carriage return for a first line", "\r\n" + header + "\r\n", false},
        {"header on the second line", "#\n" + header + '\n', false},
        {"blank before the header", ' ' + header + '\n', false},
        {"byte-order mark before the header", "\xEF\xBB\xBF" + header + '\n', false},
        {"header in two lines", header.substr(0, 20) + '\n' + header.substr(20) + '\n', false},
        {"line feed for the last digit", header.substr(0, 32) + '\n', false},
        {"another version", header.substr(0, 32) + "2\n", false},
        {"upper case", ":QVVISACONFIGURATIONFILEVERSION01\n", false},
        {"lower case", ":qvvisaconfigurationfileversion01\n", false},
        {"no colon", header.substr(1) + '\n', false},
        {"NULs", std::string(100, '\0'), false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(isParseAble(row.bytes), row.isParseAble) << row.what;
    }
}

TEST_F(ModernConfigurationFileHeader, IsNotShorter)
{
    for (std::size_t length = 0; length < s_header.size(); ++length) {
        EXPECT_FALSE(isParseAble(s_header.substr(0, length))) << length;
        EXPECT_FALSE(isParseAble(std::string(s_header.substr(0, length)) + "\nA=B\n")) << length;
    }
}

TEST_F(ModernConfigurationFileHeader, CountsByteForByte)
{
    for (std::size_t i = 0; i < s_header.size(); ++i) {
        for (const int bit : {0x01, 0x20, 0x80}) {
            std::string header(s_header);
            header[i] = static_cast<char>(header[i] ^ bit);
            EXPECT_FALSE(isParseAble(header + '\n')) << printable(header);
        }
    }
}

TEST_F(ModernConfigurationFileHeader, IsLookedForInRegularFilesOnly)
{
    const std::filesystem::path pipe = folder() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const std::filesystem::path dangling = folder() / "dangling";
    std::filesystem::create_symlink(folder() / "missing", dangling);
    const std::filesystem::path loop = folder() / "loop";
    std::filesystem::create_symlink(loop, loop);
    for (const std::filesystem::path& place :
         {folder() / "missing", folder(), pipe, dangling, loop, folder() / "missing" / "visa.conf",
          std::filesystem::path(), std::filesystem::path("/dev/zero"),
          std::filesystem::path("/dev/null"), std::filesystem::path("/dev/random"),
          std::filesystem::path(std::string(5000, 'a'))}) {
        EXPECT_FALSE(ModernConfigurationFile::isParseAble(place)) << place;
    }
}

TEST_F(ModernConfigurationFileHeader, IsFoundThroughASymbolicLink)
{
    ASSERT_TRUE(isParseAble(s_header));
    const std::filesystem::path link = folder() / "link";
    std::filesystem::create_symlink(path(), link);
    EXPECT_TRUE(ModernConfigurationFile::isParseAble(link));
}

TEST_F(ModernConfigurationFileHeader, IsNotFoundInAFileThatMayNotBeRead)
{
    ASSERT_TRUE(isParseAble(s_header));
    std::filesystem::permissions(folder(), std::filesystem::perms(0755));
    std::filesystem::permissions(path(), std::filesystem::perms(0644));
    const std::string closed = folder() / "closed.conf";
    support::writeFile(closed, s_header);
    std::filesystem::permissions(closed, std::filesystem::perms::none);

    EXPECT_TRUE(support::asOrdinaryUser([&] {
        return ModernConfigurationFile::isParseAble(path()) &&
               !ModernConfigurationFile::isParseAble(closed);
    }));
}
