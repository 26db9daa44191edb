// SPDX-License-Identifier: MIT
#include "tests/doctor/DoctorFixture.h"

#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"

#include <sys/stat.h>

#include <array>
#include <cstdlib>
#include <map>

namespace {

using namespace QvVisa;

class Checks : public support::DoctorFixture
{
protected:
    /// All that can be seen of the files below a folder, but for their contents and when they were
    /// read.
    static std::map<std::string, std::string> state(const std::filesystem::path& folder)
    {
        std::map<std::string, std::string> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            struct stat status = {};
            ::lstat(entry.path().c_str(), &status);
            std::string& text = found[entry.path().string()];
            for (const auto value : {std::uintmax_t{status.st_ino}, std::uintmax_t{status.st_mode},
                                     static_cast<std::uintmax_t>(status.st_size)}) {
                text += std::to_string(value) + ' ';
            }
#ifdef __APPLE__
            const std::array times{status.st_mtimespec, status.st_ctimespec};
#else
            const std::array times{status.st_mtim, status.st_ctim};
#endif
            for (const timespec& time : times) {
                text += std::to_string(time.tv_sec) + '.' + std::to_string(time.tv_nsec) + ' ';
            }
        }
        return found;
    }

    static std::vector<CheckResult> runAll(const Machine& machine)
    {
        std::vector<const Check*> all;
        for (const Check& check : checks()) {
            all.push_back(&check);
        }
        return runChecks(all, machine);
    }
};

TEST_F(Checks, GroupNamesAllOfItsChecks)
{
    EXPECT_EQ(checksNamed("file").size(), 10U);
    EXPECT_EQ(checksNamed("file.lint").size(), 1U);
    EXPECT_EQ(checksNamed("rights").size(), 1U);
    EXPECT_TRUE(checksNamed("fil").empty());
    EXPECT_TRUE(checksNamed("").empty());
    EXPECT_TRUE(checksNamed("lint").empty());
}

TEST_F(Checks, CheckWithoutItsFileIsReplacedByItsExplanation)
{
    EXPECT_EQ(results("file.lint"), "problem: No configuration file was found.\n");
    EXPECT_EQ(results("file"), "problem: No configuration file was found.\n");
    support::writeFile(writeFile(), "text\n");
    EXPECT_EQ(results("file.lint"),
              "problem: Nothing in this file is read: the first line has to begin with "
              "':QvVisaConfigurationFileVersion01'. [V001]\n");
    EXPECT_EQ(results("file.time"), "ok: The file's modification time lies in the past.\n");
}

TEST_F(Checks, FirstToRepairIsTheFirstProblemElseTheFirstWarning)
{
    std::vector<CheckResult> found{{"a", Mark::Ok, "", ""}, {"b", Mark::Note, "", ""}};
    EXPECT_EQ(firstToRepair(found), nullptr);
    found.push_back({"c", Mark::Warning, "", ""});
    found.push_back({"d", Mark::Warning, "", ""});
    EXPECT_EQ(firstToRepair(found)->id, "c");
    found.push_back({"e", Mark::Problem, "", ""});
    EXPECT_EQ(firstToRepair(found)->id, "e");
}

TEST_F(Checks, WriteNothing)
{
    writeFile("DMM=GPIB0::1::INSTR # old\n");
    support::writeFile(file().parent_path() / ".qvvisa-4194999-0.tmp", "");
    std::filesystem::create_symlink("visa.conf", file().parent_path() / "link.conf");
    m_system.terminal("ttyS0", "serial");
    const auto before = state(m_home.root());
    const auto systemBefore = state(m_system.path("/"));
    for (const char* name : {"visa.conf", "link.conf"}) {
        m_fileOption = (file().parent_path() / name).string();
        EXPECT_GE(runAll(machine()).size(), 13U);
    }
    EXPECT_EQ(state(m_home.root()), before);
    EXPECT_EQ(state(m_system.path("/")), systemBefore);
}

TEST_F(Checks, PipeOrDeviceAsFileIsNotWaitedFor)
{
    const std::string pipe = (m_home.root() / "pipe").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path : {pipe, std::string("/dev/zero"), std::string("/dev/tty")}) {
        m_fileOption = path;
        const std::vector<CheckResult> found = runAll(machine());
        EXPECT_EQ(found.front().text, path + " is not a regular file, so it is not read.");
    }
}

TEST_F(Checks, LinesOfAHugeFileAreNotExamined)
{
    writeFile("A=B\n" + std::string(Machine::s_hugeSize, '\n'));
    for (const char* name : {"file.lint", "file.loses", "serial"}) {
        EXPECT_EQ(results(name), "note: The lines of so large a file are not examined here.\n");
    }
    EXPECT_EQ(results("file.read"),
              "warning: The file is read, but has 4.1 MB: every program that reads it takes long, "
              "and the doctor does not examine its lines.\n");
}

TEST_F(Checks, AnyBytesInTheFileGiveValidResults)
{
    std::string bytes = "A\x80=\xFF\r\n";
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    writeFile(bytes + std::string(1'000'000, 'x'));
    for (const CheckResult& result : runAll(machine())) {
        EXPECT_FALSE(result.text.empty()) << result.id;
        EXPECT_LT(result.text.size(), 1000U) << result.id;
    }
}

} // namespace
