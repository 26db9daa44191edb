// SPDX-License-Identifier: MIT
#include "tests/simulator/SimulatorTest.h"
#include "tests/support/Files.h"
#include "tests/support/Sanitizers.h"

#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using Names = std::vector<std::string>;

class Search : public SimulatorTest
{};

} // namespace

TEST_F(Search, WithoutABenchFileEachInterfaceHasAResource)
{
    const Names builtIn{"TCPIP0::192.0.2.10::inst0::INSTR",
                        "TCPIP0::192.0.2.11::hislip0::INSTR",
                        "TCPIP0::192.0.2.12::5025::SOCKET",
                        "USB0::0x1234::0x5678::100004::INSTR",
                        "GPIB0::20::INSTR",
                        "ASRL1::INSTR",
                        "ASRL2::INSTR"};
    ::unsetenv("QVVISA_BENCH"); // NOLINT(concurrency-mt-unsafe)
    EXPECT_EQ(list(openManager(), "?*"), builtIn);
    setVariable("QVVISA_BENCH", "");
    EXPECT_EQ(list(openManager(), "?*"), builtIn);
    EXPECT_EQ(list(openManager(), "ASRL?*"), (Names{"ASRL1::INSTR", "ASRL2::INSTR"}));
}

TEST_F(Search, ListsTheBenchInItsOrderWithDuplicates)
{
    bench.write("resource USB0::1::2::3::INSTR\n"
                "resource ASRL3::INSTR\n"
                "resource ASRL{n}::INSTR repeat=2\n"
                "resource ASRL3::INSTR\n");
    const ViSession session = openManager();
    EXPECT_EQ(list(session, "?*"), (Names{"USB0::1::2::3::INSTR", "ASRL3::INSTR", "ASRL1::INSTR",
                                          "ASRL2::INSTR", "ASRL3::INSTR"}));
    EXPECT_EQ(list(session, "asrl[^2]::instr"),
              (Names{"ASRL3::INSTR", "ASRL1::INSTR", "ASRL3::INSTR"}));
    EXPECT_EQ(find(session, "GPIB?*"), "VI_ERROR_RSRC_NFOUND");
    EXPECT_EQ(find(session, "?*{VI_ATTR_INTF_NUM == 2}"), "VI_ERROR_INV_EXPR");
}

TEST_F(Search, TheBenchIsReadByEachSession)
{
    bench.write("resource ASRL1::INSTR\n");
    const ViSession before = openManager();
    bench.write("resource ASRL2::INSTR\n");
    EXPECT_EQ(list(openManager(), "?*"), Names{"ASRL2::INSTR"});
    EXPECT_EQ(list(before, "?*"), Names{"ASRL1::INSTR"});
    support::writeFile(bench.pathFor("other.txt"), "resource ASRL3::INSTR\n");
    setVariable("QVVISA_BENCH", bench.pathFor("other.txt").string());
    EXPECT_EQ(list(openManager(), "?*"), Names{"ASRL3::INSTR"});
}

TEST_F(Search, MessagesAboutTheBenchGoToStandardError)
{
    bench.write("resource ASRL1::INSTR\noops\nscan-time soon\n");
    const std::string path = bench.pathFor("bench.txt").string();
    const std::string missing = bench.pathFor("missing.txt").string();
    testing::internal::CaptureStderr();
    EXPECT_EQ(list(openManager(), "?*"), Names{"ASRL1::INSTR"});
    setVariable("QVVISA_BENCH", missing);
    EXPECT_EQ(list(openManager(), "?*"), Names{});
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              path + ":2: unknown setting \"oops\"\n" + path +
                  ":3: scan-time: \"soon\" is not a number from 0 to 3600000\n" + missing +
                  ": the bench cannot be read (No such file or directory); it counts as empty\n");
}

TEST_F(Search, DescriptionsAreDeliveredByteForByte)
{
    const std::string longest(255, 'a');
    bench.write("resource caf\\xE9\\xFF\nresource \"\"\nresource " + longest +
                "\nresource open no-end\n");
    ViFindList list = VI_NULL;
    EXPECT_EQ(find(openManager(), "?*", &list), "VI_SUCCESS 4 caf\xE9\xFF");
    EXPECT_EQ(next(list), "VI_SUCCESS ");
    EXPECT_EQ(next(list), "VI_SUCCESS " + longest);
    EXPECT_EQ(next(list), "VI_SUCCESS open" + std::string(252, 'x') + '~');
}

TEST_F(Search, TheCountCanDifferFromWhatIsFound)
{
    bench.write("resource ASRL{n}::INSTR repeat=2\n"
                "count 0 for=?*\ncount 5 for=ASRL?*\ncount 1 for=ASRL[1-3]?*\ncount 4 for=USB?*\n");
    const ViSession session = openManager();
    for (const auto& [expression, first] : {std::pair("?*", "VI_SUCCESS 0 ASRL1::INSTR"),
                                            {"ASRL?*", "VI_SUCCESS 5 ASRL1::INSTR"},
                                            {"ASRL[1-3]?*", "VI_SUCCESS 1 ASRL1::INSTR"}}) {
        ViFindList list = VI_NULL;
        EXPECT_EQ(find(session, expression, &list), first);
        EXPECT_EQ(next(list), "VI_SUCCESS ASRL2::INSTR");
        EXPECT_EQ(next(list), "VI_ERROR_RSRC_NFOUND");
        EXPECT_EQ(next(list), "VI_ERROR_RSRC_NFOUND");
    }
    ViFindList list = VI_NULL;
    EXPECT_EQ(find(session, "USB?*", &list), "VI_SUCCESS 4 ");
    EXPECT_EQ(next(list), "VI_ERROR_RSRC_NFOUND");
}

TEST_F(Search, CallsFailOrWarnAsPlanned)
{
    bench.write("resource ASRL{n}::INSTR repeat=5\n"
                "status viFindNext VI_ERROR_IO at=1\n"
                "status viFindNext 0x3FFF0085 at=3\n"
                "status viFindRsrc VI_ERROR_SYSTEM_ERROR for=?*\n"
                "status viFindRsrc 0x3FFF0085 at=3\n");
    const ViSession session = openManager();
    EXPECT_EQ(find(session, "?*"), "VI_ERROR_SYSTEM_ERROR");
    for (const char* const status : {"VI_SUCCESS", "VI_WARN_UNKNOWN_STATUS"}) {
        ViFindList list = VI_NULL;
        EXPECT_EQ(find(session, "ASRL?*", &list), status + std::string(" 5 ASRL1::INSTR"));
        // Each list counts its own steps; a failing one skips its match.
        EXPECT_EQ(next(list), "VI_ERROR_IO");
        EXPECT_EQ(next(list), "VI_SUCCESS ASRL3::INSTR");
        EXPECT_EQ(next(list), "VI_WARN_UNKNOWN_STATUS ASRL4::INSTR");
        EXPECT_EQ(next(list), "VI_SUCCESS ASRL5::INSTR");
    }
}

TEST_F(Search, OpeningTheManagerFailsOrWarnsAsPlanned)
{
    bench.write("status viOpenDefaultRM VI_ERROR_ALLOC\n");
    ViSession session = untouched;
    EXPECT_EQ(visa::statusName(visa.openDefaultRM(&session)), "VI_ERROR_ALLOC");
    EXPECT_EQ(session, untouched);
    bench.write("resource ASRL1::INSTR\nstatus viOpenDefaultRM VI_WARN_CONFIG_NLOADED\n");
    EXPECT_EQ(visa::statusName(visa.openDefaultRM(&session)), "VI_WARN_CONFIG_NLOADED");
    EXPECT_EQ(list(session, "?*"), Names{"ASRL1::INSTR"});
}

TEST_F(Search, ParsingTakesTheInterfaceOfTheBenchFirst)
{
    bench.write("resource ASRL1::INSTR interface=4,9\n"
                "resource \"ASRL/dev/tty::INSTR\" interface=ASRL,7\n"
                "resource odd\n"
                "resource odder interface=0x100,8\n"
                "resource ASRL{n}::INSTR repeat=300\n"
                "status viParseRsrc VI_ERROR_IO at=11\nstatus viParseRsrcEx VI_ERROR_TMO at=3\n");
    const ViSession session = openManager();
    for (const auto& [resource, expected] :
         {std::pair("ASRL1::INSTR", "VI_SUCCESS 4 9"),
          {"asrl1", "VI_SUCCESS 4 9"},
          {"ASRL/dev/tty::INSTR", "VI_SUCCESS 4 7"},
          {"odder", "VI_SUCCESS 256 8"},
          {"ASRL/dev/other::INSTR", "VI_SUCCESS 4 0"},
          {"ASRL256::INSTR", "VI_SUCCESS 4 256"},
          {"USB2::1::2::3::INSTR", "VI_SUCCESS 7 2"}, // need not be in the bench
          {"", "VI_ERROR_INV_RSRC_NAME"},
          {"odd", "VI_ERROR_INV_RSRC_NAME"},
          {"ASRL70000::INSTR", "VI_ERROR_INV_RSRC_NAME"},
          {"ASRL2", "VI_ERROR_IO"}}) {
        EXPECT_EQ(parse(session, resource), expected) << resource;
    }
    EXPECT_EQ(parseInFull(session, "tcpip::meter::05025::socket"),
              "VI_SUCCESS 6 0 SOCKET TCPIP0::meter::5025::SOCKET ");
    // What does not fit into the client's buffer is cut.
    const std::string longName = "USB0::0x0001::0x0002::" + std::string(300, 's');
    EXPECT_EQ(parseInFull(session, longName),
              "VI_SUCCESS 7 0 INSTR " + longName.substr(0, 255) + ' ');
    EXPECT_EQ(parseInFull(session, "ASRL2"), "VI_ERROR_TMO");
}

TEST_F(Search, TakesItsTime)
{
    bench.write("resource ASRL1::INSTR\nscan-time 60\n");
    const ViSession session = openManager();
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(list(session, "?*"), Names{"ASRL1::INSTR"});
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(60));
}

TEST_F(Search, AMillionResourcesAreListed)
{
    const std::string count = support::isSanitized ? "20000" : "1000000";
    bench.write("resource TCPIP0::host{n}::inst0::INSTR repeat=" + count + '\n');
    ::unsetenv("QVVISA_BENCH_LOG"); // NOLINT(concurrency-mt-unsafe)
    const Names found = list(openManager(), "?*");
    EXPECT_EQ(std::to_string(found.size()), count);
    EXPECT_EQ(found.back(), "TCPIP0::host" + count + "::inst0::INSTR");
}

TEST_F(Search, WaitsForItsFileAndDelaysNoOtherCall)
{
    bench.write("resource ASRL{n}::INSTR repeat=3\nwait-for-file go for=?*\n"
                "wait-for-file go call=viFindNext at=2\n");
    const ViSession session = openManager();
    ViFindList ports = VI_NULL;
    EXPECT_EQ(find(session, "ASRL?*", &ports), "VI_SUCCESS 3 ASRL1::INSTR");
    EXPECT_EQ(next(ports), "VI_SUCCESS ASRL2::INSTR");
    auto search = std::async(std::launch::async, [&] { return list(session, "?*"); });
    auto step = std::async(std::launch::async, [&] { return next(ports); });
    // Enough other calls for one that does not wait to have returned.
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(find(session, "ASRL1?*"), "VI_SUCCESS 1 ASRL1::INSTR");
    }
    EXPECT_EQ(search.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    EXPECT_EQ(step.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    support::writeFile(bench.pathFor("go"), "");
    EXPECT_EQ(step.get(), "VI_SUCCESS ASRL3::INSTR");
    EXPECT_EQ(search.get(), (Names{"ASRL1::INSTR", "ASRL2::INSTR", "ASRL3::INSTR"}));
}

TEST_F(Search, ClosingTheSessionEndsWhatWaits)
{
    for (const char* const waits :
         {"wait-for-file never", "scan-time 3600000", "wait-for-file never call=viFindNext"}) {
        bench.write(std::string("resource ASRL{n}::INSTR repeat=2\n") + waits + " \n");
        bench.clearCalls();
        const ViSession session = openManager();
        std::promise<void> begun;
        auto waiting = std::async(std::launch::async, [&] {
            begun.set_value();
            ViFindList list = VI_NULL;
            const std::string status = find(session, "?*", &list);
            return list == VI_NULL ? status : next(list);
        });
        begun.get_future().wait();
        // Whether or not the call waits by now, it finds the session closed.
        EXPECT_EQ(close(session), "VI_SUCCESS");
        EXPECT_EQ(waiting.get(), "VI_ERROR_INV_OBJECT") << waits;
    }
}
