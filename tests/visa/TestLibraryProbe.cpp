// SPDX-License-Identifier: MIT
#include "tests/support/BenchFixture.h"
#include "tests/support/Files.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryFolder.h"
#include "visa/LibraryProbe.h"
#include "visa/StatusNames.h"

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

using Texts = std::vector<std::string>;

const Texts everything{"GPIB0::1::INSTR", "ASRL3::INSTR", "TCPIP0::198.51.100.2::inst0::INSTR"};

/// For a library that hangs; long enough for a busy machine to come to the call in which it does.
constexpr std::chrono::milliseconds hangingTimeout{support::isSanitized ? 6000 : 2000};

void setVariable(const char* name, const std::string& value)
{
    ::setenv(name, value.c_str(), 1); // NOLINT(concurrency-mt-unsafe)
}

ProbeReport probe(
    const std::string& library, void (*change)(ProbeRequest&) = [](ProbeRequest&) {})
{
    ProbeRequest request;
    request.candidates = {library};
    request.timeout = std::chrono::seconds(30);
    change(request);
    return visa::probeLibrary(request);
}

ProbeReport probeSimulator(void (*change)(ProbeRequest&) = [](ProbeRequest&) {})
{
    return probe(QVVISA_SIMULATOR_LIBRARY, change);
}

Texts resourcesOf(const ProbeReport& report)
{
    Texts texts;
    for (const visa::FoundResource& found : report.resources) {
        texts.push_back(found.resource);
    }
    return texts;
}

/// "viFindNext 3 VI_SUCCESS", or "viFindNext ..." for a call without an answer.
Texts callsOf(const ProbeReport& report)
{
    Texts texts;
    for (const visa::ProbedCall& call : report.calls) {
        texts.push_back(call.name + (call.times > 1 ? ' ' + std::to_string(call.times) : "") +
                        (call.hasAnswered ? ' ' + visa::statusName(call.status) : " ..."));
    }
    return texts;
}

std::string describe(const ProbeEnd& end)
{
    static constexpr std::array<const char*, 6> kinds{"finished", "timed out",   "crashed",
                                                      "exited",   "report lost", "no child"};
    const bool isTimeout = end.kind == ProbeEnd::TimedOut;
    EXPECT_EQ(isTimeout, end.detail == hangingTimeout.count());
    return kinds.at(end.kind) +
           (!isTimeout && end.detail != 0 ? ' ' + std::to_string(end.detail) : "");
}

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

std::ostream& operator<<(std::ostream& stream, const Misbehaviour& misbehaviour)
{
    return stream << misbehaviour.deed;
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
    {"HangWithBlockedSignals", "viFindNext block-signals-and-hang", "timed out", "viFindNext", 1},
    {"AbortWhileLoading", "load abort", "crashed " + std::to_string(SIGABRT), load.c_str(), 0},
    {"AbortInNext", "viFindNext abort", "crashed " + std::to_string(SIGABRT), "viFindNext", 1},
    {"CrashInAttribute", "viSetAttribute crash", "crashed " + std::to_string(SIGSEGV),
     "viSetAttribute", 0},
    {"ExitWhileLoading", "load exit", "exited 3", load.c_str(), 0},
    {"ExitInFind", "viFindRsrc exit", "exited 3", "viFindRsrc ?*", 0},
    {"ExitWithoutHandlersInNext", "viFindNext _exit", "exited 4", "viFindNext", 1},
    {"EndOfThread", "viFindNext end-thread", "exited", "viFindNext", 1},
    {"ThrowInNext", "viFindNext throw", "finished", "", 1},
    {"ProcessLeft", "viOpenDefaultRM leave-process", "finished", "", 3},
    {"ProcessLeftAndCrash", "viFindNext leave-process-and-crash",
     "crashed " + std::to_string(SIGSEGV), "viFindNext", 1},
    {"ForkedProcessExits", "viFindRsrc fork-and-exit", "finished", "", 3},
    {"ForkedProcessReturns", "viFindNext fork-and-return", "finished", "", 3},
    {"DescriptorsClosedBelowLimit", "viFindRsrc close-below-limit", "finished", "", 3},
    {"DescriptorsClosed", "viFindRsrc close-all", "report lost", "viFindRsrc ?*", 0},
    {"DescriptorsClosedInNext", "viFindNext close-all-and-hang", "report lost", "viFindNext", 1},
    {"ReportOverwritten", "viFindNext write-to-report", "report lost", "viFindNext", 1},
    {"FolderChanged", "load change-folder", "finished", "", 3},
    {"InputRead", "viFindRsrc read-input", "finished", "", 3},
    {"Printing", "viFindRsrc print", "finished", "", 3},
};

class LibraryThatMisbehaves : public testing::TestWithParam<Misbehaviour>
{};

TEST_P(LibraryThatMisbehaves, IsNamedWithItsCallAndWhatItDelivered)
{
    const Misbehaviour& expected = GetParam();
    setVariable("QVVISA_MISBEHAVES", expected.deed);
    const std::filesystem::path folder = std::filesystem::current_path();
    const ProbeReport report = probe(QVVISA_MISBEHAVING_LIBRARY, [](ProbeRequest& request) {
        request.timeout = hangingTimeout;
        // Only what hangs may take that long.
        if (std::string(GetParam().end) != "timed out" &&
            std::string(GetParam().end) != "report lost") {
            request.timeout = std::chrono::seconds(30);
        }
    });
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
    const ProbeReport report = probe(QVVISA_MISBEHAVING_LIBRARY,
                                     [](ProbeRequest& request) { request.serialPorts = true; });
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
    EXPECT_EQ(report.missingOptionalCalls, visa::optionalCalls());
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
    setVariable("QVVISA_MISBEHAVES", "viFindNext throw");
    const ProbeReport report = probe(QVVISA_MISBEHAVING_LIBRARY);
    EXPECT_EQ(callsOf(report)[4], "viFindNext 2 VI_ERROR_SYSTEM_ERROR");
    EXPECT_TRUE(report.calls[4].hasThrown);
    EXPECT_EQ(report.droppedEntries, 2U);
}

TEST(LibraryProbe, TheOutputOfTheLibraryIsKeptApartAndCut)
{
    setVariable("QVVISA_MISBEHAVES", "viFindRsrc print");
    testing::internal::CaptureStdout();
    const ProbeReport report = probe(QVVISA_MISBEHAVING_LIBRARY);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(report.output.size(), ProbeReport::mostOutput);
    EXPECT_EQ(report.output.substr(0, 15), "the first line\n");
    EXPECT_EQ(report.outputSize, 15U + 3000U * 1024U);
}

TEST(LibraryProbe, WhatWasPrintedBeforeACrashIsKept)
{
    setVariable("QVVISA_MISBEHAVES", "viFindRsrc abort");
    EXPECT_EQ(probe(QVVISA_MISBEHAVING_LIBRARY).output, "now it aborts\n");
}

TEST(LibraryProbe, StandardInputIsEmpty)
{
    const support::TemporaryFolder folder;
    support::writeFile(folder.path() / "input", "x");
    ASSERT_EQ(::dup2(::open((folder.path() / "input").c_str(), O_RDONLY), STDIN_FILENO), 0);
    setVariable("QVVISA_MISBEHAVES", "viFindRsrc read-input");
    EXPECT_EQ(probe(QVVISA_MISBEHAVING_LIBRARY).output, "input: -1\n");
}

TEST(LibraryProbe, TheCallersExitHandlersRunOnlyInTheCaller)
{
    EXPECT_EXIT(
        {
            std::atexit([] { std::fputs("handler\n", stderr); });
            std::fputs("written before\n", stdout);
            setVariable("QVVISA_MISBEHAVES", "viFindRsrc exit");
            const ProbeReport report = probe(QVVISA_MISBEHAVING_LIBRARY);
            std::fputs((describe(report.end) + '[' + report.output + "]\n").c_str(), stderr);
            std::exit(0); // NOLINT(concurrency-mt-unsafe)
        },
        testing::ExitedWithCode(0), "^exited 3\\[\\]\nhandler\n$");
}

TEST(LibraryProbe, SignalsThatTheCallerIgnoresDoNotHideACrash)
{
    std::signal(SIGCHLD, SIG_IGN); // NOLINT(cert-err33-c)
    std::signal(SIGSEGV, SIG_IGN); // NOLINT(cert-err33-c)
    setVariable("QVVISA_MISBEHAVES", "viFindNext crash");
    EXPECT_EQ(describe(probe(QVVISA_MISBEHAVING_LIBRARY).end),
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
            setVariable("QVVISA_MISBEHAVES", "viFindRsrc read-input");
            const ProbeReport report = probe(QVVISA_MISBEHAVING_LIBRARY);
            ::_exit(report.end.kind == ProbeEnd::Finished && report.output == "input: -1\n" &&
                            resourcesOf(report) == everything && messages >= 0
                        ? 0
                        : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(LibraryProbe, AnAnnouncedCountOfBillionsEndsAfterAThousandFailures)
{
    setVariable("QVVISA_MISBEHAVES", "viFindRsrc announce-everything");
    const ProbeReport report = probe(QVVISA_MISBEHAVING_LIBRARY);
    EXPECT_EQ(describe(report.end), "finished");
    EXPECT_EQ(report.count, ~ViUInt32{0});
    EXPECT_EQ(resourcesOf(report), everything);
    EXPECT_TRUE(report.isListCut);
    EXPECT_EQ(report.droppedEntries, ProbeReport::mostFailures);
    EXPECT_EQ(callsOf(report)[5], "viFindNext 1000 VI_ERROR_RSRC_NFOUND");
}

TEST(LibraryProbe, ACountThatIsTooSmallIsNoticed)
{
    const support::BenchFixture bench("resource ASRL{n}::INSTR repeat=3\ncount 2\n");
    const ProbeReport report = probeSimulator();
    EXPECT_EQ(resourcesOf(report), (Texts{"ASRL1::INSTR", "ASRL2::INSTR"}));
    EXPECT_TRUE(report.hasMoreThanCount);
    EXPECT_FALSE(probe(QVVISA_MISBEHAVING_LIBRARY).hasMoreThanCount);
}

TEST(LibraryProbe, FailuresThatAreNotInARowDoNotCutTheList)
{
    setVariable("QVVISA_MISBEHAVES", "viFindNext fail-every-other-time");
    const ProbeReport report = probe(QVVISA_MISBEHAVING_LIBRARY);
    EXPECT_FALSE(report.isListCut);
    EXPECT_EQ(report.droppedEntries, 1250U);
    EXPECT_EQ(report.resources.size(), 1251U);
}

TEST(LibraryProbe, NothingThatTheLibraryStartedRemains)
{
    // The process that the library leaves holds the writing end as well.
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    setVariable("QVVISA_MISBEHAVES", "viOpenDefaultRM leave-process");
    EXPECT_EQ(describe(probe(QVVISA_MISBEHAVING_LIBRARY).end), "finished");
    ::close(ends[1]);
    char byte = 0;
    EXPECT_EQ(::read(ends[0], &byte, 1), 0);
    ::close(ends[0]);
}

TEST(LibraryProbe, AnEndlessListIsCut)
{
    setVariable("QVVISA_MISBEHAVES", "viFindNext repeat-for-ever");
    const support::BenchFixture bench("resource GPIB0::{n}::INSTR repeat=100001");
    const ProbeReport report = probeSimulator();
    EXPECT_EQ(describe(report.end), "finished");
    EXPECT_TRUE(report.isListCut);
    EXPECT_EQ(report.resources.size(), ProbeReport::mostResources);
    EXPECT_LT(report.calls.size(), 10U);
}

TEST(LibraryProbe, ADescriptionThatIsTooLongIsCutAndNamed)
{
    setVariable("QVVISA_MISBEHAVES", "viFindRsrc overrun");
    const ProbeReport report = probe(QVVISA_MISBEHAVING_LIBRARY);
    ASSERT_EQ(report.resources.size(), 3U);
    EXPECT_EQ(report.resources[0].resource, std::string(VI_FIND_BUFLEN, 'o'));
    EXPECT_TRUE(report.resources[0].isUnterminated);
    EXPECT_TRUE(report.resources[0].isOverrun);
    EXPECT_FALSE(report.resources[1].isUnterminated);
    EXPECT_FALSE(report.resources[1].isOverrun);
}

TEST(LibraryProbe, ADescriptionWithoutItsZeroIsBounded)
{
    const support::BenchFixture bench("resource USB0::0x1234::0x5678::SN7::INSTR no-end");
    const ProbeReport report = probeSimulator();
    ASSERT_EQ(report.resources.size(), 1U);
    EXPECT_EQ(report.resources[0].resource.size(), static_cast<std::size_t>(VI_FIND_BUFLEN));
    EXPECT_TRUE(report.resources[0].isUnterminated);
    EXPECT_FALSE(report.resources[0].isOverrun);
}

TEST(LibraryProbe, TheWindowListsNothingOfASearchThatWarns)
{
    const support::BenchFixture bench("resource ASRL{n}::INSTR repeat=3\n"
                                      "status viFindRsrc 0x3FFF0085");
    const ProbeReport report = probeSimulator();
    EXPECT_EQ(visa::statusName(report.searchStatus), "VI_WARN_UNKNOWN_STATUS");
    EXPECT_EQ(report.resources.size(), 3U);
    EXPECT_EQ(report.windowList, Texts{});
}

TEST(LibraryProbe, TheWindowDropsWhatIsNotDeliveredWithSuccess)
{
    const support::BenchFixture bench("resource ASRL{n}::INSTR repeat=5\n"
                                      "status viFindNext VI_ERROR_IO at=1\n"
                                      "status viFindNext 0x3FFF0085 at=3\n");
    const ProbeReport report = probeSimulator();
    EXPECT_EQ(resourcesOf(report),
              (Texts{"ASRL1::INSTR", "ASRL3::INSTR", "ASRL4::INSTR", "ASRL5::INSTR"}));
    EXPECT_EQ(report.windowList, (Texts{"ASRL1::INSTR", "ASRL3::INSTR", "ASRL5::INSTR"}));
    EXPECT_EQ(report.droppedEntries, 1U);
}

TEST(LibraryProbe, TheWindowsListIsSortedAndKeepsDuplicates)
{
    const support::BenchFixture bench("resource USB0::1::2::S\nresource ASRL9::INSTR\n"
                                      "resource ASRL10::INSTR\nresource ASRL9::INSTR\n");
    EXPECT_EQ(probeSimulator().windowList,
              (Texts{"ASRL10::INSTR", "ASRL9::INSTR", "ASRL9::INSTR", "USB0::1::2::S"}));
}

TEST(LibraryProbe, SerialPortsEndAtTheFirstThatIsNotDeliveredWithSuccess)
{
    const support::BenchFixture bench("resource ASRL{n}::INSTR repeat=4\n"
                                      "resource \"ASRL no port\"\n"
                                      "status viParseRsrc VI_ERROR_INV_RSRC_NAME at=2\n");
    const ProbeReport report =
        probeSimulator([](ProbeRequest& request) { request.serialPorts = true; });
    ASSERT_EQ(report.serialPorts.size(), 5U);
    EXPECT_EQ(report.serialPorts[0].interfaceNumber, 1);
    EXPECT_EQ(report.serialPorts[1].interfaceNumber, 0);
    EXPECT_EQ(visa::statusName(report.serialPorts[1].parseStatus), "VI_ERROR_INV_RSRC_NAME");
    EXPECT_EQ(report.serialPorts[3].interfaceNumber, 4);
    EXPECT_TRUE(report.hasSearchedSerialPorts);
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

class Identification : public testing::Test
{
protected:
    static ProbeReport identify()
    {
        return probeSimulator([](ProbeRequest& request) { request.identify = true; });
    }

    /// "RESOURCE: STATUS ANSWER" of each.
    static Texts answersOf(const ProbeReport& report)
    {
        Texts texts;
        for (const visa::FoundResource& found : report.resources) {
            texts.push_back(visa::statusName(found.identifyStatus) +
                            (found.isIdentified ? ' ' + found.identity : ""));
        }
        return texts;
    }
};

TEST_F(Identification, AsksEachInstrumentAndNoInterface)
{
    const support::BenchFixture bench("resource GPIB0::1::INSTR idn=\"A,B,\\x01,\\xFF\"\n"
                                      "resource GPIB0::INTFC\n"
                                      "resource TCPIP0::198.51.100.2::5025::SOCKET idn=C\n"
                                      "resource nonsense\n");
    const std::string notAsked = visa::statusName(VI_ERROR_LIBRARY_NFOUND);
    EXPECT_EQ(answersOf(identify()), (Texts{"VI_SUCCESS A,B,\x01,\xFF\n", notAsked,
                                            "VI_SUCCESS_TERM_CHAR C\n", notAsked}));
}

TEST_F(Identification, GivesTheStatusOfTheCallThatFailed)
{
    struct Case
    {
        const char* setting;
        const char* status;
    };
    for (const Case& each :
         {Case{"status viOpen VI_ERROR_RSRC_NFOUND at=1", "VI_ERROR_RSRC_NFOUND"},
          Case{"status viWrite VI_ERROR_IO at=1", "VI_ERROR_IO"},
          Case{"status viRead VI_ERROR_TMO at=1", "VI_ERROR_TMO"}}) {
        const support::BenchFixture bench(
            std::string("resource GPIB0::{n}::INSTR idn=X repeat=2\n") + each.setting);
        EXPECT_EQ(answersOf(identify()), (Texts{each.status, "VI_SUCCESS X\n"})) << each.setting;
    }
}

TEST_F(Identification, KeepsTheAnswersBeforeAnInstrumentThatHangs)
{
    const support::BenchFixture bench("resource GPIB0::{n}::INSTR idn=X repeat=3\n"
                                      "wait-for-file absent call=viRead at=2\n");
    const ProbeReport report = probeSimulator([](ProbeRequest& request) {
        request.identify = true;
        request.timeout = hangingTimeout;
    });
    EXPECT_EQ(describe(report.end), "timed out");
    ASSERT_NE(report.openCall(), nullptr);
    EXPECT_EQ(report.openCall()->name, "viRead GPIB0::2::INSTR");
    const std::string notAsked = visa::statusName(VI_ERROR_LIBRARY_NFOUND);
    EXPECT_EQ(answersOf(report), (Texts{"VI_SUCCESS X\n", notAsked, notAsked}));
    EXPECT_EQ(report.windowList.size(), 3U);
}

TEST_F(Identification, AnAnswerIsNoLongerThanItsBuffer)
{
    const ProbeReport report =
        probe(QVVISA_TALKING_LIBRARY, [](ProbeRequest& request) { request.identify = true; });
    ASSERT_EQ(report.resources.size(), 3U);
    EXPECT_EQ(report.resources[0].identity, std::string(1024, 'r'));
}

TEST_F(Identification, ALibraryThatCannotTalkIsNotAsked)
{
    const ProbeReport report =
        probe(QVVISA_MISBEHAVING_LIBRARY, [](ProbeRequest& request) { request.identify = true; });
    EXPECT_EQ(describe(report.end), "finished");
    EXPECT_EQ(answersOf(report), Texts(3, visa::statusName(VI_ERROR_LIBRARY_NFOUND)));
}

} // namespace
