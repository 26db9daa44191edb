// SPDX-License-Identifier: MIT
#include "finder/SerialPorts.h"

#include "finder/PortTable.h"
#include "finder/SearchLog.h"
#include "tests/support/FakeSystem.h"

#include <gtest/gtest.h>

namespace {

using namespace finder;

using Strings = std::vector<std::string>;

class SerialPorts : public testing::Test
{
protected:
    PortTable table(const std::string& text) const
    {
        SearchLog log(m_system.path("/log").string());
        return PortTable(text, m_system.files(), log);
    }

    /// "number name" of each port.
    Strings ports(const std::string& tableText = {}) const
    {
        Strings texts;
        for (const SerialPort& port : serialPorts(m_system.files(), table(tableText))) {
            texts.push_back(std::to_string(port.number) + " " + port.name);
        }
        return texts;
    }

    std::string log() const
    {
        const auto path = m_system.path("/log");
        return std::filesystem::exists(path) ? support::readFile(path) : std::string();
    }

    support::FakeSystem m_system;
};

TEST_F(SerialPorts, NamesGiveTheUsualNumbers)
{
    for (const char* const name : {"ttyS0", "ttyS10", "ttyUSB0", "ttyUSB12", "ttyACM3"}) {
        m_system.terminal(name, "some_driver");
    }
    m_system.terminal("ttyAMA10", "uart-pl011");
    m_system.terminal("ttyAMA2", "uart-pl011");
    EXPECT_EQ(ports(), (Strings{"1 ttyS0", "11 ttyS10", "101 ttyUSB0", "113 ttyUSB12",
                                "204 ttyACM3", "301 ttyAMA2", "302 ttyAMA10"}));
}

TEST_F(SerialPorts, TerminalWithoutDriverIsNoPort)
{
    std::filesystem::create_directories(m_system.path("/sys/class/tty/tty1"));
    EXPECT_TRUE(ports().empty());
}

TEST_F(SerialPorts, PortOfUnknownTypeIsAbsentWhateverItsDriver)
{
    m_system.terminal("ttyS0", "serial8250", "0");
    m_system.terminal("ttyS1", "serial", "0");
    m_system.terminal("ttyS2", "serial8250", "4");
    EXPECT_EQ(ports(), Strings{"3 ttyS2"});
}

TEST_F(SerialPorts, PortWithoutTypeIsAbsentUnderThePlaceholderDriver)
{
    m_system.terminal("ttyS0", "serial8250");
    m_system.terminal("ttyS1", "serial");
    EXPECT_EQ(ports(), Strings{"2 ttyS1"});
}

TEST_F(SerialPorts, PortWithoutTypeIsAbsentWhenItsControllerIsAPlaceholder)
{
    for (const std::string& parent : {std::string("serial8250"), std::string("00:04")}) {
        const std::string folder = "/sys/devices/" + parent;
        m_system.link(folder + "/driver",
                      parent == "serial8250" ? "../bus/serial8250" : "../bus/serial");
        m_system.link(folder + "/" + parent + ":0/driver", "../../bus/ctrl");
        const std::string port = folder + "/" + parent + ":0/" + parent + ":0.0";
        m_system.link(port + "/driver", "../../../bus/port");
        m_system.link(std::string("/sys/class/tty/") +
                          (parent == "serial8250" ? "ttyS4" : "ttyS0") + "/device",
                      "../../../devices/" + parent + "/" + parent + ":0/" + parent + ":0.0");
    }
    EXPECT_EQ(ports(), Strings{"1 ttyS0"});
}

TEST_F(SerialPorts, PinnedNumberGoesBeforeAllOthers)
{
    m_system.terminal("ttyS10", "serial", "4");
    m_system.terminal("ttyUSB0", "ftdi_sio");
    m_system.link("/dev/serial/by-id/usb-A", "../../ttyUSB0");
    EXPECT_EQ(ports("11 = /dev/serial/by-id/usb-A\n"), (Strings{"11 ttyUSB0", "301 ttyS10"}));
    EXPECT_EQ(ports("11=/dev/ttyUSB0"), (Strings{"11 ttyUSB0", "301 ttyS10"}));
}

TEST_F(SerialPorts, NumberPinnedToAnUnpluggedAdapterStaysFree)
{
    m_system.terminal("ttyUSB0", "ftdi_sio");
    EXPECT_EQ(ports("101 = /dev/serial/by-id/usb-gone\n"), Strings{"301 ttyUSB0"});
}

TEST_F(SerialPorts, NumberFromANameGoesBeforeAGapFiller)
{
    m_system.terminal("ttyAMA0", "uart-pl011");
    m_system.terminal("ttyUSB200", "ftdi_sio"); // 301
    EXPECT_EQ(ports(), (Strings{"301 ttyUSB200", "302 ttyAMA0"}));
}

TEST_F(SerialPorts, CommentsAndBlankLinesOfTheTableAreSilent)
{
    m_system.terminal("ttyUSB0", "ftdi_sio");
    EXPECT_EQ(ports("# ports\n\n  \t\r\n 7 = /dev/ttyUSB0 \r\n"), Strings{"7 ttyUSB0"});
    EXPECT_EQ(log(), "");
}

TEST_F(SerialPorts, LineOfTheTableThatCannotBeUsedIsLogged)
{
    const std::vector<std::string> bad{"x",
                                       "0 = /dev/ttyUSB0",
                                       "65536 = /dev/ttyUSB0",
                                       "-1 = /dev/ttyUSB0",
                                       "1x = /dev/ttyUSB0",
                                       "= /dev/ttyUSB0",
                                       "5 =",
                                       "5 = ttyUSB0",
                                       "5 = /dev/",
                                       "5 = /etc/passwd",
                                       "5 = /dev/../etc/passwd"};
    m_system.terminal("ttyUSB0", "ftdi_sio");
    for (const std::string& line : bad) {
        std::filesystem::remove(m_system.path("/log"));
        EXPECT_EQ(ports("# first\n" + line + "\n"), Strings{"101 ttyUSB0"}) << line;
        EXPECT_NE(log().find("port table line 2 is ignored: "), std::string::npos) << line;
    }
}

TEST_F(SerialPorts, SecondPinOfANumberOrAnAdapterIsIgnoredAndLogged)
{
    m_system.terminal("ttyUSB0", "ftdi_sio");
    m_system.terminal("ttyUSB1", "ftdi_sio");
    m_system.link("/dev/serial/by-id/usb-A", "../../ttyUSB0");
    EXPECT_EQ(ports("7 = /dev/ttyUSB0\n7 = /dev/ttyUSB1\n8 = /dev/serial/by-id/usb-A\n"),
              (Strings{"7 ttyUSB0", "102 ttyUSB1"}));
    EXPECT_NE(log().find("line 2 is ignored: port number 7 is pinned twice"), std::string::npos);
    EXPECT_NE(log().find("line 3 is ignored: /dev/serial/by-id/usb-A has another number already"),
              std::string::npos);
}

TEST_F(SerialPorts, LogOffersTheLineThatPinsAPort)
{
    m_system.terminal("ttyUSB0", "ftdi_sio");
    m_system.link("/dev/serial/by-id/usb-A", "../../ttyUSB0");
    SearchLog log(m_system.path("/log").string());
    logSerialPorts(serialPorts(m_system.files(), table("")), m_system.files(), log);
    EXPECT_EQ(this->log(), "qvfind: ASRL101::INSTR is /dev/ttyUSB0; to pin it: "
                           "101 = /dev/serial/by-id/usb-A\n");
}

} // namespace
