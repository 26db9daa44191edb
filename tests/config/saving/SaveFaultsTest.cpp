// SPDX-License-Identifier: MIT
// Saves in which one system call after the other goes wrong.

#include "tests/config/saving/SaveFaultsRun.h"
#include "tests/support/Files.h"
#include "tests/support/TestHome.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using support::readFile;
using support::writeFile;

constexpr mode_t s_mode = 0640;

/// A way in which the file stands there before the save.
enum class Place
{
    Plain,
    BehindALink,
    Linked, ///< It has two names.
    Missing
};

/// Names the cases.
void PrintTo(Place place, std::ostream* out)
{
    const char* const names[] = {"Plain", "BehindALink", "Linked", "Missing"};
    *out << names[static_cast<int>(place)];
}

const std::string s_short = ":QvVisaConfigurationFileVersion01\n:Provider=1\nONE::INSTR\n";
const std::string s_long = ":QvVisaConfigurationFileVersion01 longer\n" + std::string(60, 'l') +
                           "\n" + std::string(60, 'm') + "\n";

std::vector<std::string> split(const std::string& calls)
{
    std::istringstream names(calls);
    return {std::istream_iterator<std::string>(names), {}};
}

/// The number of the first call of that name.
int numberOf(const std::string& name, const std::string& calls)
{
    const std::vector<std::string> names = split(calls);
    return 1 + static_cast<int>(std::find(names.begin(), names.end(), name) - names.begin());
}

class SaveFaults : public testing::TestWithParam<Place>
{
protected:
    static bool isInPlace() { return GetParam() == Place::Linked; }
    static bool isMissing() { return GetParam() == Place::Missing; }

    fs::path folder() const { return m_home.workingFolder(); }
    fs::path path() const { return folder() / "visa.conf"; }
    fs::path target() const
    {
        return GetParam() == Place::BehindALink ? folder() / "real/other.conf" : path();
    }

    void arrange(const std::string& old) const
    {
        fs::remove_all(folder() / "real");
        fs::create_directory(folder() / "real");
        fs::remove(path());
        fs::remove(folder() / "second");
        if (GetParam() == Place::BehindALink) {
            fs::create_symlink("real/other.conf", path());
        }
        if (!isMissing()) {
            writeFile(target(), old);
            ASSERT_EQ(::chmod(target().c_str(), s_mode), 0);
        }
        if (GetParam() == Place::Linked) {
            fs::create_hard_link(path(), folder() / "second");
        }
    }

    SaverRun save(const std::string& bytes, const FaultPlan& plan = {}) const
    {
        writeFile(m_home.root() / "bytes", bytes);
        return runSaver("save", path(), m_home.root() / "bytes", m_home.root(), plan);
    }

    /// Removes them, too.
    std::size_t takeTemporaryFiles() const
    {
        std::vector<fs::path> temporaryFiles;
        for (const auto& entry : fs::directory_iterator(target().parent_path())) {
            if (entry.path().filename().string().rfind(".qvvisa-", 0) == 0) {
                temporaryFiles.push_back(entry.path());
            }
        }
        for (const fs::path& temporaryFile : temporaryFiles) {
            fs::remove(temporaryFile);
        }
        return temporaryFiles.size();
    }

    /// What holds whatever happened: the kind of file, its mode and its other name.
    void expectSurroundings() const
    {
        struct stat status = {};
        if (::lstat(target().c_str(), &status) != 0) {
            EXPECT_TRUE(isMissing()) << "the file is gone";
            return;
        }
        EXPECT_TRUE(S_ISREG(status.st_mode));
        if (!isMissing()) {
            EXPECT_EQ(status.st_mode & 07777U, s_mode);
        }
        if (GetParam() == Place::BehindALink) {
            EXPECT_EQ(fs::read_symlink(path()), "real/other.conf");
        }
        if (GetParam() == Place::Linked) {
            EXPECT_TRUE(fs::equivalent(path(), folder() / "second"));
        }
    }

    /// The bytes, or a text that stands for no file.
    std::string contents() const { return fs::exists(target()) ? readFile(target()) : "no file"; }

    using Check =
        std::function<void(const SaverRun& run, const std::string& old, const std::string& bytes)>;

    /// Runs a save with the fault at each call in turn, from longer to shorter contents and back.
    void saveWithFaultAtEachCall(FaultPlan plan, const Check& check) const
    {
        for (const bool isShrinking : {true, false}) {
            const std::string& old = isShrinking ? s_long : s_short;
            const std::string& bytes = isShrinking ? s_short : s_long;
            for (plan.call = 1;; ++plan.call) {
                SCOPED_TRACE("action " + std::to_string(plan.action) + ", error " +
                             std::to_string(plan.error) + ", call " + std::to_string(plan.call));
                arrange(old);
                const SaverRun run = save(bytes, plan);
                if (!run.reached(plan)) {
                    EXPECT_GT(plan.call, 8) << "so few calls were seen: " << run.calls;
                    break;
                }
                expectSurroundings();
                check(run, isMissing() ? "no file" : old, bytes);
                if (HasFailure()) {
                    return;
                }
            }
        }
    }

    support::TestHome m_home;
};

TEST_P(SaveFaults, SeeTheStepsOfASave)
{
    arrange(s_long);
    const SaverRun run = save(s_short);
    EXPECT_EQ(run.answer, "true");
    // The bytes are on the disk before the file takes its name, and then the name is.
    const std::vector<std::string> steps =
        isInPlace()
            ? std::vector<std::string>{"openat", "pwrite", "ftruncate", "fsync", "close"}
            : std::vector<std::string>{"openat", "pwrite", "fsync", "close", "renameat", "fsync"};
    auto step = steps.begin();
    for (const std::string& name : split(run.calls)) {
        step += step != steps.end() && name == *step ? 1 : 0;
    }
    EXPECT_TRUE(step == steps.end()) << *step << " is not at its place in " << run.calls;
    EXPECT_EQ(readFile(path()), s_short);
    expectSurroundings();
    EXPECT_EQ(takeTemporaryFiles(), 0U);
}

TEST_P(SaveFaults, LeaveOldOrNewBytesWhenACallFails)
{
    for (const int error : {ENOSPC, EIO, EACCES, EINTR}) {
        saveWithFaultAtEachCall(
            {FaultPlan::Fail, 0, error},
            [this](const SaverRun& run, const std::string& old, const std::string& bytes) {
                EXPECT_EQ(contents(), run.answer == "true" ? bytes : old) << run.calls;
                EXPECT_EQ(takeTemporaryFiles(), 0U) << run.calls;
            });
    }
}

/// A broken or full disk ends the save: no other way of writing is tried. Only failures after the
/// last step that counts, and when a folder is closed, are ignored.
TEST_P(SaveFaults, EndWithTheFirstErrorOfTheDisk)
{
    arrange(s_long);
    const std::string calls = save(s_short).calls;
    const int lastStep = numberOf(isInPlace() ? "fsync" : "renameat", calls);
    for (const int error : {ENOSPC, EIO}) {
        FaultPlan plan{FaultPlan::Fail, 0, error};
        std::string previous;
        for (const std::string& name : split(calls)) {
            ++plan.call;
            arrange(s_long);
            const bool isClosing = name == "close" && previous != "fsync";
            const bool isPassedOver = plan.call > lastStep + (isInPlace() ? 1 : 0) || isClosing;
            previous = name;
            EXPECT_EQ(save(s_short, plan).answer, isPassedOver ? "true" : "false")
                << plan.call << " of " << calls;
        }
    }
}

TEST_P(SaveFaults, LeaveOldOrNewBytesWhenAllFurtherCallsFail)
{
    for (const int error : {ENOSPC, EIO}) {
        saveWithFaultAtEachCall(
            {FaultPlan::FailForGood, 0, error},
            [this](const SaverRun& run, const std::string& old, const std::string& bytes) {
                const std::string now = contents();
                // Taking a write back fails like the rest: then the new bytes are there, perhaps
                // with the empty lines that were to be cut off.
                const std::string padded =
                    bytes + std::string(old.size() - std::min(old.size(), bytes.size()), '\n');
                if (isInPlace() && run.answer == "false") {
                    EXPECT_TRUE(now == old || now == bytes || now == padded) << now;
                } else {
                    EXPECT_EQ(now, run.answer == "true" ? bytes : old) << run.calls;
                }
                EXPECT_EQ(takeTemporaryFiles(), 0U) << run.calls;
            });
    }
}

TEST_P(SaveFaults, SaveInSpiteOfInterruptions)
{
    arrange(s_long);
    SaverRun run = save(s_short, {FaultPlan::Interrupt});
    EXPECT_EQ(run.answer, "true") << run.calls;
    EXPECT_EQ(contents(), s_short);
    if (!isInPlace()) {
        EXPECT_NE(run.calls.find("renameat "), std::string::npos)
            << "an interruption is no reason to overwrite in place: " << run.calls;
    }
    arrange(s_long);
    run = save(s_short, {FaultPlan::Shorten});
    EXPECT_EQ(run.answer, "true") << run.calls;
    EXPECT_EQ(contents(), s_short);
    expectSurroundings();
    EXPECT_EQ(takeTemporaryFiles(), 0U);
}

TEST_P(SaveFaults, SaveOnAFileSystemThatCannotFlush)
{
    for (const int error : {EINVAL, ENOTSUP}) {
        arrange(s_long);
        FaultPlan plan{FaultPlan::Fail, numberOf("fsync", save(s_short).calls), error};
        arrange(s_long);
        const SaverRun run = save(s_short, plan);
        ASSERT_TRUE(run.reached(plan));
        EXPECT_EQ(run.answer, "true") << run.calls;
        EXPECT_EQ(contents(), s_short);
    }
}

TEST_P(SaveFaults, DoNotLoseTheOwnerToAFailure)
{
    if (::geteuid() != 0 || isMissing()) {
        GTEST_SKIP() << "needs a file of another owner's, which only root can make";
    }
    const auto arrangeAnothers = [this] {
        arrange(s_long);
        ASSERT_EQ(::chown(target().c_str(), 1234, 5678), 0);
    };
    arrangeAnothers();
    const std::string calls = save(s_short).calls;
    const FaultPlan plan{FaultPlan::Fail, numberOf("fchown", calls), EIO};
    arrangeAnothers();
    const SaverRun run = save(s_short, plan);
    // Overwriting in place gives nothing away.
    ASSERT_NE(run.reached(plan), isInPlace()) << run.calls;
    EXPECT_EQ(contents(), isInPlace() ? s_short : s_long);
    struct stat status = {};
    ASSERT_EQ(::stat(target().c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 1234U);
    EXPECT_EQ(status.st_gid, 5678U);
    expectSurroundings();
    EXPECT_EQ(takeTemporaryFiles(), 0U);
}

TEST_P(SaveFaults, LeaveOldOrNewBytesWhenTheProcessIsKilled)
{
    const std::string next = s_short + "NEXT::INSTR\n";
    saveWithFaultAtEachCall({FaultPlan::Kill}, [&](const SaverRun& run, const std::string& old,
                                                   const std::string& bytes) {
        EXPECT_TRUE(run.wasKilled);
        const std::string now = contents();
        const std::string padded =
            bytes + std::string(old.size() - std::min(old.size(), bytes.size()), '\n');
        EXPECT_TRUE(now == old || now == bytes || (isInPlace() && now == padded)) << now;

        EXPECT_EQ(save(next).answer, "true") << "what was left behind is in the way";
        EXPECT_EQ(contents(), next);
        expectSurroundings();
        EXPECT_LE(takeTemporaryFiles(), 1U);
    });
}

TEST_P(SaveFaults, CopeWithAKillAmidstAWrite)
{
    int kills = 0;
    saveWithFaultAtEachCall(
        {FaultPlan::KillAmidst},
        [&](const SaverRun& run, const std::string& old, const std::string& bytes) {
            kills += run.wasKilled ? 1 : 0;
            if (run.wasKilled && isInPlace()) {
                // Such a file can be torn. At least that does not last.
                EXPECT_EQ(save(bytes).answer, "true");
                EXPECT_EQ(contents(), bytes);
                return;
            }
            EXPECT_EQ(contents(), run.wasKilled ? old : bytes);
            EXPECT_EQ(takeTemporaryFiles(), run.wasKilled ? 1U : 0U);
        });
    // In each direction there is one write, and before it the old bytes are read if need be.
    EXPECT_EQ(kills, isInPlace() ? 4 : 2);
}

INSTANTIATE_TEST_SUITE_P(File, SaveFaults,
                         testing::Values(Place::Plain, Place::BehindALink, Place::Linked,
                                         Place::Missing));

} // namespace
