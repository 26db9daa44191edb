// SPDX-License-Identifier: MIT
#include "resourcemanager/SearchExpression.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace resourcemanager {

/// Builds the states by recursive descent; each piece has one entry and one exit state.
class SearchExpressionCompiler
{
public:
    explicit SearchExpressionCompiler(std::string_view text) : m_rest(text) {}

    std::optional<SearchExpression> run()
    {
        const std::optional<Piece> whole = alternatives(0);
        if (!whole || !m_rest.empty()) {
            return std::nullopt;
        }
        m_expression.m_start = whole->entry;
        m_expression.m_end = whole->exit;
        return std::move(m_expression);
    }

private:
    using CharacterSet = SearchExpression::CharacterSet;

    struct Piece
    {
        int entry;
        int exit;
    };

    bool at(char c) const { return !m_rest.empty() && m_rest.front() == c; }

    bool take(char c)
    {
        if (!at(c)) {
            return false;
        }
        m_rest.remove_prefix(1);
        return true;
    }

    int newState()
    {
        m_expression.m_states.emplace_back();
        return static_cast<int>(m_expression.m_states.size()) - 1;
    }

    SearchExpression::State& state(int index)
    {
        return m_expression.m_states[static_cast<std::size_t>(index)];
    }

    Piece consume(const CharacterSet& set)
    {
        m_expression.m_sets.push_back(set);
        const Piece piece{newState(), newState()};
        state(piece.entry).set = static_cast<int>(m_expression.m_sets.size()) - 1;
        state(piece.entry).next = piece.exit;
        return piece;
    }

    std::optional<Piece> alternatives(int depth)
    {
        std::optional<Piece> whole = sequence(depth);
        while (whole && take('|')) {
            const std::optional<Piece> other = sequence(depth);
            if (!other) {
                return std::nullopt;
            }
            const Piece either{newState(), newState()};
            state(either.entry).next = whole->entry;
            state(either.entry).alternative = other->entry;
            state(whole->exit).next = either.exit;
            state(other->exit).next = either.exit;
            whole = either;
        }
        return whole;
    }

    std::optional<Piece> sequence(int depth)
    {
        std::optional<Piece> whole = repeated(depth);
        while (whole && !m_rest.empty() && !at('|') && !at(')')) {
            const std::optional<Piece> next = repeated(depth);
            if (!next) {
                return std::nullopt;
            }
            state(whole->exit).next = next->entry;
            whole->exit = next->exit;
        }
        return whole;
    }

    std::optional<Piece> repeated(int depth)
    {
        std::optional<Piece> piece = atom(depth);
        while (piece && (at('*') || at('+'))) {
            const bool mayBeAbsent = m_rest.front() == '*';
            m_rest.remove_prefix(1);
            const Piece loop{newState(), newState()};
            state(loop.entry).next = piece->entry;
            state(loop.entry).alternative = mayBeAbsent ? loop.exit : -1;
            state(piece->exit).next = piece->entry;
            state(piece->exit).alternative = loop.exit;
            piece = loop;
        }
        return piece;
    }

    std::optional<Piece> atom(int depth)
    {
        if (m_rest.empty() || at('*') || at('+') || at('|') || at(')')) {
            return std::nullopt;
        }
        if (take('(')) {
            if (depth == SearchExpression::maximumDepth) {
                return std::nullopt;
            }
            const std::optional<Piece> group = alternatives(depth + 1);
            return group && take(')') ? group : std::nullopt;
        }
        if (take('[')) {
            return list();
        }
        if (at('{') || at('}')) {
            return std::nullopt;
        }
        if (take('?')) {
            return consume(CharacterSet().set());
        }
        CharacterSet set;
        const std::optional<unsigned char> character = ordinary();
        if (!character) {
            return std::nullopt;
        }
        addRange(set, *character, *character);
        return consume(set);
    }

    /// The next character, without the \ that makes it ordinary.
    std::optional<unsigned char> ordinary()
    {
        take('\\');
        if (m_rest.empty()) {
            return std::nullopt;
        }
        const auto character = static_cast<unsigned char>(m_rest.front());
        m_rest.remove_prefix(1);
        return character;
    }

    std::optional<Piece> list()
    {
        const bool negated = take('^');
        CharacterSet set;
        while (!m_rest.empty() && !at(']')) {
            const std::optional<unsigned char> first = ordinary();
            std::optional<unsigned char> last = first;
            // A hyphen at the end of a list is an ordinary character.
            if (m_rest.size() >= 2 && m_rest[0] == '-' && m_rest[1] != ']') {
                m_rest.remove_prefix(1);
                last = ordinary();
            }
            if (!first || !last || *first > *last) {
                return std::nullopt;
            }
            addRange(set, *first, *last);
        }
        if (!take(']') || set.none()) {
            return std::nullopt;
        }
        return consume(negated ? ~set : set);
    }

    static void addRange(CharacterSet& set, unsigned char first, unsigned char last)
    {
        for (unsigned c = first; c <= last; ++c) {
            set.set(c);
            if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) {
                set.set(c ^ 0x20U);
            }
        }
    }

    std::string_view m_rest;
    SearchExpression m_expression;
};

/// The set of states that the text read so far can have led to.
class SearchExpression::Run
{
public:
    explicit Run(const SearchExpression& expression)
        : m_expression(expression),
          m_reachedAt(expression.m_states.size(), -1)
    {
        reach(expression.m_start);
    }

    bool isDead() const { return m_states.empty(); }

    bool isAtEnd() const
    {
        return std::find(m_states.begin(), m_states.end(), m_expression.m_end) != m_states.end();
    }

    void read(char character)
    {
        ++m_step;
        m_previous.swap(m_states);
        m_states.clear();
        for (const int index : m_previous) {
            const State& state = stateAt(index);
            if (state.set >= 0 && setOf(state)[static_cast<unsigned char>(character)]) {
                reach(state.next);
            }
        }
    }

    /// Whether any further text leads to the end. Only an empty set ([^...] of all characters)
    /// stops a run, so this follows each state once.
    bool canReachEnd()
    {
        std::size_t next = 0; // the list grows meanwhile
        while (next < m_states.size()) {
            const State& state = stateAt(m_states[next++]);
            if (state.set >= 0 && setOf(state).any()) {
                reach(state.next);
            }
        }
        return isAtEnd();
    }

private:
    const State& stateAt(int index) const
    {
        return m_expression.m_states[static_cast<std::size_t>(index)];
    }

    const CharacterSet& setOf(const State& state) const
    {
        return m_expression.m_sets[static_cast<std::size_t>(state.set)];
    }

    /// Adds a state and all that it leads to without a character. The list is its own queue: a
    /// recursion would be as deep as the expression is long.
    void reach(int first)
    {
        const auto add = [this](int index) {
            if (index >= 0 && m_reachedAt[static_cast<std::size_t>(index)] != m_step) {
                m_reachedAt[static_cast<std::size_t>(index)] = m_step;
                m_states.push_back(index);
            }
        };
        std::size_t next = m_states.size();
        add(first);
        for (; next < m_states.size(); ++next) {
            const State& state = stateAt(m_states[next]);
            if (state.set < 0) {
                add(state.next);
                add(state.alternative);
            }
        }
    }

    const SearchExpression& m_expression;
    std::vector<int> m_states;
    std::vector<int> m_previous;
    /// For each state the step in which it was reached last.
    std::vector<std::ptrdiff_t> m_reachedAt;
    std::ptrdiff_t m_step = 0;
};

std::optional<SearchExpression> SearchExpression::compile(std::string_view text)
{
    return SearchExpressionCompiler(text).run();
}

bool SearchExpression::matches(std::string_view text) const
{
    Run run(*this);
    for (const char character : text) {
        run.read(character);
        if (run.isDead()) {
            return false;
        }
    }
    return run.isAtEnd();
}

bool SearchExpression::canMatchPrefix(std::string_view prefix) const
{
    Run run(*this);
    for (const char character : prefix) {
        run.read(character);
    }
    return run.canReachEnd();
}

} // namespace resourcemanager
