// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/ResourceExpression.h"

#include <array>
#include <cstddef>
#include <map>
#include <string_view>
#include <vector>

namespace simulator {

/// Holds many texts against one expression. It remembers which states of the expression follow
/// which, so that in the long run a character costs one look-up; the first time, it costs no more
/// than the expression is long, whatever expression and text hold. For one thread; the expression
/// must outlive it.
class ResourceMatcher
{
public:
    explicit ResourceMatcher(const ResourceExpression& expression);

    /// True where the whole text matches.
    bool matches(std::string_view text);

private:
    /// The states that a text may have led to at once, in the order of their indices.
    using StateSet = std::vector<int>;

    struct Place
    {
        StateSet states;
        bool isEnd = false;
        /// The place behind each character, -1 where it is not known yet.
        std::array<int, 256> next;
    };

    /// More places than any sensible expression has; beyond, what is remembered is given up, since
    /// hostile ones have more than there is memory.
    static constexpr std::size_t maximumPlaces = 1000;

    int placeOf(StateSet states);
    int follow(int place, unsigned char character);
    void reach(int state, StateSet& states, std::vector<bool>& isReached) const;

    const ResourceExpression& m_expression;
    std::vector<Place> m_places;
    std::map<StateSet, int> m_placeOfStates;
    int m_start;
};

} // namespace simulator
