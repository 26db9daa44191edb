// SPDX-License-Identifier: MIT
#include "tests/doctor/LibraryFixture.h"

#include <ostream>

namespace {

struct Deed
{
    const char* name;
    const char* deed;
    /// What library.calls and library.list find, but for what is ok.
    const char* calls;
    const char* list;
};

std::ostream& operator<<(std::ostream& stream, const Deed& deed)
{
    return stream << deed.deed;
}

constexpr const char* unfinished =
    "problem: The window's list is empty: the library does not complete its search.\n";
constexpr const char* notLoaded = "problem: The window's list is empty: no VISA library is in "
                                  "use.\n";
constexpr const char* inNext = "problem: The window's list is empty: viFindNext does not return. "
                               "The library had delivered GPIB0::1::INSTR.\n";

// NOLINTNEXTLINE(cert-err58-cpp,bugprone-throwing-static-initialization)
const std::vector<Deed> deeds{
    {"Nothing", "", "", ""},
    {"CrashInNext", "viFindNext crash",
     "problem: The library crashed in viFindNext (SIGSEGV, a bad memory access); the window would "
     "crash with it. It had delivered 1 resource.\n",
     inNext},
    {"AbortWhileLoading", "load abort",
     "problem: The library crashed in dlopen " QVVISA_MISBEHAVING_LIBRARY
     " (SIGABRT, it gave up); the window would crash with it.\n"
     "note: The library printed 14 bytes, beginning with \"now it aborts\".\n",
     notLoaded},
    {"ExitInFind", "viFindRsrc exit",
     "problem: The library ended the program in viFindRsrc ?* with exit code 3; it would end the "
     "window.\n",
     unfinished},
    {"ThrowInOpen", "viOpenDefaultRM throw",
     "warning: A C++ exception left viOpenDefaultRM 2 times; the window takes it for "
     "VI_ERROR_SYSTEM_ERROR.\n",
     "problem: The window's list is empty: viOpenDefaultRM fails with VI_ERROR_SYSTEM_ERROR "
     "(Unknown system error).\n"},
    {"DescriptorsClosed", "viFindRsrc close-all",
     "problem: The library closed files of the program that are not its own, or wrote to them, in "
     "viFindRsrc ?*; what it did then is unknown.\n",
     unfinished},
    {"ProcessLeft", "viOpenDefaultRM leave-process", "", ""},
    {"Overrun", "viFindRsrc overrun",
     "problem: The library writes past the end of the buffer for a description; the window may "
     "crash.\n",
     "warning: No terminating zero is in 1 listed resource; the window cuts it after 256 bytes, "
     "other programs may crash.\n"},
    {"Printing", "viFindRsrc print",
     "note: The library printed 6.1 MB, beginning with \"the first line\".\n", ""},
};

class LibraryThatMisbehaves : public support::LibraryFixture,
                              public testing::WithParamInterface<Deed>
{};

TEST_P(LibraryThatMisbehaves, IsNamedWithItsCall)
{
    probeMisbehaving(GetParam().deed);
    EXPECT_EQ(faults("library.calls"), GetParam().calls);
    EXPECT_EQ(faults("library.list"), GetParam().list);
}

INSTANTIATE_TEST_SUITE_P(EachDeed, LibraryThatMisbehaves, testing::ValuesIn(deeds),
                         [](const auto& each) { return each.param.name; });

class LibraryCallsCheck : public support::LibraryFixture
{};

TEST_F(LibraryCallsCheck, HangIsNamedWithItsCallAndTheTime)
{
    probeMisbehaving("viFindNext hang", hangingTimeout);
    EXPECT_EQ(faults("library.calls"),
              "problem: viFindNext did not answer within " +
                  std::to_string(hangingTimeout.count() / 1000) +
                  " s; the window waits for it without end. It had delivered 1 resource.\n");
    EXPECT_EQ(faults("library.list"), inNext);
    EXPECT_NE(remedies("library.calls").find("--timeout"), std::string::npos);
}

TEST_F(LibraryCallsCheck, EachFunctionIsListedWithStatusAndDuration)
{
    probeSimulator("resource ASRL{n}::INSTR repeat=3\n");
    const std::string text = results("library.calls");
    const std::vector<std::string> parts{"ok: dlopen " + std::string(QVVISA_SIMULATOR_LIBRARY) +
                                             " VI_SUCCESS ",
                                         "viOpenDefaultRM (2) VI_SUCCESS ",
                                         "viSetAttribute (3) VI_SUCCESS ",
                                         "viFindRsrc ?* VI_SUCCESS ",
                                         "viFindNext (4) VI_SUCCESS ",
                                         "viFindNext (2) VI_ERROR_RSRC_NFOUND ",
                                         "viClose (4) VI_SUCCESS ",
                                         "viFindRsrc ASRL?* VI_SUCCESS ",
                                         "viParseRsrc (3) VI_SUCCESS ",
                                         " ms.\n"};
    std::size_t at = 0;
    for (const std::string& part : parts) {
        at = text.find(part, at);
        ASSERT_NE(at, std::string::npos) << part << "\nin " << text;
    }
}

TEST_F(LibraryCallsCheck, SlowCallIsWarnedOf)
{
    probeSimulator("resource ASRL1::INSTR\n");
    for (visa::ProbedCall& call : m_probe->calls) {
        call.duration = std::chrono::milliseconds(2999);
    }
    EXPECT_EQ(faults("library.calls"), "");
    m_probe->calls[3].duration = std::chrono::milliseconds(4160);
    EXPECT_EQ(faults("library.calls"), "warning: viFindRsrc ?* took 4.1 s.\n");
}

TEST_F(LibraryCallsCheck, AtMostSixFailuresAreReportedEach)
{
    probeSimulator("resource ASRL{n}::INSTR repeat=10\nstatus viParseRsrc VI_ERROR_IO\n");
    const std::string text = faults("library.calls");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 7);
    EXPECT_NE(text.find("warning: 4 more calls failed or warned.\n"), std::string::npos);
}

TEST_F(LibraryCallsCheck, WithoutAProcessTheReasonIsGiven)
{
    m_probe.emplace();
    m_probe->end = {visa::ProbeEnd::NoChild, EAGAIN};
    EXPECT_EQ(faults("library.calls"),
              "problem: The library was not called, since no process can be started: resource "
              "temporarily unavailable.\n");
}

TEST_F(LibraryCallsCheck, AnyBytesGiveBoundedTexts)
{
    const std::string all(4096, '\xFF');
    probeSimulator("resource \"" + std::string(200, 'x') + "{n}\" repeat=300\n");
    m_probe->output = all;
    m_probe->outputSize = all.size();
    m_probe->calls.push_back({});
    m_probe->calls.back().name = "viRead " + all;
    m_probe->end = {visa::ProbeEnd::Crashed, 99};
    for (const char* check : {"library.calls", "library.list", "library.candidates"}) {
        EXPECT_LT(results(check).size(), 3000U) << check;
    }
}

} // namespace
