// SPDX-License-Identifier: MIT
#include "finder/FinderSource.h"

#include "tests/support/FakeSystem.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>

namespace {

using namespace finder;

using Strings = std::vector<std::string>;

class FinderSourceTest : public testing::Test
{
protected:
    FinderSourceTest()
    {
        m_system.terminal("ttyS0", "serial", "4");
        m_system.terminal("ttyUSB0", "ftdi_sio");
        m_system.usbInterface("1-2:1.0");
        m_system.usbDevice("1-2", "0957", "56a0", "MY1");
    }

    FinderSource source() const
    {
        FinderSettings settings;
        settings.isLocalOnly = true;
        settings.portTable = "/ports.conf";
        return FinderSource(settings, m_system.files());
    }

    static Strings found(FinderSource&& source, const std::string& text)
    {
        const auto expression = resourcemanager::SearchExpression::compile(text);
        const resourcemanager::Cancellation cancellation;
        return source
            .search({text, *expression, std::chrono::steady_clock::now(), std::nullopt,
                     std::nullopt, cancellation})
            .descriptions;
    }

    static std::string alias(FinderSource&& source, const char* resource)
    {
        return source.alias(*visa::parseResourceName(resource));
    }

    support::FakeSystem m_system;
};

TEST_F(FinderSourceTest, ListsWhatTheExpressionMatches)
{
    const std::string usb = "USB0::0x0957::0x56A0::MY1::INSTR";
    EXPECT_EQ(found(source(), "?*"), (Strings{usb, "ASRL1::INSTR", "ASRL101::INSTR"}));
    EXPECT_EQ(found(source(), "?*::INSTR"), (Strings{usb, "ASRL1::INSTR", "ASRL101::INSTR"}));
    EXPECT_EQ(found(source(), "usb?*"), Strings{usb});
    EXPECT_EQ(found(source(), "ASRL[0-9]::INSTR"), Strings{"ASRL1::INSTR"});
    EXPECT_EQ(found(source(), "GPIB?*"), Strings{});
}

TEST_F(FinderSourceTest, DeviceThatHangsDelaysTheListToItsDeadlineOnly)
{
    const auto pipe = m_system.path("/sys/bus/usb/devices/1-2/serial");
    std::filesystem::remove(pipe);
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(found(source(), "?*"), (Strings{"ASRL1::INSTR", "ASRL101::INSTR"}));
    // Lets the thread go before its files do.
    support::writeFile(pipe, "MY1\n");
}

TEST_F(FinderSourceTest, AliasOfASerialPortIsItsPinnedPathOrItsNode)
{
    m_system.link("/dev/serial/by-id/usb-A", "../../ttyUSB0");
    m_system.file("/ports.conf", "11 = /dev/serial/by-id/usb-A\n");
    EXPECT_EQ(alias(source(), "ASRL11::INSTR"), "/dev/serial/by-id/usb-A");
    EXPECT_EQ(alias(source(), "asrl1"), "/dev/ttyS0");
    EXPECT_EQ(alias(source(), "ASRL7::INSTR"), "");
    EXPECT_EQ(alias(source(), "USB0::0x0957::0x56A0::MY1::INSTR"), "");
}

TEST(FinderSettings, ComeFromTheEnvironment)
{
    const auto set = [](const char* name, const char* value) {
        ASSERT_EQ(value != nullptr ? ::setenv(name, value, 1) : ::unsetenv(name), 0);
    };
    for (const char* const name : {"QVFIND", "QVFIND_INTERFACES", "QVFIND_PORTS", "QVFIND_LOG"}) {
        set(name, nullptr);
    }
    set("HOME", "/home/someone");
    FinderSettings settings = FinderSettings::fromEnvironment();
    EXPECT_FALSE(settings.isLocalOnly);
    EXPECT_TRUE(settings.interfaces.empty());
    EXPECT_EQ(settings.portTable, "/home/someone/.quorvane/serial-ports.conf");
    EXPECT_EQ(settings.log, "");

    set("HOME", nullptr);
    EXPECT_EQ(FinderSettings::fromEnvironment().portTable, "");
    set("QVFIND", "local");
    set("QVFIND_INTERFACES", "eth1,,eth0");
    set("QVFIND_PORTS", "/ports");
    set("QVFIND_LOG", "-");
    settings = FinderSettings::fromEnvironment();
    EXPECT_TRUE(settings.isLocalOnly);
    EXPECT_EQ(settings.interfaces, (std::set<std::string>{"eth0", "eth1"}));
    EXPECT_EQ(settings.portTable, "/ports");
    EXPECT_EQ(settings.log, "-");

    set("QVFIND", "LOCAL");
    EXPECT_FALSE(FinderSettings::fromEnvironment().isLocalOnly);
}

} // namespace
