// SPDX-License-Identifier: MIT
#include "tests/config/AliasTableChanges.h"

#include <iterator>
#include <utility>

namespace {

using QvVisa::AliasTable;

AliasTable turned()
{
    return filledAliasTable<AliasTable>(100, true);
}

void refill(AliasTable& table)
{
    const AliasTable source = turned();
    for (std::size_t i = 0; i < 100; ++i) {
        const std::string name = aliasNumber(99 - i);
        table[name] = source.at(name);
    }
}

const std::vector<AliasTableChange> s_changes = {
    {"Erase", true,
     [](AliasTable& table) {
         for (int i = 0; i < 10; ++i) {
             const std::string name = table.begin()->first;
             table.erase(table.begin());
             table.insert({"NEW" + name, "GPIB1::1::INSTR"});
         }
     }},
    {"EraseByName", true,
     [](AliasTable& table) {
         const std::vector<std::string> names = orderOf(table);
         for (std::size_t i = 0; i < 10; ++i) {
             table.erase(names[i]);
             table.emplace("NEW" + names[i], "GPIB1::1::INSTR");
         }
     }},
    {"EraseRange", true,
     [](AliasTable& table) {
         table.erase(table.cbegin(), std::next(table.cbegin(), 10));
         for (std::size_t i = 100; i < 110; ++i) {
             table.try_emplace(aliasNumber(i), "GPIB1::1::INSTR");
         }
     }},
    {"Extract", true,
     [](AliasTable& table) {
         for (int i = 0; i < 10; ++i) {
             auto node = table.extract(table.begin());
             node.key() = "NEW" + node.key();
             table.insert(std::move(node));
         }
     }},
    {"Clear", true,
     [](AliasTable& table) {
         table.clear();
         refill(table);
     }},
    {"Swap", true,
     [](AliasTable& table) {
         AliasTable other = turned();
         table.swap(other);
     }},
    {"BeSwapped", true,
     [](AliasTable& table) {
         AliasTable other = turned();
         other.swap(table);
     }},
    {"SwapWithAPlainMap", true,
     [](AliasTable& table) {
         auto other = filledAliasTable<AliasTable::Base>(100, true);
         table.swap(other);
     }},
    {"StandardSwap", true,
     [](AliasTable& table) {
         AliasTable other = turned();
         std::swap(table, other);
     }},
    {"StandardSwapWithAPlainMap", false,
     [](AliasTable& table) {
         auto other = filledAliasTable<AliasTable::Base>(100, true);
         std::swap<std::string, std::string>(table, other);
     }},
    {"Assign", true,
     [](AliasTable& table) {
         const AliasTable other = turned();
         table = other;
     }},
    {"AssignMoved", true, [](AliasTable& table) { table = turned(); }},
    {"AssignAPlainMap", true,
     [](AliasTable& table) {
         const auto other = filledAliasTable<AliasTable::Base>(100, true);
         table = other;
     }},
    {"AssignAMovedPlainMap", true,
     [](AliasTable& table) { table = filledAliasTable<AliasTable::Base>(100, true); }},
    {"BeMovedFrom", true,
     [](AliasTable& table) {
         const AliasTable taker = std::move(table);
         refill(table);
     }},
    {"BeAssignedFrom", true,
     [](AliasTable& table) {
         AliasTable taker;
         taker = std::move(table);
         refill(table);
     }},
    {"BeMovedToAPlainMap", false,
     [](AliasTable& table) {
         AliasTable::Base taker;
         taker = std::move(table);
         refill(table);
     }},
    {"BeExchanged", true,
     [](AliasTable& table) {
         const AliasTable taker = std::exchange(table, {});
         refill(table);
     }},
    {"BeMerged", true,
     [](AliasTable& table) {
         AliasTable taker;
         taker.merge(table);
         refill(table);
     }},
    {"BeMergedMoved", true,
     [](AliasTable& table) {
         AliasTable taker;
         taker.merge(std::move(table));
         refill(table);
     }},
    {"Rehash", true,
     [](AliasTable& table) {
         const std::size_t buckets = table.bucket_count();
         table.rehash(20 * buckets);
         table.rehash(buckets);
     }},
    {"Reserve", true,
     [](AliasTable& table) {
         const std::size_t buckets = table.bucket_count();
         table.reserve(20 * buckets);
         // So that the entries' number asks for just the old number of buckets.
         table.max_load_factor((static_cast<float>(table.size()) + 1.5F) /
                               static_cast<float>(buckets));
         table.reserve(table.size());
     }},
    {"RehashAsAPlainMap", false,
     [](AliasTable& table) { static_cast<AliasTable::Base&>(table).rehash(2000); }},
};

} // namespace

std::string aliasNumber(std::size_t number)
{
    return "ALIAS" + std::to_string(number);
}

std::vector<std::string> orderOf(const AliasTable& table)
{
    std::vector<std::string> names;
    for (const auto& entry : table) {
        names.push_back(entry.first);
    }
    return names;
}

const std::vector<AliasTableChange>& aliasTableChanges()
{
    return s_changes;
}
