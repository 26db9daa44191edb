// SPDX-License-Identifier: MIT
// Saves on a system that is short of room, and beside other programs.

#include "config/AtomicFileWrite.h"
#include "config/ConfigurationFile.h"
#include "config/ModernConfigurationFile.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TestHome.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sched.h>
#include <sys/mount.h>
#endif

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using QvVisa::writeFileAtomically;
using support::readFile;
using support::writeFile;

std::ptrdiff_t countIn(const fs::path& folder)
{
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

class SaveFaultsSystem : public testing::Test
{
protected:
    fs::path folder() const { return m_home.workingFolder(); }
    fs::path file() const { return folder() / "visa.conf"; }

    support::TestHome m_home;
};

bool replaceWithinLimit(const fs::path& file, std::size_t size, rlim_t limit)
{
    return support::inChildProcess([&] {
        // Without this the system ends a process that goes beyond, as it would any program.
        std::signal(SIGXFSZ, SIG_IGN);
        const struct rlimit limits = {limit, limit};
        if (::setrlimit(RLIMIT_FSIZE, &limits) != 0) {
            ::_exit(1);
        }
        return writeFileAtomically(file, std::string(size, 'n'));
    });
}

TEST_F(SaveFaultsSystem, KeepTheOldFileWhenFilesMayNotGrowThatLong)
{
    EXPECT_FALSE(replaceWithinLimit(file(), 20'000, 10'000));
    EXPECT_EQ(countIn(folder()), 0);

    for (const std::size_t oldSize : {std::size_t{100}, std::size_t{30'000}}) {
        const std::string old(oldSize, 'o');
        writeFile(file(), old);
        EXPECT_FALSE(replaceWithinLimit(file(), 20'000, 10'000));
        EXPECT_TRUE(readFile(file()) == old);
        EXPECT_EQ(countIn(folder()), 1);

        fs::create_hard_link(file(), folder() / "second");
        EXPECT_FALSE(replaceWithinLimit(file(), 20'000, 10'000));
        EXPECT_TRUE(readFile(file()) == old) << "overwritten in place";
        EXPECT_EQ(countIn(folder()), 2);
        fs::remove(folder() / "second");
    }
    EXPECT_TRUE(replaceWithinLimit(file(), 10'000, 10'000));
    EXPECT_EQ(readFile(file()), std::string(10'000, 'n'));
}

#ifdef __linux__
/// Only root may mount: anyone else becomes root in a user space of their own.
bool enterOwnSpace()
{
    const std::string user = std::to_string(::geteuid());
    const std::string group = std::to_string(::getegid());
    if (user == "0") {
        return ::unshare(CLONE_NEWNS) == 0;
    }
    if (::unshare(CLONE_NEWNS | CLONE_NEWUSER) != 0) {
        return false;
    }
    writeFile("/proc/self/setgroups", "deny");
    writeFile("/proc/self/uid_map", "0 " + user + " 1");
    writeFile("/proc/self/gid_map", "0 " + group + " 1");
    return true;
}
#endif

/// Puts a small file system of this process's own over the folder.
bool mountSmallFileSystem([[maybe_unused]] const fs::path& folder)
{
#ifdef __linux__
    return enterOwnSpace() && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount("small", folder.c_str(), "tmpfs", 0, "size=128k") == 0;
#else
    return false;
#endif
}

/// Takes all room but about this much.
void fillFileSystem(const fs::path& folder, std::size_t room)
{
    writeFile(folder / "room", std::string(room, 'r'));
    std::ofstream filler(folder / "filler", std::ios::binary);
    while (filler.write("filler", 6).flush()) {
    }
    fs::remove(folder / "room");
}

TEST_F(SaveFaultsSystem, KeepTheOldFileWhenTheDiskIsFull)
{
    if (!support::inChildProcess([this] { return mountSmallFileSystem(folder()); })) {
        GTEST_SKIP() << "this user may not mount a small file system";
    }
    for (const bool isLinked : {false, true}) {
        for (const std::size_t room : {std::size_t{0}, std::size_t{8192}}) {
            EXPECT_TRUE(support::inChildProcess([&] {
                mountSmallFileSystem(folder());
                const std::string old(20'000, 'o');
                const std::string bytes(40'000, 'n');
                writeFile(file(), old);
                if (isLinked) {
                    fs::create_hard_link(file(), folder() / "second");
                }
                fillFileSystem(folder(), room);
                const std::ptrdiff_t count = countIn(folder());
                const bool isKept = !writeFileAtomically(file(), bytes) &&
                                    readFile(file()) == old && countIn(folder()) == count;
                fs::remove(folder() / "filler");
                return isKept && writeFileAtomically(file(), bytes) && readFile(file()) == bytes;
            })) << (isLinked ? "linked" : "plain")
                << ", room " << room;
        }
    }
}

/// One of many contents whose parts tell whether they belong together: the provider ID is the
/// number of the resources, and these and the aliases all bear one name.
void fillStore(QvVisa::ConfigurationFile& store, const std::string& name, unsigned short count)
{
    std::vector<std::pair<std::string, std::string>> entries;
    for (unsigned short i = 0; i < count; ++i) {
        entries.emplace_back(name, "");
        entries.emplace_back(name, "ALIAS" + std::to_string(i));
    }
    store.setData(entries);
    store.setProvider(count);
}

bool isWhole(const std::string& path)
{
    QvVisa::ModernConfigurationFile file(path);
    std::unordered_map<std::string, std::string> aliases;
    std::vector<std::string> resources;
    unsigned short provider = 0;
    file.parse(aliases, resources, provider);
    return file.hadHeader() && !resources.empty() && resources.size() == provider &&
           aliases.size() == provider &&
           std::all_of(resources.begin(), resources.end(),
                       [&](const std::string& resource) { return resource == resources[0]; }) &&
           std::all_of(aliases.begin(), aliases.end(),
                       [&](const auto& alias) { return alias.second == resources[0]; });
}

/// Saves again and again in a child process, which ends with 0 if the store always held something
/// whole.
pid_t startSaving(const std::string& name, int saves)
{
    const pid_t child = ::fork();
    if (child != 0) {
        return child;
    }
    for (int i = 0; i < saves; ++i) {
        QvVisa::ConfigurationFile& store = *QvVisa::ConfigurationFile::getInstance();
        if (store.m_resources.size() != store.m_provider ||
            store.m_aliases.size() != store.m_provider) {
            ::_exit(2);
        }
        fillStore(store, name + std::to_string(i), static_cast<unsigned short>(1 + i % 70));
        store.save();
    }
    ::_exit(0);
}

TEST(SaveFaultsBesideOthers, LeaveOneWholeFileToAReaderAtAnyTime)
{
    constexpr int saves = 500;
    const support::ConfigurationFixture configuration;
    support::writeFile(configuration.path(),
                       configuration.header() + ":Provider=1\nONE\nALIAS=ONE\n");
    const std::vector<pid_t> writers = {startSaving("FIRST", saves), startSaving("SECOND", saves)};
    int reads = 0;
    int broken = 0;
    for (const pid_t writer : writers) {
        ASSERT_GT(writer, 0);
        int status = 0;
        while (::waitpid(writer, &status, WNOHANG) == 0) {
            broken += isWhole(configuration.path()) ? 0 : 1;
            ++reads;
        }
        EXPECT_EQ(status, 0) << "a saver met something broken";
    }
    EXPECT_TRUE(isWhole(configuration.path()));
    EXPECT_EQ(broken, 0) << "of " << reads << " reads";
    EXPECT_GT(reads, 0);
    EXPECT_EQ(countIn(configuration.path().parent_path()), 3) << "beside the two folders";
}

} // namespace
