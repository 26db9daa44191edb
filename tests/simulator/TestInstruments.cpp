// SPDX-License-Identifier: MIT
#include "tests/simulator/SimulatorTest.h"
#include "tests/support/Threads.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

using visa::statusName;

namespace {

class Instruments : public SimulatorTest
{
protected:
    std::string write(ViSession instrument, const std::string& message) const
    {
        ViUInt32 count = untouched;
        const ViStatus status =
            visa.write(instrument, reinterpret_cast<const ViByte*>(message.data()),
                       static_cast<ViUInt32>(message.size()), &count);
        EXPECT_EQ(count, status < 0 ? untouched : message.size());
        return statusName(status);
    }

    /// "STATUS DATA".
    std::string read(ViSession instrument, ViUInt32 most = 200) const
    {
        std::array<ViByte, 200> data{};
        ViUInt32 count = untouched;
        const ViStatus status = visa.read(instrument, data.data(), most, &count);
        EXPECT_TRUE(status >= 0 || count == untouched);
        return statusName(status) +
               (status < 0 ? "" : ' ' + std::string(data.begin(), data.begin() + count));
    }

    std::string ask(ViSession instrument, const std::string& message) const
    {
        EXPECT_EQ(write(instrument, message), "VI_SUCCESS");
        return read(instrument);
    }

    std::string text(ViObject object, ViAttr attribute) const
    {
        Buffer buffer;
        EXPECT_EQ(statusName(visa.getAttribute(object, attribute, buffer.data())), "VI_SUCCESS");
        return buffer.text();
    }

    std::uint64_t number(ViObject object, ViAttr attribute) const
    {
        std::uint64_t value = 0; // the tests' machines are little-endian
        EXPECT_EQ(statusName(visa.getAttribute(object, attribute, &value)), "VI_SUCCESS");
        return value;
    }
};

} // namespace

TEST_F(Instruments, EachAttributeIsWrittenInItsOwnWidth)
{
    bench.write("resource ASRL3::INSTR\n");
    const ViSession session = openManager();
    const ViSession port = openInstrument(session, "ASRL3::INSTR");
    struct Case
    {
        ViSession object;
        ViAttr attribute;
        std::size_t width;
        std::uint64_t value;
    };
    for (const Case& test : std::vector<Case>{
             {session, VI_ATTR_RSRC_MANF_ID, 2, 0x0E5A},
             {session, VI_ATTR_USER_DATA_64, 8, 0},
             {port, VI_ATTR_TERMCHAR, 1, '\n'},
             {port, VI_ATTR_TERMCHAR_EN, 2, 0},
             {port, VI_ATTR_INTF_TYPE, 2, VI_INTF_ASRL},
             {port, VI_ATTR_INTF_NUM, 2, 3},
             {port, VI_ATTR_TMO_VALUE, 4, 2000},
             {port, VI_ATTR_ASRL_BAUD, 4, 9600},
             {port, VI_ATTR_ASRL_DATA_BITS, 2, 8},
             {port, VI_ATTR_ASRL_PARITY, 2, 0},
             {port, VI_ATTR_ASRL_STOP_BITS, 2, 10},
             {port, VI_ATTR_ASRL_FLOW_CNTRL, 2, 0},
             {port, VI_ATTR_ASRL_END_IN, 2, 2},
             {port, VI_ATTR_RM_SESSION, 4, session},
         }) {
        SCOPED_TRACE(testing::Message() << std::hex << test.attribute);
        std::array<unsigned char, 16> memory;
        memory.fill(0xA5);
        EXPECT_EQ(statusName(visa.getAttribute(test.object, test.attribute, memory.data())),
                  "VI_SUCCESS");
        std::array<unsigned char, 16> expected;
        expected.fill(0xA5);
        std::memcpy(expected.data(), &test.value, test.width);
        EXPECT_EQ(memory, expected);
    }
}

TEST_F(Instruments, AttributesSayWhatTheResourceStringSays)
{
    bench.write(
        "resource GPIB1::5::INSTR\nresource TCPIP::h::5025::SOCKET\nresource USB::1::2::S\n");
    const ViSession session = openManager();
    EXPECT_EQ(text(session, VI_ATTR_RSRC_MANF_NAME), "Quorvane (simulator)");
    const ViSession gpib = openInstrument(session, "gpib1::5");
    EXPECT_EQ(text(gpib, VI_ATTR_RSRC_MANF_NAME), "Quorvane (simulator)");
    EXPECT_EQ(text(gpib, VI_ATTR_RSRC_CLASS), "INSTR");
    EXPECT_EQ(text(gpib, VI_ATTR_RSRC_NAME), "GPIB1::5::INSTR");
    EXPECT_EQ(text(gpib, VI_ATTR_INTF_INST_NAME), "GPIB1 (simulator)");
    EXPECT_EQ(number(gpib, VI_ATTR_GPIB_PRIMARY_ADDR), 5U);
    EXPECT_EQ(number(gpib, VI_ATTR_GPIB_SECONDARY_ADDR), 0xFFFFU);
    const ViSession socket = openInstrument(session, "TCPIP0::h::5025::SOCKET");
    EXPECT_EQ(text(socket, VI_ATTR_TCPIP_HOSTNAME), "h");
    EXPECT_EQ(number(socket, VI_ATTR_TCPIP_PORT), 5025U);
    const ViSession usb = openInstrument(session, "USB0::0x0001::0x0002::S::INSTR");
    EXPECT_EQ(number(usb, VI_ATTR_MANF_ID), 1U);
    EXPECT_EQ(number(usb, VI_ATTR_MODEL_CODE), 2U);
    EXPECT_EQ(text(usb, VI_ATTR_USB_SERIAL_NUM), "S");
}

TEST_F(Instruments, ImpossibleValuesAreRefused)
{
    bench.write("resource ASRL1::INSTR\n");
    const ViSession port = openInstrument(openManager(), "ASRL1");
    struct Case
    {
        ViAttr attribute;
        std::vector<ViAttrState> accepted;
        std::vector<ViAttrState> refused;
    };
    for (const Case& test :
         std::vector<Case>{{VI_ATTR_ASRL_BAUD, {1, 115200, 0xFFFFFFFF}, {0, 0x100000000}},
                           {VI_ATTR_ASRL_DATA_BITS, {5, 8}, {0, 4, 9, 99, 0x10008}},
                           {VI_ATTR_ASRL_PARITY, {0, 4}, {5, 9}},
                           {VI_ATTR_ASRL_STOP_BITS, {10, 15, 20}, {0, 1, 11, 25}},
                           {VI_ATTR_ASRL_FLOW_CNTRL, {0, 7}, {8}},
                           {VI_ATTR_ASRL_END_IN, {0, 3}, {4}},
                           {VI_ATTR_TERMCHAR, {0, 255}, {256}},
                           {VI_ATTR_TERMCHAR_EN, {0, 1}, {2}},
                           {VI_ATTR_IO_PROT, {1, 5}, {0, 6}},
                           {VI_ATTR_MAX_QUEUE_LENGTH, {1, 0xFFFFFFFF}, {0}},
                           {VI_ATTR_USER_DATA_64, {std::numeric_limits<ViAttrState>::max()}, {}},
                           {VI_ATTR_TMO_VALUE, {0, 0xFFFFFFFF}, {0x100000000}}}) {
        SCOPED_TRACE(testing::Message() << std::hex << test.attribute);
        for (const ViAttrState value : test.accepted) {
            EXPECT_EQ(set(port, test.attribute, value), "VI_SUCCESS") << value;
        }
        for (const ViAttrState value : test.refused) {
            EXPECT_EQ(set(port, test.attribute, value), "VI_ERROR_NSUP_ATTR_STATE") << value;
        }
        EXPECT_EQ(number(port, test.attribute), test.accepted.back());
    }
    EXPECT_EQ(set(port, VI_ATTR_RSRC_MANF_ID, 1), "VI_ERROR_ATTR_READONLY");
    EXPECT_EQ(set(port, VI_ATTR_RSRC_MANF_NAME, 1), "VI_ERROR_ATTR_READONLY");
    EXPECT_EQ(set(port, QV_ATTR_SEARCH_TIME, 1), "VI_ERROR_NSUP_ATTR");
}

TEST_F(Instruments, AnswerWhatTheBenchSays)
{
    bench.write("resource ASRL1::INSTR idn=\"Quorvane,Meter,1,2\"\n"
                "resource \"no resource string\" idn=nobody\n"
                "resource GPIB0::{n}::INSTR repeat=29\n");
    const ViSession session = openManager();
    const ViSession meter = openInstrument(session, "asrl1");
    EXPECT_EQ(ask(meter, "*IDN?\n"), "VI_SUCCESS Quorvane,Meter,1,2\n");
    EXPECT_EQ(ask(meter, " *idn?\r\n"), "VI_SUCCESS Quorvane,Meter,1,2\n");
    EXPECT_EQ(ask(meter, "*RST"), "VI_ERROR_TMO");
    EXPECT_EQ(ask(meter, ""), "VI_ERROR_TMO");
    EXPECT_EQ(ask(openInstrument(session, "GPIB::20"), "*IDN?"),
              "VI_SUCCESS Quorvane,Simulated instrument,0,1.0\n");

    ViSession none = VI_NULL;
    EXPECT_EQ(open(session, "GPIB0::30::INSTR", none), "VI_ERROR_RSRC_NFOUND");
    EXPECT_EQ(open(session, "no resource string", none), "VI_ERROR_INV_RSRC_NAME");
    EXPECT_EQ(statusName(visa.open(session, "ASRL1", 0, 0, nullptr)), "VI_ERROR_USER_BUF");
}

TEST_F(Instruments, AnAnswerIsReadInPieces)
{
    bench.write("resource ASRL1::INSTR idn=abcdef\n");
    const ViSession meter = openInstrument(openManager(), "ASRL1");
    EXPECT_EQ(write(meter, "*IDN?"), "VI_SUCCESS");
    EXPECT_EQ(read(meter, 4), "VI_SUCCESS_MAX_CNT abcd");
    EXPECT_EQ(read(meter, 0), "VI_SUCCESS_MAX_CNT ");
    EXPECT_EQ(read(meter, 10), "VI_SUCCESS ef\n");

    EXPECT_EQ(set(meter, VI_ATTR_TERMCHAR, 'c'), "VI_SUCCESS");
    EXPECT_EQ(write(meter, "*IDN?"), "VI_SUCCESS");
    EXPECT_EQ(read(meter, 3), "VI_SUCCESS_MAX_CNT abc"); // not enabled yet
    EXPECT_EQ(set(meter, VI_ATTR_TERMCHAR_EN, 1), "VI_SUCCESS");
    EXPECT_EQ(ask(meter, "*IDN?"), "VI_SUCCESS_TERM_CHAR abc");
    EXPECT_EQ(read(meter), "VI_SUCCESS def\n");
    EXPECT_EQ(read(meter), "VI_ERROR_TMO");
}

TEST_F(Instruments, CallsFailAsPlannedOrWithoutAnInstrument)
{
    bench.write("resource ASRL1::INSTR\nstatus viWrite VI_ERROR_IO at=2\n"
                "status viRead VI_ERROR_CONN_LOST\nstatus viOpen VI_ERROR_RSRC_BUSY at=2\n"
                "status viDisableEvent VI_ERROR_IO at=3\nstatus viStatusDesc VI_ERROR_IO\n"
                "status viSetAttribute VI_ERROR_NSUP_ATTR at=1\n"
                "status viSetAttribute VI_WARN_NSUP_ATTR_STATE at=2\n"
                "status viClose VI_ERROR_CLOSING_FAILED at=1\n");
    const ViSession session = openManager();
    const ViSession meter = openInstrument(session, "ASRL1");
    ViSession busy = VI_NULL;
    EXPECT_EQ(open(session, "ASRL1", busy), "VI_ERROR_RSRC_BUSY");
    for (const ViObject wrong : {VI_NULL, session}) {
        EXPECT_EQ(write(wrong, "x"), "VI_ERROR_INV_OBJECT");
        EXPECT_EQ(read(wrong), "VI_ERROR_INV_OBJECT");
    }
    EXPECT_EQ(statusName(visa.write(meter, nullptr, 1, nullptr)), "VI_ERROR_USER_BUF");
    EXPECT_EQ(statusName(visa.read(meter, nullptr, 1, nullptr)), "VI_ERROR_USER_BUF");
    EXPECT_EQ(write(meter, "x"), "VI_SUCCESS");
    EXPECT_EQ(write(meter, "x"), "VI_ERROR_IO");
    EXPECT_EQ(read(meter), "VI_ERROR_CONN_LOST");

    constexpr ViEventType all = VI_ALL_ENABLED_EVENTS;
    EXPECT_EQ(statusName(visa.disableEvent(meter, all, VI_ALL_MECH)), "VI_SUCCESS_EVENT_DIS");
    EXPECT_EQ(statusName(visa.discardEvents(meter, all, VI_ALL_MECH)), "VI_SUCCESS_QUEUE_EMPTY");
    EXPECT_EQ(statusName(visa.disableEvent(meter, all, 0)), "VI_ERROR_INV_MECH");
    EXPECT_EQ(statusName(visa.disableEvent(meter, all, VI_ALL_MECH)), "VI_ERROR_IO");
    EXPECT_EQ(statusName(visa.discardEvents(VI_NULL, all, VI_ALL_MECH)), "VI_ERROR_INV_OBJECT");
    Buffer buffer;
    EXPECT_EQ(statusName(visa.statusDesc(meter, VI_ERROR_TMO, buffer.data())), "VI_ERROR_IO");
    EXPECT_TRUE(buffer.isUntouched());

    EXPECT_EQ(set(meter, VI_ATTR_TMO_VALUE, 7), "VI_ERROR_NSUP_ATTR");
    EXPECT_EQ(number(meter, VI_ATTR_TMO_VALUE), 2000U);
    EXPECT_EQ(set(meter, VI_ATTR_TMO_VALUE, 7), "VI_WARN_NSUP_ATTR_STATE");
    EXPECT_EQ(number(meter, VI_ATTR_TMO_VALUE), 7U);

    EXPECT_EQ(close(session), "VI_ERROR_CLOSING_FAILED");
    EXPECT_EQ(close(session), "VI_SUCCESS");
    EXPECT_EQ(read(meter), "VI_ERROR_INV_OBJECT");
}

TEST_F(Instruments, SessionsInSeveralThreadsAreIndependent)
{
    bench.write("resource ASRL{n}::INSTR repeat=20 idn=port\nresource GPIB0::5::INSTR\n");
    constexpr std::size_t threadCount = 4;
    constexpr std::size_t rounds = 10;
    support::inThreads(threadCount, [&](std::size_t) {
        for (std::size_t round = 0; round < rounds; ++round) {
            const ViSession session = openManager();
            EXPECT_EQ(list(session, "?*").size(), 21U);
            EXPECT_EQ(list(session, "GPIB?*"), std::vector<std::string>{"GPIB0::5::INSTR"});
            EXPECT_EQ(ask(openInstrument(session, "ASRL7"), "*IDN?"), "VI_SUCCESS port\n");
            EXPECT_EQ(close(session), "VI_SUCCESS");
        }
    });
    // One line for each call, none torn.
    std::size_t closed = 0;
    for (const std::string& line : bench.calls()) {
        EXPECT_EQ(line.compare(0, 2, "vi"), 0) << line;
        EXPECT_NE(line.find(") -> VI_"), std::string::npos) << line;
        closed += line.compare(0, 8, "viClose(") == 0 ? 1U : 0U;
    }
    EXPECT_EQ(closed, 3U * rounds * threadCount);
}
