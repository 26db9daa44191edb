// SPDX-License-Identifier: MIT
#include "tests/simulator/CallsFixture.h"
#include "tests/support/Files.h"

#include <chrono>
#include <string>
#include <vector>

using visa::statusName;

namespace {

using Names = std::vector<std::string>;

class SearchCalls : public CallsFixture
{};

} // namespace

TEST_F(SearchCalls, WithoutBenchFileEveryInterfaceKindIsThere)
{
    unsetVariable("QVVISA_BENCH");
    const ViSession session = openManager();
    const Names builtIn{"TCPIP0::192.0.2.10::inst0::INSTR",
                        "TCPIP0::192.0.2.11::hislip0::INSTR",
                        "TCPIP0::192.0.2.12::5025::SOCKET",
                        "USB0::0x1234::0x5678::100004::INSTR",
                        "GPIB0::20::INSTR",
                        "ASRL1::INSTR",
                        "ASRL2::INSTR"};
    EXPECT_EQ(list(session, "?*"), builtIn);
    EXPECT_EQ(list(session, "ASRL?*"), (Names{"ASRL1::INSTR", "ASRL2::INSTR"}));

    setVariable("QVVISA_BENCH", "");
    EXPECT_EQ(list(openManager(), "?*"), builtIn);
}

TEST_F(SearchCalls, ListsTheBenchInItsOrderWithDuplicates)
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
}

TEST_F(SearchCalls, ReadsTheBenchAnewWithEachSession)
{
    bench.write("resource ASRL1::INSTR\n");
    const ViSession before = openManager();
    bench.write("resource ASRL2::INSTR\n");
    const ViSession after = openManager();
    EXPECT_EQ(list(before, "?*"), Names{"ASRL1::INSTR"});
    EXPECT_EQ(list(after, "?*"), Names{"ASRL2::INSTR"});

    support::writeFile(bench.pathFor("other.txt"), "resource ASRL3::INSTR\n");
    setVariable("QVVISA_BENCH", bench.pathFor("other.txt").string());
    EXPECT_EQ(list(openManager(), "?*"), Names{"ASRL3::INSTR"});
}

TEST_F(SearchCalls, MessagesGoToStandardErrorWithFileAndLine)
{
    bench.write("resource ASRL1::INSTR\noops\nresource ASRL2::INSTR\nscan-time soon\n");
    const std::string path = bench.pathFor("bench.txt").string();
    testing::internal::CaptureStderr();
    const ViSession session = openManager();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              path + ":2: unknown setting \"oops\"\n" + path +
                  ":4: scan-time: \"soon\" is not a number from 0 to 3600000\n");
    EXPECT_EQ(list(session, "?*"), (Names{"ASRL1::INSTR", "ASRL2::INSTR"}));
}

TEST_F(SearchCalls, AMissingBenchFileIsAnEmptyBenchWithAMessage)
{
    const std::string path = bench.pathFor("missing.txt").string();
    setVariable("QVVISA_BENCH", path);
    testing::internal::CaptureStderr();
    const ViSession session = openManager();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              path +
                  ": the bench cannot be read (No such file or directory); it counts as empty\n");
    EXPECT_EQ(list(session, "?*"), Names{});
}

TEST_F(SearchCalls, NothingFoundAndMalformedExpressionsHaveTheirStatus)
{
    bench.write("resource ASRL1::INSTR\n");
    const ViSession session = openManager();
    ViFindList findList = 77;
    ViUInt32 count = 77;
    Buffer description;
    EXPECT_EQ(statusName(visa.findRsrc(session, "GPIB?*", &findList, &count,
                                       description.characters.data())),
              "VI_ERROR_RSRC_NFOUND");
    for (const char* const malformed : {"", "*", "[1-", "ASRL?*{", "a|"}) {
        EXPECT_EQ(statusName(visa.findRsrc(session, malformed, &findList, &count,
                                           description.characters.data())),
                  "VI_ERROR_INV_EXPR")
            << malformed;
    }
    EXPECT_EQ(findList, 77U);
    EXPECT_EQ(count, 77U);
    EXPECT_TRUE(description.isUntouched());
}

TEST_F(SearchCalls, NullPointersAreAnsweredNotFollowed)
{
    bench.write("resource ASRL1::INSTR\n");
    EXPECT_EQ(statusName(visa.openDefaultRM(nullptr)), "VI_ERROR_USER_BUF");
    const ViSession session = openManager();
    ViFindList findList = VI_NULL;
    ViUInt32 count = 0;
    Buffer description;
    char* const text = description.characters.data();
    EXPECT_EQ(statusName(visa.findRsrc(session, "?*", &findList, &count, nullptr)),
              "VI_ERROR_USER_BUF");
    EXPECT_EQ(statusName(visa.findRsrc(session, nullptr, &findList, &count, text)),
              "VI_ERROR_INV_EXPR");
    // The published interface lets a client do without list and count.
    EXPECT_EQ(statusName(visa.findRsrc(session, "?*", nullptr, nullptr, text)), "VI_SUCCESS");
    EXPECT_EQ(description.text(), "ASRL1::INSTR");
    ASSERT_EQ(statusName(visa.findRsrc(session, "?*", &findList, nullptr, text)), "VI_SUCCESS");
    EXPECT_EQ(statusName(visa.findNext(findList, nullptr)), "VI_ERROR_USER_BUF");

    ViUInt16 type = 0;
    ViUInt16 number = 0;
    EXPECT_EQ(statusName(visa.parseRsrc(session, nullptr, &type, &number)),
              "VI_ERROR_INV_RSRC_NAME");
    EXPECT_EQ(statusName(visa.parseRsrc(session, "ASRL1", nullptr, &number)), "VI_ERROR_USER_BUF");
    EXPECT_EQ(statusName(visa.parseRsrc(session, "ASRL1", &type, nullptr)), "VI_ERROR_USER_BUF");
    for (int missing = 0; missing < 5; ++missing) {
        EXPECT_EQ(statusName(visa.parseRsrcEx(
                      session, "ASRL1", missing == 0 ? nullptr : &type,
                      missing == 1 ? nullptr : &number, missing == 2 ? nullptr : text,
                      missing == 3 ? nullptr : text, missing == 4 ? nullptr : text)),
                  "VI_ERROR_USER_BUF")
            << missing;
    }
}

TEST_F(SearchCalls, WrongAndClosedHandlesAreFoundOut)
{
    bench.write("resource ASRL1::INSTR\nresource ASRL2::INSTR\n");
    const ViSession session = openManager();
    const ViSession closed = openManager();
    ASSERT_EQ(statusName(visa.close(closed)), "VI_SUCCESS");
    ViFindList findList = VI_NULL;
    ViUInt32 count = 0;
    ViUInt16 type = 0;
    ViUInt16 number = 0;
    Buffer description;
    char* const text = description.characters.data();
    ASSERT_EQ(statusName(visa.findRsrc(session, "?*", &findList, &count, text)), "VI_SUCCESS");

    for (const ViObject wrong : {VI_NULL, closed, findList, ViObject{0xFFFFFFFF}}) {
        ViFindList other = VI_NULL;
        EXPECT_EQ(statusName(visa.findRsrc(wrong, "?*", &other, &count, text)),
                  "VI_ERROR_INV_OBJECT");
        EXPECT_EQ(statusName(visa.parseRsrc(wrong, "ASRL1", &type, &number)),
                  "VI_ERROR_INV_OBJECT");
        EXPECT_EQ(statusName(visa.parseRsrcEx(wrong, "ASRL1", &type, &number, text, text, text)),
                  "VI_ERROR_INV_OBJECT");
    }
    for (const ViObject wrong : {VI_NULL, session, closed, ViObject{0xFFFFFFFF}}) {
        EXPECT_EQ(statusName(visa.findNext(wrong, text)), "VI_ERROR_INV_OBJECT");
    }
    ASSERT_EQ(statusName(visa.close(findList)), "VI_SUCCESS");
    EXPECT_EQ(statusName(visa.findNext(findList, text)), "VI_ERROR_INV_OBJECT");
    EXPECT_EQ(statusName(visa.close(findList)), "VI_ERROR_INV_OBJECT");
    EXPECT_EQ(statusName(visa.close(closed)), "VI_ERROR_INV_OBJECT");
    EXPECT_EQ(statusName(visa.close(VI_NULL)), "VI_WARN_NULL_OBJECT");
}

TEST_F(SearchCalls, ClosingTheSessionClosesItsFindLists)
{
    bench.write("resource ASRL1::INSTR\nresource ASRL2::INSTR\n");
    const ViSession session = openManager();
    ViFindList findList = VI_NULL;
    Buffer description;
    ASSERT_EQ(
        statusName(visa.findRsrc(session, "?*", &findList, nullptr, description.characters.data())),
        "VI_SUCCESS");
    EXPECT_EQ(statusName(visa.close(session)), "VI_SUCCESS");
    EXPECT_EQ(statusName(visa.findNext(findList, description.characters.data())),
              "VI_ERROR_INV_OBJECT");
}

TEST_F(SearchCalls, FindListsAreReadIndependently)
{
    bench.write("resource ASRL{n}::INSTR repeat=3\n");
    const ViSession session = openManager();
    ViFindList one = VI_NULL;
    ViFindList two = VI_NULL;
    Buffer description;
    char* const text = description.characters.data();
    ASSERT_EQ(statusName(visa.findRsrc(session, "?*", &one, nullptr, text)), "VI_SUCCESS");
    ASSERT_EQ(statusName(visa.findNext(one, text)), "VI_SUCCESS");
    ASSERT_EQ(statusName(visa.findRsrc(session, "?*", &two, nullptr, text)), "VI_SUCCESS");
    EXPECT_EQ(description.text(), "ASRL1::INSTR");
    ASSERT_EQ(statusName(visa.findNext(one, text)), "VI_SUCCESS");
    EXPECT_EQ(description.text(), "ASRL3::INSTR");
    ASSERT_EQ(statusName(visa.findNext(two, text)), "VI_SUCCESS");
    EXPECT_EQ(description.text(), "ASRL2::INSTR");
}

TEST_F(SearchCalls, DescriptionsAreDeliveredByteByByte)
{
    const std::string longest(255, 'a');
    bench.write("resource caf\\xE9\\xFF\nresource \"\"\nresource " + longest +
                "\nresource open no-end\n");
    const ViSession session = openManager();
    ViFindList findList = VI_NULL;
    Buffer first;
    ASSERT_EQ(statusName(visa.findRsrc(session, "?*", &findList, nullptr, first.characters.data())),
              "VI_SUCCESS");
    EXPECT_EQ(first.text(), "caf\xE9\xFF");
    EXPECT_EQ(first.characters[6], '~'); // only the text and its end are written

    Buffer empty;
    ASSERT_EQ(statusName(visa.findNext(findList, empty.characters.data())), "VI_SUCCESS");
    EXPECT_EQ(empty.text(), "");

    Buffer full;
    ASSERT_EQ(statusName(visa.findNext(findList, full.characters.data())), "VI_SUCCESS");
    EXPECT_EQ(full.text(), longest);
    EXPECT_EQ(full.characters[256], '~');

    Buffer endless;
    ASSERT_EQ(statusName(visa.findNext(findList, endless.characters.data())), "VI_SUCCESS");
    const std::string all(endless.characters.begin(), endless.characters.end());
    EXPECT_EQ(all, "open" + std::string(252, 'x') + '~');
}

TEST_F(SearchCalls, TheCountMayLie)
{
    bench.write("resource ASRL{n}::INSTR repeat=3\n"
                "count 0 for=?*\ncount 5 for=ASRL?*\ncount 2 for=ASRL[1-3]?*\ncount 4 for=USB?*\n");
    const ViSession session = openManager();
    ViFindList findList = VI_NULL;
    ViUInt32 count = 77;
    Buffer description;
    char* const text = description.characters.data();

    ASSERT_EQ(statusName(visa.findRsrc(session, "?*", &findList, &count, text)), "VI_SUCCESS");
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(description.text(), "ASRL1::INSTR");
    EXPECT_EQ(statusName(visa.close(findList)), "VI_SUCCESS");

    for (const auto& [expression, told] :
         {std::pair<const char*, ViUInt32>{"ASRL?*", 5}, {"ASRL[1-3]?*", 2}}) {
        ASSERT_EQ(statusName(visa.findRsrc(session, expression, &findList, &count, text)),
                  "VI_SUCCESS");
        EXPECT_EQ(count, told);
        EXPECT_EQ(statusName(visa.findNext(findList, text)), "VI_SUCCESS");
        EXPECT_EQ(statusName(visa.findNext(findList, text)), "VI_SUCCESS");
        EXPECT_EQ(description.text(), "ASRL3::INSTR");
        EXPECT_EQ(statusName(visa.findNext(findList, text)), "VI_ERROR_RSRC_NFOUND");
        EXPECT_EQ(statusName(visa.findNext(findList, text)), "VI_ERROR_RSRC_NFOUND");
    }

    ASSERT_EQ(statusName(visa.findRsrc(session, "USB?*", &findList, &count, text)), "VI_SUCCESS");
    EXPECT_EQ(count, 4U);
    EXPECT_EQ(description.text(), "");
    EXPECT_EQ(statusName(visa.findNext(findList, text)), "VI_ERROR_RSRC_NFOUND");
}

TEST_F(SearchCalls, AFailingStepLosesItsMatchAndAWarningDoesNot)
{
    bench.write("resource ASRL{n}::INSTR repeat=5\n"
                "status viFindNext VI_ERROR_IO at=1\n"
                "status viFindNext 0x3FFF0085 at=3\n");
    const ViSession session = openManager();
    for (int round = 0; round < 2; ++round) { // each search counts its own steps
        ViFindList findList = VI_NULL;
        Buffer description;
        char* const text = description.characters.data();
        ASSERT_EQ(statusName(visa.findRsrc(session, "?*", &findList, nullptr, text)), "VI_SUCCESS");
        Buffer untouched;
        EXPECT_EQ(statusName(visa.findNext(findList, untouched.characters.data())), "VI_ERROR_IO");
        EXPECT_TRUE(untouched.isUntouched());
        EXPECT_EQ(statusName(visa.findNext(findList, text)), "VI_SUCCESS");
        EXPECT_EQ(description.text(), "ASRL3::INSTR");
        EXPECT_EQ(statusName(visa.findNext(findList, text)), "VI_WARN_UNKNOWN_STATUS");
        EXPECT_EQ(description.text(), "ASRL4::INSTR");
        EXPECT_EQ(statusName(visa.findNext(findList, text)), "VI_SUCCESS");
        EXPECT_EQ(description.text(), "ASRL5::INSTR");
    }
}

TEST_F(SearchCalls, AFailingSearchLeavesEverythingAlone)
{
    bench.write("resource ASRL1::INSTR\n"
                "status viFindRsrc VI_ERROR_SYSTEM_ERROR for=?*\n"
                "status viFindRsrc 0x3FFF0085 at=3\n");
    const ViSession session = openManager();
    ViFindList findList = 77;
    ViUInt32 count = 77;
    Buffer description;
    char* const text = description.characters.data();
    EXPECT_EQ(statusName(visa.findRsrc(session, "?*", &findList, &count, text)),
              "VI_ERROR_SYSTEM_ERROR");
    EXPECT_EQ(findList, 77U);
    EXPECT_EQ(count, 77U);
    EXPECT_TRUE(description.isUntouched());
    EXPECT_EQ(statusName(visa.findRsrc(session, "ASRL?*", &findList, &count, text)), "VI_SUCCESS");
    // A warning comes with the matches.
    EXPECT_EQ(statusName(visa.findRsrc(session, "ASRL?*", &findList, &count, text)),
              "VI_WARN_UNKNOWN_STATUS");
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(statusName(visa.close(findList)), "VI_SUCCESS");
}

TEST_F(SearchCalls, OpeningTheManagerFailsOrWarns)
{
    bench.write("status viOpenDefaultRM VI_ERROR_ALLOC\n");
    ViSession session = 77;
    EXPECT_EQ(statusName(visa.openDefaultRM(&session)), "VI_ERROR_ALLOC");
    EXPECT_EQ(session, 77U);

    bench.write("resource ASRL1::INSTR\nstatus viOpenDefaultRM VI_WARN_CONFIG_NLOADED\n");
    EXPECT_EQ(statusName(visa.openDefaultRM(&session)), "VI_WARN_CONFIG_NLOADED");
    EXPECT_EQ(list(session, "?*"), Names{"ASRL1::INSTR"});
}

TEST_F(SearchCalls, ParsingTellsInterfaceAndNumber)
{
    bench.write("resource ASRL1::INSTR interface=4,9\n"
                "resource \"ASRL/dev/tty::INSTR\" interface=ASRL,7\n"
                "resource odd\n"
                "resource ASRL{n}::INSTR repeat=300\n");
    const ViSession session = openManager();
    struct Case
    {
        const char* resource;
        ViUInt16 type;
        ViUInt16 number;
    };
    for (const Case& test : {Case{"ASRL1::INSTR", 4, 9},
                             {"asrl1", 4, 9},
                             {"ASRL/dev/tty::INSTR", 4, 7},
                             {"ASRL256::INSTR", 4, 256},
                             {"ASRL65535::INSTR", 4, 65535}, // need not be on the bench
                             {"USB2::1::2::3::INSTR", 7, 2}}) {
        ViUInt16 type = 77;
        ViUInt16 number = 77;
        EXPECT_EQ(statusName(visa.parseRsrc(session, test.resource, &type, &number)), "VI_SUCCESS")
            << test.resource;
        EXPECT_EQ(type, test.type) << test.resource;
        EXPECT_EQ(number, test.number) << test.resource;
    }
    for (const char* const bad : {"", "odd", "ASRL70000::INSTR"}) {
        ViUInt16 type = 77;
        ViUInt16 number = 77;
        EXPECT_EQ(statusName(visa.parseRsrc(session, bad, &type, &number)),
                  "VI_ERROR_INV_RSRC_NAME")
            << bad;
        EXPECT_EQ(type, 77);
        EXPECT_EQ(number, 77);
    }
}

TEST_F(SearchCalls, ParsingFailsOnRequestAndLeavesEverythingAlone)
{
    bench.write("status viParseRsrc VI_ERROR_IO at=2\nstatus viParseRsrcEx VI_ERROR_TMO\n");
    const ViSession session = openManager();
    ViUInt16 type = 77;
    ViUInt16 number = 77;
    Buffer text;
    EXPECT_EQ(statusName(visa.parseRsrcEx(session, "ASRL5", &type, &number, text.characters.data(),
                                          text.characters.data(), text.characters.data())),
              "VI_ERROR_TMO");
    EXPECT_TRUE(text.isUntouched());
    EXPECT_EQ(type, 77);
    EXPECT_EQ(statusName(visa.parseRsrc(session, "ASRL5", &type, &number)), "VI_SUCCESS");
    EXPECT_EQ(statusName(visa.parseRsrc(session, "ASRL6", &type, &number)), "VI_ERROR_IO");
    EXPECT_EQ(type, 4);
    EXPECT_EQ(number, 5);
    EXPECT_EQ(statusName(visa.parseRsrc(session, "ASRL7", &type, &number)), "VI_SUCCESS");
    EXPECT_EQ(number, 7);
}

TEST_F(SearchCalls, ParsingInFullTellsClassAndName)
{
    const ViSession session = openManager();
    ViUInt16 type = 0;
    ViUInt16 number = 0;
    Buffer resourceClass;
    Buffer name;
    Buffer alias;
    const auto parse = [&](const std::string& resource) {
        return statusName(visa.parseRsrcEx(session, resource.c_str(), &type, &number,
                                           resourceClass.characters.data(), name.characters.data(),
                                           alias.characters.data()));
    };
    EXPECT_EQ(parse("tcpip::meter::5025::socket"), "VI_SUCCESS");
    EXPECT_EQ(type, VI_INTF_TCPIP);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(resourceClass.text(), "SOCKET");
    EXPECT_EQ(name.text(), "TCPIP0::meter::5025::SOCKET");
    EXPECT_EQ(alias.text(), "");

    // What does not fit into the client's buffer is cut off.
    const std::string longName = "USB0::0x0001::0x0002::" + std::string(300, 's');
    EXPECT_EQ(parse(longName), "VI_SUCCESS");
    EXPECT_EQ(name.text(), longName.substr(0, 255));
    EXPECT_EQ(name.characters[256], '~');
}

TEST_F(SearchCalls, ASearchTakesItsTime)
{
    bench.write("resource ASRL1::INSTR\nscan-time 60\n");
    const ViSession session = openManager();
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(list(session, "?*"), Names{"ASRL1::INSTR"});
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(60));
}

TEST_F(SearchCalls, AMillionResourcesAreListed)
{
    bench.write("resource TCPIP0::host{n}::inst0::INSTR repeat=1000000\n");
    const ViSession session = openManager();
    ViFindList findList = VI_NULL;
    ViUInt32 count = 0;
    Buffer description;
    char* const text = description.characters.data();
    unsetVariable("QVVISA_BENCH_LOG");
    ASSERT_EQ(statusName(visa.findRsrc(session, "?*", &findList, &count, text)), "VI_SUCCESS");
    ASSERT_EQ(count, 1000000U);
    for (ViUInt32 i = 1; i < count; ++i) {
        ASSERT_GE(visa.findNext(findList, text), 0);
    }
    EXPECT_EQ(description.text(), "TCPIP0::host1000000::inst0::INSTR");
    EXPECT_EQ(statusName(visa.findNext(findList, text)), "VI_ERROR_RSRC_NFOUND");
}
