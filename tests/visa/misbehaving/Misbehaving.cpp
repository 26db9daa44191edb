// SPDX-License-Identifier: MIT
#include "visa/VisaApi.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <sstream>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

/// A VISA library with three resources that does what no library should, where the variable
/// QVVISA_MISBEHAVES says so: "CALL DEED...". The call is one of the six, or "load"; the deeds are
/// below.
namespace {

constexpr std::array<const char*, 3> resources{"GPIB0::1::INSTR", "ASRL3::INSTR",
                                               "TCPIP0::198.51.100.2::inst0::INSTR"};
constexpr ViUInt32 count = resources.size();
constexpr int highestDescriptor = 1 << 17;

std::size_t s_next = 0;

[[noreturn]] void hang()
{
    for (;;) {
        ::pause();
    }
}

void closeUpTo(long end)
{
    for (int descriptor = 3; descriptor < end; ++descriptor) {
        ::close(descriptor);
    }
}

/// A process that holds all that this one has open and outlives it.
void leaveProcess()
{
    if (::fork() == 0) {
        hang();
    }
}

void forkAndExit()
{
    const pid_t forked = ::fork();
    if (forked == 0) {
        std::exit(5); // NOLINT(concurrency-mt-unsafe)
    }
    int status = 0;
    ::waitpid(forked, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 5) {
        std::abort();
    }
}

/// Both return, the forked process first, and that one finds nothing more.
void forkAndReturn()
{
    const pid_t forked = ::fork();
    if (forked == 0) {
        s_next = count;
    } else {
        ::waitpid(forked, nullptr, 0);
    }
}

/// Writes to the highest pipe, which is the probe's report. Lower ones may belong to the program
/// that runs the tests.
void writeToReport()
{
    for (int descriptor = highestDescriptor; descriptor > 2; --descriptor) {
        struct stat status = {};
        if (::fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode)) {
            static_cast<void>(!::write(descriptor, "This is no record of a report.\n", 31));
            return;
        }
    }
}

void blockSignals()
{
    sigset_t all{};
    sigfillset(&all); // A macro on macOS.
    ::sigprocmask(SIG_SETMASK, &all, nullptr);
    for (int number = 1; number < NSIG; ++number) {
        ::signal(number, SIG_IGN);
    }
}

void printMegabytes()
{
    const std::string line(1023, 'm');
    std::puts("the first line");
    for (int each = 0; each < 3000; ++each) {
        std::puts(line.c_str());
    }
}

void abortWithMessage()
{
    std::puts("now it aborts");
    std::abort();
}

/// Does nothing for a deed that its call does itself.
void misbehave(std::string_view deed)
{
    // Not a global: the library misbehaves while it is loaded, before globals are constructed.
    static const std::map<std::string_view, void (*)()> deeds{
        {"hang", [] { hang(); }},
        {"abort", abortWithMessage},
        {"crash", [] { ::raise(SIGSEGV); }},
        {"throw", [] { throw 7; }},
        {"exit", [] { std::exit(3); }}, // NOLINT(concurrency-mt-unsafe)
        {"_exit", [] { ::_exit(4); }},
        {"end-thread", [] { ::pthread_exit(nullptr); }},
        {"leave-process", leaveProcess},
        {"fork-and-exit", forkAndExit},
        {"fork-and-return", forkAndReturn},
        // As a library does that closes what it does not know: up to the limit of this process.
        {"close-below-limit", [] { closeUpTo(::sysconf(_SC_OPEN_MAX)); }},
        {"close-all", [] { closeUpTo(highestDescriptor); }},
        {"write-to-report", writeToReport},
        {"block-signals", blockSignals},
        {"print", printMegabytes},
        {"change-folder", [] { static_cast<void>(!::chdir("/")); }},
        {"read-input", [] { std::printf("input: %d\n", std::getchar()); }}};
    const auto found = deeds.find(deed);
    if (found != deeds.end()) {
        found->second();
    }
}

/// What follows the name of the call in the variable.
std::string deedsOf(std::string_view call)
{
    const char* const variable = std::getenv("QVVISA_MISBEHAVES");
    const std::string wanted = variable != nullptr ? variable : "";
    if (wanted.substr(0, call.size()) != call || wanted.substr(call.size(), 1) != " ") {
        return {};
    }
    return wanted.substr(call.size() + 1);
}

void enter(std::string_view call)
{
    std::istringstream deeds(deedsOf(call));
    for (std::string deed; deeds >> deed;) {
        misbehave(deed);
    }
}

void describe(ViChar* description, const char* text)
{
    std::strncpy(description, text, VI_FIND_BUFLEN);
}

[[gnu::constructor]] void load()
{
    enter("load");
}

} // namespace

#define QVVISA_EXPORT [[gnu::visibility("default")]]

QVVISA_EXPORT ViStatus viOpenDefaultRM(ViSession* session)
{
    enter("viOpenDefaultRM");
    *session = 1;
    return VI_SUCCESS;
}

QVVISA_EXPORT ViStatus viSetAttribute(ViObject, ViAttr, ViAttrState)
{
    enter("viSetAttribute");
    return VI_SUCCESS;
}

QVVISA_EXPORT ViStatus viFindRsrc(ViSession, ViConstString, ViFindList* list, ViUInt32* matches,
                                  ViChar* description)
{
    enter("viFindRsrc");
    *list = 2;
    *matches = count;
    s_next = 1;
    describe(description, resources[0]);
    if (deedsOf("viFindRsrc") == "overrun") {
        std::memset(description, 'o', VI_FIND_BUFLEN + 20);
    } else if (deedsOf("viFindRsrc") == "announce-everything") {
        *matches = ~ViUInt32{0};
    } else if (deedsOf("viFindNext") == "fail-every-other-time") {
        *matches = 2501;
    }
    return VI_SUCCESS;
}

QVVISA_EXPORT ViStatus viFindNext(ViFindList, ViChar* description)
{
    enter("viFindNext");
    if (deedsOf("viFindNext") == "fail-every-other-time") {
        return ++s_next % 2 == 0 ? VI_ERROR_SYSTEM_ERROR : VI_SUCCESS;
    }
    if (s_next >= count) {
        return VI_ERROR_RSRC_NFOUND;
    }
    describe(description, resources[s_next]);
    ++s_next;
    return VI_SUCCESS;
}

#ifndef QVVISA_LACKS_PARSE
QVVISA_EXPORT ViStatus viParseRsrc(ViSession, ViConstString, ViUInt16* type, ViUInt16* number)
{
    enter("viParseRsrc");
    *type = VI_INTF_ASRL;
    *number = 3;
    return VI_SUCCESS;
}
#endif

QVVISA_EXPORT ViStatus viClose(ViObject)
{
    enter("viClose");
    return VI_SUCCESS;
}

#ifdef QVVISA_TALKS
extern "C" QVVISA_EXPORT ViStatus viOpen(ViSession, ViConstString, ViUInt32, ViUInt32,
                                         ViSession* instrument)
{
    *instrument = 3;
    return VI_SUCCESS;
}

extern "C" QVVISA_EXPORT ViStatus viWrite(ViSession, const unsigned char*, ViUInt32 size,
                                          ViUInt32* written)
{
    *written = size;
    return VI_SUCCESS;
}

/// Claims to have read more than there is room for.
extern "C" QVVISA_EXPORT ViStatus viRead(ViSession, unsigned char* buffer, ViUInt32 size,
                                         ViUInt32* got)
{
    std::memset(buffer, 'r', size);
    *got = ~ViUInt32{0};
    return VI_SUCCESS;
}
#endif
