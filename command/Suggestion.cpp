// SPDX-License-Identifier: MIT
#include "command/Suggestion.h"

#include "config/Encoding.h"
#include "config/UpperCase.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace QvVisa {

namespace {

/// How many bytes must be inserted, removed or replaced to make one text of the other.
std::size_t editDistance(std::string_view left, std::string_view right)
{
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < left.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < right.size(); ++j) {
            const std::size_t replaced = diagonal + (left[i] == right[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

} // namespace

std::string suggestAlias(const Entries& entries, std::string_view name)
{
    // Longer names are no typing errors, and comparing them would take long.
    constexpr std::size_t longest = 64;
    if (name.size() > longest) {
        return {};
    }
    const std::string upper = toUpperCase(name);
    std::size_t best = std::max<std::size_t>(1, upper.size() / 3) + 1;
    std::string suggestion;
    for (const auto& [known, alias] : entries.aliases) {
        const std::size_t difference =
            known.size() > upper.size() ? known.size() - upper.size() : upper.size() - known.size();
        if (difference > best) {
            continue;
        }
        const std::size_t distance = editDistance(known, upper);
        // By name when equally similar: a hash table has no order of its own.
        if (distance < best || (distance == best && !suggestion.empty() && known < suggestion)) {
            best = distance;
            suggestion = known;
        }
    }
    return suggestion.empty() ? std::string() : ", did you mean " + latin1ToUtf8(suggestion) + '?';
}

} // namespace QvVisa
