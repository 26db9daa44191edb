// SPDX-License-Identifier: MIT
#include "simulator/ResourceMatcher.h"

#include <algorithm>
#include <utility>

namespace simulator {

ResourceMatcher::ResourceMatcher(const ResourceExpression& expression) : m_expression(expression)
{
    StateSet states;
    std::vector<bool> isReached(expression.m_states.size());
    reach(expression.m_start, states, isReached);
    m_start = placeOf(std::move(states));
}

bool ResourceMatcher::matches(std::string_view text)
{
    if (m_places.size() > maximumPlaces) {
        StateSet first = std::move(m_places[static_cast<std::size_t>(m_start)].states);
        m_places.clear();
        m_placeOfStates.clear();
        m_start = placeOf(std::move(first));
    }
    int place = m_start;
    for (const char c : text) {
        place = follow(place, static_cast<unsigned char>(c));
    }
    return m_places[static_cast<std::size_t>(place)].isEnd;
}

int ResourceMatcher::placeOf(StateSet states)
{
    std::sort(states.begin(), states.end());
    const auto [known, isNew] =
        m_placeOfStates.emplace(std::move(states), static_cast<int>(m_places.size()));
    if (isNew) {
        Place place;
        place.states = known->first;
        place.isEnd =
            std::binary_search(place.states.begin(), place.states.end(), m_expression.m_end);
        place.next.fill(-1);
        m_places.push_back(std::move(place));
    }
    return known->second;
}

int ResourceMatcher::follow(int place, unsigned char character)
{
    const Place& from = m_places[static_cast<std::size_t>(place)];
    if (from.next[character] >= 0) {
        return from.next[character];
    }
    StateSet states;
    std::vector<bool> isReached(m_expression.m_states.size());
    for (const int index : from.states) {
        const auto& state = m_expression.m_states[static_cast<std::size_t>(index)];
        if (state.set >= 0 && m_expression.m_sets[static_cast<std::size_t>(state.set)][character]) {
            reach(state.next, states, isReached);
        }
    }
    const int next = placeOf(std::move(states));
    m_places[static_cast<std::size_t>(place)].next[character] = next;
    return next;
}

/// Adds a state and all that it leads to without a character. The list doubles as the queue, since
/// depth must not depend on the expression.
void ResourceMatcher::reach(int state, StateSet& states, std::vector<bool>& isReached) const
{
    const auto add = [&](int index) {
        if (index >= 0 && !isReached[static_cast<std::size_t>(index)]) {
            isReached[static_cast<std::size_t>(index)] = true;
            states.push_back(index);
        }
    };
    std::size_t next = states.size();
    add(state);
    for (; next < states.size(); ++next) {
        const auto& reached = m_expression.m_states[static_cast<std::size_t>(states[next])];
        if (reached.set < 0) {
            add(reached.next);
            add(reached.alternative);
        }
    }
}

} // namespace simulator
