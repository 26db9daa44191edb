// SPDX-License-Identifier: MIT
#include "visa/VisaApi.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

/// A VISA library with three resources that does what no library should, where the variable
/// QVVISA_MISBEHAVES says so: "CALL DEED". The call is one of the six, "load" or "unload"; the
/// deeds are below.
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

void closeAll()
{
    for (int descriptor = 3; descriptor < highestDescriptor; ++descriptor) {
        ::close(descriptor);
    }
}

/// What a library does that closes what it does not know: up to the limit of this process.
void closeBelowLimit()
{
    const long limit = ::sysconf(_SC_OPEN_MAX);
    for (int descriptor = 3; descriptor < limit; ++descriptor) {
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

void misbehave(std::string_view deed)
{
    if (deed == "hang") {
        hang();
    } else if (deed == "abort") {
        std::puts("now it aborts");
        std::abort();
    } else if (deed == "crash") {
        ::raise(SIGSEGV);
    } else if (deed == "throw") {
        throw 7;
    } else if (deed == "exit") {
        std::exit(3); // NOLINT(concurrency-mt-unsafe)
    } else if (deed == "_exit") {
        ::_exit(4);
    } else if (deed == "end-thread") {
        ::pthread_exit(nullptr);
    } else if (deed == "leave-process") {
        leaveProcess();
    } else if (deed == "leave-process-and-crash") {
        leaveProcess();
        ::raise(SIGSEGV);
    } else if (deed == "fork-and-exit") {
        const pid_t forked = ::fork();
        if (forked == 0) {
            std::exit(5); // NOLINT(concurrency-mt-unsafe)
        }
        int status = 0;
        ::waitpid(forked, &status, 0);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 5) {
            std::abort();
        }
    } else if (deed == "fork-and-return") {
        // Both return, the forked process first, and that one finds nothing more.
        const pid_t forked = ::fork();
        if (forked == 0) {
            s_next = count;
        } else {
            ::waitpid(forked, nullptr, 0);
        }
    } else if (deed == "close-below-limit") {
        closeBelowLimit();
    } else if (deed == "close-all") {
        closeAll();
    } else if (deed == "close-all-and-hang") {
        closeAll();
        hang();
    } else if (deed == "write-to-report") {
        writeToReport();
        hang();
    } else if (deed == "print") {
        printMegabytes();
    } else if (deed == "block-signals-and-hang") {
        blockSignals();
        hang();
    } else if (deed == "change-folder") {
        static_cast<void>(!::chdir("/"));
    } else if (deed == "read-input") {
        std::printf("input: %d\n", std::getchar());
    }
}

/// What follows the name of the call in the variable.
std::string_view deedOf(std::string_view call)
{
    const char* const variable = std::getenv("QVVISA_MISBEHAVES");
    const std::string_view wanted = variable != nullptr ? variable : "";
    if (wanted.substr(0, call.size()) != call || wanted.substr(call.size(), 1) != " ") {
        return {};
    }
    return wanted.substr(call.size() + 1);
}

void enter(std::string_view call)
{
    misbehave(deedOf(call));
}

void describe(ViChar* description, const char* text)
{
    std::strncpy(description, text, VI_FIND_BUFLEN);
}

[[gnu::constructor]] void load()
{
    enter("load");
}

[[gnu::destructor]] void unload()
{
    enter("unload");
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
    if (deedOf("viFindRsrc") == "overrun") {
        std::memset(description, 'o', VI_FIND_BUFLEN + 20);
    } else if (deedOf("viFindRsrc") == "announce-everything") {
        *matches = ~ViUInt32{0};
    } else if (deedOf("viFindNext") == "fail-every-other-time") {
        *matches = 2501;
    }
    return VI_SUCCESS;
}

QVVISA_EXPORT ViStatus viFindNext(ViFindList, ViChar* description)
{
    enter("viFindNext");
    if (deedOf("viFindNext") == "repeat-for-ever") {
        describe(description, resources[0]);
        return VI_SUCCESS;
    }
    if (deedOf("viFindNext") == "fail-every-other-time") {
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
