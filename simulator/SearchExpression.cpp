// SPDX-License-Identifier: MIT
#include "simulator/SearchExpression.h"

#include "simulator/InstrumentAttributes.h"
#include "simulator/ResourceLookup.h"
#include "simulator/ResourceMatcher.h"

#include <cstddef>
#include <string>
#include <utility>

namespace simulator {

namespace {

/// Where the brace stands that begins the condition; a brace behind a \ or in a list is a
/// character like any other.
std::size_t conditionStart(std::string_view text)
{
    bool isInList = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\') {
            ++i;
        } else if (text[i] == '{' && !isInList) {
            return i;
        } else {
            isInList = text[i] == '[' || (isInList && text[i] != ']');
        }
    }
    return std::string_view::npos;
}

bool holds(const AttributeCondition& condition, const Bench& bench, const Bench::Hit& hit)
{
    const std::optional<visa::ResourceName> name = lookUp(bench, bench.description(hit));
    AttributeTable attributes;
    if (name) {
        addInstrumentAttributes(attributes, *name);
    }
    return condition.holds(attributes);
}

} // namespace

SearchExpression::SearchExpression(ResourceExpression resource,
                                   std::optional<AttributeCondition> condition)
    : m_resource(std::move(resource)),
      m_condition(std::move(condition))
{}

std::optional<SearchExpression> SearchExpression::compile(std::string_view text)
{
    const std::size_t brace = conditionStart(text);
    std::optional<ResourceExpression> resource = ResourceExpression::compile(text.substr(0, brace));
    std::optional<AttributeCondition> condition;
    if (brace != std::string_view::npos) {
        std::string_view rest = text.substr(brace + 1);
        if (rest.empty() || rest.back() != '}') {
            return std::nullopt;
        }
        rest.remove_suffix(1);
        condition = AttributeCondition::compile(rest);
        if (!condition) {
            return std::nullopt;
        }
    }
    if (!resource) {
        return std::nullopt;
    }
    return SearchExpression(std::move(*resource), std::move(condition));
}

std::vector<Bench::Hit> SearchExpression::search(const Bench& bench) const
{
    std::vector<Bench::Hit> hits;
    ResourceMatcher matcher(m_resource);
    for (std::size_t i = 0; i < bench.resources().size(); ++i) {
        const BenchResource& resource = bench.resources()[i];
        for (std::uint32_t number = 1; number <= resource.size(); ++number) {
            const Bench::Hit hit{static_cast<std::uint32_t>(i), number};
            if (matcher.matches(resource.numbered(number)) &&
                (!m_condition || simulator::holds(*m_condition, bench, hit))) {
                hits.push_back(hit);
            }
        }
    }
    return hits;
}

} // namespace simulator
