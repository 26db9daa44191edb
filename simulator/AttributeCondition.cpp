// SPDX-License-Identifier: MIT
#include "simulator/AttributeCondition.h"

#include "simulator/VisaAttributes.h"
#include "visa/ResourceName.h"
#include "visa/Text.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

namespace simulator {

/// Reads a condition by recursive descent. Each rule answers whether it could be read.
class AttributeConditionCompiler
{
public:
    explicit AttributeConditionCompiler(std::string_view text) : m_rest(text) {}

    std::optional<AttributeCondition> run()
    {
        if (!either(0) || !skipBlanks().empty()) {
            return std::nullopt;
        }
        return std::move(m_condition);
    }

private:
    using Operation = AttributeCondition::Operation;
    using Relation = AttributeCondition::Relation;

    std::string_view skipBlanks()
    {
        m_rest.remove_prefix(std::min(m_rest.find_first_not_of(" \t"), m_rest.size()));
        return m_rest;
    }

    bool take(std::string_view token)
    {
        if (skipBlanks().substr(0, token.size()) != token) {
            return false;
        }
        m_rest.remove_prefix(token.size());
        return true;
    }

    std::string_view takeWord()
    {
        constexpr std::string_view letters =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_";
        const std::string_view word = skipBlanks().substr(0, m_rest.find_first_not_of(letters));
        m_rest.remove_prefix(word.size());
        return word;
    }

    bool either(int depth)
    {
        if (!both(depth)) {
            return false;
        }
        while (take("||")) {
            if (!both(depth)) {
                return false;
            }
            m_condition.m_operations.push_back(Operation::Or);
        }
        return true;
    }

    bool both(int depth)
    {
        if (!single(depth)) {
            return false;
        }
        while (take("&&")) {
            if (!single(depth)) {
                return false;
            }
            m_condition.m_operations.push_back(Operation::And);
        }
        return true;
    }

    bool single(int depth)
    {
        if (depth > AttributeCondition::maximumDepth) {
            return false;
        }
        if (take("!")) {
            const bool read = single(depth + 1);
            m_condition.m_operations.push_back(Operation::Not);
            return read;
        }
        if (take("(")) {
            return either(depth + 1) && take(")");
        }
        return comparison();
    }

    bool comparison()
    {
        const std::string_view name = takeWord();
        const std::optional<Relation> comparing = relation();
        const std::optional<AttributeTable::Value> compared = value();
        if (name.substr(0, 8) != "VI_ATTR_" || !comparing || !compared) {
            return false;
        }
        const bool isOrder = *comparing != Relation::Equal && *comparing != Relation::NotEqual;
        if (isOrder && std::holds_alternative<std::string>(*compared)) {
            return false;
        }
        m_condition.m_comparisons.push_back({attributeFromName(name), *comparing, *compared});
        m_condition.m_operations.push_back(Operation::Compare);
        return true;
    }

    std::optional<Relation> relation()
    {
        // What begins with another one stands before it.
        constexpr std::pair<std::string_view, Relation> relations[] = {
            {"==", Relation::Equal},       {"!=", Relation::NotEqual},
            {"<=", Relation::LessOrEqual}, {">=", Relation::GreaterOrEqual},
            {"<", Relation::Less},         {">", Relation::Greater},
        };
        for (const auto& [token, known] : relations) {
            if (take(token)) {
                return known;
            }
        }
        return std::nullopt;
    }

    std::optional<AttributeTable::Value> value()
    {
        if (!take("\"")) {
            const auto number = visa::parseNumber(takeWord(), UINT64_MAX);
            return number ? std::optional<AttributeTable::Value>(*number) : std::nullopt;
        }
        const std::size_t end = m_rest.find('"');
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        const std::string text(m_rest.substr(0, end));
        m_rest.remove_prefix(end + 1);
        return text;
    }

    std::string_view m_rest;
    AttributeCondition m_condition;
};

std::optional<AttributeCondition> AttributeCondition::compile(std::string_view text)
{
    return AttributeConditionCompiler(text).run();
}

bool AttributeCondition::Comparison::holds(const AttributeTable& attributes) const
{
    const std::optional<AttributeTable::Value> actual = attributes.value(attribute);
    if (!actual || actual->index() != value.index()) {
        return false;
    }
    if (const auto* const text = std::get_if<std::string>(&value)) {
        const bool isEqual =
            visa::toUpperCase(std::get<std::string>(*actual)) == visa::toUpperCase(*text);
        return isEqual == (relation == Relation::Equal);
    }
    const std::uint64_t left = std::get<std::uint64_t>(*actual);
    const std::uint64_t right = std::get<std::uint64_t>(value);
    switch (relation) {
    case Relation::Equal:
        return left == right;
    case Relation::NotEqual:
        return left != right;
    case Relation::Less:
        return left < right;
    case Relation::Greater:
        return left > right;
    case Relation::LessOrEqual:
        return left <= right;
    case Relation::GreaterOrEqual:
        return left >= right;
    }
    return false;
}

bool AttributeCondition::holds(const AttributeTable& attributes) const
{
    std::vector<bool> results;
    std::size_t next = 0;
    for (const Operation operation : m_operations) {
        if (operation == Operation::Compare) {
            results.push_back(m_comparisons[next++].holds(attributes));
            continue;
        }
        const bool last = results.back();
        if (operation == Operation::Not) {
            results.back() = !last;
            continue;
        }
        results.pop_back();
        const bool first = results.back();
        results.back() = operation == Operation::And ? first && last : first || last;
    }
    return results.back();
}

} // namespace simulator
