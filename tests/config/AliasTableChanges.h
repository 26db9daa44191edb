// SPDX-License-Identifier: MIT
#pragma once

#include "config/AliasTable.h"

#include <cstddef>
#include <string>
#include <vector>

std::string aliasNumber(std::size_t number);

/// Entries of the numbers from 0 on, put in upwards or downwards: the same names in two orders.
template <typename Table>
Table filledAliasTable(std::size_t count, bool downwards = false)
{
    Table table;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t number = downwards ? count - 1 - i : i;
        table[aliasNumber(number)] = "GPIB0::" + std::to_string(number) + "::INSTR";
    }
    return table;
}

/// The names in the table's order.
std::vector<std::string> orderOf(const QvVisa::AliasTable& table);

/// Changes a table of 100 entries so that their order is another while their number and, as far
/// as it can be had, the number of buckets stay: what a remembered position goes wrong on.
struct AliasTableChange
{
    const char* name;
    bool isThroughOwnType; ///< Not through a reference to the table's base class.
    void (*apply)(QvVisa::AliasTable& table);
};

const std::vector<AliasTableChange>& aliasTableChanges();
