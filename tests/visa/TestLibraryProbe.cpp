// SPDX-License-Identifier: MIT
#include "tests/support/BenchFixture.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/visa/Probing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

using visa::ProbeEnd;
using visa::ProbeReport;
using visa::ProbeRequest;

namespace {

using namespace probing;

struct Misbehaviour
{
    const char* name;
    const char* deed;
    /// How the child ends, the call without an answer (none: empty), and how many resources were
    /// found before.
    std::string end;
    const char* openCall;
    std::size_t found;
};

void PrintTo(const Misbehaviour& misbehaviour, std::ostream* out)
{
    *out << misbehaviour.deed;
}

const std::string load = "dlopen " QVVISA_MISBEHAVING_LIBRARY;

// NOLINTNEXTLINE(cert-err58-cpp,bugprone-throwing-static-initialization)
const std::vector<Misbehaviour> misbehaviours{
    {"Nothing", "", "finished", "", 3},
    {"HangWhileLoading", "load hang", "timed out", load.c_str(), 0},
    {"HangInOpen", "viOpenDefaultRM hang", "timed out", "viOpenDefaultRM", 0},
    {"HangInFind", "viFindRsrc hang", "timed out", "viFindRsrc ?*", 0},
    {"HangInNext", "viFindNext hang", "timed out", "viFindNext", 1},
    {"HangInClose", "viClose hang", "timed out", "viClose", 3},
    {"HangWithBlockedSignals", "viFindNext block-signals hang", "timed out", "viFindNext", 1},
    {"AbortWhileLoading", "load abort", "crashed " + std::to_string(SIGABRT), load.c_str(), 0},
    {"AbortInNext", "viFindNext abort", "crashed " + std::to_string(SIGABRT), "viFindNext", 1},
    {"CrashInAttribute", "viSetAttribute crash", "crashed " + std::to_string(SIGSEGV),
     "viSetAttribute", 0},
    {"ExitWhileLoading", "load exit", "exited 3", load.c_str(), 0},
    {"ExitInFind", "viFindRsrc exit", "exited 3", "viFindRsrc ?*", 0},
    {"ExitWithoutHandlersInNext", "viFindNext _exit", "exited 4", "viFindNext", 1},
    {"EndOfThread", "viFindNext end-thread", "exited", "viFindNext", 1},
    {"ProcessLeftAndCrash", "viFindNext leave-process crash", "crashed " + std::to_string(SIGSEGV),
     "viFindNext", 1},
    {"ForkedProcessExits", "viFindRsrc fork-and-exit", "finished", "", 3},
    {"ForkedProcessReturns", "viFindNext fork-and-return", "finished", "", 3},
    {"DescriptorsClosedBelowLimit", "viFindRsrc close-below-limit", "finished", "", 3},
    {"DescriptorsClosed", "viFindRsrc close-all", "report lost", "viFindRsrc ?*", 0},
    {"DescriptorsClosedInNext", "viFindNext close-all hang", "report lost", "viFindNext", 1},
    {"ReportOverwritten", "viFindNext write-to-report hang", "report lost", "viFindNext", 1},
    {"FolderChanged", "load change-folder", "finished", "", 3},
};

class LibraryThatMisbehaves : public testing::TestWithParam<Misbehaviour>
{};

TEST_P(LibraryThatMisbehaves, IsNamedWithItsCallAndWhatItDelivered)
{
    const Misbehaviour& expected = GetParam();
    const bool hangs = expected.end == "timed out" || expected.end == "report lost";
    const std::filesystem::path folder = std::filesystem::current_path();
    const ProbeReport report = probeMisbehaving(expected.deed, hangs ? withHangingTimeout : asItIs);
    EXPECT_EQ(describe(report.end), expected.end);
    const visa::ProbedCall* call = report.openCall();
    EXPECT_EQ(call != nullptr ? call->name : "", expected.openCall);
    EXPECT_EQ(resourcesOf(report),
              Texts(everything.begin(), everything.begin() + static_cast<int>(expected.found)));
    EXPECT_EQ(report.windowList.size(), expected.found);
    EXPECT_EQ(std::filesystem::current_path(), folder);
}

INSTANTIATE_TEST_SUITE_P(EachDeed, LibraryThatMisbehaves, testing::ValuesIn(misbehaviours),
                         [](const auto& each) { return each.param.name; });

TEST(LibraryProbe, ReportsTheCallsOfTheWindowsSearchInTheirOrder)
{
    const ProbeReport report = probe(QVVISA_MISBEHAVING_LIBRARY, withSerialPorts);
    const Texts expected{load + " VI_SUCCESS",
                         "viOpenDefaultRM VI_SUCCESS",
                         "viSetAttribute 2 VI_SUCCESS",
                         "viFindRsrc ?* VI_SUCCESS",
                         "viFindNext 2 VI_SUCCESS",
                         "viFindNext after the last VI_ERROR_RSRC_NFOUND",
                         "viClose 2 VI_SUCCESS",
                         "viOpenDefaultRM VI_SUCCESS",
                         "viSetAttribute VI_SUCCESS",
                         "viFindRsrc ASRL?* VI_SUCCESS",
                         "viParseRsrc GPIB0::1::INSTR VI_SUCCESS",
                         "viFindNext VI_SUCCESS",
                         "viParseRsrc ASRL3::INSTR VI_SUCCESS",
                         "viFindNext VI_SUCCESS",
                         "viParseRsrc TCPIP0::198.51.100.2::inst0::INSTR VI_SUCCESS",
                         "viFindNext VI_ERROR_RSRC_NFOUND",
                         "viClose 2 VI_SUCCESS"};
    EXPECT_EQ(callsOf(report), expected);
    EXPECT_EQ(report.library, QVVISA_MISBEHAVING_LIBRARY);
    EXPECT_EQ(report.libraryFile, QVVISA_MISBEHAVING_LIBRARY);
    EXPECT_EQ(report.count, 3U);
    EXPECT_EQ(report.serialPorts.size(), 3U);
    EXPECT_EQ(report.missingOptionalCalls,
              (Texts{"viParseRsrcEx", "viOpen", "viWrite", "viRead", "viGetAttribute",
                     "viStatusDesc", "viDisableEvent", "viDiscardEvents"}));
    EXPECT_EQ(report.droppedEntries, 0U);
}

TEST(LibraryProbe, TriesTheCandidatesUntilOneQualifies)
{
    const support::TemporaryFolder folder;
    const std::string absent = folder.path() / "absent.so";
    ProbeRequest request;
    request.candidates = {absent, QVVISA_LACKING_LIBRARY, QVVISA_MISBEHAVING_LIBRARY, absent};
    const ProbeReport report = visa::probeLibrary(request);
    ASSERT_EQ(report.attempts.size(), 3U);
    EXPECT_FALSE(report.attempts[0].isLoaded);
    EXPECT_NE(report.attempts[0].message.find(absent), std::string::npos);
    EXPECT_TRUE(report.attempts[1].isLoaded);
    EXPECT_EQ(report.attempts[1].missingCalls, Texts{"viParseRsrc"});
    EXPECT_TRUE(report.attempts[2].missingCalls.empty());
    EXPECT_EQ(report.library, QVVISA_MISBEHAVING_LIBRARY);
    EXPECT_EQ(callsOf(report)[2], "dlclose " QVVISA_LACKING_LIBRARY " VI_SUCCESS");
}

TEST(LibraryProbe, WithoutALibraryItEndsWithTheLoadersMessages)
{
    const ProbeReport report = probe("libqvvisa-that-nobody-has.so");
    EXPECT_EQ(describe(report.end), "finished");
    EXPECT_EQ(report.library, "");
    ASSERT_EQ(report.attempts.size(), 1U);
    EXPECT_NE(report.attempts[0].message, "");
    EXPECT_FALSE(report.hasSearched);
}

TEST(LibraryProbe, AnExceptionWhileLoadingIsReportedAndTheNextCandidateTried)
{
    setVariable("QVVISA_MISBEHAVES", "load throw");
    ProbeRequest request;
    request.candidates = {QVVISA_MISBEHAVING_LIBRARY, QVVISA_SIMULATOR_LIBRARY};
    const support::BenchFixture bench;
    const ProbeReport report = visa::probeLibrary(request);
    ASSERT_EQ(report.attempts.size(), 2U);
    EXPECT_TRUE(report.attempts[0].hasThrown);
    EXPECT_EQ(report.library, QVVISA_SIMULATOR_LIBRARY);
    EXPECT_EQ(callsOf(report)[0], load + " VI_ERROR_SYSTEM_ERROR");
}

TEST(LibraryProbe, AnExceptionInACallIsReportedAndTheListGoesOn)
{
    const ProbeReport report = probeMisbehaving("viFindNext throw");
    EXPECT_EQ(describe(report.end), "finished");
    EXPECT_EQ(resourcesOf(report), Texts{everything[0]});
    EXPECT_EQ(callsOf(report)[4], "viFindNext 2 VI_ERROR_SYSTEM_ERROR");
    EXPECT_TRUE(report.calls[4].hasThrown);
    EXPECT_EQ(report.droppedEntries, 2U);
}

TEST(LibraryProbe, TheOutputOfTheLibraryIsKeptApartAndCut)
{
    testing::internal::CaptureStdout();
    const ProbeReport report = probeMisbehaving("viFindRsrc print");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(resourcesOf(report), everything);
    EXPECT_EQ(report.output.size(), ProbeReport::mostOutput);
    EXPECT_EQ(report.output.substr(0, 15), "the first line\n");
    EXPECT_EQ(report.outputSize, 15U + 3000U * 1024U);
}

TEST(LibraryProbe, WhatWasPrintedBeforeACrashIsKept)
{
    EXPECT_EQ(probeMisbehaving("viFindRsrc abort").output, "now it aborts\n");
}

TEST(LibraryProbe, StandardInputIsEmpty)
{
    ASSERT_EQ(::dup2(::open("/dev/zero", O_RDONLY), STDIN_FILENO), 0);
    EXPECT_EQ(probeMisbehaving("viFindRsrc read-input").output, "input: -1\n");
}

TEST(LibraryProbe, TheCallersExitHandlersRunOnlyInTheCaller)
{
    EXPECT_EXIT(
        {
            std::atexit([] { std::fputs("handler\n", stderr); });
            std::fputs("written before\n", stdout);
            const ProbeReport report = probeMisbehaving("viFindRsrc exit");
            std::fputs((describe(report.end) + '[' + report.output + "]\n").c_str(), stderr);
            std::exit(0); // NOLINT(concurrency-mt-unsafe)
        },
        testing::ExitedWithCode(0), "^exited 3\\[\\]\nhandler\n$");
}

TEST(LibraryProbe, SignalsThatTheCallerIgnoresDoNotHideACrash)
{
    std::signal(SIGCHLD, SIG_IGN); // NOLINT(cert-err33-c)
    std::signal(SIGSEGV, SIG_IGN); // NOLINT(cert-err33-c)
    EXPECT_EQ(describe(probeMisbehaving("viFindNext crash").end),
              "crashed " + std::to_string(SIGSEGV));
    EXPECT_EQ(std::signal(SIGCHLD, SIG_DFL), SIG_IGN);
}

TEST(LibraryProbe, WorksWithoutStandardDescriptors)
{
    EXPECT_EXIT(
        {
            const int messages = ::dup(STDERR_FILENO);
            for (const int descriptor : {0, 1, 2}) {
                ::close(descriptor);
            }
            const ProbeReport report = probeMisbehaving("viFindRsrc read-input");
            ::_exit(report.end.kind == ProbeEnd::Finished && report.output == "input: -1\n" &&
                            resourcesOf(report) == everything && messages >= 0
                        ? 0
                        : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(LibraryProbe, NothingThatTheLibraryStartedRemains)
{
    // The process that the library leaves holds the writing end as well.
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const ProbeReport report = probeMisbehaving("viOpenDefaultRM leave-process");
    EXPECT_EQ(describe(report.end), "finished");
    EXPECT_EQ(resourcesOf(report), everything);
    ::close(ends[1]);
    char byte = 0;
    EXPECT_EQ(::read(ends[0], &byte, 1), 0);
    ::close(ends[0]);
}

TEST(LibraryProbe, TheEnvironmentOfTheRequestReachesTheLibraryAlone)
{
    ::unsetenv("QVVISA_MISBEHAVES"); // NOLINT(concurrency-mt-unsafe)
    ProbeRequest request;
    request.candidates = {QVVISA_MISBEHAVING_LIBRARY};
    request.environment = {{"QVVISA_MISBEHAVES", "load exit"}};
    EXPECT_EQ(describe(visa::probeLibrary(request).end), "exited 3");
    EXPECT_EQ(std::getenv("QVVISA_MISBEHAVES"), nullptr);
}

} // namespace
