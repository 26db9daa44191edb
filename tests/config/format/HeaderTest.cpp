// SPDX-License-Identifier: MIT
// Whether a file is accepted by its first line; see SpecimensTest.cpp for whole files.

#include "config/ModernConfigurationFile.h"
#include "tests/support/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

using QvVisa::ModernConfigurationFile;
using support::CallAnswer;
using support::SystemCalls;

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
        FileContents ignored;
        file.parse(ignored.aliases, ignored.resources, ignored.provider);
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

TEST_F(Header, IsReadFromReadableRegularFilesAndThroughLinksToThem)
{
    const std::filesystem::path folder = m_folder.path();
    std::filesystem::permissions(folder, std::filesystem::perms(0755));
    for (const std::filesystem::path& path : {m_path, folder / "unreadable"}) {
        support::writeFile(path, s_header);
        std::filesystem::permissions(path, std::filesystem::perms(path == m_path ? 0644 : 0));
    }
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink(folder / "missing", folder / "dangling");
    std::filesystem::create_symlink(folder / "loop", folder / "loop");
    std::filesystem::create_symlink(m_path, folder / "link");
    const auto isParseAble = [](const std::filesystem::path& path) {
        return support::asOrdinaryUser([&] { return ModernConfigurationFile::isParseAble(path); });
    };
    EXPECT_TRUE(isParseAble(m_path));
    EXPECT_TRUE(isParseAble(folder / "link"));
    for (const std::filesystem::path& path :
         {folder / "unreadable", folder / "missing", folder, folder / "pipe", folder / "dangling",
          folder / "loop", m_path / "visa.conf", std::filesystem::path(),
          std::filesystem::path("/dev/zero"), std::filesystem::path("/dev/null"),
          std::filesystem::path(std::string(5000, 'a'))}) {
        EXPECT_FALSE(isParseAble(path)) << path;
    }
}

TEST_F(Header, IsNotReadFromAFileOfMoreThanAGibibyte)
{
    support::writeFile(m_path, s_header);
    constexpr off_t limit = off_t{1} << 30;
    for (const off_t size : {limit, limit + 1}) {
        // Mostly a hole: it takes no room.
        ASSERT_EQ(::truncate(m_path.c_str(), size), 0);
        EXPECT_EQ(ModernConfigurationFile::isParseAble(m_path), size == limit) << size;
    }
}

TEST_F(Header, MayBeReadInPartsButNotHalf)
{
    support::writeFile(m_path, s_header + "\nASRL1::INSTR\n");
    for (std::size_t bytes = 0; bytes <= s_header.size(); ++bytes) {
        const SystemCalls calls(SystemCalls::readingOnly(bytes));
        EXPECT_EQ(ModernConfigurationFile::isParseAble(m_path), bytes == s_header.size()) << bytes;
    }
    for (std::size_t most = 1; most <= s_header.size() + 1; ++most) {
        const SystemCalls calls(SystemCalls::answeringReads([most](int number) {
            return CallAnswer{number % 2 == 1 ? EINTR : 0, most};
        }));
        EXPECT_TRUE(ModernConfigurationFile::isParseAble(m_path)) << most;
    }
}
