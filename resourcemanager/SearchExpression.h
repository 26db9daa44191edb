// SPDX-License-Identifier: MIT
#pragma once

#include <bitset>
#include <optional>
#include <string_view>
#include <vector>

namespace resourcemanager {

/// A search expression of the published language: ? is any character, [list] and [^list] one of (or
/// none of) the listed characters and ranges, * and + repeat what precedes them (from zero times,
/// from once), | separates alternatives, ( ) groups, and \ makes the next character ordinary. Upper
/// and lower case ASCII letters are equal; a character is one byte. Conditions on attributes, in
/// braces, are not supported.
///
/// Immutable; any thread. The time of a match is bounded by the product of the two lengths.
class SearchExpression
{
public:
    /// Groups may nest this deep; a deeper expression counts as malformed.
    static constexpr int maximumDepth = 200;

    /// Nothing when the text is malformed: an empty text, alternative, group or list, a repetition
    /// of nothing, an unclosed list or group, a stray ), a range in descending order, a \ at the
    /// end, or a brace that is neither in a list nor after a \.
    static std::optional<SearchExpression> compile(std::string_view text);

    /// True when the whole text matches.
    bool matches(std::string_view text) const;

    /// True when some text that begins with the prefix matches. Upper and lower case are equal.
    bool canMatchPrefix(std::string_view prefix) const;

private:
    friend class SearchExpressionCompiler;
    class Run;

    using CharacterSet = std::bitset<256>;

    /// A state with a set consumes one character; one without moves on by itself. -1 is none.
    struct State
    {
        int set = -1;
        int next = -1;
        int alternative = -1;
    };

    SearchExpression() = default;

    std::vector<State> m_states;
    std::vector<CharacterSet> m_sets;
    int m_start = -1;
    int m_end = -1;
};

} // namespace resourcemanager
