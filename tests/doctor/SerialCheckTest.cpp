// SPDX-License-Identifier: MIT
#include "tests/doctor/DoctorFixture.h"

namespace {

class SerialCheck : public support::DoctorFixture
{
protected:
    void libraryLists(const std::vector<ViUInt16>& numbers)
    {
        m_probe.emplace();
        m_probe->hasSearchedSerialPorts = true;
        for (const ViUInt16 number : numbers) {
            m_probe->serialPorts.push_back(
                {"ASRL" + std::to_string(number) + "::INSTR", number, VI_SUCCESS});
        }
    }
};

TEST_F(SerialCheck, SettingsForPortsThatExistAreOk)
{
    writeFile(":SerialProperty[DeviceNo=1].Baudrate=19200\n");
    m_system.terminal("ttyS0", "serial");
    m_system.terminal("ttyUSB0", "ftdi_sio");
    EXPECT_EQ(results("serial"), "ok: The file has settings for 1 serial port; this machine has 2 "
                                 "serial ports (/dev/ttyS0 and /dev/ttyUSB0).\n");
}

TEST_F(SerialCheck, MoreSettingsThanPortsAreNoted)
{
    writeFile(":SerialProperty[DeviceNo=1].Baudrate=19200\n");
    m_system.terminal("ttyS0", "serial8250");
    EXPECT_EQ(remedies("serial"),
              "note: The file has settings for 1 serial port, but this machine has no serial "
              "port. -> qvvisa serial lists the settings.\n");
}

TEST_F(SerialCheck, PortsOfTheLibraryWithSettingsAreOk)
{
    writeFile(":SerialProperty[DeviceNo=3].Baudrate=19200\n");
    m_system.terminal("ttyS0", "serial");
    libraryLists({3});
    EXPECT_EQ(results("serial"), "ok: The file has settings for all serial ports that the "
                                 "VISA library lists.\n");
}

TEST_F(SerialCheck, SettingsWithoutAPortOfTheLibraryAreNoted)
{
    writeFile(":SerialProperty[DeviceNo=3].Baudrate=19200\n"
              ":SerialProperty[DeviceNo=4].Baudrate=19200\n");
    m_system.terminal("ttyS0", "serial");
    libraryLists({4});
    EXPECT_EQ(remedies("serial"),
              "note: The file has settings for ASRL3, which the VISA library does not list. -> If "
              "a port is gone for good: qvvisa serial PORT --unset\n");
}

TEST_F(SerialCheck, PortsOfTheLibraryWithoutSettingsAreNoted)
{
    writeFile();
    m_system.terminal("ttyS0", "serial");
    m_system.terminal("ttyS1", "serial");
    libraryLists({1, 2});
    EXPECT_EQ(results("serial"),
              "note: The file has no settings for ASRL1 and ASRL2: they start with 9600 baud, 8 "
              "data bits, 1 stop bit and no parity.\n");
}

TEST_F(SerialCheck, MorePortsOfTheLibraryThanOfTheMachineAreNoted)
{
    writeFile(":SerialProperty[DeviceNo=1].Parity=0\n:SerialProperty[DeviceNo=2].Parity=0\n");
    m_system.terminal("ttyS0", "serial");
    libraryLists({1, 2});
    EXPECT_EQ(results("serial"), "note: The VISA library lists 2 serial ports; this machine has 1 "
                                 "serial port (/dev/ttyS0).\n"
                                 "ok: The file has settings for all serial ports that the "
                                 "VISA library lists.\n");
}

TEST_F(SerialCheck, PortThatTheLibraryCannotParseHasNoNumber)
{
    writeFile(":SerialProperty[DeviceNo=0].Parity=0\n");
    libraryLists({});
    m_probe->serialPorts.push_back({"COM1", 0, VI_ERROR_SYSTEM_ERROR});
    EXPECT_EQ(results("serial"), "note: The file has settings for ASRL0, which the VISA library "
                                 "does not list.\n");
}

TEST_F(SerialCheck, LibraryThatDidNotSearchIsNoList)
{
    writeFile();
    m_probe.emplace();
    EXPECT_EQ(results("serial"),
              "ok: The file has settings for 0 serial ports; this machine has no serial port.\n");
}

} // namespace
