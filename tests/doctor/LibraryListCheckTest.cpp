// SPDX-License-Identifier: MIT
#include "tests/doctor/LibraryFixture.h"

#include <ostream>

namespace {

struct Bench
{
    const char* name;
    const char* lines;
    /// What library.list and library.calls find, but for what is ok.
    const char* list;
    const char* calls;
};

std::ostream& operator<<(std::ostream& stream, const Bench& bench)
{
    return stream << bench.name;
}

// NOLINTNEXTLINE(cert-err58-cpp,bugprone-throwing-static-initialization)
const std::vector<Bench> benches{
    {"TwoResources", "resource ASRL1::INSTR\nresource GPIB0::1::INSTR\n", "", ""},
    {"Nothing", "",
     "warning: The window's list is empty: the library found nothing (viFindRsrc answered "
     "VI_ERROR_RSRC_NFOUND).\n",
     ""},
    {"OpenFails", "resource ASRL1::INSTR\nstatus viOpenDefaultRM VI_ERROR_IO\n",
     "problem: The window's list is empty: viOpenDefaultRM fails with VI_ERROR_IO (I/O error).\n",
     "warning: viOpenDefaultRM failed 2 times with VI_ERROR_IO (I/O error).\n"},
    {"OpenWarns", "resource ASRL1::INSTR\nstatus viOpenDefaultRM 0x3FFF0085\n", "",
     "note: viOpenDefaultRM answered 2 times with the warning VI_WARN_UNKNOWN_STATUS (The status "
     "code is unknown).\n"},
    {"AttributesFail", "resource ASRL1::INSTR\nstatus viSetAttribute VI_ERROR_IO\n", "", ""},
    {"SearchFails", "resource ASRL1::INSTR\nstatus viFindRsrc VI_ERROR_IO for=?*\n",
     "problem: The window's list is empty: viFindRsrc fails with VI_ERROR_IO (I/O error).\n",
     "warning: viFindRsrc ?* failed with VI_ERROR_IO (I/O error).\n"},
    {"SearchWarns", "resource ASRL{n}::INSTR repeat=2\nstatus viFindRsrc 0x3FFF0085 for=?*\n",
     "problem: The window's list is empty: viFindRsrc answered with the warning "
     "VI_WARN_UNKNOWN_STATUS (The status code is unknown), and the window takes only success. The "
     "library delivered ASRL1::INSTR and ASRL2::INSTR.\n",
     "note: viFindRsrc ?* answered with the warning VI_WARN_UNKNOWN_STATUS (The status code is "
     "unknown).\n"},
    {"CountIsZero", "resource ASRL1::INSTR\ncount 0\n",
     "warning: The window's list is empty: the library found nothing (viFindRsrc answered "
     "VI_SUCCESS with a count of 0).\n",
     ""},
    {"CountIsTooSmall", "resource GPIB0::{n}::INSTR repeat=3\ncount 2\n",
     "warning: The library has more resources than the 2 that it announces; the window does not "
     "list them.\nwarning: The window takes an empty entry for port number 0, since viParseRsrc "
     "fails.\n",
     "warning: viParseRsrc \"\" failed with VI_ERROR_INV_RSRC_NAME (The resource string is "
     "malformed).\n"},
    {"CountIsTooLarge", "resource GPIB0::{n}::INSTR repeat=2\ncount 4\n",
     "warning: The window lists 2 of 4 announced resources: viFindNext failed for 2 "
     "entries.\nwarning: The window takes an empty entry for port number 0, since viParseRsrc "
     "fails.\n",
     "warning: viFindNext failed 2 times with VI_ERROR_RSRC_NFOUND (No such resource was found, or "
     "the device is not present).\nwarning: viParseRsrc \"\" failed with VI_ERROR_INV_RSRC_NAME "
     "(The resource string is malformed).\n"},
    {"CountIsHuge", "resource GPIB0::1::INSTR\ncount 4294967295\n",
     "problem: The window lists 1 of 4294967295 announced resources: the library fails to deliver "
     "the others. The window asks for each of them, which may take very long.\nwarning: The window "
     "takes an empty entry for port number 0, since viParseRsrc fails.\n",
     "warning: viFindNext failed 1000 times with VI_ERROR_RSRC_NFOUND (No such resource was found, "
     "or the device is not present).\nwarning: viParseRsrc \"\" failed with VI_ERROR_INV_RSRC_NAME "
     "(The resource string is malformed).\n"},
    {"NextFailsOnce", "resource GPIB0::{n}::INSTR repeat=3\nstatus viFindNext VI_ERROR_IO at=1\n",
     "warning: The window lists 2 of 3 announced resources: viFindNext failed for 1 entry.\n",
     "warning: viFindNext failed with VI_ERROR_IO (I/O error).\n"},
    {"NextWarnsOnce", "resource GPIB0::{n}::INSTR repeat=3\nstatus viFindNext 0x3FFF0085 at=1\n",
     "warning: The window lists 2 of 3 announced resources: viFindNext delivered 1 entry with a "
     "warning, and the window takes only success.\n",
     "note: viFindNext answered with the warning VI_WARN_UNKNOWN_STATUS (The status code is "
     "unknown).\n"},
    {"CloseFails", "resource GPIB0::1::INSTR\nstatus viClose VI_ERROR_IO at=1\n", "",
     "warning: viClose failed 2 times with VI_ERROR_IO (I/O error).\n"},
    {"PortSearchFails", "resource ASRL1::INSTR\nstatus viFindRsrc VI_ERROR_IO for=ASRL?*\n",
     "warning: The window offers no serial port: viFindRsrc ASRL?* fails with VI_ERROR_IO (I/O "
     "error).\n",
     "warning: viFindRsrc ASRL?* failed with VI_ERROR_IO (I/O error).\n"},
    {"PortCannotBeParsed", "resource ASRL1::INSTR\nstatus viParseRsrc VI_ERROR_IO\n",
     "warning: The window takes ASRL1::INSTR for port number 0, since viParseRsrc fails.\n",
     "warning: viParseRsrc ASRL1::INSTR failed with VI_ERROR_IO (I/O error).\n"},
    {"NotAscii", "resource \"M\\xFCller & Co\"\nresource GPIB0::1::INSTR\n",
     "warning: Bytes that are not ASCII are in 1 listed resource, so PyVISA lists nothing.\n", ""},
    {"NoTerminatingZero", "resource USB0::0x1234::0x5678::SN7::INSTR no-end\n",
     "warning: No terminating zero is in 1 listed resource; the window cuts it after 256 bytes, "
     "other programs may crash.\n",
     ""},
    {"EmptyDescription", "resource \"\"\nresource GPIB0::1::INSTR\n",
     "warning: The list has 1 empty entry.\n", ""},
    {"ListedTwice", "resource GPIB0::1::INSTR\nresource GPIB0::1::INSTR\n",
     "note: The library delivers GPIB0::1::INSTR more than once, and the window lists it as "
     "often.\n",
     ""},
};

class LibraryOnBench : public support::LibraryFixture, public testing::WithParamInterface<Bench>
{};

TEST_P(LibraryOnBench, IsExplained)
{
    probeSimulator(GetParam().lines);
    EXPECT_EQ(faults("library.list"), GetParam().list);
    EXPECT_EQ(faults("library.calls"), GetParam().calls);
}

INSTANTIATE_TEST_SUITE_P(EachBench, LibraryOnBench, testing::ValuesIn(benches),
                         [](const auto& each) { return each.param.name; });

class LibraryListCheck : public support::LibraryFixture
{};

TEST_F(LibraryListCheck, CompleteListIsOk)
{
    probeSimulator("resource ASRL1::INSTR\nresource GPIB0::1::INSTR\n");
    EXPECT_EQ(results("library.list"), "ok: The window lists all 2 resources that the library "
                                       "delivers: ASRL1::INSTR and GPIB0::1::INSTR.\n");
}

TEST_F(LibraryListCheck, SearchThatHangsLeavesTheListEmpty)
{
    for (const char* wait :
         {"wait-for-file absent\n", "wait-for-file absent call=viOpenDefaultRM\n",
          "scan-time 3600000\n"}) {
        probeSimulator(std::string("resource ASRL1::INSTR\n") + wait, hangingTimeout);
        EXPECT_EQ(
            faults("library.list"),
            "problem: The window's list is empty: the library does not complete its search.\n")
            << wait;
    }
}

TEST_F(LibraryListCheck, WithoutALibraryTheListIsEmpty)
{
    probe({"libqvvisa-that-nobody-has.so"});
    EXPECT_EQ(remedies("library.list"),
              "problem: The window's list is empty: no VISA library is in use. -> qvvisa doctor "
              "library.candidates says why.\n");
}

TEST_F(LibraryListCheck, ListThatIsLongerThanTheProbeIsNoted)
{
    probeSimulator("resource GPIB0::{n}::INSTR repeat=3\n");
    m_probe->isListCut = true;
    m_probe->count = 200000;
    EXPECT_EQ(results("library.list"), "note: The list was read up to 3 resources of 200000.\n");
}

} // namespace
