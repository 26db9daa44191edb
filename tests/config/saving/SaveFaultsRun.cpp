// SPDX-License-Identifier: MIT
#include "tests/config/saving/SaveFaultsRun.h"

#include "tests/support/Files.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <vector>

namespace {

constexpr int s_cannotStart = 127;

[[noreturn]] void becomeSaver(std::vector<std::string> arguments)
{
    ::setenv("LD_PRELOAD", FAULTY_CALLS_LIBRARY, 1);
    // The address sanitizer's library insists on being the first one, and stops the program when
    // a preloaded one comes before it. It need not be here: the library only passes calls on to
    // whatever follows, the sanitizer's interceptors included.
    const char* options = std::getenv("ASAN_OPTIONS"); // NOLINT(concurrency-mt-unsafe)
    const std::string former = options != nullptr ? std::string(options) + ":" : std::string();
    ::setenv("ASAN_OPTIONS", (former + "verify_asan_link_order=0").c_str(), 1);

    std::vector<char*> pointers;
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    ::execv(pointers[0], pointers.data());
    ::_exit(s_cannotStart);
}

int waitFor(pid_t child)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            throw std::runtime_error("cannot wait for the saver");
        }
    }
    return status;
}

} // namespace

SaverRun runSaver(const std::string& mode, const std::filesystem::path& path,
                  const std::filesystem::path& input, const std::filesystem::path& folder,
                  const FaultPlan& plan)
{
    const std::filesystem::path report = folder / "report";
    std::filesystem::remove(report);
    const std::vector<std::string> arguments = {SAVER_PROGRAM,
                                                mode,
                                                path,
                                                input,
                                                report,
                                                std::to_string(plan.action),
                                                std::to_string(plan.call),
                                                std::to_string(plan.error),
                                                plan.replacement,
                                                plan.target};
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::runtime_error("cannot fork");
    }
    if (child == 0) {
        becomeSaver(arguments);
    }
    const int status = waitFor(child);
    SaverRun run;
    const bool mayBeKilled = plan.action == FaultPlan::Kill || plan.action == FaultPlan::KillAmidst;
    run.wasKilled = mayBeKilled && WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    if (run.wasKilled) {
        return run;
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error("the saver ended with status " + std::to_string(status));
    }
    std::istringstream lines(support::readFile(report));
    std::getline(lines, run.answer);
    std::getline(lines, run.calls);
    return run;
}
