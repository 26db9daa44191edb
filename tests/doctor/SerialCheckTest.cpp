// SPDX-License-Identifier: MIT
#include "tests/doctor/DoctorFixture.h"

namespace {

class SerialCheck : public support::DoctorFixture
{};

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

} // namespace
