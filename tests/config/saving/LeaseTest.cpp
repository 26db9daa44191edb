// SPDX-License-Identifier: MIT
// Files on which another process holds a lease: opening them fails with EAGAIN until it gives the
// lease up.

#include "config/ModernConfigurationFile.h"
#include "tests/config/saving/SavingTest.h"
#include "tests/support/Files.h"
#include "tests/support/SystemCalls.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>

namespace {

using QvVisa::ModernConfigurationFile;
using support::CallAnswer;
using support::SystemCall;
using support::SystemCalls;

class Lease : public SavingTest
{
protected:
    Lease() { support::writeFile(file(), s_header); }

    bool isRead() const { return ModernConfigurationFile::isParseAble(file()); }

    static inline const std::string s_header = ":QvVisaConfigurationFileVersion01\n";
};

/// Opening the file fails with EAGAIN this often; sleeping takes no time.
SystemCalls::Handler refusing(int times)
{
    return [=](const SystemCall& call) mutable {
        if (call.name == "nanosleep") {
            return CallAnswer{EINTR};
        }
        const bool isTheFile = std::filesystem::path(call.path).filename() == "visa.conf";
        return CallAnswer{isTheFile && times-- > 0 ? EAGAIN : 0};
    };
}

TEST_F(Lease, IsWaitedForInAHundredPausesOfASecondInAll)
{
    const std::pair<int, int> timesAndPauses[] = {{0, 0}, {1, 1}, {7, 7}, {100, 100}, {101, 100}};
    for (const auto& [times, pauses] : timesAndPauses) {
        {
            const SystemCalls reading(refusing(times));
            EXPECT_EQ(isRead(), times == pauses) << times;
            EXPECT_EQ(reading.count("nanosleep"), pauses);
        }
        {
            const SystemCalls saving(refusing(times));
            EXPECT_EQ(save(), times == pauses) << times;
            EXPECT_EQ(saving.count("nanosleep"), pauses);
        }
        EXPECT_EQ(support::readFile(file()), times == pauses ? s_new : s_header);
        support::writeFile(file(), s_header);
    }
}

#ifdef __linux__

/// Runs the action while a child process holds the lease, which gives it up when asked to.
template <typename Action>
bool whileLeased(const std::string& path, int kind, Action action)
{
    int ready[2] = {};
    if (::pipe(ready) != 0) {
        return false;
    }
    const pid_t holder = ::fork();
    if (holder == 0) {
        const int leased = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        const char isHeld = ::fcntl(leased, F_SETLEASE, kind) == 0 ? 1 : 0;
        // The request to give the lease up, SIGIO, ends the process and thereby the lease.
        while (::write(ready[1], &isHeld, 1) == 1) {
            ::pause();
        }
        ::_exit(0);
    }
    char isHeld = 0;
    const bool isStarted = ::read(ready[0], &isHeld, 1) == 1 && isHeld != 0;
    const bool result = isStarted && action();
    ::kill(holder, SIGKILL);
    ::waitpid(holder, nullptr, 0);
    ::close(ready[0]);
    ::close(ready[1]);
    return result;
}

TEST_F(Lease, OfAnotherProcessDelaysReadingAndSaving)
{
    // As the files' owner, who may hold leases; a write lease also keeps readers off.
    EXPECT_TRUE(whileLeased(file(), F_WRLCK, [this] { return isRead(); }));
    EXPECT_TRUE(whileLeased(file(), F_WRLCK, [this] { return save(); }));
    EXPECT_EQ(support::readFile(file()), s_new);
    EXPECT_TRUE(whileLeased(file(), F_RDLCK, [this] { return save(); }));
}

#endif

} // namespace
