// SPDX-License-Identifier: MIT
#include "document/LineMatches.h"

#include <algorithm>

namespace QvVisa {

namespace {

using Lines = std::vector<std::string_view>;

/// With more lines inserted and removed than this, the search is given up: it takes memory of the
/// square of their number.
constexpr std::ptrdiff_t s_mostChanges = 1500;

/// Myers' greedy algorithm on the lines between a common beginning and a common end.
class MiddleMatcher
{
public:
    MiddleMatcher(const Lines& lines, const Lines& others, std::size_t begin, std::size_t lineEnd,
                  std::size_t otherEnd)
        : m_lines(lines),
          m_others(others),
          m_begin(begin),
          m_lineCount(static_cast<std::ptrdiff_t>(lineEnd - begin)),
          m_otherCount(static_cast<std::ptrdiff_t>(otherEnd - begin))
    {}

    void match(std::vector<std::size_t>& matches)
    {
        if (m_lineCount == 0 || m_otherCount == 0) {
            return;
        }
        for (std::ptrdiff_t changes = 0; changes <= s_mostChanges; ++changes) {
            if (extend(changes)) {
                trace(changes, matches);
                return;
            }
        }
    }

private:
    /// How far each diagonal gets with so many changes. Diagonal k is at index k + changes.
    using Reach = std::vector<std::ptrdiff_t>;

    bool isEqual(std::ptrdiff_t line, std::ptrdiff_t other) const
    {
        return m_lines[m_begin + static_cast<std::size_t>(line)] ==
               m_others[m_begin + static_cast<std::size_t>(other)];
    }

    /// The line to which the diagonal gets by one more change, before any equal lines.
    std::ptrdiff_t startOf(std::ptrdiff_t diagonal, std::ptrdiff_t changes) const
    {
        if (changes == 0) {
            return 0;
        }
        const Reach& reach = m_reaches[static_cast<std::size_t>(changes - 1)];
        const auto at = [&reach, changes](std::ptrdiff_t k) {
            return reach[static_cast<std::size_t>(k + changes - 1)];
        };
        if (diagonal == -changes) {
            return at(diagonal + 1);
        }
        if (diagonal == changes) {
            return at(diagonal - 1) + 1;
        }
        return std::max(at(diagonal - 1) + 1, at(diagonal + 1));
    }

    /// True when a diagonal reaches the end of both texts.
    bool extend(std::ptrdiff_t changes)
    {
        Reach reach(static_cast<std::size_t>(2 * changes + 1));
        bool isAtEnd = false;
        for (std::ptrdiff_t diagonal = -changes; diagonal <= changes; diagonal += 2) {
            std::ptrdiff_t line = startOf(diagonal, changes);
            std::ptrdiff_t other = line - diagonal;
            while (line < m_lineCount && other < m_otherCount && other >= 0 &&
                   isEqual(line, other)) {
                ++line;
                ++other;
            }
            reach[static_cast<std::size_t>(diagonal + changes)] = line;
            isAtEnd = isAtEnd || (line == m_lineCount && other == m_otherCount);
        }
        m_reaches.push_back(std::move(reach));
        return isAtEnd;
    }

    void trace(std::ptrdiff_t changes, std::vector<std::size_t>& matches) const
    {
        std::ptrdiff_t line = m_lineCount;
        std::ptrdiff_t other = m_otherCount;
        for (; changes >= 0; --changes) {
            const std::ptrdiff_t diagonal = line - other;
            const std::ptrdiff_t start = startOf(diagonal, changes);
            while (line > start) {
                --line;
                --other;
                matches[m_begin + static_cast<std::size_t>(line)] =
                    m_begin + static_cast<std::size_t>(other);
            }
            if (changes > 0) {
                const Reach& reach = m_reaches[static_cast<std::size_t>(changes - 1)];
                const bool isRemoval =
                    diagonal == changes ||
                    (diagonal != -changes &&
                     reach[static_cast<std::size_t>(diagonal - 1 + changes - 1)] + 1 >=
                         reach[static_cast<std::size_t>(diagonal + 1 + changes - 1)]);
                line -= isRemoval ? 1 : 0;
                other -= isRemoval ? 0 : 1;
            }
        }
    }

    const Lines& m_lines;
    const Lines& m_others;
    std::size_t m_begin;
    std::ptrdiff_t m_lineCount;
    std::ptrdiff_t m_otherCount;
    std::vector<Reach> m_reaches;
};

} // namespace

std::vector<std::size_t> matchLines(const Lines& lines, const Lines& others)
{
    std::vector<std::size_t> matches(lines.size(), noMatch);
    const std::size_t shorter = std::min(lines.size(), others.size());
    std::size_t begin = 0;
    while (begin < shorter && lines[begin] == others[begin]) {
        matches[begin] = begin;
        ++begin;
    }
    std::size_t lineEnd = lines.size();
    std::size_t otherEnd = others.size();
    while (lineEnd > begin && otherEnd > begin && lines[lineEnd - 1] == others[otherEnd - 1]) {
        --lineEnd;
        --otherEnd;
        matches[lineEnd] = otherEnd;
    }
    MiddleMatcher(lines, others, begin, lineEnd, otherEnd).match(matches);
    return matches;
}

} // namespace QvVisa
