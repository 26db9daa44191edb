// SPDX-License-Identifier: MIT
#include "finder/UsbInstruments.h"

#include "finder/SearchLog.h"
#include "tests/support/FakeSystem.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace finder;

class UsbInstruments : public testing::Test
{
protected:
    std::vector<std::string> found() const
    {
        SearchLog log(m_system.path("/log").string());
        std::vector<std::string> resources;
        findUsbInstruments(m_system.files(), log, [&](const UsbInstrument& instrument) {
            resources.push_back(instrument.resourceString());
        });
        return resources;
    }

    std::string log() const { return support::readFile(m_system.path("/log")); }

    void instrument(const std::string& serial) const
    {
        m_system.usbInterface("1-2:1.0");
        m_system.usbDevice("1-2", "0957", "56a0", serial);
    }

    support::FakeSystem m_system;
};

TEST_F(UsbInstruments, InterfaceOfAnotherClassIsNoInstrument)
{
    instrument("MY1");
    m_system.file("/sys/bus/usb/devices/1-2:1.0/bInterfaceSubClass", "01\n");
    EXPECT_TRUE(found().empty());
    m_system.file("/sys/bus/usb/devices/1-2:1.0/bInterfaceSubClass", "03\n");
    m_system.file("/sys/bus/usb/devices/1-2:1.0/bInterfaceClass", "03\n");
    EXPECT_TRUE(found().empty());
}

TEST_F(UsbInstruments, SerialNumberThatFitsIsTakenAsItIs)
{
    for (const char* const serial : {"MY1", "a:b", "!~", "0"}) {
        instrument(serial);
        EXPECT_EQ(found(), std::vector<std::string>{"USB0::0x0957::0x56A0::" + std::string(serial) +
                                                    "::INSTR"});
    }
}

TEST_F(UsbInstruments, TrailingBlanksOfASerialNumberAreTrimmed)
{
    instrument("MY1  ");
    EXPECT_EQ(found(), std::vector<std::string>{"USB0::0x0957::0x56A0::MY1::INSTR"});
}

TEST_F(UsbInstruments, SerialNumberThatDoesNotFitIsLeftOutWithOneLogLine)
{
    for (const std::string& serial :
         {std::string(), std::string("  "), std::string("a b"), std::string("a\x7F"),
          std::string("\xE9"), std::string("SPD\0\0", 5), std::string("a::b"), std::string(":a"),
          std::string("a:"), std::string("[a]"), std::string(230, 'x')}) {
        std::filesystem::remove(m_system.path("/log"));
        instrument(serial);
        EXPECT_TRUE(found().empty()) << testing::PrintToString(serial);
        const std::string text = log();
        EXPECT_EQ(text.find('\n'), text.size() - 1) << text;
        EXPECT_NE(text.find("left out: USB instrument 0x0957 0x56A0"), std::string::npos) << text;
    }
}

TEST_F(UsbInstruments, LongestResourceStringHas255Characters)
{
    const std::size_t fixed = std::string("USB0::0x0957::0x56A0::::INSTR").size();
    instrument(std::string(255 - fixed, 'x'));
    ASSERT_EQ(found().size(), 1U);
    EXPECT_EQ(found()[0].size(), 255U);
    instrument(std::string(256 - fixed, 'x'));
    EXPECT_TRUE(found().empty());
}

TEST_F(UsbInstruments, UnreadableIdentifiersLeaveTheInstrumentOut)
{
    for (const char* const bad : {"", "xyz", "12345", "0957x"}) {
        m_system.usbInterface("1-2:1.0");
        m_system.usbDevice("1-2", bad, "56a0", "MY1");
        EXPECT_TRUE(found().empty()) << bad;
    }
}

TEST_F(UsbInstruments, OrderIsByVendorProductSerialAndInterface)
{
    const std::vector<UsbInstrument> ordered{{0x00FF, 2, "b", 0},
                                             {0x0A00, 1, "b", 0},
                                             {0x0A00, 2, "a", 2},
                                             {0x0A00, 2, "a", 10},
                                             {0x0A00, 2, "b", 0}};
    for (std::size_t i = 1; i < ordered.size(); ++i) {
        EXPECT_TRUE(ordered[i - 1] < ordered[i]) << i;
        EXPECT_FALSE(ordered[i] < ordered[i - 1]) << i;
    }
}

} // namespace
