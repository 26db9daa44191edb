// SPDX-License-Identifier: MIT
#include "tests/simulator/SimulatorTest.h"
#include "tests/support/Files.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <sys/stat.h>

using visa::statusName;

namespace {

class CallLog : public SimulatorTest
{
protected:
    static std::string text(ViObject handle) { return std::to_string(handle); }
};

using Lines = std::vector<std::string>;

} // namespace

TEST_F(CallLog, AScanIsWrittenCallByCall)
{
    bench.write("resource ASRL1::INSTR\nresource \"b\\\"\\\\\\xE9\\x0A\\x7F~\"\n");
    const ViSession session = openManager();
    visa.setAttribute(session, QV_ATTR_SEARCH_KINDS, 7);
    visa.setAttribute(session, QV_ATTR_SEARCH_TIME, 1000);
    ViFindList findList = VI_NULL;
    ViUInt32 count = 0;
    Buffer description;
    char* const characters = description.characters.data();
    visa.findRsrc(session, "?*", &findList, &count, characters);
    visa.findNext(findList, characters);
    visa.findNext(findList, characters);
    ViUInt16 type = 0;
    ViUInt16 number = 0;
    visa.parseRsrc(session, "ASRL3::INSTR", &type, &number);
    visa.parseRsrcEx(session, "asrl3", &type, &number, characters, characters, characters);
    visa.close(findList);
    visa.close(findList);
    visa.close(session);
    const std::string manager = text(session);
    const std::string matches = text(findList);
    EXPECT_EQ(
        bench.calls(),
        (Lines{
            "viOpenDefaultRM() -> VI_SUCCESS, session=" + manager,
            "viSetAttribute(" + manager + ", 0x0E5A0002, 7) -> VI_SUCCESS",
            "viSetAttribute(" + manager + ", 0x0E5A0001, 1000) -> VI_SUCCESS",
            "viFindRsrc(" + manager + ", \"?*\") -> VI_SUCCESS, list=" + matches +
                ", count=2, description=\"ASRL1::INSTR\"",
            "viFindNext(" + matches + R"lit() -> VI_SUCCESS, description="b\"\\\xE9\x0A\x7F~")lit",
            "viFindNext(" + matches + ") -> VI_ERROR_RSRC_NFOUND",
            "viParseRsrc(" + manager + ", \"ASRL3::INSTR\") -> VI_SUCCESS, type=4, number=3",
            "viParseRsrcEx(" + manager +
                ", \"asrl3\") -> VI_SUCCESS, type=4, number=3, class=\"INSTR\", "
                "name=\"ASRL3::INSTR\"",
            "viClose(" + matches + ") -> VI_SUCCESS",
            "viClose(" + matches + ") -> VI_ERROR_INV_OBJECT",
            "viClose(" + manager + ") -> VI_SUCCESS",
        }));
}

TEST_F(CallLog, TalkingIsWrittenCallByCall)
{
    bench.write("resource ASRL1::INSTR idn=meter\n");
    const ViSession session = openManager();
    ViSession meter = VI_NULL;
    visa.open(session, "ASRL1", 1, 500, &meter);
    visa.write(meter, reinterpret_cast<const ViByte*>("*IDN?\n"), 6, nullptr);
    ViByte answer[100];
    visa.read(meter, answer, sizeof answer, nullptr);
    ViUInt16 type = 0;
    visa.getAttribute(meter, VI_ATTR_INTF_TYPE, &type);
    visa.disableEvent(meter, VI_ALL_ENABLED_EVENTS, VI_ALL_MECH);
    visa.discardEvents(meter, VI_ALL_ENABLED_EVENTS, VI_ALL_MECH);
    Lines lines = bench.calls();
    ASSERT_FALSE(lines.empty());
    lines.erase(lines.begin());
    const std::string opened = text(meter);
    EXPECT_EQ(
        lines,
        (Lines{
            "viOpen(" + text(session) + ", \"ASRL1\", 1, 500) -> VI_SUCCESS, session=" + opened,
            "viWrite(" + opened + R"lit(, "*IDN?\x0A", 6) -> VI_SUCCESS, count=6)lit",
            "viRead(" + opened + R"lit(, 100) -> VI_SUCCESS, data="meter\x0A")lit",
            "viGetAttribute(" + opened + ", 0x3FFF0171) -> VI_SUCCESS",
            "viDisableEvent(" + opened + ", 0x3FFF7FFF, 65535) -> VI_SUCCESS_EVENT_DIS",
            "viDiscardEvents(" + opened + ", 0x3FFF7FFF, 65535) -> VI_SUCCESS_QUEUE_EMPTY",
        }));
}

TEST_F(CallLog, FailingCallsAndOddArgumentsAreWritten)
{
    bench.write("resource a\nstatus viOpenDefaultRM 0xBFFF7777\nstatus viFindRsrc 5\n");
    ViSession session = VI_NULL;
    visa.openDefaultRM(&session);
    visa.openDefaultRM(nullptr);
    visa.findRsrc(4294967295, nullptr, nullptr, nullptr, nullptr);
    visa.findNext(0, nullptr);
    visa.setAttribute(0, 0xFFFFFFFF, static_cast<ViAttrState>(-1));
    visa.write(0, nullptr, 3, nullptr);
    visa.close(0);
    const std::string widest =
        "viSetAttribute(0, 0xFFFFFFFF, 18446744073709551615) -> VI_ERROR_INV_OBJECT";
    EXPECT_EQ(bench.calls(), (Lines{
                                 "viOpenDefaultRM() -> 0xBFFF7777",
                                 "viOpenDefaultRM() -> VI_ERROR_USER_BUF",
                                 "viFindRsrc(4294967295, null) -> VI_ERROR_INV_OBJECT",
                                 "viFindNext(0) -> VI_ERROR_INV_OBJECT",
                                 widest,
                                 "viWrite(0, null, 3) -> VI_ERROR_INV_OBJECT",
                                 "viClose(0) -> VI_WARN_NULL_OBJECT",
                             }));
}

TEST_F(CallLog, OnlyWhatTheClientGotIsWritten)
{
    bench.write("resource a\n");
    const ViSession session = openManager();
    Buffer description;
    visa.findRsrc(session, "?*", nullptr, nullptr, description.characters.data());
    EXPECT_EQ(bench.calls().back(),
              "viFindRsrc(" + text(session) + ", \"?*\") -> VI_SUCCESS, description=\"a\"");
}

TEST_F(CallLog, TheFileIsLookedUpAtEachCallAndAppendedTo)
{
    const std::string other = bench.pathFor("other.txt").string();
    support::writeFile(other, "there before\n");
    visa.close(0);
    setVariable("QVVISA_BENCH_LOG", other);
    visa.close(0);
    ::unsetenv("QVVISA_BENCH_LOG"); // NOLINT(concurrency-mt-unsafe)
    visa.close(0);
    EXPECT_EQ(bench.calls(), Lines{"viClose(0) -> VI_WARN_NULL_OBJECT"});
    EXPECT_EQ(support::readFile(other), "there before\nviClose(0) -> VI_WARN_NULL_OBJECT\n");
}

TEST_F(CallLog, AFileThatCannotBeWrittenIsReportedOnce)
{
    const auto path = [&](const char* name) { return bench.pathFor(name).string(); };
    ASSERT_EQ(::mkfifo(path("fifo").c_str(), 0600), 0);
    support::writeFile(path("large"), "");
    std::filesystem::resize_file(path("large"), std::uintmax_t{64} << 20U);
    for (const auto& [name, problem] : std::vector<std::pair<std::string, std::string>>{
             {path("no-such-folder/calls.txt"), "No such file or directory"},
             {path("fifo"), "it is not a regular file"},
             {"/dev/null", "it is not a regular file"},
             {path("large"), "it is limited to 64 MiB"}}) {
        setVariable("QVVISA_BENCH_LOG", name);
        testing::internal::CaptureStderr();
        EXPECT_EQ(statusName(visa.close(0)), "VI_WARN_NULL_OBJECT");
        EXPECT_EQ(statusName(visa.close(0)), "VI_WARN_NULL_OBJECT");
        std::string expected = name;
        expected.append(": the call log cannot be written: ").append(problem).append("\n");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), expected);
    }
}
