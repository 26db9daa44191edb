// SPDX-License-Identifier: MIT
#pragma once

#include <bitset>
#include <optional>
#include <string_view>
#include <vector>

namespace simulator {

/// A resource expression of the published language, compiled: ? one character, [list] and [^list]
/// one of (or none of) the listed characters and ranges, * and + repetition of what stands before,
/// | either side, ( ) grouping, \ takes the special meaning from the next character. Upper and
/// lower case ASCII letters are alike; a character is one byte.
///
/// A compiled expression is immutable and may be used from several threads; ResourceMatcher holds
/// texts against it.
class ResourceExpression
{
public:
    /// Groups may nest this deep; a deeper expression counts as malformed.
    static constexpr int maximumDepth = 200;

    /// The compiled expression, nothing where the text is malformed: empty, an empty alternative,
    /// group or list, a repetition of nothing, a list or group without end, a stray ), a range
    /// that runs backwards, a \ at the end.
    static std::optional<ResourceExpression> compile(std::string_view text);

private:
    friend class ResourceExpressionCompiler;
    friend class ResourceMatcher;

    using CharacterSet = std::bitset<256>;

    /// A state that consumes a character has a set; one without moves on by itself.
    struct State
    {
        int set = -1;
        int next = -1;
        int alternative = -1;
    };

    ResourceExpression() = default;

    std::vector<State> m_states;
    std::vector<CharacterSet> m_sets;
    int m_start = -1;
    int m_end = -1;
};

} // namespace simulator
