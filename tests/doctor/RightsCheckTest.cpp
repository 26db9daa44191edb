// SPDX-License-Identifier: MIT
#include "tests/doctor/DoctorFixture.h"

#include "tests/support/OrdinaryUser.h"

#include <unistd.h>
#ifndef __APPLE__
#include <sys/mount.h>
#endif

#include <iostream>

namespace {

using std::filesystem::perms;

class RightsCheck : public support::DoctorFixture
{
protected:
    RightsCheck() { std::filesystem::permissions(m_system.path("/"), perms::all); }

    static bool contains(const std::string& text, const std::string& part)
    {
        return text.find(part) != std::string::npos;
    }

    void usbInstrument() const
    {
        m_system.usbInterface("1-2:1.0");
        m_system.usbDevice("1-2", "1ab1", "04ce", "DS1");
        m_system.file("/sys/bus/usb/devices/1-2/busnum", "1\n");
        m_system.file("/sys/bus/usb/devices/1-2/devnum", "4\n");
        m_system.file("/dev/bus/usb/001/004", "");
    }

    /// Gives a device file to root and a group, closed for others.
    void close(const std::string& path, gid_t group) const
    {
        std::filesystem::permissions(m_system.path(path),
                                     ::geteuid() == 0 ? perms::owner_read | perms::group_read
                                                      : perms::none);
        if (::geteuid() == 0) {
            ASSERT_EQ(::chown(m_system.path(path).c_str(), 0, group), 0);
        }
    }
};

TEST_F(RightsCheck, NoDeviceFileIsOk)
{
    EXPECT_EQ(results("rights"), "ok: There is no serial port and no USB instrument to open.\n");
}

TEST_F(RightsCheck, OpenDeviceFilesAreOk)
{
    m_system.terminal("ttyS0", "serial");
    usbInstrument();
    m_system.file("/dev/usbtmc0", "");
    EXPECT_EQ(results("rights"), "ok: This user may open all serial ports and USB instruments.\n");
}

TEST_F(RightsCheck, DeviceWithTwoInterfacesIsOneFile)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs files of other groups";
    }
    usbInstrument();
    m_system.usbInterface("1-2:1.1", "01");
    close("/dev/bus/usb/001/004", 0);
    EXPECT_TRUE(ordinaryUserFinds(
        "rights", "problem: This user may not open /dev/bus/usb/001/004 (group root), so the "
                  "instrument cannot be used.\n"));
}

TEST_F(RightsCheck, PlaceholderAndMissingDeviceFileDoNotCount)
{
    m_system.terminal("ttyS4", "serial8250");
    usbInstrument();
    std::filesystem::remove(m_system.path("/dev/bus/usb/001/004"));
    EXPECT_EQ(results("rights"), "ok: There is no serial port and no USB instrument to open.\n");
}

TEST_F(RightsCheck, ClosedSerialPortsOfOneGroupAreOneWarning)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs files of other groups";
    }
    m_system.terminal("ttyS0", "serial");
    m_system.terminal("ttyUSB0", "ftdi_sio");
    close("/dev/ttyS0", 20);
    close("/dev/ttyUSB0", 20);
    EXPECT_TRUE(ordinaryUserFinds(
        "rights",
        "warning: This user may not open /dev/ttyS0 and /dev/ttyUSB0 (group dialout).\n"));
}

TEST_F(RightsCheck, ClosedInstrumentIsAProblem)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs files of other groups";
    }
    usbInstrument();
    close("/dev/bus/usb/001/004", 0);
    EXPECT_TRUE(ordinaryUserFinds(
        "rights", "problem: This user may not open /dev/bus/usb/001/004 (group root), so the "
                  "instrument cannot be used.\n"));
}

TEST_F(RightsCheck, RemedyIsTheGroupOrARule)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs files of other groups";
    }
    m_system.terminal("ttyUSB0", "ftdi_sio");
    m_system.terminal("ttyS0", "serial");
    usbInstrument();
    close("/dev/ttyUSB0", 20);
    close("/dev/ttyS0", 0);
    close("/dev/bus/usb/001/004", 0);
    const std::string rule = " -> As root, put this line into "
                             "/etc/udev/rules.d/70-instruments.rules, then plug the device in "
                             "again: ";
    EXPECT_TRUE(support::asOrdinaryUser([&] {
        const std::string found = remedies("rights");
        std::cout << found << std::flush;
        return contains(found, "(group dialout). -> sudo usermod -aG dialout nobody; then log out "
                               "and in again.\n") &&
               contains(found, rule + "KERNEL==\"ttyS0\", TAG+=\"uaccess\"\n") &&
               contains(found, rule + "SUBSYSTEM==\"usb\", ATTR{idVendor}==\"1ab1\", "
                                      "TAG+=\"uaccess\"\n");
    }));
}

#ifndef __APPLE__
TEST_F(RightsCheck, MemberOfTheGroupLogsInAgain)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs files of other groups";
    }
    m_system.terminal("ttyS0", "serial");
    close("/dev/ttyS0", 20);
    m_system.file("/group", "dialout:x:20:ada,nobody\n");
    const std::string groups = m_system.path("/group").string();
    const auto isFound = support::withOwnMounts([&] {
        return ::mount(groups.c_str(), "/etc/group", nullptr, MS_BIND, nullptr) == 0 &&
               support::asOrdinaryUser([&] {
                   return contains(remedies("rights"),
                                   " -> This user has joined the group dialout since the last "
                                   "login: log out and in again.\n");
               });
    });
    if (!isFound) {
        GTEST_SKIP() << "no mount namespace";
    }
    EXPECT_TRUE(*isFound);
}
#endif

} // namespace
