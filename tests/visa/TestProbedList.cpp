// SPDX-License-Identifier: MIT
#include "tests/support/BenchFixture.h"
#include "tests/visa/Probing.h"

#include <gtest/gtest.h>

#include <string>

using visa::ProbeReport;
using visa::ProbeRequest;

namespace {

using namespace probing;

TEST(ProbedList, AnAnnouncedCountOfBillionsEndsAfterAThousandFailures)
{
    const ProbeReport report = probeMisbehaving("viFindRsrc announce-everything");
    EXPECT_EQ(describe(report.end), "finished");
    EXPECT_EQ(report.count, ~ViUInt32{0});
    EXPECT_EQ(resourcesOf(report), everything);
    EXPECT_TRUE(report.isListCut);
    EXPECT_EQ(report.droppedEntries, ProbeReport::mostFailures);
    EXPECT_EQ(callsOf(report)[5], "viFindNext 1000 VI_ERROR_RSRC_NFOUND");
}

TEST(ProbedList, ACountThatIsTooSmallIsNoticed)
{
    const support::BenchFixture bench("resource ASRL{n}::INSTR repeat=3\ncount 2\n");
    const ProbeReport report = probeSimulator();
    EXPECT_EQ(resourcesOf(report), (Texts{"ASRL1::INSTR", "ASRL2::INSTR"}));
    EXPECT_TRUE(report.hasMoreThanCount);
    EXPECT_FALSE(probe(QVVISA_MISBEHAVING_LIBRARY).hasMoreThanCount);
}

TEST(ProbedList, FailuresThatAreNotInARowDoNotCutTheList)
{
    const ProbeReport report = probeMisbehaving("viFindNext fail-every-other-time");
    EXPECT_FALSE(report.isListCut);
    EXPECT_EQ(report.droppedEntries, 1250U);
    EXPECT_EQ(report.resources.size(), 1251U);
}

TEST(ProbedList, AnEndlessListIsCut)
{
    const support::BenchFixture bench("resource GPIB0::{n}::INSTR repeat=100001");
    const ProbeReport report = probeSimulator();
    EXPECT_EQ(describe(report.end), "finished");
    EXPECT_TRUE(report.isListCut);
    EXPECT_EQ(report.resources.size(), ProbeReport::mostResources);
    EXPECT_LT(report.calls.size(), 10U);
}

TEST(ProbedList, ADescriptionThatIsTooLongIsCutAndNamed)
{
    const ProbeReport report = probeMisbehaving("viFindRsrc overrun");
    ASSERT_EQ(report.resources.size(), 3U);
    EXPECT_EQ(report.resources[0].resource, std::string(VI_FIND_BUFLEN, 'o'));
    EXPECT_TRUE(report.resources[0].isUnterminated);
    EXPECT_TRUE(report.resources[0].isOverrun);
    EXPECT_FALSE(report.resources[1].isUnterminated);
    EXPECT_FALSE(report.resources[1].isOverrun);
}

TEST(ProbedList, ADescriptionWithoutItsZeroIsBounded)
{
    const support::BenchFixture bench("resource USB0::0x1234::0x5678::SN7::INSTR no-end");
    const ProbeReport report = probeSimulator();
    ASSERT_EQ(report.resources.size(), 1U);
    EXPECT_EQ(report.resources[0].resource.size(), static_cast<std::size_t>(VI_FIND_BUFLEN));
    EXPECT_TRUE(report.resources[0].isUnterminated);
    EXPECT_FALSE(report.resources[0].isOverrun);
}

TEST(ProbedList, TheWindowListsNothingOfASearchThatWarns)
{
    const support::BenchFixture bench("resource ASRL{n}::INSTR repeat=3\n"
                                      "status viFindRsrc 0x3FFF0085");
    const ProbeReport report = probeSimulator();
    EXPECT_EQ(visa::statusName(report.searchStatus), "VI_WARN_UNKNOWN_STATUS");
    EXPECT_EQ(report.resources.size(), 3U);
    EXPECT_EQ(report.windowList, Texts{});
}

TEST(ProbedList, TheWindowDropsWhatIsNotDeliveredWithSuccess)
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

TEST(ProbedList, TheWindowsListIsSortedAndKeepsDuplicates)
{
    const support::BenchFixture bench("resource USB0::1::2::S\nresource ASRL9::INSTR\n"
                                      "resource ASRL10::INSTR\nresource ASRL9::INSTR\n");
    EXPECT_EQ(probeSimulator().windowList,
              (Texts{"ASRL10::INSTR", "ASRL9::INSTR", "ASRL9::INSTR", "USB0::1::2::S"}));
}

TEST(ProbedList, SerialPortsEndAtTheFirstThatIsNotDeliveredWithSuccess)
{
    const support::BenchFixture bench("resource ASRL{n}::INSTR repeat=4\n"
                                      "resource \"ASRL no port\"\n"
                                      "status viParseRsrc VI_ERROR_INV_RSRC_NAME at=2\n");
    const ProbeReport report = probeSimulator(withSerialPorts);
    ASSERT_EQ(report.serialPorts.size(), 5U);
    EXPECT_EQ(report.serialPorts[0].interfaceNumber, 1);
    EXPECT_EQ(report.serialPorts[1].interfaceNumber, 0);
    EXPECT_EQ(visa::statusName(report.serialPorts[1].parseStatus), "VI_ERROR_INV_RSRC_NAME");
    EXPECT_EQ(report.serialPorts[3].interfaceNumber, 4);
    EXPECT_TRUE(report.hasSearchedSerialPorts);
}

/// "STATUS ANSWER" of each resource.
Texts answersOf(const ProbeReport& report)
{
    Texts texts;
    for (const visa::FoundResource& found : report.resources) {
        texts.push_back(visa::statusName(found.identifyStatus) +
                        (found.isIdentified ? ' ' + found.identity : ""));
    }
    return texts;
}

const std::string notAsked = "VI_ERROR_LIBRARY_NFOUND";

TEST(Identification, AsksEachInstrumentAndNoInterface)
{
    const support::BenchFixture bench("resource GPIB0::1::INSTR idn=\"A,B,\\x01,\\xFF\"\n"
                                      "resource GPIB0::INTFC\n"
                                      "resource TCPIP0::198.51.100.2::5025::SOCKET idn=C\n"
                                      "resource nonsense\n");
    EXPECT_EQ(
        answersOf(probeSimulator(identifying)),
        (Texts{"VI_SUCCESS A,B,\x01,\xFF\n", notAsked, "VI_SUCCESS_TERM_CHAR C\n", notAsked}));
}

TEST(Identification, GivesTheStatusOfTheCallThatFailed)
{
    for (const std::string call : {"viOpen", "viWrite", "viRead"}) {
        const support::BenchFixture bench("resource GPIB0::{n}::INSTR idn=X repeat=2\nstatus " +
                                          call + " VI_ERROR_IO at=1");
        EXPECT_EQ(answersOf(probeSimulator(identifying)), (Texts{"VI_ERROR_IO", "VI_SUCCESS X\n"}))
            << call;
    }
}

TEST(Identification, KeepsTheAnswersBeforeAnInstrumentThatHangs)
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
    EXPECT_EQ(answersOf(report), (Texts{"VI_SUCCESS X\n", notAsked, notAsked}));
    EXPECT_EQ(report.windowList.size(), 3U);
}

TEST(Identification, AnAnswerIsNoLongerThanItsBuffer)
{
    const ProbeReport report = probe(QVVISA_TALKING_LIBRARY, identifying);
    ASSERT_EQ(report.resources.size(), 3U);
    EXPECT_EQ(report.resources[0].identity, std::string(1024, 'r'));
}

TEST(Identification, ALibraryThatCannotTalkIsNotAsked)
{
    const ProbeReport report = probe(QVVISA_MISBEHAVING_LIBRARY, identifying);
    EXPECT_EQ(describe(report.end), "finished");
    EXPECT_EQ(answersOf(report), Texts(3, notAsked));
}

} // namespace
