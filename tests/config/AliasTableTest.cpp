// SPDX-License-Identifier: MIT
#include "tests/config/AliasTableChanges.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using QvVisa::AliasTable;

TEST(AliasTable, CountsEachChangeThatLeavesItsSize)
{
    for (const AliasTableChange& change : aliasTableChanges()) {
        auto table = filledAliasTable<AliasTable>(100);
        const std::size_t generation = table.generation();
        change.apply(table);
        if (change.isThroughOwnType) {
            EXPECT_NE(table.generation(), generation) << change.name;
        }
    }
}

TEST(AliasTable, CountsTheAssignmentOfAList)
{
    AliasTable table = {{"A", "1"}, {"B", "2"}};
    const std::size_t generation = table.generation();
    table = {{"B", "2"}, {"A", "1"}};
    EXPECT_NE(table.generation(), generation);
}

TEST(AliasTable, CountsNothingWhileItIsOnlyRead)
{
    auto table = filledAliasTable<AliasTable>(100);
    const std::size_t generation = table.generation();
    const AliasTable copy = table;
    for (auto& entry : table) {
        entry.second = table.at(entry.first) + table[entry.first];
    }
    EXPECT_EQ(table.count(aliasNumber(1)), 1U);
    EXPECT_EQ(copy.size(), table.size());
    EXPECT_EQ(table.generation(), generation);
}

TEST(AliasTable, MovesAsCheaplyAsAPlainMap)
{
    static_assert(std::is_nothrow_move_constructible_v<AliasTable> ==
                  std::is_nothrow_move_constructible_v<AliasTable::Base>);
    auto table = filledAliasTable<AliasTable>(100);
    const void* const entry = &*table.begin();
    const AliasTable taker = std::move(table);
    EXPECT_EQ(&*taker.begin(), entry) << "the entries were copied";
}

TEST(AliasTable, KeepsBothSidesOfASwapAndAMerge)
{
    AliasTable left = {{"A", "left"}, {"B", "left"}};
    AliasTable right = {{"B", "right"}, {"C", "right"}};
    left.swap(right);
    EXPECT_EQ(left, (AliasTable{{"B", "right"}, {"C", "right"}}));
    EXPECT_EQ(right, (AliasTable{{"A", "left"}, {"B", "left"}}));
    left.merge(right);
    EXPECT_EQ(left, (AliasTable{{"A", "left"}, {"B", "right"}, {"C", "right"}}));
    EXPECT_EQ(right, (AliasTable{{"B", "left"}}));
}

} // namespace
