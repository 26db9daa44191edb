// SPDX-License-Identifier: MIT
#include "visa/ResourceName.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

using visa::interfaceTypeFromText;
using visa::parseResourceName;
using visa::ResourceFault;
using visa::resourceKey;
using Field = visa::ResourceField;
using Problem = visa::ResourceProblem;

TEST(ResourceName, EachPublishedFormIsReadAndWrittenOut)
{
    struct Case
    {
        const char* text;
        ViUInt16 type;
        ViUInt16 number;
        const char* fullName;
    };
    const std::vector<Case> cases{
        {"TCPIP0::10.0.0.5::inst0::INSTR", VI_INTF_TCPIP, 0, "TCPIP0::10.0.0.5::inst0::INSTR"},
        {"tcpip::meter::hislip0,04881", VI_INTF_TCPIP, 0, "TCPIP0::meter::hislip0,4881::INSTR"},
        {"TCPIP2::10.0.0.5::05025::SOCKET", VI_INTF_TCPIP, 2, "TCPIP2::10.0.0.5::5025::SOCKET"},
        {"TCPIP::[FE80:0::1]::INSTR", VI_INTF_TCPIP, 0, "TCPIP0::[fe80::1]::INSTR"},
        {"TCPIP::[fe80::1%eth0]", VI_INTF_TCPIP, 0, "TCPIP0::[fe80::1%eth0]::INSTR"},
        {"TCPIP::Meter_1.lab-2.::INSTR", VI_INTF_TCPIP, 0, "TCPIP0::Meter_1.lab-2.::INSTR"},
        {"TCPIP::gateway::gpib0,5::INSTR", VI_INTF_TCPIP, 0, "TCPIP0::gateway::gpib0,5::INSTR"},
        {"TCPIP::gateway::s01", VI_INTF_TCPIP, 0, "TCPIP0::gateway::s01::INSTR"},
        {"TCPIP::gateway::usb0[1::2::SN]::INSTR", VI_INTF_TCPIP, 0,
         "TCPIP0::gateway::usb0[1::2::SN]::INSTR"},
        {"TCPIP0::inst0::SERVANT", VI_INTF_TCPIP, 0, "TCPIP0::inst0::SERVANT"},
        {"USB0::0x56a0::22176::SN:7::INSTR", VI_INTF_USB, 0, "USB0::0x56A0::0x56A0::SN:7::INSTR"},
        {"USB::1::2::3::4::raw", VI_INTF_USB, 0, "USB0::0x0001::0x0002::3::4::RAW"},
        {"GPIB::05", VI_INTF_GPIB, 0, "GPIB0::5::INSTR"},
        {"GPIB1::30::30::INSTR", VI_INTF_GPIB, 1, "GPIB1::30::30::INSTR"},
        {"GPIB1::0::65535::INSTR", VI_INTF_GPIB, 1, "GPIB1::0::INSTR"},
        {"GPIB0::INTFC", VI_INTF_GPIB, 0, "GPIB0::INTFC"},
        {"GPIB-VXI0::9", VI_INTF_GPIB_VXI, 0, "GPIB-VXI0::9::INSTR"},
        {"VXI0::MEMACC", VI_INTF_VXI, 0, "VXI0::MEMACC"},
        {"VXI::255", VI_INTF_VXI, 0, "VXI0::255::INSTR"},
        {"PXI0::3-18::INSTR", VI_INTF_PXI, 0, "PXI0::3-18::INSTR"},
        {"ASRL1::INSTR", VI_INTF_ASRL, 1, "ASRL1::INSTR"},
        {"asrl12", VI_INTF_ASRL, 12, "ASRL12::INSTR"},
        {"ASRL::INSTR", VI_INTF_ASRL, 0, "ASRL0::INSTR"},
        {"ASRL65535::INSTR", VI_INTF_ASRL, 65535, "ASRL65535::INSTR"},
        {"ASRL007", VI_INTF_ASRL, 7, "ASRL7::INSTR"},
        {"asrl/dev/ttyUSB0", VI_INTF_ASRL, 0, "ASRL/dev/ttyUSB0::INSTR"},
        {"qvib::192.168.1.10", VI_INTF_TCPIP, 0, "QVIB::192.168.1.10"},
        {"FIREWIRE0::1::2::3", VI_INTF_FIREWIRE, 0, "FIREWIRE0::1::2::3::INSTR"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.text);
        const auto name = parseResourceName(test.text);
        ASSERT_TRUE(name);
        EXPECT_EQ(name->interfaceType, test.type);
        EXPECT_EQ(name->interfaceNumber, test.number);
        EXPECT_EQ(name->fullName, test.fullName);
        const std::size_t lastPart = name->fullName.rfind("::") + 2;
        EXPECT_EQ(name->resourceClass, name->isQvib ? "INSTR" : name->fullName.substr(lastPart));
        const auto again = parseResourceName(name->fullName);
        ASSERT_TRUE(again);
        EXPECT_EQ(again->fullName, name->fullName);
        EXPECT_EQ(again->key(), name->key());
    }
}

TEST(ResourceName, SaysWhatTheTextLeavesOut)
{
    struct Case
    {
        const char* text;
        bool isBoardWritten;
        bool isClassWritten;
        bool isQvib;
        bool isDevicePath;
    };
    for (const Case& test :
         {Case{"GPIB0::5::INSTR", true, true, false, false},
          Case{"GPIB::5::INSTR", false, true, false, false},
          Case{"GPIB0::5", true, false, false, false}, Case{"QVIB::host", true, true, true, false},
          Case{"ASRL/dev/ttyS0", true, false, false, true}}) {
        SCOPED_TRACE(test.text);
        const auto name = parseResourceName(test.text);
        ASSERT_TRUE(name);
        EXPECT_EQ(name->isBoardWritten, test.isBoardWritten);
        EXPECT_EQ(name->isClassWritten, test.isClassWritten);
        EXPECT_EQ(name->isQvib, test.isQvib);
        EXPECT_EQ(name->isDevicePath, test.isDevicePath);
    }
}

TEST(ResourceName, GivesTheFieldsInNormalForm)
{
    const auto usb = parseResourceName("USB::4660::0X5678::SN7::00");
    ASSERT_TRUE(usb);
    EXPECT_EQ(usb->field(Field::ManufacturerId), "0x1234");
    EXPECT_EQ(usb->field(Field::ModelCode), "0x5678");
    EXPECT_EQ(usb->field(Field::SerialNumber), "SN7");
    EXPECT_EQ(usb->field(Field::UsbInterface), "0");
    EXPECT_EQ(usb->field(Field::Host), "");
    const auto socket = parseResourceName("TCPIP0::h::05025::SOCKET");
    ASSERT_TRUE(socket);
    EXPECT_EQ(socket->field(Field::Host), "h");
    EXPECT_EQ(socket->field(Field::Port), "5025");
}

TEST(ResourceName, AFaultSaysWhatIsWrongAndWhere)
{
    struct Case
    {
        std::string text;
        Problem problem;
        Field field;
        std::size_t column;
        std::size_t length;
    };
    const std::vector<Case> cases{
        {"", Problem::UnknownInterface, Field::Interface, 0, 0},
        {"::INSTR", Problem::UnknownInterface, Field::Interface, 0, 0},
        {"HELLO", Problem::UnknownInterface, Field::Interface, 0, 5},
        {"USBstick", Problem::UnknownInterface, Field::Interface, 0, 8},
        {"DMM TCPIP0::10.0.0.5::INSTR", Problem::UnknownInterface, Field::Interface, 0, 10},
        {"\"GPIB0::5::INSTR\"", Problem::UnknownInterface, Field::Interface, 0, 6},
        {" GPIB0::5::INSTR", Problem::UnknownInterface, Field::Interface, 0, 6},
        {"caf\xE9::INSTR", Problem::UnknownInterface, Field::Interface, 0, 4},
        {"QVIB0::host", Problem::UnknownInterface, Field::Interface, 0, 5},
        {std::string("ASRL1\0", 6), Problem::UnknownInterface, Field::Interface, 0, 6},
        {"GPIB0::5::INSTR ", Problem::TrailingWhiteSpace, Field::Class, 15, 1},
        {"GPIB0::5\t\r\n", Problem::TrailingWhiteSpace, Field::Class, 8, 3},
        {"ASRL", Problem::MissingPart, Field::Board, 4, 0},
        {"ASRL65536::INSTR", Problem::OutOfRange, Field::Board, 4, 5},
        {"ASRL99999999999999999999::INSTR", Problem::OutOfRange, Field::Board, 4, 20},
        {"ASRL-1::INSTR", Problem::NotANumber, Field::Board, 4, 2},
        {"ASRL1x::INSTR", Problem::NotANumber, Field::Board, 4, 2},
        {"ASRL0x1::INSTR", Problem::NotANumber, Field::Board, 4, 3},
        {"ASRL/dev/tty S0::INSTR", Problem::BadCharacter, Field::DevicePath, 12, 1},
        {"ASRL1::RAW", Problem::UnknownClass, Field::Class, 7, 3},
        {"ASRL1::2::INSTR", Problem::ExtraPart, Field::Class, 7, 1},
        {"ASRL1::", Problem::EmptyPart, Field::Class, 7, 0},
        {"ASRL1::INSTR::", Problem::ExtraPart, Field::Class, 7, 5},
        {"GPIB0", Problem::MissingPart, Field::PrimaryAddress, 5, 0},
        {"GPIB::INSTR", Problem::MissingPart, Field::PrimaryAddress, 6, 0},
        {"GPIB0::31::INSTR", Problem::OutOfRange, Field::PrimaryAddress, 7, 2},
        {"GPIB0::abc::INSTR", Problem::NotANumber, Field::PrimaryAddress, 7, 3},
        {"GPIB0::5::31::INSTR", Problem::OutOfRange, Field::SecondaryAddress, 10, 2},
        {"GPIB0::5::INSTR # spare", Problem::NotANumber, Field::SecondaryAddress, 10, 13},
        {"GPIB0::1::2::3::INSTR", Problem::ExtraPart, Field::Class, 13, 1},
        {"GPIB0::1::2::INST", Problem::UnknownClass, Field::Class, 13, 4},
        {"GPIB0::1::2::3::4::5::6::7::8", Problem::ExtraPart, Field::Class, 13, 1},
        {"VXI0::256::INSTR", Problem::OutOfRange, Field::LogicalAddress, 6, 3},
        {"TCPIP0::INSTR", Problem::MissingPart, Field::Host, 8, 0},
        {"TCPIP0::::inst0::INSTR", Problem::EmptyPart, Field::Host, 8, 0},
        {"TCPIP0::host::SOCKET", Problem::MissingPart, Field::Port, 14, 0},
        {"TCPIP0::host::99999::SOCKET", Problem::OutOfRange, Field::Port, 14, 5},
        {"TCPIP0::host::0::SOCKET", Problem::OutOfRange, Field::Port, 14, 1},
        {"TCPIP0::10.0.0.256::INSTR", Problem::OutOfRange, Field::Host, 15, 3},
        {"TCPIP0::256.0.0.1::INSTR", Problem::OutOfRange, Field::Host, 8, 3},
        {"TCPIP0::10.0.0::INSTR", Problem::BadHost, Field::Host, 8, 6},
        {"TCPIP0::10.0.0.1.256::INSTR", Problem::BadHost, Field::Host, 8, 12},
        {"TCPIP0::10.0.0.01::INSTR", Problem::BadHost, Field::Host, 8, 9},
        {"TCPIP0::10..0.1::INSTR", Problem::BadHost, Field::Host, 8, 7},
        {"TCPIP0::10.0.0.1.::INSTR", Problem::BadHost, Field::Host, 8, 9},
        {"TCPIP0::-host::INSTR", Problem::BadHost, Field::Host, 8, 5},
        {"TCPIP0::a..b::INSTR", Problem::BadHost, Field::Host, 8, 4},
        {"TCPIP0::a b::INSTR", Problem::BadHost, Field::Host, 8, 3},
        {"TCPIP0::http://h::INSTR", Problem::BadHost, Field::Host, 8, 8},
        {"TCPIP0::" + std::string(64, 'a') + "::INSTR", Problem::BadHost, Field::Host, 8, 64},
        {"TCPIP::[fe80::1::INSTR", Problem::BadHost, Field::Host, 7, 15},
        {"TCPIP::[fe80::1::2::]::INSTR", Problem::BadHost, Field::Host, 7, 14},
        {"TCPIP::[::1%]::INSTR", Problem::BadHost, Field::Host, 7, 6},
        {"TCPIP::[" + std::string(1000, '1') + "]", Problem::BadHost, Field::Host, 7, 1002},
        {"TCPIP0::m\xFC\xFCller::INSTR", Problem::NotAscii, Field::Location, 9, 2},
        {"TCPIP0::h::inst0:", Problem::BadCharacter, Field::LanDevice, 16, 1},
        {"TCPIP0::h::inst0:::INSTR", Problem::UnknownClass, Field::Class, 18, 6},
        {"TCPIP0::h::inst[0::30::INSTR", Problem::BadCharacter, Field::LanDevice, 15, 1},
        {"TCPIP0::h::inst::INSTR", Problem::BadLanDevice, Field::LanDevice, 11, 4},
        {"TCPIP0::h::inst0x::INSTR", Problem::BadLanDevice, Field::LanDevice, 11, 6},
        {"TCPIP0::h::inst0,1::INSTR", Problem::BadLanDevice, Field::LanDevice, 11, 7},
        {"TCPIP0::h::hislip0,::INSTR", Problem::NotANumber, Field::Port, 19, 0},
        {"TCPIP0::h::hislip0,65536::INSTR", Problem::OutOfRange, Field::Port, 19, 5},
        {"TCPIP0::h::a b::INSTR", Problem::BadCharacter, Field::LanDevice, 12, 1},
        {"USB0::1::2::INSTR", Problem::MissingPart, Field::SerialNumber, 12, 0},
        {"USB0::0x0::0x0::::INSTR", Problem::EmptyPart, Field::SerialNumber, 16, 0},
        {"USB0::65536::2::3::INSTR", Problem::OutOfRange, Field::ManufacturerId, 6, 5},
        {"USB0::1::0x10000::3::INSTR", Problem::OutOfRange, Field::ModelCode, 9, 7},
        {"USB0::1::0x::3::INSTR", Problem::NotANumber, Field::ModelCode, 9, 2},
        {"USB0::1::2::S\tN::INSTR", Problem::BadCharacter, Field::SerialNumber, 13, 1},
        {"USB0::1::2:::SN::INSTR", Problem::BadCharacter, Field::SerialNumber, 12, 1},
        {"USB0::1::2::SN::255::INSTR", Problem::OutOfRange, Field::UsbInterface, 16, 3},
        {"QVIB", Problem::MissingPart, Field::Host, 4, 0},
        {"QVIB::", Problem::EmptyPart, Field::Host, 6, 0},
        {"QVIB::host::INSTR", Problem::ExtraPart, Field::Class, 12, 5},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.text);
        ResourceFault fault;
        EXPECT_FALSE(parseResourceName(test.text, &fault));
        EXPECT_EQ(static_cast<int>(fault.problem), static_cast<int>(test.problem));
        EXPECT_STREQ(visa::fieldName(fault.field), visa::fieldName(test.field));
        EXPECT_EQ(fault.column, test.column);
        EXPECT_EQ(fault.length, test.length);
        EXPECT_FALSE(parseResourceName(test.text, nullptr));
    }
    ResourceFault fault;
    parseResourceName("GPIB0::31::INSTR", &fault);
    EXPECT_EQ(fault.most, 30U);
    parseResourceName("TCPIP0::h::0::SOCKET", &fault);
    EXPECT_EQ(fault.least, 1U);
}

TEST(ResourceName, KeysAreEqualForEqualResourcesOnly)
{
    for (const auto& [one, other] : std::vector<std::tuple<const char*, const char*>>{
             {"GPIB::5", "gpib0::05::instr"},
             {"GPIB0::5::0::INSTR", "GPIB0::5::65535"},
             {"TCPIP::meter::INST00", "TCPIP0::METER::INSTR"},
             {"TCPIP::meter::hislip0,4880", "TCPIP0::METER::hislip0::INSTR"},
             {"TCPIP::h::05025::SOCKET", "TCPIP0::h::5025::SOCKET"},
             {"TCPIP::[FE80:0::1]", "TCPIP0::[fe80::1]::inst0::INSTR"},
             {"USB0::4660::22136::sn::0::INSTR", "USB::0x1234::0x5678::SN"},
             {"ASRL/dev/ttyS0", "asrl/dev/ttyS0::instr"},
             {"qvib::h", "QVIB::H"},
             {"no resource", "NO RESOURCE"},
         }) {
        EXPECT_EQ(resourceKey(one), resourceKey(other));
    }
    for (const auto& [one, other] : std::vector<std::tuple<const char*, const char*>>{
             {"GPIB0::5::1::INSTR", "GPIB0::5::INSTR"},
             {"GPIB1::5::INSTR", "GPIB0::5::INSTR"},
             {"TCPIP0::m::inst1::INSTR", "TCPIP0::m::INSTR"},
             {"TCPIP0::m::inst0::INSTR", "TCPIP0::m::hislip0::INSTR"},
             {"TCPIP0::m::hislip0::INSTR", "TCPIP0::m::hislip0,4881::INSTR"},
             {"TCPIP0::m::gpib0,4880::INSTR", "TCPIP0::m::gpib0::INSTR"},
             {"USB0::1::2::3::1::INSTR", "USB0::1::2::3::INSTR"},
             {"USB0::1::2::3::RAW", "USB0::1::2::3::INSTR"},
             {"ASRL1::INSTR", "ASRL2::INSTR"},
             {"ASRL/dev/ttyS0", "ASRL/dev/TTYS0"},
             {"QVIB::h", "TCPIP::h"},
         }) {
        EXPECT_NE(resourceKey(one), resourceKey(other));
    }
}

TEST(ResourceName, AMegabyteOfAnythingIsReadOnce)
{
    for (const char* piece : {"::", "[", "TCPIP0::", "a.", "0", "::[::"}) {
        for (const char* start : {"", "TCPIP0::", "TCPIP0::h::", "USB0::1::1::", "ASRL"}) {
            std::string text = start;
            while (text.size() < 1'000'000) {
                text += piece;
            }
            resourceKey(text); // A quadratic parser runs into the time limit of the test.
        }
    }
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
