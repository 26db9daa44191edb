// SPDX-License-Identifier: MIT
#include "tests/config/StoreFixture.h"

#include <algorithm>
#include <iterator>
#include <random>

namespace {

using QvVisa::AliasTable;
using QvVisa::ConfigurationFile;

std::string nameOf(std::size_t number)
{
    return "ALIAS" + std::to_string(number);
}

/// Entries of these numbers, in this order: a table filled the other way round holds the same
/// names in another order.
template <typename Table>
Table filled(std::size_t first, std::size_t count, bool backwards = false)
{
    Table table;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t number = backwards ? first + count - 1 - i : first + i;
        table[nameOf(number)] = "GPIB0::" + std::to_string(number) + "::INSTR";
    }
    return table;
}

std::vector<std::string> order(const AliasTable& table)
{
    std::vector<std::string> names;
    for (const auto& entry : table) {
        names.push_back(entry.first);
    }
    return names;
}

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
    store().m_aliases = filled<AliasTable>(0, count);
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
    store().m_aliases = filled<AliasTable>(0, 100);
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
    store().m_aliases = filled<AliasTable>(0, 100);
    ConfigurationFile& held = store();
    for (std::size_t index = 0; index < 100; ++index) {
        ASSERT_TRUE(answersLikeAFreshWalk(held, index));
        std::next(held.m_aliases.begin(), static_cast<std::ptrdiff_t>(index))->second = "CHANGED";
        ASSERT_TRUE(answersLikeAFreshWalk(held, index));
    }
}

/// Changes a table of the entries 0 to 99 so that their order is another while their number and,
/// as far as it can be had, the number of buckets stay: what a remembered position goes wrong on.
struct Change
{
    const char* name;
    void (*apply)(AliasTable& table);
};

AliasTable turned()
{
    return filled<AliasTable>(0, 100, true);
}

void refill(AliasTable& table)
{
    const AliasTable source = turned();
    for (std::size_t i = 0; i < 100; ++i) {
        const std::string name = nameOf(99 - i);
        table[name] = source.at(name);
    }
}

const Change s_changes[] = {
    {"Erase",
     [](AliasTable& table) {
         for (int i = 0; i < 10; ++i) {
             const std::string name = table.begin()->first;
             table.erase(table.begin());
             table.insert({"NEW" + name, "GPIB1::1::INSTR"});
         }
     }},
    {"EraseByName",
     [](AliasTable& table) {
         const std::vector<std::string> names = order(table);
         for (std::size_t i = 0; i < 10; ++i) {
             table.erase(names[i]);
             table.emplace("NEW" + names[i], "GPIB1::1::INSTR");
         }
     }},
    {"EraseRange",
     [](AliasTable& table) {
         table.erase(table.cbegin(), std::next(table.cbegin(), 10));
         for (std::size_t i = 100; i < 110; ++i) {
             table.try_emplace(nameOf(i), "GPIB1::1::INSTR");
         }
     }},
    {"Extract",
     [](AliasTable& table) {
         for (int i = 0; i < 10; ++i) {
             auto node = table.extract(table.begin());
             node.key() = "NEW" + node.key();
             table.insert(std::move(node));
         }
     }},
    {"Clear",
     [](AliasTable& table) {
         table.clear();
         refill(table);
     }},
    {"Swap",
     [](AliasTable& table) {
         AliasTable other = turned();
         table.swap(other);
     }},
    {"BeSwapped",
     [](AliasTable& table) {
         AliasTable other = turned();
         other.swap(table);
     }},
    {"SwapWithAPlainMap",
     [](AliasTable& table) {
         auto other = filled<AliasTable::Base>(0, 100, true);
         table.swap(other);
     }},
    {"StandardSwap",
     [](AliasTable& table) {
         AliasTable other = turned();
         std::swap(table, other);
     }},
    {"StandardSwapWithAPlainMap",
     [](AliasTable& table) {
         auto other = filled<AliasTable::Base>(0, 100, true);
         std::swap<std::string, std::string>(table, other);
     }},
    {"Assign",
     [](AliasTable& table) {
         const AliasTable other = turned();
         table = other;
     }},
    {"AssignMoved", [](AliasTable& table) { table = turned(); }},
    {"AssignAPlainMap",
     [](AliasTable& table) {
         const auto other = filled<AliasTable::Base>(0, 100, true);
         table = other;
     }},
    {"AssignAMovedPlainMap",
     [](AliasTable& table) { table = filled<AliasTable::Base>(0, 100, true); }},
    {"BeMovedFrom",
     [](AliasTable& table) {
         const AliasTable taker = std::move(table);
         refill(table);
     }},
    {"BeAssignedFrom",
     [](AliasTable& table) {
         AliasTable taker;
         taker = std::move(table);
         refill(table);
     }},
    {"BeMovedToAPlainMap",
     [](AliasTable& table) {
         AliasTable::Base taker;
         taker = std::move(table);
         refill(table);
     }},
    {"BeExchanged",
     [](AliasTable& table) {
         const AliasTable taker = std::exchange(table, {});
         refill(table);
     }},
    {"BeMerged",
     [](AliasTable& table) {
         AliasTable taker;
         taker.merge(table);
         refill(table);
     }},
    {"BeMergedMoved",
     [](AliasTable& table) {
         AliasTable taker;
         taker.merge(std::move(table));
         refill(table);
     }},
    {"Rehash",
     [](AliasTable& table) {
         const std::size_t buckets = table.bucket_count();
         table.rehash(20 * buckets);
         table.rehash(buckets);
     }},
    {"Reserve",
     [](AliasTable& table) {
         const std::size_t buckets = table.bucket_count();
         table.reserve(20 * buckets);
         // So that the entries' number asks for just the old number of buckets.
         table.max_load_factor((static_cast<float>(table.size()) + 1.5F) /
                               static_cast<float>(buckets));
         table.reserve(table.size());
     }},
};

/// Applies the change when the position is remembered, and looks at the entries from there on.
testing::AssertionResult answersAfter(const Change& change, std::size_t position,
                                      ConfigurationFile& store)
{
    store.m_aliases = filled<AliasTable>(0, 100);
    const std::vector<std::string> before = order(store.m_aliases);
    std::string alias;
    for (std::size_t index = 0; index <= position; ++index) {
        store.getResource(store.m_resources.size() + index, alias);
    }
    change.apply(store.m_aliases);
    if (store.m_aliases.size() != 100) {
        return testing::AssertionFailure() << "a change of size is easily seen";
    }
#ifdef __GLIBCXX__
    if (order(store.m_aliases) == before) {
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
    for (const Change& change : s_changes) {
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
        table.erase(nameOf(number));
        break;
    case 1:
        table[nameOf(number)] = "GPIB2::" + std::to_string(random() % 31) + "::INSTR";
        break;
    case 2:
        table.erase(table.begin());
        table.emplace(nameOf(number), "GPIB3::1::INSTR");
        break;
    case 3: {
        auto node = table.extract(nameOf(number));
        if (node) {
            node.key() = nameOf(random() % 400);
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
        AliasTable other = filled<AliasTable>(0, table.size(), random() % 2 == 0);
        table.swap(other);
        break;
    }
    case 6:
        table = filled<AliasTable::Base>(0, table.size(), random() % 2 == 0);
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
        table = {{nameOf(number), "LIST"}, {nameOf(1), "LIST"}, {nameOf(2), "LIST"}};
        break;
    }
    if (table.empty()) {
        table[nameOf(number)] = "GPIB4::1::INSTR";
    }
}

TEST_F(StoreWalk, AnswersLikeAFreshWalkWhateverHappensInBetween)
{
    ConfigurationFile& held = store();
    held.m_aliases = filled<AliasTable>(0, 200);
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
