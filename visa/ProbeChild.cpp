// SPDX-License-Identifier: MIT
#include "visa/ProbeChild.h"

#include "visa/ProbedLibrary.h"
#include "visa/ProbeReportPipe.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace visa {

namespace {

/// For the handler of exit(), which takes no argument that outlives a change of memory.
ProbeReportPipe* s_report = nullptr;

/// Runs after the handlers that the library registered and before those of the parent, and ends the
/// process: the parent's handlers must not run twice.
void reportExit(int code)
{
    if (s_report->isOwnProcess()) {
        s_report->add(ProbeRecordKind::Exits, {}, code);
        s_report->flush();
    }
    ::_exit(code);
}

void handleExit()
{
#ifdef __GLIBC__
    ::on_exit([](int code, void*) { reportExit(code); }, nullptr);
#else
    std::atexit([] { reportExit(-1); });
#endif
}

/// Moves a descriptor out of the way of a library that closes all below the limit: to the last
/// number that is possible, and the limit to that number. A huge number would need a huge table in
/// the kernel.
int moveAboveLimit(int descriptor)
{
    constexpr rlim_t largest = 65536;
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = std::min(limit.rlim_cur, largest) - 1;
    const int moved = ::fcntl(descriptor, F_DUPFD_CLOEXEC, static_cast<int>(limit.rlim_cur));
    if (moved < 0) {
        return descriptor;
    }
    ::setrlimit(RLIMIT_NOFILE, &limit);
    ::close(descriptor);
    return moved;
}

/// Standard input becomes empty, and output goes to the pipe, at once: what a library printed
/// before it crashed is shown too. The output is the last of four descriptors, so it is no standard
/// one.
void redirectStandardStreams(int output)
{
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    ::close(output);
    ::close(STDIN_FILENO);
    ::open("/dev/null", O_RDONLY); // The lowest free number is that of standard input.
    std::setvbuf(stdout, nullptr, _IONBF, 0);
}

/// The caller's handlers belong to the caller, and a blocked signal would hide a crash.
void resetSignals()
{
    for (int number = 1; number < NSIG; ++number) {
        ::signal(number, SIG_DFL); // Some cannot be changed.
    }
    sigset_t none{};
    sigemptyset(&none); // A macro on macOS.
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// A group of its own, so that the parent can kill what the library starts too; no core file.
void separateProcess(pid_t parent)
{
    ::setsid();
    rlimit none{};
    ::setrlimit(RLIMIT_CORE, &none);
#ifdef __linux__
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) {
        ::_exit(0);
    }
#else
    static_cast<void>(parent);
#endif
}

} // namespace

void runProbeChild(const ProbeRequest& request, ProbeChildPipes pipes, pid_t parent,
                   std::chrono::steady_clock::time_point deadline)
{
    separateProcess(parent);
    resetSignals();
    // Before the streams: the caller may have closed its own, and a pipe has such a number.
    ProbeReportPipe report(moveAboveLimit(pipes.report));
    redirectStandardStreams(pipes.output);
    s_report = &report;
    handleExit();
    for (const auto& [name, value] : request.environment) {
        ::setenv(name.c_str(), value.c_str(), 1); // NOLINT(concurrency-mt-unsafe)
    }
    // The frames of the parent's functions are below this one: nothing may unwind into them. What
    // arrives here is the end of the thread by pthread_exit(), or that memory ran out.
    try {
        ProbedLibrary(request, report, deadline).makeAllCalls();
        report.add(ProbeRecordKind::Finished);
        report.flush();
    } catch (...) {
        reportExit(0);
    }
    ::_exit(0);
}

} // namespace visa
