// SPDX-License-Identifier: MIT
#include "tests/config/AliasTableChanges.h"
#include "tests/config/StoreFixture.h"

#include <algorithm>
#include <iterator>
#include <random>

namespace {

using QvVisa::AliasTable;
using QvVisa::ConfigurationFile;

/// Compares one access with a walk from the table's start.
testing::AssertionResult answersLikeAFreshWalk(const ConfigurationFile& store, std::size_t index)
{
    std::string alias;
    const std::string resource = store.getResource(store.m_resources.size() + index, alias);
    const auto expected = std::next(store.m_aliases.begin(), static_cast<std::ptrdiff_t>(index));
    if (alias == expected->first && resource == expected->second) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "entry " << index << " is " << expected->first << "="
                                       << expected->second << ", not " << alias << "=" << resource;
}

class StoreWalk : public StoreTest
{};

// Walking from the start for each entry takes minutes here and runs into the test's time limit.
TEST_F(StoreWalk, PassesThroughAVeryLongTableInItsOrder)
{
    constexpr std::size_t count = 200'000;
    store().m_aliases = filledAliasTable<AliasTable>(count);
    store().m_resources = {"FIRST", "SECOND"};
    const ConfigurationFile& held = store();
    std::size_t index = held.m_resources.size();
    std::string alias;
    for (const auto& [name, resource] : held.m_aliases) {
        ASSERT_EQ(held.getResource(index, alias), resource) << index;
        ASSERT_EQ(alias, name) << index;
        ++index;
    }
    EXPECT_EQ(index, count + 2);
    EXPECT_EQ(held.getResource(index, alias), "");
}

TEST_F(StoreWalk, AnswersInAnySequence)
{
    store().m_aliases = filledAliasTable<AliasTable>(100);
    const ConfigurationFile& held = store();
    for (std::size_t index = 100; index-- > 0;) {
        ASSERT_TRUE(answersLikeAFreshWalk(held, index)) << "backwards";
    }
    for (std::size_t index = 0; index < 1000; ++index) {
        ASSERT_TRUE(answersLikeAFreshWalk(held, index * 37 % 100)) << "in leaps";
        ASSERT_TRUE(answersLikeAFreshWalk(held, index * 37 % 100)) << "twice";
    }
}

TEST_F(StoreWalk, AnswersWithTheResourceOfThisMoment)
{
    store().m_aliases = filledAliasTable<AliasTable>(100);
    ConfigurationFile& held = store();
    for (std::size_t index = 0; index < 100; ++index) {
        ASSERT_TRUE(answersLikeAFreshWalk(held, index));
        std::next(held.m_aliases.begin(), static_cast<std::ptrdiff_t>(index))->second = "CHANGED";
        ASSERT_TRUE(answersLikeAFreshWalk(held, index));
    }
}

/// Applies the change when the position is remembered, and looks at the entries from there on.
testing::AssertionResult answersAfter(const AliasTableChange& change, std::size_t position,
                                      ConfigurationFile& store)
{
    store.m_aliases = filledAliasTable<AliasTable>(100);
    const std::vector<std::string> before = orderOf(store.m_aliases);
    std::string alias;
    for (std::size_t index = 0; index <= position; ++index) {
        store.getResource(store.m_resources.size() + index, alias);
    }
    change.apply(store.m_aliases);
    if (store.m_aliases.size() != 100) {
        return testing::AssertionFailure() << "a change of size is easily seen";
    }
#ifdef __GLIBCXX__
    if (orderOf(store.m_aliases) == before) {
        return testing::AssertionFailure() << "the change leaves nothing to be seen";
    }
#endif
    for (std::size_t index = position; index < 100; ++index) {
        if (auto result = answersLikeAFreshWalk(store, index); !result) {
            return result << " (remembered " << position << ")";
        }
    }
    return testing::AssertionSuccess();
}

TEST_F(StoreWalk, AnswersLikeAFreshWalkAfterEachKindOfChange)
{
    ConfigurationFile& held = store();
    for (const AliasTableChange& change : aliasTableChanges()) {
        // Before the middle and past it: some entry beyond has moved either way.
        for (const std::size_t position : {std::size_t{20}, std::size_t{49}, std::size_t{80}}) {
            EXPECT_TRUE(answersAfter(change, position, held)) << change.name;
        }
    }
}

/// One random change of a table that stays between one and a few hundred entries long.
void changeSomehow(AliasTable& table, std::mt19937& random)
{
    const std::size_t number = random() % 400;
    switch (random() % 12) {
    case 0:
        table.erase(aliasNumber(number));
        break;
    case 1:
        table[aliasNumber(number)] = "GPIB2::" + std::to_string(random() % 31) + "::INSTR";
        break;
    case 2:
        table.erase(table.begin());
        table.emplace(aliasNumber(number), "GPIB3::1::INSTR");
        break;
    case 3: {
        auto node = table.extract(aliasNumber(number));
        if (node) {
            node.key() = aliasNumber(random() % 400);
            table.insert(std::move(node));
        }
        break;
    }
    case 4: {
        const std::size_t buckets = table.bucket_count();
        table.rehash(random() % 2000);
        table.rehash(random() % 2 == 0 ? buckets : 0);
        break;
    }
    case 5: {
        AliasTable other = filledAliasTable<AliasTable>(table.size(), random() % 2 == 0);
        table.swap(other);
        break;
    }
    case 6:
        table = filledAliasTable<AliasTable::Base>(table.size(), random() % 2 == 0);
        break;
    case 7: {
        const AliasTable copy = table;
        table = copy;
        break;
    }
    case 8: {
        AliasTable taken = std::move(table);
        table.merge(taken);
        break;
    }
    case 9:
        table.reserve(random() % 2000);
        break;
    case 10:
        table.begin()->second = "CHANGED";
        break;
    default:
        table = {{aliasNumber(number), "LIST"}, {aliasNumber(1), "LIST"}, {aliasNumber(2), "LIST"}};
        break;
    }
    if (table.empty()) {
        table[aliasNumber(number)] = "GPIB4::1::INSTR";
    }
}

TEST_F(StoreWalk, AnswersLikeAFreshWalkWhateverHappensInBetween)
{
    ConfigurationFile& held = store();
    held.m_aliases = filledAliasTable<AliasTable>(200);
    std::mt19937 random(20240229);
    std::size_t index = 0;
    for (int step = 0; step < 20'000; ++step) {
        if (random() % 8 == 0) {
            changeSomehow(held.m_aliases, random);
        }
        // Mostly the next entry, sometimes a leap.
        index = random() % 16 == 0 ? random() : index + 1;
        index %= held.m_aliases.size();
        ASSERT_TRUE(answersLikeAFreshWalk(held, index)) << "in step " << step;
    }
}

} // namespace
