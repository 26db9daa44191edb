// SPDX-License-Identifier: MIT
#include "document/UnifiedDiff.h"

#include <algorithm>

namespace QvVisa {

namespace {

constexpr std::size_t s_context = 3;

void appendLines(std::string& diff, char mark, const Document& document, std::size_t begin,
                 std::size_t count)
{
    for (std::size_t index = begin; index < begin + count; ++index) {
        const DocumentLine line = document.line(index);
        diff += mark;
        diff += line.text;
        diff += line.hasLineFeed ? "\n" : "\n\\ No newline at end of file\n";
    }
}

/// "12,3"; an empty range names the line before it.
std::string range(std::size_t begin, std::size_t count)
{
    const std::size_t first = count == 0 ? begin : begin + 1;
    return count == 1 ? std::to_string(first) : std::to_string(first) + ',' + std::to_string(count);
}

} // namespace

std::string unifiedDiff(const Document& before, const Document& after,
                        const std::vector<ChangedLines>& hunks, std::string_view nameBefore,
                        std::string_view nameAfter)
{
    std::string diff;
    if (hunks.empty()) {
        return diff;
    }
    diff.append("--- ").append(nameBefore).append("\n+++ ").append(nameAfter).append("\n");
    for (std::size_t first = 0; first < hunks.size();) {
        // Changes whose contexts touch share a hunk.
        std::size_t end = first + 1;
        while (end < hunks.size() &&
               hunks[end].oldBegin - (hunks[end - 1].oldBegin + hunks[end - 1].oldCount) <=
                   2 * s_context) {
            ++end;
        }
        const std::size_t leading = std::min(s_context, hunks[first].oldBegin);
        const std::size_t oldEnd = hunks[end - 1].oldBegin + hunks[end - 1].oldCount;
        const std::size_t newEnd = hunks[end - 1].newBegin + hunks[end - 1].newCount;
        const std::size_t trailing = std::min(s_context, before.size() - oldEnd);
        const std::size_t oldBegin = hunks[first].oldBegin - leading;
        const std::size_t newBegin = hunks[first].newBegin - leading;
        diff += "@@ -" + range(oldBegin, oldEnd + trailing - oldBegin) + " +" +
                range(newBegin, newEnd + trailing - newBegin) + " @@\n";
        std::size_t line = oldBegin;
        for (; first < end; ++first) {
            const ChangedLines& lines = hunks[first];
            appendLines(diff, ' ', before, line, lines.oldBegin - line);
            appendLines(diff, '-', before, lines.oldBegin, lines.oldCount);
            appendLines(diff, '+', after, lines.newBegin, lines.newCount);
            line = lines.oldBegin + lines.oldCount;
        }
        appendLines(diff, ' ', before, line, trailing);
    }
    return diff;
}

} // namespace QvVisa
