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
{};

using Lines = std::vector<std::string>;

} // namespace

TEST_F(CallLog, EachCallIsWritten)
{
    bench.write("resource ASRL1::INSTR idn=meter\n");
    const ViSession session = openManager();
    const ViSession meter = openInstrument(session, "ASRL1");
    visa.write(meter, reinterpret_cast<const ViByte*>("*IDN?\n"), 6, nullptr);
    ViByte answer[100];
    visa.read(meter, answer, sizeof answer, nullptr);
    visa.write(meter, nullptr, 3, nullptr);
    ViUInt16 type = 0;
    visa.getAttribute(meter, VI_ATTR_INTF_TYPE, &type);
    visa.disableEvent(meter, VI_ALL_ENABLED_EVENTS, VI_ALL_MECH);
    visa.discardEvents(meter, VI_ALL_ENABLED_EVENTS, VI_ALL_MECH);
    const std::string manager = std::to_string(session);
    const std::string opened = std::to_string(meter);
    EXPECT_EQ(bench.calls(),
              (Lines{
                  "viOpenDefaultRM() -> VI_SUCCESS, session=" + manager,
                  "viOpen(" + manager + ", \"ASRL1\", 0, 0) -> VI_SUCCESS, session=" + opened,
                  "viWrite(" + opened + R"lit(, "*IDN?\x0A", 6) -> VI_SUCCESS, count=6)lit",
                  "viRead(" + opened + R"lit(, 100) -> VI_SUCCESS, data="meter\x0A")lit",
                  "viWrite(" + opened + ", null, 3) -> VI_ERROR_USER_BUF",
                  "viGetAttribute(" + opened + ", 0x3FFF0171) -> VI_SUCCESS",
                  "viDisableEvent(" + opened + ", 0x3FFF7FFF, 65535) -> VI_SUCCESS_EVENT_DIS",
                  "viDiscardEvents(" + opened + ", 0x3FFF7FFF, 65535) -> VI_SUCCESS_QUEUE_EMPTY",
              }));
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
