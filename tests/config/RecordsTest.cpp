// SPDX-License-Identifier: MIT
#include "config/ConfigurationRecords.h"

#include "config/ModernConfigurationFile.h"
#include "tests/config/FileContents.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

using QvVisa::GpibPropertiesMap;
using QvVisa::SerialPropertiesMap;
using QvVisa::SGpibProperties;
using QvVisa::SSerialProperties;

// The widths are the format's.
static_assert(std::is_same_v<decltype(SGpibProperties::primaryAddress), std::uint16_t>);
static_assert(std::is_same_v<decltype(SGpibProperties::secondaryAddress), std::uint16_t>);
static_assert(std::is_same_v<decltype(SGpibProperties::systemController), std::uint16_t>);
static_assert(std::is_same_v<decltype(SSerialProperties::baudrate), std::uint32_t>);
static_assert(std::is_same_v<decltype(SSerialProperties::dataBits), std::uint8_t>);
static_assert(std::is_same_v<decltype(SSerialProperties::stopBits), std::uint8_t>);
static_assert(std::is_same_v<decltype(SSerialProperties::parity), std::uint8_t>);
static_assert(std::is_same_v<decltype(SSerialProperties::flowControl), std::uint8_t>);
static_assert(std::is_same_v<GpibPropertiesMap, std::map<unsigned short, SGpibProperties>>);
static_assert(std::is_same_v<SerialPropertiesMap, std::map<unsigned short, SSerialProperties>>);

namespace {

template <typename Record>
struct Change
{
    const char* field;
    std::function<void(Record&)> apply;
};

const std::vector<Change<SGpibProperties>>& gpibChanges()
{
    static const std::vector<Change<SGpibProperties>> changes = {
        {"primaryAddress", [](auto& record) { record.primaryAddress = 30; }},
        {"secondaryAddress", [](auto& record) { record.secondaryAddress = 0; }},
        {"systemController", [](auto& record) { record.systemController = 0; }},
    };
    return changes;
}

const std::vector<Change<SSerialProperties>>& serialChanges()
{
    static const std::vector<Change<SSerialProperties>> changes = {
        {"baudrate", [](auto& record) { record.baudrate = 9600 + 65536; }},
        {"dataBits", [](auto& record) { record.dataBits = 7; }},
        {"stopBits", [](auto& record) { record.stopBits = 2; }},
        {"parity", [](auto& record) { record.parity = 4; }},
        {"flowControl", [](auto& record) { record.flowControl = 6; }},
    };
    return changes;
}

template <typename Record>
void expectEachFieldCounts(const std::vector<Change<Record>>& changes)
{
    using Map = std::map<unsigned short, Record>;
    for (const auto& change : changes) {
        Record changed;
        change.apply(changed);
        EXPECT_FALSE(changed == Record()) << change.field;
        EXPECT_FALSE(Record() == changed) << change.field;
        Record other;
        change.apply(other);
        EXPECT_TRUE(changed == other) << change.field;

        const Map defaults{{1, {}}, {2, {}}, {3, {}}};
        for (unsigned short number = 1; number <= 3; ++number) {
            Map different = defaults;
            change.apply(different[number]);
            EXPECT_FALSE(defaults == different) << change.field << ' ' << number;
            EXPECT_FALSE(different == defaults) << change.field << ' ' << number;
        }
    }
}

template <typename Record>
void expectMapsCompareByNumber()
{
    using Map = std::map<unsigned short, Record>;
    const Map empty;
    const Map one{{1, {}}};
    const Map two{{1, {}}, {2, {}}};
    const Map others{{1, {}}, {3, {}}};
    EXPECT_TRUE(empty == Map());
    EXPECT_TRUE(two == (Map{{2, {}}, {1, {}}}));
    EXPECT_FALSE(empty == one);
    EXPECT_FALSE(one == empty);
    EXPECT_FALSE(one == two) << "a map that begins like the other";
    EXPECT_FALSE(two == one) << "a map that begins like the other";
    EXPECT_FALSE(two == others) << "as many entries, another number";
    EXPECT_FALSE(others == two) << "as many entries, another number";
    EXPECT_TRUE((Map{{0, {}}, {65535, {}}}) == (Map{{0, {}}, {65535, {}}}));
}

} // namespace

TEST(Records, BoardStartsAsControllerWithoutSecondaryAddress)
{
    const SGpibProperties board;
    EXPECT_EQ(board.primaryAddress, 0);
    EXPECT_EQ(board.secondaryAddress, 65535);
    EXPECT_EQ(board.systemController, 1);
    EXPECT_TRUE(board == (SGpibProperties{0, 65535, 1}));
}

TEST(Records, PortStartsAt9600WithEightDataBits)
{
    const SSerialProperties port;
    EXPECT_EQ(port.baudrate, 9600U);
    EXPECT_EQ(port.dataBits, 8);
    EXPECT_EQ(port.stopBits, 0);
    EXPECT_EQ(port.parity, 0);
    EXPECT_EQ(port.flowControl, 0);
    EXPECT_TRUE(port == (SSerialProperties{9600, 8, 0, 0, 0}));
}

TEST(Records, EachFieldOfABoardCountsInComparisons)
{
    expectEachFieldCounts(gpibChanges());
}

TEST(Records, EachFieldOfAPortCountsInComparisons)
{
    expectEachFieldCounts(serialChanges());
}

TEST(Records, MapsOfBoardsCompareByNumber)
{
    expectMapsCompareByNumber<SGpibProperties>();
}

TEST(Records, MapsOfPortsCompareByNumber)
{
    expectMapsCompareByNumber<SSerialProperties>();
}

TEST(Records, NamingANumberMakesADefaultRecord)
{
    GpibPropertiesMap boards;
    boards[7].systemController = 0;
    EXPECT_TRUE(boards == (GpibPropertiesMap{{7, {0, 65535, 0}}}));
    SerialPropertiesMap ports;
    ports[3].parity = 2;
    EXPECT_TRUE(ports == (SerialPropertiesMap{{3, {9600, 8, 0, 2, 0}}}));
}

TEST(Records, CodesOutsideTheListsSurviveStoringComparingAndWriting)
{
    // 6 follows 2 in the list of flow controls; 3 to 5 and 255 are in no list.
    for (const int code : {0, 1, 2, 3, 5, 6, 255}) {
        const auto value = static_cast<std::uint8_t>(code);
        const SerialPropertiesMap ports{{1, {9600, value, value, value, value}}};
        const SerialPropertiesMap copy = ports;
        EXPECT_TRUE(copy == ports) << code;
        EXPECT_EQ(copy.at(1).flowControl, value);

        const support::TemporaryFolder folder;
        const std::string path = folder.path() / "visa.conf";
        QvVisa::ModernConfigurationFile::write(path, {}, {}, ports, 3674);
        EXPECT_TRUE(readWithModernConfigurationFile(path).serial == ports) << code;
    }
}
