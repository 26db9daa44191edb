// SPDX-License-Identifier: MIT
#include "config/ConfigurationRecords.h"

#include <gtest/gtest.h>

#include <vector>

using QvVisa::SGpibProperties;
using QvVisa::SSerialProperties;

namespace {

/// The first record is the default; each pair of the others differs.
template <typename Record>
void expectAreCompared(const std::vector<Record>& records)
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
    const std::vector<Map> maps{{}, {{1, {}}}, {{1, {}}, {2, {}}}, {{1, {}}, {65535, {}}}};
    for (std::size_t i = 0; i < maps.size(); ++i) {
        for (std::size_t j = 0; j < maps.size(); ++j) {
            EXPECT_EQ(maps[i] == Map(maps[j]), i == j) << i << ' ' << j;
        }
    }
}

} // namespace

TEST(Records, AreComparedByNumberAndEachField)
{
    expectAreCompared<SGpibProperties>({{0, 65535, 1}, {30, 65535, 1}, {0, 0, 1}, {0, 65535, 0}});
    expectAreCompared<SSerialProperties>({{9600, 8, 0, 0, 0},
                                          {75136, 8, 0, 0, 0},
                                          {9600, 7, 0, 0, 0},
                                          {9600, 8, 2, 0, 0},
                                          {9600, 8, 0, 4, 0},
                                          {9600, 8, 0, 0, 6}});
}
