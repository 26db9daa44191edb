// SPDX-License-Identifier: MIT
#include "simulator/ResourceName.h"
#include "simulator/VisaClientApi.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using simulator::interfaceTypeFromText;
using simulator::resourceKey;
using simulator::ResourceName;

TEST(ResourceName, ReadsEveryForm)
{
    struct Case
    {
        const char* text;
        ViUInt16 type;
        ViUInt16 number;
        const char* resourceClass;
        const char* fullName;
    };
    const std::vector<Case> cases{
        {"TCPIP0::10.0.0.5::inst0::INSTR", VI_INTF_TCPIP, 0, "INSTR",
         "TCPIP0::10.0.0.5::inst0::INSTR"},
        {"tcpip::meter::hislip0,4881", VI_INTF_TCPIP, 0, "INSTR",
         "TCPIP0::meter::hislip0,4881::INSTR"},
        {"TCPIP2::10.0.0.5::5025::SOCKET", VI_INTF_TCPIP, 2, "SOCKET",
         "TCPIP2::10.0.0.5::5025::SOCKET"},
        {"TCPIP::[fe80::1]::INSTR", VI_INTF_TCPIP, 0, "INSTR", "TCPIP0::[fe80::1]::INSTR"},
        {"USB0::0x1234::0x5678::SN7::INSTR", VI_INTF_USB, 0, "INSTR",
         "USB0::0x1234::0x5678::SN7::INSTR"},
        {"USB::1::2::3::4::raw", VI_INTF_USB, 0, "RAW", "USB0::1::2::3::4::RAW"},
        {"GPIB::5", VI_INTF_GPIB, 0, "INSTR", "GPIB0::5::INSTR"},
        {"GPIB1::5::2::INSTR", VI_INTF_GPIB, 1, "INSTR", "GPIB1::5::2::INSTR"},
        {"GPIB0::INTFC", VI_INTF_GPIB, 0, "INTFC", "GPIB0::INTFC"},
        {"GPIB-VXI0::9", VI_INTF_GPIB_VXI, 0, "INSTR", "GPIB-VXI0::9::INSTR"},
        {"VXI0::MEMACC", VI_INTF_VXI, 0, "MEMACC", "VXI0::MEMACC"},
        {"PXI0::3-18::INSTR", VI_INTF_PXI, 0, "INSTR", "PXI0::3-18::INSTR"},
        {"ASRL1::INSTR", VI_INTF_ASRL, 1, "INSTR", "ASRL1::INSTR"},
        {"asrl12", VI_INTF_ASRL, 12, "INSTR", "ASRL12::INSTR"},
        {"ASRL::INSTR", VI_INTF_ASRL, 0, "INSTR", "ASRL0::INSTR"},
        {"ASRL65535::INSTR", VI_INTF_ASRL, 65535, "INSTR", "ASRL65535::INSTR"},
        {"ASRL007", VI_INTF_ASRL, 7, "INSTR", "ASRL7::INSTR"},
        {"QVIB::192.168.1.10", VI_INTF_TCPIP, 0, "INSTR", "QVIB::192.168.1.10"},
    };
    for (const Case& test : cases) {
        const auto name = ResourceName::parse(test.text);
        ASSERT_TRUE(name) << test.text;
        EXPECT_EQ(name->interfaceType, test.type) << test.text;
        EXPECT_EQ(name->interfaceNumber, test.number) << test.text;
        EXPECT_EQ(name->resourceClass, test.resourceClass) << test.text;
        EXPECT_EQ(name->fullName, test.fullName) << test.text;
    }
}

TEST(ResourceName, RefusesWhatHasNoSuchForm)
{
    const std::vector<std::string> bad{
        "",
        "::",
        "::INSTR",
        "INSTR",
        "HELLO",
        "ASRL65536::INSTR",
        "ASRL-1::INSTR",
        "ASRL1x::INSTR",
        "ASRL0x1::INSTR",
        "ASRL1::2::INSTR",
        "ASRL1::",
        "ASRL1::INSTR::",
        "GPIB::INSTR",
        "GPIB0::1::2::3::INSTR",
        "GPIB0",
        "TCPIP0::INSTR",
        "TCPIP0::host::SOCKET",
        "TCPIP0::::inst0::INSTR",
        "TCPIP::[fe80::1::INSTR",
        "USB0::1::2::INSTR",
        "QVIB",
        "QVIB0::host",
        "QVIB::host::INSTR",
        std::string("ASRL1\0", 6),
        "caf\xE9::INSTR",
    };
    for (const std::string& text : bad) {
        EXPECT_FALSE(ResourceName::parse(text)) << text;
    }
}

TEST(ResourceName, KeysAreAlikeForTheSameResource)
{
    EXPECT_EQ(resourceKey("GPIB::5"), resourceKey("gpib0::5::instr"));
    EXPECT_EQ(resourceKey("GPIB0::5::0::INSTR"), resourceKey("GPIB0::5::INSTR"));
    EXPECT_EQ(resourceKey("TCPIP::meter::INST0"), resourceKey("TCPIP0::METER::INSTR"));
    EXPECT_EQ(resourceKey("USB0::1::2::3::0::INSTR"), resourceKey("USB::1::2::3"));
    EXPECT_EQ(resourceKey("no resource"), resourceKey("NO RESOURCE"));

    EXPECT_NE(resourceKey("GPIB0::5::1::INSTR"), resourceKey("GPIB0::5::INSTR"));
    EXPECT_NE(resourceKey("GPIB1::5::INSTR"), resourceKey("GPIB0::5::INSTR"));
    EXPECT_NE(resourceKey("TCPIP0::m::inst1::INSTR"), resourceKey("TCPIP0::m::INSTR"));
    EXPECT_NE(resourceKey("USB0::1::2::3::1::INSTR"), resourceKey("USB0::1::2::3::INSTR"));
    EXPECT_NE(resourceKey("ASRL1::INSTR"), resourceKey("ASRL2::INSTR"));
}

TEST(ResourceName, InterfaceTypesHaveNamesAndNumbers)
{
    EXPECT_EQ(interfaceTypeFromText("ASRL"), VI_INTF_ASRL);
    EXPECT_EQ(interfaceTypeFromText("gpib-vxi"), VI_INTF_GPIB_VXI);
    EXPECT_EQ(interfaceTypeFromText("33024"), 33024);
    EXPECT_EQ(interfaceTypeFromText("0xFFFF"), 65535);
    EXPECT_FALSE(interfaceTypeFromText("65536"));
    EXPECT_FALSE(interfaceTypeFromText("SERIAL"));
    EXPECT_FALSE(interfaceTypeFromText(""));
}
