// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/AttributeCondition.h"
#include "simulator/Bench.h"
#include "simulator/ResourceExpression.h"

#include <optional>
#include <string_view>
#include <vector>

namespace simulator {

/// What a client searches for: a resource expression, and behind it, in braces, an optional
/// condition on the resources' attributes. The interface standard lets a library open each
/// resource to ask for them; the condition is held against the values that a session opened here
/// would have at first.
class SearchExpression
{
public:
    /// Nothing where either half is malformed.
    static std::optional<SearchExpression> compile(std::string_view text);

    /// All resources of the bench that match, in its order; every duplicate counts.
    std::vector<Bench::Hit> search(const Bench& bench) const;

private:
    SearchExpression(ResourceExpression resource, std::optional<AttributeCondition> condition);

    ResourceExpression m_resource;
    std::optional<AttributeCondition> m_condition;
};

} // namespace simulator
