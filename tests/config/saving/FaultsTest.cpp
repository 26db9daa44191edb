// SPDX-License-Identifier: MIT
// Saves in which one system call after the other fails, or the process is killed there.

#include "config/AtomicFileWrite.h"
#include "tests/config/saving/SavingTest.h"
#include "tests/support/Files.h"
#include "tests/support/SystemCalls.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <functional>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using support::CallAnswer;
using support::readFile;
using support::SystemCall;
using support::SystemCalls;
using support::writeFile;

/// What the save finds.
enum class Target
{
    Plain,
    BehindALink,
    Missing,
    HardLinked,
};

struct Place
{
    const char* name;
    Target target;
    const char* refusedCall = ""; ///< A call that the file system always refuses.
    int error = 0;                ///< With this errno.
};

constexpr mode_t s_mode = 0640;
const std::string s_short = ":QvVisaConfigurationFileVersion01\n:Provider=1\nONE::INSTR\n";
const std::string s_long = ":QvVisaConfigurationFileVersion01 longer\n" + std::string(60, 'l') +
                           "\n" + std::string(60, 'm') + "\n";

class SaveFaults : public SavingTest, public testing::WithParamInterface<Place>
{
protected:
    static bool isA(Target target) { return GetParam().target == target; }
    static bool isMissing() { return isA(Target::Missing); }
    static bool isInPlace()
    {
        return isA(Target::HardLinked) || std::string("renameat") == GetParam().refusedCall;
    }

    fs::path target() const
    {
        return isA(Target::BehindALink) ? folder() / "real/other.conf" : file();
    }

    void arrange(const std::string& old) const
    {
        for (const auto& entry : fs::directory_iterator(folder())) {
            fs::remove_all(entry);
        }
        fs::create_directory(folder() / "real");
        if (isA(Target::BehindALink)) {
            fs::create_symlink("real/other.conf", file());
        }
        if (!isMissing()) {
            writeFile(target(), old);
            permit(target(), s_mode);
        }
        if (isA(Target::HardLinked)) {
            fs::create_hard_link(file(), folder() / "second");
        }
    }

    /// The place's own answers, then the fault's.
    static SystemCalls::Handler at(const SystemCalls::Handler& fault)
    {
        return [fault](const SystemCall& call) {
            if (call.name == GetParam().refusedCall) {
                return CallAnswer{GetParam().error};
            }
            CallAnswer answer = fault ? fault(call) : CallAnswer();
            // Waiting for the disk would take most of the time of these tests.
            answer.isSkipped = call.name == "fsync";
            return answer;
        };
    }

    struct Outcome
    {
        bool isSaved;
        std::vector<std::string> calls;
    };

    Outcome save(const std::string& bytes, const SystemCalls::Handler& fault = {}) const
    {
        const SystemCalls calls(at(fault));
        const bool isSaved = QvVisa::writeFileAtomically(file(), bytes);
        return {isSaved, calls.names()};
    }

    /// The calls of a save without a fault.
    std::vector<std::string> callsOfASave() const
    {
        arrange(s_long);
        const Outcome outcome = save(s_short);
        EXPECT_TRUE(outcome.isSaved);
        return outcome.calls;
    }

    std::vector<std::string> temporaryFiles() const
    {
        return SavingTest::temporaryFiles(target().parent_path());
    }

    /// What holds whatever happened: the kind of file, its mode, its link and its other name.
    void expectSurroundings() const
    {
        if (isMissing()) {
            EXPECT_TRUE(!fs::exists(target()) || fs::is_regular_file(target()));
            return;
        }
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(target())));
        EXPECT_EQ(modeOf(target()), s_mode);
        if (isA(Target::BehindALink)) {
            EXPECT_EQ(fs::read_symlink(file()), "real/other.conf");
        }
        if (isA(Target::HardLinked)) {
            EXPECT_TRUE(fs::equivalent(file(), folder() / "second"));
        }
    }

    /// The file's bytes, or "no file".
    std::string contents() const { return fs::exists(target()) ? readFile(target()) : "no file"; }

    using MakeFault = std::function<SystemCalls::Handler(int number)>;
    using Run = std::function<void(const SystemCalls::Handler& fault, const std::string& old,
                                   const std::string& bytes)>;

    /// Runs a save with the fault at each call in turn, from longer to shorter contents and back.
    /// Between two saves the number of calls may vary by a few: those beyond are without a fault.
    void forEachCall(const MakeFault& fault, const Run& run) const
    {
        const int count = static_cast<int>(callsOfASave().size());
        EXPECT_GT(count, 15);
        for (const bool isShrinking : {true, false}) {
            const std::string& old = isShrinking ? s_long : s_short;
            for (int number = 1; number <= count; ++number) {
                SCOPED_TRACE("call " + std::to_string(number));
                arrange(old);
                run(fault(number), isMissing() ? "no file" : old, isShrinking ? s_short : s_long);
                expectSurroundings();
                if (HasFailure()) {
                    return;
                }
            }
        }
    }

    /// Saves in a child process that the fault may kill.
    bool isKilled(const SystemCalls::Handler& fault, const std::string& bytes) const
    {
        const pid_t child = ::fork();
        if (child == 0) {
            ::_exit(save(bytes, fault).isSaved ? 0 : 1);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0) << status;
        return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }
};

/// What may be in a file that was written in place when the process was killed after the write.
std::string padded(const std::string& bytes, const std::string& old)
{
    return bytes + std::string(old.size() - std::min(old.size(), bytes.size()), '\n');
}

bool isAnyOf(const std::string& text, const std::vector<std::string>& texts)
{
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

TEST_P(SaveFaults, ThereAreTheseStepsInASave)
{
    // The bytes are on the disk before the file takes its name. In place, a complete copy and its
    // name are on the disk first.
    std::vector<std::string> steps = {"pwrite", "fsync", "close", "renameat"};
    if (isInPlace()) {
        steps = {"pwrite", "fsync", "fsync", "pwrite", "ftruncate", "fsync", "close", "unlinkat"};
    }
#ifdef O_TMPFILE
    steps.insert(steps.begin(), "openat(O_TMPFILE)");
#endif
    auto step = steps.begin();
    const std::vector<std::string> calls = callsOfASave();
    for (const std::string& name : calls) {
        step += step != steps.end() && name == *step ? 1 : 0;
    }
    EXPECT_TRUE(step == steps.end())
        << *step << " is not at its place in " << testing::PrintToString(calls);
    // A second wait for the disk would double the time of a save.
    const auto renaming = std::find(calls.begin(), calls.end(), "renameat");
    EXPECT_TRUE(isInPlace() || std::count(renaming, calls.end(), "fsync") == 0);
    EXPECT_EQ(contents(), s_short);
    expectSurroundings();
    EXPECT_EQ(temporaryFiles().size(), 0U);
}

TEST_P(SaveFaults, LeaveOldOrNewBytesWhenACallFails)
{
    for (const int error : {ENOSPC, EIO, EACCES, EINTR}) {
        forEachCall([error](int number) { return SystemCalls::failing(number, error); },
                    [&](const auto& fault, const auto& old, const auto& bytes) {
                        const Outcome outcome = save(bytes, fault);
                        EXPECT_EQ(contents(), outcome.isSaved ? bytes : old) << error;
                        // Only removing it may have failed.
                        const bool isRemoved = isAnyOf("unlinkat", outcome.calls);
                        EXPECT_LE(temporaryFiles().size(), isRemoved ? 1U : 0U);
                    });
    }
}

TEST_P(SaveFaults, OfTheDiskEndTheSave)
{
    const std::vector<std::string> calls = callsOfASave();
    const auto lastStep = calls.rend() - std::find(calls.rbegin(), calls.rend(),
                                                   isInPlace() ? "ftruncate" : "renameat");
    const auto nameOf = [&calls](std::ptrdiff_t number) {
        return number > 0 ? calls[static_cast<std::size_t>(number - 1)] : std::string();
    };
    for (const int error : {ENOSPC, EIO}) {
        for (int number = 1; number <= lastStep; ++number) {
            const std::string name = nameOf(number);
            // Some file systems report only then that a write has failed.
            const bool isCloseAfterFlush = name == "close" && nameOf(number - 1) == "fsync";
            const bool isEssential =
                isCloseAfterFlush ||
                isAnyOf(name, {"pwrite", "fsync", "fchmod", "linkat", "renameat", "ftruncate"});
            // The flush of the copy's name makes a copy sure that is complete anyway.
            const bool isOfFolder =
                isInPlace() && nameOf(isCloseAfterFlush ? number - 2 : number - 1) == "openat";
            if (isEssential && !isOfFolder) {
                arrange(s_long);
                const Outcome outcome = save(s_short, SystemCalls::failing(number, error));
                // For a call that is always refused there is another way.
                EXPECT_EQ(outcome.isSaved, name == GetParam().refusedCall)
                    << name << ", call " << number;
            }
        }
    }
}

TEST_P(SaveFaults, LeaveOldOrNewBytesOrACopyWhenAllFurtherCallsFail)
{
    for (const int error : {ENOSPC, EIO}) {
        forEachCall([error](int number) { return SystemCalls::failing(number, error, true); },
                    [&](const auto& fault, const auto& old, const auto& bytes) {
                        const bool isSaved = save(bytes, fault).isSaved;
                        const std::string now = contents();
                        if (isInPlace() && !isSaved) {
                            // Undoing the write failed like the rest.
                            EXPECT_TRUE(now == old || isAnyOf(bytes, temporaryFiles())) << now;
                        } else {
                            EXPECT_EQ(now, isSaved ? bytes : old);
                        }
                    });
    }
}

TEST_P(SaveFaults, OfInterruptedOrShortenedCallsDoNoHarm)
{
    for (const auto& fault : {SystemCalls::interrupting(), SystemCalls::shortening()}) {
        arrange(s_long);
        const Outcome outcome = save(s_short, fault);
        EXPECT_TRUE(outcome.isSaved);
        EXPECT_EQ(contents(), s_short);
        EXPECT_EQ(isAnyOf("ftruncate", outcome.calls), isInPlace()) << "another way than usual";
        expectSurroundings();
        EXPECT_EQ(temporaryFiles().size(), 0U);
    }
}

TEST_P(SaveFaults, OfAFileSystemThatCannotFlushAreIgnored)
{
    for (const int error : {EINVAL, ENOTSUP}) {
        arrange(s_long);
        const Outcome outcome = save(s_short, [error](const SystemCall& call) {
            return CallAnswer{call.name == "fsync" ? error : 0};
        });
        EXPECT_TRUE(outcome.isSaved);
        EXPECT_EQ(contents(), s_short);
    }
}

TEST_P(SaveFaults, LeaveOldOrNewBytesOrACopyWhenTheProcessIsKilled)
{
    const std::string next = s_short + "NEXT::INSTR\n";
    for (const MakeFault& fault :
         {MakeFault(SystemCalls::killing), MakeFault(SystemCalls::killingHalfway)}) {
        int kills = 0;
        forEachCall(fault, [&](const auto& killing, const auto& old, const auto& bytes) {
            kills += isKilled(killing, bytes) ? 1 : 0;
            const std::string now = contents();
            EXPECT_TRUE(isAnyOf(now, {old, bytes, isInPlace() ? padded(bytes, old) : bytes}) ||
                        (isInPlace() && isAnyOf(bytes, temporaryFiles())))
                << now;
            EXPECT_TRUE(save(next).isSaved);
            EXPECT_EQ(contents(), next);
            EXPECT_EQ(temporaryFiles().size(), 0U) << "the next save left a temporary file there";
        });
        EXPECT_GE(kills, isInPlace() ? 4 : 2);
    }
}

INSTANTIATE_TEST_SUITE_P(
    At, SaveFaults,
    testing::Values(Place{"Plain", Target::Plain},
                    Place{"WithoutUnnamedFiles", Target::Plain, "openat(O_TMPFILE)", EOPNOTSUPP},
                    Place{"WithoutProc", Target::Plain, "linkat", ENOENT},
                    Place{"BehindALink", Target::BehindALink}, Place{"Missing", Target::Missing},
                    Place{"HardLinked", Target::HardLinked},
                    Place{"MountPoint", Target::Plain, "renameat", EBUSY}),
    [](const auto& place) { return place.param.name; });

} // namespace
