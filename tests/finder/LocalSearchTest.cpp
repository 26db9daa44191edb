// SPDX-License-Identifier: MIT
#include "finder/LocalSearch.h"

#include "finder/SearchLog.h"
#include "tests/support/FakeSystem.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

namespace {

using namespace finder;
using namespace std::chrono_literals;

using Strings = std::vector<std::string>;

class LocalSearchTest : public testing::Test
{
protected:
    static LocalSearch::Clock::time_point later() { return LocalSearch::Clock::now() + 60s; }

    LocalSearch search() const
    {
        return LocalSearch(m_system.files(), "/ports.conf", std::make_shared<SearchLog>(""));
    }

    support::FakeSystem m_system;
};

TEST_F(LocalSearchTest, ListsUsbInstrumentsByNumberThenSerialPorts)
{
    m_system.terminal("ttyS0", "serial", "4");
    m_system.terminal("ttyUSB0", "ftdi_sio");
    m_system.usbInterface("1-2:1.0");
    m_system.usbDevice("1-2", "1ab1", "04ce", "DS2");
    m_system.usbInterface("1-10:1.0");
    m_system.usbInterface("1-10:1.1", "0a");
    m_system.usbDevice("1-10", "0957", "56a0", "MY1");
    LocalSearch search = this->search();
    const auto results = LocalSearch::results(*search.begin(), later());
    EXPECT_TRUE(results.isComplete);
    EXPECT_EQ(results.resources,
              (Strings{"USB0::0x0957::0x56A0::MY1::INSTR", "USB0::0x0957::0x56A0::MY1::10::INSTR",
                       "USB0::0x1AB1::0x04CE::DS2::INSTR", "ASRL1::INSTR", "ASRL101::INSTR"}));
}

TEST_F(LocalSearchTest, MachineWithoutDevicesGivesAnEmptyList)
{
    LocalSearch search = this->search();
    const auto results = LocalSearch::results(*search.begin(), later());
    EXPECT_TRUE(results.isComplete);
    EXPECT_TRUE(results.resources.empty());
}

TEST_F(LocalSearchTest, DeviceThatHangsLeavesWhatWasFoundBefore)
{
    m_system.terminal("ttyS0", "serial", "4");
    m_system.usbInterface("1-1:1.0");
    m_system.usbDevice("1-1", "0957", "56a0", "MY1");
    m_system.usbInterface("1-2:1.0");
    m_system.usbDevice("1-2", "1ab1", "04ce", "");
    const auto fifo = m_system.path("/sys/bus/usb/devices/1-2/serial");
    std::filesystem::remove(fifo);
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    LocalSearch search = this->search();
    const auto run = search.begin();
    // The reader has opened the pipe once it can be opened for writing without blocking.
    int writer = -1;
    while ((writer = ::open(fifo.c_str(), O_WRONLY | O_NONBLOCK)) < 0) {
        std::this_thread::yield();
    }
    auto results = LocalSearch::results(*run, LocalSearch::Clock::now());
    EXPECT_FALSE(results.isComplete);
    EXPECT_EQ(results.resources, (Strings{"USB0::0x0957::0x56A0::MY1::INSTR", "ASRL1::INSTR"}));
    EXPECT_EQ(search.begin(), run) << "a second thread was started beside the hanging one";
    ASSERT_EQ(::write(writer, "DS2\n", 4), 4);
    ::close(writer);
    results = LocalSearch::results(*run, later());
    EXPECT_TRUE(results.isComplete);
    EXPECT_EQ(results.resources.size(), 3U);
    EXPECT_NE(search.begin(), run);
}

TEST_F(LocalSearchTest, DeviceThatIsUnpluggedIsGoneFromTheNextSearch)
{
    m_system.terminal("ttyUSB0", "ftdi_sio");
    LocalSearch search = this->search();
    EXPECT_EQ(LocalSearch::results(*search.begin(), later()).resources, Strings{"ASRL101::INSTR"});
    std::filesystem::remove_all(m_system.path("/sys/class/tty/ttyUSB0"));
    EXPECT_TRUE(LocalSearch::results(*search.begin(), later()).resources.empty());
}

} // namespace
