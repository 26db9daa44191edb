// SPDX-License-Identifier: MIT
// Processes that are killed at any moment while they save again and again. QVVISA_KILLS is the
// number of kills for each way of writing.

#include "config/AtomicFileWrite.h"
#include "tests/config/saving/SavingTest.h"
#include "tests/support/Files.h"
#include "tests/support/SystemCalls.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <ostream>
#include <random>
#include <string>

namespace {

namespace fs = std::filesystem;
using support::CallAnswer;
using support::SystemCall;
using support::SystemCalls;

enum class Way
{
    Unnamed,
    Named,
    InPlace
};

void PrintTo(Way way, std::ostream* out)
{
    const char* const names[] = {"UnnamedFile", "NamedFile", "InPlace"};
    *out << names[static_cast<int>(way)];
}

class SaveKills : public SavingTest, public testing::WithParamInterface<Way>
{
protected:
    /// Only in a long text does a kill fall within a write.
    static int longest() { return GetParam() == Way::InPlace ? 400'000 : 10'000; }

    [[noreturn]] void saveForEver(int start) const
    {
        const SystemCalls calls([](const SystemCall& call) {
            const bool isRefused = GetParam() == Way::Named && call.name == "openat(O_TMPFILE)";
            return CallAnswer{isRefused ? EOPNOTSUPP : 0};
        });
        for (int number = start;; ++number) {
            if (!QvVisa::writeFileAtomically(file(), textOf(number, longest()))) {
                ::_exit(1);
            }
        }
    }
};

TEST_P(SaveKills, AtAnyMomentLeaveAWholeFileOrCopy)
{
    const char* const wanted = std::getenv("QVVISA_KILLS"); // NOLINT(concurrency-mt-unsafe)
    const int kills = wanted != nullptr ? std::atoi(wanted) : 40;
    ASSERT_TRUE(QvVisa::writeFileAtomically(file(), textOf(0, longest())));
    if (GetParam() == Way::InPlace) {
        fs::create_hard_link(file(), folder() / "second");
    }
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same each time
    int torn = 0;
    std::size_t left = 0;
    for (int kill = 0; kill < kills; ++kill) {
        const pid_t child = ::fork();
        if (child == 0) {
            saveForEver(kill);
        }
        const struct timespec moment = {0,
                                        std::uniform_int_distribution<long>(0, 20'000'000)(random)};
        ::nanosleep(&moment, nullptr);
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "a save failed";
        const std::vector<std::string> leftovers = temporaryFiles(folder());
        left += leftovers.size();
        if (!isWhole(support::readFile(file()))) {
            ++torn;
            ASSERT_EQ(GetParam(), Way::InPlace);
            ASSERT_TRUE(std::any_of(leftovers.begin(), leftovers.end(), isWhole))
                << "no whole copy after kill " << kill;
        }
        ASSERT_TRUE(QvVisa::writeFileAtomically(file(), textOf(kill, longest())));
        ASSERT_TRUE(temporaryFiles(folder()).empty()) << "after the next save";
    }
    std::cout << kills << " kills: " << torn << " torn files with a whole copy, " << left
              << " temporary files until the next save\n";
}

INSTANTIATE_TEST_SUITE_P(Through, SaveKills,
                         testing::Values(Way::Unnamed, Way::Named, Way::InPlace),
                         testing::PrintToStringParamName());

} // namespace
