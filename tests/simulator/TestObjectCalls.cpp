// SPDX-License-Identifier: MIT
#include "tests/simulator/CallsFixture.h"

#include <array>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

using visa::statusName;

namespace {

class ObjectCalls : public CallsFixture
{
protected:
    ViSession openInstrument(ViSession session, const char* resource)
    {
        ViSession instrument = VI_NULL;
        EXPECT_EQ(statusName(visa.open(session, resource, 0, 0, &instrument)), "VI_SUCCESS");
        return instrument;
    }

    std::string ask(ViSession instrument, const std::string& message)
    {
        ViUInt32 count = 0;
        EXPECT_EQ(statusName(visa.write(instrument, reinterpret_cast<const ViByte*>(message.data()),
                                        static_cast<ViUInt32>(message.size()), &count)),
                  "VI_SUCCESS");
        EXPECT_EQ(count, message.size());
        std::array<ViByte, 200> answer{};
        const std::string status = statusName(
            visa.read(instrument, answer.data(), static_cast<ViUInt32>(answer.size()), &count));
        return status == "VI_SUCCESS"
                   ? std::string(answer.begin(), answer.begin() + static_cast<int>(count))
                   : status;
    }
};

} // namespace

TEST_F(ObjectCalls, EachAttributeIsWrittenInItsOwnWidth)
{
    bench.write("resource ASRL3::INSTR\n");
    const ViSession session = openManager();
    const ViSession instrument = openInstrument(session, "ASRL3::INSTR");
    struct Case
    {
        ViSession object;
        ViAttr attribute;
        std::size_t width;
        std::uint64_t value;
    };
    const std::vector<Case> cases{
        {session, VI_ATTR_RSRC_MANF_ID, 2, 0x0E5A},
        {session, VI_ATTR_RSRC_IMPL_VERSION, 4, 0x00500C01},
        {session, VI_ATTR_RSRC_SPEC_VERSION, 4, 0x00500800},
        {session, VI_ATTR_USER_DATA_64, 8, 0},
        {instrument, VI_ATTR_TERMCHAR, 1, '\n'},
        {instrument, VI_ATTR_TERMCHAR_EN, 2, 0},
        {instrument, VI_ATTR_INTF_TYPE, 2, VI_INTF_ASRL},
        {instrument, VI_ATTR_INTF_NUM, 2, 3},
        {instrument, VI_ATTR_TMO_VALUE, 4, 2000},
        {instrument, VI_ATTR_ASRL_BAUD, 4, 9600},
        {instrument, VI_ATTR_RM_SESSION, 4, session},
    };
    for (const Case& test : cases) {
        std::array<unsigned char, 16> memory;
        memory.fill(0xA5);
        ASSERT_EQ(statusName(visa.getAttribute(test.object, test.attribute, memory.data())),
                  "VI_SUCCESS")
            << std::hex << test.attribute;
        std::uint64_t value = 0;
        std::memcpy(&value, memory.data(), test.width); // the tests' machines are little-endian
        EXPECT_EQ(value, test.value) << std::hex << test.attribute;
        EXPECT_EQ(memory[test.width - 1] == 0xA5, false) << std::hex << test.attribute;
        for (std::size_t i = test.width; i < memory.size(); ++i) {
            EXPECT_EQ(memory[i], 0xA5) << std::hex << test.attribute << " byte " << i;
        }
    }
}

TEST_F(ObjectCalls, TextAttributesNameTheMakerAndTheResource)
{
    bench.write("resource GPIB1::5::INSTR\n");
    const ViSession session = openManager();
    const ViSession instrument = openInstrument(session, "gpib1::5");
    const auto text = [&](ViSession object, ViAttr attribute) {
        Buffer buffer;
        EXPECT_EQ(statusName(visa.getAttribute(object, attribute, buffer.characters.data())),
                  "VI_SUCCESS");
        return buffer.text();
    };
    EXPECT_EQ(text(session, VI_ATTR_RSRC_MANF_NAME), "Quorvane (simulator)");
    EXPECT_EQ(text(instrument, VI_ATTR_RSRC_MANF_NAME), "Quorvane (simulator)");
    EXPECT_EQ(text(instrument, VI_ATTR_RSRC_CLASS), "INSTR");
    EXPECT_EQ(text(instrument, VI_ATTR_RSRC_NAME), "GPIB1::5::INSTR");
    EXPECT_EQ(text(instrument, VI_ATTR_INTF_INST_NAME), "GPIB1 (simulator)");
}

TEST_F(ObjectCalls, AttributesKeepWhatFits)
{
    const ViSession session = openManager();
    const auto setTo = [&](ViAttr attribute, ViAttrState value) {
        return statusName(visa.setAttribute(session, attribute, value));
    };
    std::uint32_t kept = 0;
    for (const ViAttr makers : {QV_ATTR_SEARCH_TIME, QV_ATTR_SEARCH_KINDS}) {
        EXPECT_EQ(setTo(makers, 0xFFFFFFFF), "VI_SUCCESS");
        EXPECT_EQ(setTo(makers, 0x100000000), "VI_ERROR_NSUP_ATTR_STATE");
        EXPECT_EQ(statusName(visa.getAttribute(session, makers, &kept)), "VI_SUCCESS");
        EXPECT_EQ(kept, 0xFFFFFFFFU);
    }
    EXPECT_EQ(setTo(0x0E5A0003, 1), "VI_ERROR_NSUP_ATTR");
    EXPECT_EQ(setTo(VI_ATTR_RSRC_MANF_ID, 1), "VI_ERROR_ATTR_READONLY");
    EXPECT_EQ(setTo(VI_ATTR_RSRC_MANF_NAME, 1), "VI_ERROR_ATTR_READONLY");

    constexpr std::uint64_t widest = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t wide = 0;
    EXPECT_EQ(setTo(VI_ATTR_USER_DATA_64, widest), "VI_SUCCESS");
    EXPECT_EQ(statusName(visa.getAttribute(session, VI_ATTR_USER_DATA_64, &wide)), "VI_SUCCESS");
    EXPECT_EQ(wide, widest);

    // Another session has its own.
    const ViSession other = openManager();
    EXPECT_EQ(statusName(visa.getAttribute(other, QV_ATTR_SEARCH_TIME, &kept)), "VI_SUCCESS");
    EXPECT_EQ(kept, 0U);
}

TEST_F(ObjectCalls, ImpossibleValuesAreRefused)
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
                           {VI_ATTR_TMO_VALUE, {0, 0xFFFFFFFF}, {0x100000000}}}) {
        for (const ViAttrState value : test.accepted) {
            EXPECT_EQ(statusName(visa.setAttribute(port, test.attribute, value)), "VI_SUCCESS")
                << std::hex << test.attribute << ' ' << value;
        }
        for (const ViAttrState value : test.refused) {
            EXPECT_EQ(statusName(visa.setAttribute(port, test.attribute, value)),
                      "VI_ERROR_NSUP_ATTR_STATE")
                << std::hex << test.attribute << ' ' << value;
        }
    }
}

TEST_F(ObjectCalls, AttributesOfWhatHasNone)
{
    bench.write("resource GPIB0::5::INSTR\n");
    const ViSession session = openManager();
    ViFindList findList = VI_NULL;
    Buffer description;
    ASSERT_EQ(
        statusName(visa.findRsrc(session, "?*", &findList, nullptr, description.characters.data())),
        "VI_SUCCESS");
    std::uint32_t value = 77;
    EXPECT_EQ(statusName(visa.setAttribute(findList, VI_ATTR_TMO_VALUE, 1)), "VI_ERROR_NSUP_ATTR");
    EXPECT_EQ(statusName(visa.getAttribute(findList, VI_ATTR_TMO_VALUE, &value)),
              "VI_ERROR_NSUP_ATTR");
    const ViSession instrument = openInstrument(session, "GPIB0::5::INSTR");
    EXPECT_EQ(statusName(visa.getAttribute(instrument, VI_ATTR_ASRL_BAUD, &value)),
              "VI_ERROR_NSUP_ATTR");
    EXPECT_EQ(statusName(visa.getAttribute(instrument, 0, &value)), "VI_ERROR_NSUP_ATTR");
    EXPECT_EQ(statusName(visa.getAttribute(session, VI_ATTR_RSRC_MANF_ID, nullptr)),
              "VI_ERROR_USER_BUF");
    EXPECT_EQ(value, 77U);
    for (const ViObject wrong : {VI_NULL, ViObject{0xFFFFFFFF}}) {
        EXPECT_EQ(statusName(visa.setAttribute(wrong, VI_ATTR_TMO_VALUE, 1)),
                  "VI_ERROR_INV_OBJECT");
        EXPECT_EQ(statusName(visa.getAttribute(wrong, VI_ATTR_TMO_VALUE, &value)),
                  "VI_ERROR_INV_OBJECT");
    }
}

TEST_F(ObjectCalls, SettingAttributesFailsOnRequest)
{
    bench.write("status viSetAttribute VI_ERROR_NSUP_ATTR at=1\n"
                "status viSetAttribute VI_WARN_NSUP_ATTR_STATE at=2\n");
    const ViSession session = openManager();
    std::uint32_t value = 77;
    EXPECT_EQ(statusName(visa.setAttribute(session, QV_ATTR_SEARCH_KINDS, 7)),
              "VI_ERROR_NSUP_ATTR");
    EXPECT_EQ(statusName(visa.getAttribute(session, QV_ATTR_SEARCH_KINDS, &value)), "VI_SUCCESS");
    EXPECT_EQ(value, 0U);
    EXPECT_EQ(statusName(visa.setAttribute(session, QV_ATTR_SEARCH_KINDS, 7)),
              "VI_WARN_NSUP_ATTR_STATE");
    EXPECT_EQ(statusName(visa.setAttribute(session, QV_ATTR_SEARCH_TIME, 1000)), "VI_SUCCESS");
    EXPECT_EQ(statusName(visa.getAttribute(session, QV_ATTR_SEARCH_KINDS, &value)), "VI_SUCCESS");
    EXPECT_EQ(value, 7U);
}

TEST_F(ObjectCalls, AFailingCloseClosesNothing)
{
    bench.write("status viClose VI_ERROR_CLOSING_FAILED at=1\n");
    const ViSession session = openManager();
    EXPECT_EQ(statusName(visa.close(session)), "VI_ERROR_CLOSING_FAILED");
    EXPECT_EQ(statusName(visa.setAttribute(session, QV_ATTR_SEARCH_TIME, 1)), "VI_SUCCESS");
    EXPECT_EQ(statusName(visa.close(session)), "VI_SUCCESS");
    EXPECT_EQ(statusName(visa.close(session)), "VI_ERROR_INV_OBJECT");
}

TEST_F(ObjectCalls, InstrumentsAnswerWhatTheBenchSays)
{
    bench.write("resource ASRL1::INSTR idn=\"Quorvane,Meter,1,2\"\n"
                "resource \"no resource string\" idn=nobody\n"
                "resource GPIB0::{n}::INSTR repeat=29\n");
    const ViSession session = openManager();
    const ViSession meter = openInstrument(session, "asrl1");
    EXPECT_EQ(ask(meter, "*IDN?\n"), "Quorvane,Meter,1,2\n");
    EXPECT_EQ(ask(meter, " *idn?\r\n"), "Quorvane,Meter,1,2\n");
    EXPECT_EQ(ask(meter, "*RST"), "VI_ERROR_TMO");
    EXPECT_EQ(ask(meter, ""), "VI_ERROR_TMO");
    const ViSession other = openInstrument(session, "GPIB::20");
    EXPECT_EQ(ask(other, "*IDN?"), "Quorvane,Simulated instrument,0,1.0\n");

    ViSession none = 77;
    EXPECT_EQ(statusName(visa.open(session, "GPIB0::30::INSTR", 0, 0, &none)),
              "VI_ERROR_RSRC_NFOUND");
    EXPECT_EQ(statusName(visa.open(session, "no resource string", 0, 0, &none)),
              "VI_ERROR_INV_RSRC_NAME");
    EXPECT_EQ(statusName(visa.open(session, nullptr, 0, 0, &none)), "VI_ERROR_INV_RSRC_NAME");
    EXPECT_EQ(statusName(visa.open(session, "ASRL1", 8, 0, &none)), "VI_ERROR_INV_ACC_MODE");
    EXPECT_EQ(none, 77U);
    EXPECT_EQ(statusName(visa.open(session, "ASRL1", 0, 0, nullptr)), "VI_ERROR_USER_BUF");
    EXPECT_EQ(statusName(visa.open(meter, "ASRL1", 0, 0, &none)), "VI_ERROR_INV_OBJECT");
}

TEST_F(ObjectCalls, AnswersAreReadInPieces)
{
    bench.write("resource ASRL1::INSTR idn=abcdef\n");
    const ViSession meter = openInstrument(openManager(), "ASRL1");
    const auto* const question = reinterpret_cast<const ViByte*>("*IDN?");
    std::array<ViByte, 10> answer{};
    ViUInt32 count = 0;
    const auto read = [&](ViUInt32 most) {
        const std::string status = statusName(visa.read(meter, answer.data(), most, &count));
        return status + " " + std::string(answer.begin(), answer.begin() + static_cast<int>(count));
    };
    ASSERT_EQ(statusName(visa.write(meter, question, 5, nullptr)), "VI_SUCCESS");
    EXPECT_EQ(read(4), "VI_SUCCESS_MAX_CNT abcd");
    EXPECT_EQ(read(0), "VI_SUCCESS_MAX_CNT ");
    EXPECT_EQ(read(10), "VI_SUCCESS ef\n");

    ASSERT_EQ(statusName(visa.write(meter, question, 5, nullptr)), "VI_SUCCESS");
    ASSERT_EQ(statusName(visa.setAttribute(meter, VI_ATTR_TERMCHAR, 'c')), "VI_SUCCESS");
    EXPECT_EQ(read(2), "VI_SUCCESS_MAX_CNT ab"); // not yet enabled
    ASSERT_EQ(statusName(visa.write(meter, question, 5, nullptr)), "VI_SUCCESS");
    ASSERT_EQ(statusName(visa.setAttribute(meter, VI_ATTR_TERMCHAR_EN, 1)), "VI_SUCCESS");
    EXPECT_EQ(read(10), "VI_SUCCESS_TERM_CHAR abc");
    EXPECT_EQ(read(10), "VI_SUCCESS def\n");
    EXPECT_EQ(statusName(visa.read(meter, answer.data(), 10, &count)), "VI_ERROR_TMO");
}

TEST_F(ObjectCalls, TalkingToWhatIsNoInstrument)
{
    bench.write("resource ASRL1::INSTR\nstatus viWrite VI_ERROR_IO at=2\n"
                "status viRead VI_ERROR_CONN_LOST\nstatus viOpen VI_ERROR_RSRC_BUSY at=2\n");
    const ViSession session = openManager();
    const ViSession meter = openInstrument(session, "ASRL1");
    std::array<ViByte, 10> bytes{};
    ViUInt32 count = 77;
    ViSession busy = 77;
    EXPECT_EQ(statusName(visa.open(session, "ASRL1", 0, 0, &busy)), "VI_ERROR_RSRC_BUSY");
    EXPECT_EQ(busy, 77U);
    for (const ViObject wrong : {VI_NULL, session}) {
        EXPECT_EQ(statusName(visa.write(wrong, bytes.data(), 1, &count)), "VI_ERROR_INV_OBJECT");
        EXPECT_EQ(statusName(visa.read(wrong, bytes.data(), 1, &count)), "VI_ERROR_INV_OBJECT");
    }
    EXPECT_EQ(statusName(visa.write(meter, nullptr, 1, &count)), "VI_ERROR_USER_BUF");
    EXPECT_EQ(statusName(visa.read(meter, nullptr, 1, &count)), "VI_ERROR_USER_BUF");
    EXPECT_EQ(statusName(visa.write(meter, bytes.data(), 1, nullptr)), "VI_SUCCESS");
    EXPECT_EQ(statusName(visa.write(meter, bytes.data(), 1, &count)), "VI_ERROR_IO");
    EXPECT_EQ(statusName(visa.read(meter, bytes.data(), 1, &count)), "VI_ERROR_CONN_LOST");
    EXPECT_EQ(count, 77U);
    EXPECT_EQ(statusName(visa.close(session)), "VI_SUCCESS");
    EXPECT_EQ(statusName(visa.read(meter, bytes.data(), 1, &count)), "VI_ERROR_INV_OBJECT");
}

TEST_F(ObjectCalls, ThereAreNoEventsToDisableOrDiscard)
{
    bench.write("resource ASRL1::INSTR\nstatus viDisableEvent VI_ERROR_IO at=3\n");
    const ViSession session = openManager();
    const ViSession meter = openInstrument(session, "ASRL1");
    constexpr ViEventType all = VI_ALL_ENABLED_EVENTS;
    EXPECT_EQ(statusName(visa.disableEvent(meter, all, VI_ALL_MECH)), "VI_SUCCESS_EVENT_DIS");
    EXPECT_EQ(statusName(visa.discardEvents(meter, all, VI_ALL_MECH)), "VI_SUCCESS_QUEUE_EMPTY");
    EXPECT_EQ(statusName(visa.disableEvent(meter, all, 0)), "VI_ERROR_INV_MECH");
    EXPECT_EQ(statusName(visa.disableEvent(meter, all, VI_ALL_MECH)), "VI_ERROR_IO");
    EXPECT_EQ(statusName(visa.discardEvents(VI_NULL, all, VI_ALL_MECH)), "VI_ERROR_INV_OBJECT");
}
