// SPDX-License-Identifier: MIT
#include "tests/config/saving/SavingTest.h"

#include "config/AtomicFileWrite.h"
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"

#include <unistd.h>

#include <sstream>

namespace fs = std::filesystem;

SavingTest::SavingTest()
{
    permit(m_home.root(), 0711);
    support::writeFile(file(), s_old);
    if (isRoot()) {
        give(folder(), support::ordinaryUser, support::ordinaryGroup);
        give(file(), support::ordinaryUser, support::ordinaryGroup);
    }
}

SavingTest::Names SavingTest::names() const
{
    Names found;
    for (const auto& entry : fs::directory_iterator(folder())) {
        found.insert(entry.path().filename());
    }
    return found;
}

std::vector<std::string> SavingTest::temporaryFiles(const fs::path& folder)
{
    std::vector<std::string> contents;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.path().filename().string().rfind(".qvvisa-", 0) == 0) {
            contents.push_back(support::readFile(entry));
        }
    }
    return contents;
}

bool SavingTest::save() const
{
    return QvVisa::writeFileAtomically(file(), s_new);
}

bool SavingTest::saveAsOrdinaryUser(const std::vector<gid_t>& groups) const
{
    return support::asOrdinaryUser([this] { return save(); }, groups);
}

std::string SavingTest::textOf(int number, int longest)
{
    const int count = 1 + number * 7919 % longest;
    return std::to_string(count) + '\n' +
           std::string(static_cast<std::size_t>(count), static_cast<char>('a' + number % 26));
}

bool SavingTest::isWhole(const std::string& text)
{
    std::istringstream words(text);
    std::size_t count = 0;
    std::string letters;
    std::string more;
    return words >> count >> letters && letters == std::string(count, letters[0]) &&
           !(words >> more);
}

bool SavingTest::isRoot()
{
    return ::geteuid() == 0;
}

struct stat SavingTest::statusOf(const fs::path& path)
{
    struct stat status = {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status;
}

mode_t SavingTest::modeOf(const fs::path& path)
{
    return statusOf(path).st_mode & 07777;
}

ino_t SavingTest::inodeOf(const fs::path& path)
{
    return statusOf(path).st_ino;
}

void SavingTest::give(const fs::path& path, uid_t user, gid_t group)
{
    EXPECT_EQ(::lchown(path.c_str(), user, group), 0) << path;
}

void SavingTest::permit(const fs::path& path, mode_t mode)
{
    EXPECT_EQ(::chmod(path.c_str(), mode), 0) << path;
}
