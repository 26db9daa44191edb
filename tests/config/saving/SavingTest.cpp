// SPDX-License-Identifier: MIT
#include "tests/config/saving/SavingTest.h"

#include "config/AtomicFileWrite.h"
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"

#include <unistd.h>

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

bool SavingTest::save() const
{
    return QvVisa::writeFileAtomically(file(), s_new);
}

bool SavingTest::saveAsOrdinaryUser(const std::vector<gid_t>& groups) const
{
    return support::asOrdinaryUser([this] { return save(); }, groups);
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
