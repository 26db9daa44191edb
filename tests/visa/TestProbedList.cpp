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
    setVariable("QVVISA_MISBEHAVES", "viFindRsrc announce-everything");
    const ProbeReport report = probe(QVVISA_MISBEHAVING_LIBRARY);
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
    setVariable("QVVISA_MISBEHAVES", "viFindNext fail-every-other-time");
    const ProbeReport report = probe(QVVISA_MISBEHAVING_LIBRARY);
    EXPECT_FALSE(report.isListCut);
    EXPECT_EQ(report.droppedEntries, 1250U);
    EXPECT_EQ(report.resources.size(), 1251U);
}

TEST(ProbedList, AnEndlessListIsCut)
{
    setVariable("QVVISA_MISBEHAVES", "viFindNext repeat-for-ever");
    const support::BenchFixture bench("resource GPIB0::{n}::INSTR repeat=100001");
    const ProbeReport report = probeSimulator();
    EXPECT_EQ(describe(report.end), "finished");
    EXPECT_TRUE(report.isListCut);
    EXPECT_EQ(report.resources.size(), ProbeReport::mostResources);
    EXPECT_LT(report.calls.size(), 10U);
}

TEST(ProbedList, ADescriptionThatIsTooLongIsCutAndNamed)
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
    const ProbeReport report =
        probeSimulator([](ProbeRequest& request) { request.serialPorts = true; });
    ASSERT_EQ(report.serialPorts.size(), 5U);
    EXPECT_EQ(report.serialPorts[0].interfaceNumber, 1);
    EXPECT_EQ(report.serialPorts[1].interfaceNumber, 0);
    EXPECT_EQ(visa::statusName(report.serialPorts[1].parseStatus), "VI_ERROR_INV_RSRC_NAME");
    EXPECT_EQ(report.serialPorts[3].interfaceNumber, 4);
    EXPECT_TRUE(report.hasSearchedSerialPorts);
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
