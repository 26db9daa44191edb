// SPDX-License-Identifier: MIT
#include "tests/doctor/DoctorFixture.h"

namespace {

class InstrumentChecks : public support::DoctorFixture
{
protected:
    /// A library that found these.
    void libraryFinds(const std::vector<std::string>& resources)
    {
        m_probe.emplace();
        m_probe->library = "libvisa.so.0";
        m_probe->hasSearched = true;
        m_probe->searchStatus = resources.empty() ? VI_ERROR_RSRC_NFOUND : VI_SUCCESS;
        m_probe->end.kind = visa::ProbeEnd::Finished;
        for (const std::string& resource : resources) {
            m_probe->resources.emplace_back().resource = resource;
        }
    }
};

TEST_F(InstrumentChecks, FoundInstrumentsAreOk)
{
    writeFile("DMM=TCPIP0::10.0.0.5::INSTR\nSCOPE=USB0::4660::22136::SN7\n");
    libraryFinds({"TCPIP0::10.0.0.5::inst0::INSTR", "USB0::0x1234::0x5678::SN7::INSTR"});
    EXPECT_EQ(results("instruments.missing"), "ok: The instruments of all 2 aliases were found.\n");
    writeFile("DMM=TCPIP0::10.0.0.5::INSTR\n");
    EXPECT_EQ(results("instruments.missing"), "ok: The instrument of the alias was found.\n");
    writeFile("ASRL1::INSTR\n");
    EXPECT_EQ(results("instruments.missing"), "ok: The file has no aliases.\n");
}

TEST_F(InstrumentChecks, MissingInstrumentsAreAWarning)
{
    writeFile("DMM=GPIB0::5::INSTR\nSUPPLY=GPIB0::6::INSTR\nLOAD=GPIB0::7::INSTR\n");
    libraryFinds({"GPIB0::6::INSTR"});
    EXPECT_EQ(remedies("instruments.missing"),
              "warning: The instruments of 2 of 3 aliases were not found: DMM and LOAD. -> Switch "
              "them on and check their cables; qvvisa find --missing lists them.\n");
    libraryFinds({});
    EXPECT_EQ(results("instruments.missing"),
              "warning: The instruments of 3 of 3 aliases were not found: DMM, LOAD and SUPPLY.\n");
}

TEST_F(InstrumentChecks, SameModelWithAnotherSerialNumberIsOffered)
{
    writeFile("SCOPE=USB0::0x1234::0x5678::SN6::INSTR\n");
    libraryFinds({"USB0::0x1234::0x5678::SN7::INSTR"});
    EXPECT_EQ(remedies("instruments.missing"),
              "warning: The instrument of SCOPE (USB0::0x1234::0x5678::SN6::INSTR) was not found; "
              "the same model with another serial number was found: "
              "USB0::0x1234::0x5678::SN7::INSTR. -> If it was exchanged: qvvisa set SCOPE "
              "USB0::0x1234::0x5678::SN7::INSTR\n");
}

TEST_F(InstrumentChecks, HostNameThatDoesNotResolveIsAWarning)
{
    writeFile("SCOPE=TCPIP0::scope.invalid::INSTR\n");
    libraryFinds({});
    const std::string text = remedies("instruments.missing");
    EXPECT_EQ(text.find("warning: The instrument of SCOPE (TCPIP0::scope.invalid::INSTR) was not "
                        "found; its host name cannot be resolved: "),
              0U)
        << text;
    EXPECT_NE(text.find("-> Correct the name, or give the alias an address: qvvisa set SCOPE"),
              std::string::npos)
        << text;
}

TEST_F(InstrumentChecks, ManyHintsAreFiveAtMost)
{
    std::string lines;
    for (int i = 0; i < 9; ++i) {
        lines += "A" + std::to_string(i) + "=TCPIP0::h" + std::to_string(i) + ".invalid::INSTR\n";
    }
    writeFile(lines);
    libraryFinds({});
    const std::string text = results("instruments.missing");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 6) << text;
    EXPECT_NE(text.find("The instruments of 4 of 9 aliases were not found: A5, A6, A7 and A8."),
              std::string::npos)
        << text;
}

TEST_F(InstrumentChecks, IncompleteListSaysNothingAboutAliases)
{
    using Change = std::function<void(visa::ProbeReport&)>;
    const Change changes[] = {
        [](auto& probe) { probe.end.kind = visa::ProbeEnd::TimedOut; },
        [](auto& probe) { probe.end.kind = visa::ProbeEnd::Crashed; },
        [](auto& probe) { probe.hasSearched = false; },
        [](auto& probe) { probe.searchStatus = VI_ERROR_SYSTEM_ERROR; },
        [](auto& probe) { probe.droppedEntries = 1; },
        [](auto& probe) { probe.isListCut = true; },
    };
    writeFile("DMM=GPIB0::5::INSTR\n");
    for (const Change& change : changes) {
        libraryFinds({"ASRL1::INSTR"});
        change(*m_probe);
        EXPECT_EQ(results("instruments.missing"),
                  "note: Whether the instruments of the aliases are there is not known: the VISA "
                  "library gave no complete list.\n");
    }
}

TEST_F(InstrumentChecks, OtherLibraryThanTheFinderHasNoLog)
{
    libraryFinds({});
    EXPECT_EQ(results("instruments.finder"), "");
}

TEST_F(InstrumentChecks, LogOfTheFinderIsReportedLineByLine)
{
    libraryFinds({});
    m_finderLog = {
        "search for ?*",
        "asked 1 interface (eth0) with 10 packets, 2 answers",
        "found 198.51.100.7 (Maker, Model) TCPIP0::198.51.100.7::hislip0::INSTR",
        "found but not reachable: Scope at 203.0.113.9",
        "ASRL1::INSTR is /dev/ttyS0",
        "ASRL101::INSTR is /dev/ttyUSB0; to pin it: 101 = /dev/serial/by-id/usb-A",
        "ASRL11::INSTR is /dev/ttyUSB1, pinned to /dev/serial/by-id/usb-B",
        "no permission for /dev/ttyUSB1 (group dialout)",
        "left out: USB instrument 0x0957 0x56A0 at 1-2:1.0: it has no serial number",
        "search for ASRL?*",
        "ASRL1::INSTR is /dev/ttyS0",
    };
    EXPECT_EQ(remedies("instruments.finder"),
              "ok: The finder asked 1 interface (eth0) with 10 packets, 2 answers.\n"
              "warning: The finder: found but not reachable: Scope at 203.0.113.9. -> Give it an "
              "address in a subnet of this machine, or add its resource string by hand.\n"
              "ok: ASRL1::INSTR is /dev/ttyS0.\n"
              "note: ASRL101::INSTR is /dev/ttyUSB0; the number depends on the order in which "
              "adapters are plugged in. -> To keep it, add this line to "
              "~/.quorvane/serial-ports.conf: 101 = /dev/serial/by-id/usb-A\n"
              "ok: ASRL11::INSTR is /dev/ttyUSB1, pinned to /dev/serial/by-id/usb-B.\n"
              "warning: The finder: left out: USB instrument 0x0957 0x56A0 at 1-2:1.0: it has no "
              "serial number.\n");
}

TEST_F(InstrumentChecks, FinderThatAskedNobodySaysWhy)
{
    libraryFinds({});
    m_finderLog = {"search for ?*", "asked 0 interfaces with 0 packets, 0 answers"};
    EXPECT_EQ(results("instruments.finder"),
              "warning: The finder asked no network: no interface is up with an IPv4 address.\n");
    m_finderLog = {"search for ?*", "no network search: QVFIND is local"};
    EXPECT_EQ(results("instruments.finder"),
              "note: The finder: no network search: QVFIND is local.\n");
}

TEST_F(InstrumentChecks, LongLogOfTheFinderIsCut)
{
    libraryFinds({});
    m_finderLog.assign(12, "left out: something");
    const std::string text = results("instruments.finder");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 11);
    EXPECT_NE(text.find("note: The finder's log has 2 more lines."), std::string::npos) << text;
}

} // namespace
