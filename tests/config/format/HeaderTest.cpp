// SPDX-License-Identifier: MIT
// Whether a file is accepted by its first line; see SpecimensTest.cpp for whole files.

#include "config/ModernConfigurationFile.h"
#include "tests/support/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <string>

using QvVisa::ModernConfigurationFile;

namespace {

const std::string s_header = ":QvVisaConfigurationFileVersion01";

class Header : public testing::Test
{
protected:
    /// What isParseAble() and a read say of a file of these bytes; both must say the same.
    bool isAccepted(const std::string& bytes) const
    {
        support::writeFile(m_path, bytes);
        ModernConfigurationFile file(m_path);
        std::unordered_map<std::string, std::string> aliases;
        std::vector<std::string> resources;
        unsigned short provider = 0;
        file.parse(aliases, resources, provider);
        EXPECT_EQ(file.hadHeader(), ModernConfigurationFile::isParseAble(m_path))
            << printable(bytes);
        return file.hadHeader();
    }

    support::TemporaryFolder m_folder;
    const std::filesystem::path m_path = m_folder.path() / "visa.conf";
};

} // namespace

TEST_F(Header, MayBeFollowedByAnything)
{
    EXPECT_EQ(ModernConfigurationFile::GetVersionString(), s_header);
    EXPECT_EQ(s_header.size(), 33U);
    for (const std::string& rest :
         {std::string(), std::string("\n"), std::string("\r\nA=B\r\n"), std::string(" by hand\n"),
          std::string("23\n"), std::string(1, '\0'), std::string("\xFF\xFE"),
          std::string("\n\n")}) {
        EXPECT_TRUE(isAccepted(s_header + rest)) << printable(rest);
    }
}

TEST_F(Header, MustBeCompleteAndEqualByteForByte)
{
    for (std::size_t i = 0; i < s_header.size(); ++i) {
        EXPECT_FALSE(isAccepted(s_header.substr(0, i))) << i;
        EXPECT_FALSE(isAccepted(s_header.substr(0, i) + "\nA=B\n")) << i;
        EXPECT_FALSE(isAccepted(s_header.substr(0, i) + '\n' + s_header.substr(i) + '\n')) << i;
        for (const int bit : {0x01, 0x20, 0x80}) {
            std::string header = s_header;
            header[i] = static_cast<char>(header[i] ^ bit);
            EXPECT_FALSE(isAccepted(header + '\n')) << printable(header);
        }
    }
    EXPECT_FALSE(isAccepted(' ' + s_header + '\n'));
}

TEST_F(Header, IsReadFromRegularFilesAndThroughLinksToThem)
{
    ASSERT_TRUE(isAccepted(s_header));
    const std::filesystem::path folder = m_folder.path();
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink(folder / "missing", folder / "dangling");
    std::filesystem::create_symlink(folder / "loop", folder / "loop");
    std::filesystem::create_symlink(m_path, folder / "link");
    EXPECT_TRUE(ModernConfigurationFile::isParseAble(folder / "link"));
    for (const std::filesystem::path& path :
         {folder / "missing", folder, folder / "pipe", folder / "dangling", folder / "loop",
          m_path / "visa.conf", std::filesystem::path(), std::filesystem::path("/dev/zero"),
          std::filesystem::path("/dev/null"), std::filesystem::path(std::string(5000, 'a'))}) {
        EXPECT_FALSE(ModernConfigurationFile::isParseAble(path)) << path;
    }
}

TEST_F(Header, IsNotFoundInAFileWithoutReadPermission)
{
    ASSERT_TRUE(isAccepted(s_header));
    std::filesystem::permissions(m_folder.path(), std::filesystem::perms(0755));
    const auto isParseAbleWith = [&](std::filesystem::perms mode) {
        std::filesystem::permissions(m_path, mode);
        return support::asOrdinaryUser(
            [&] { return ModernConfigurationFile::isParseAble(m_path); });
    };
    EXPECT_TRUE(isParseAbleWith(std::filesystem::perms(0644)));
    EXPECT_FALSE(isParseAbleWith(std::filesystem::perms::none));
}
