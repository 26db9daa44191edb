// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/AttributeTable.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace simulator {

/// The attribute condition that may follow a resource expression in braces, here without them:
/// comparisons such as VI_ATTR_ASRL_BAUD == 9600 with == != < > <= >=, joined by && and ||,
/// reversed by !, grouped by ( ). && binds closer than ||. On the right stands a number, decimal or
/// 0x..., or a "text" for == and !=, upper and lower case alike.
///
/// A comparison with an attribute that a resource does not have is false, and so is one between a
/// number and a text. A compiled condition is immutable and may be used from several threads.
class AttributeCondition
{
public:
    /// Groups and ! may nest this deep; a deeper condition counts as malformed.
    static constexpr int maximumDepth = 200;

    /// The compiled condition, nothing where the text is malformed.
    static std::optional<AttributeCondition> compile(std::string_view text);

    /// Whether it holds for a resource with these attributes.
    bool holds(const AttributeTable& attributes) const;

private:
    friend class AttributeConditionCompiler;

    enum class Relation
    {
        Equal,
        NotEqual,
        Less,
        Greater,
        LessOrEqual,
        GreaterOrEqual,
    };
    struct Comparison
    {
        ViAttr attribute;
        Relation relation;
        AttributeTable::Value value;

        bool holds(const AttributeTable& attributes) const;
    };
    enum class Operation
    {
        Compare,
        Not,
        And,
        Or,
    };

    AttributeCondition() = default;

    /// In the order of evaluation; each Compare takes the next comparison.
    std::vector<Operation> m_operations;
    std::vector<Comparison> m_comparisons;
};

} // namespace simulator
