// SPDX-License-Identifier: MIT
#include "config/ConfigurationRecords.h"

#include <gtest/gtest.h>

#include <cstdint>
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

/// The defaults, then records that differ from them and from each other in one field.
const std::vector<SGpibProperties> s_boards{
    {0, 65535, 1}, {30, 65535, 1}, {0, 0, 1}, {0, 65535, 0}};
const std::vector<SSerialProperties> s_ports{{9600, 8, 0, 0, 0}, {75136, 8, 0, 0, 0},
                                             {9600, 7, 0, 0, 0}, {9600, 8, 2, 0, 0},
                                             {9600, 8, 0, 4, 0}, {9600, 8, 0, 0, 6}};

template <typename Record>
void expectEachFieldIsCompared(const std::vector<Record>& records)
{
    using Map = std::map<unsigned short, Record>;
    EXPECT_TRUE(records[0] == Record());
    for (std::size_t i = 0; i < records.size(); ++i) {
        for (std::size_t j = 0; j < records.size(); ++j) {
            EXPECT_EQ(records[i] == records[j], i == j) << i << ' ' << j;
            for (unsigned short number = 1; number <= 3; ++number) {
                Map left{{1, {}}, {2, {}}, {3, {}}};
                Map right = left;
                left[number] = records[i];
                right[number] = records[j];
                EXPECT_EQ(left == right, i == j) << i << ' ' << j << ' ' << number;
            }
        }
    }
}

template <typename Record>
void expectMapsAreComparedByNumber()
{
    using Map = std::map<unsigned short, Record>;
    const std::vector<Map> maps{{}, {{1, {}}}, {{1, {}}, {2, {}}}, {{1, {}}, {65535, {}}}};
    for (std::size_t i = 0; i < maps.size(); ++i) {
        for (std::size_t j = 0; j < maps.size(); ++j) {
            EXPECT_EQ(maps[i] == Map(maps[j]), i == j) << i << ' ' << j;
        }
    }
}

} // namespace

TEST(Records, EachFieldIsCompared)
{
    expectEachFieldIsCompared(s_boards);
    expectEachFieldIsCompared(s_ports);
}

TEST(Records, MapsAreComparedByNumber)
{
    expectMapsAreComparedByNumber<SGpibProperties>();
    expectMapsAreComparedByNumber<SSerialProperties>();
}

TEST(Records, ANewNumberHasTheDefaultRecord)
{
    GpibPropertiesMap boards;
    boards[7].systemController = 0;
    EXPECT_TRUE(boards == (GpibPropertiesMap{{7, {0, 65535, 0}}}));
    SerialPropertiesMap ports;
    ports[3].parity = 2;
    EXPECT_TRUE(ports == (SerialPropertiesMap{{3, {9600, 8, 0, 2, 0}}}));
}
