// SPDX-License-Identifier: MIT
#include "simulator/Bench.h"

#include "visa/Text.h"

#include <algorithm>

namespace simulator {

namespace {

/// The value of the last rule that applies to this call; null for none.
template <typename T>
const T* lastFor(const std::vector<Bench::Rule<T>>& rules, Call call, std::uint32_t nth,
                 std::string_view expression)
{
    const auto applies = [&](const Bench::Rule<T>& rule) {
        return rule.call == call && (rule.at == 0 || rule.at == nth) &&
               (rule.expression.empty() || rule.expression == expression);
    };
    const auto found = std::find_if(rules.rbegin(), rules.rend(), applies);
    return found != rules.rend() ? &found->value : nullptr;
}

/// Adds every number from 1 to most that the text contains, in decimal or as four hexadecimal
/// digits (the normal form of USB identifiers), as part of a longer number too.
void addNumbers(std::string_view text, std::uint32_t most, std::vector<std::uint32_t>& numbers)
{
    const auto add = [&](const std::string& digits) {
        if (const auto number = visa::parseNumber(digits, most); number && *number != 0) {
            numbers.push_back(static_cast<std::uint32_t>(*number));
        }
    };
    const std::size_t longest = std::to_string(most).size();
    for (std::size_t begin = 0; begin < text.size(); ++begin) {
        const std::size_t digits =
            std::min(text.find_first_not_of("0123456789", begin), text.size()) - begin;
        for (std::size_t length = 1; length <= std::min(digits, longest); ++length) {
            add(std::string(text.substr(begin, length)));
        }
        add("0x" + std::string(text.substr(begin, 4)));
    }
}

} // namespace

std::string BenchResource::numbered(std::uint32_t number) const
{
    constexpr std::string_view placeholder = "{n}";
    std::string text = description;
    if (repeat == 0) {
        return text;
    }
    const std::string digits = std::to_string(number);
    for (std::size_t at = text.find(placeholder); at != std::string::npos;
         at = text.find(placeholder, at + digits.size())) {
        text.replace(at, placeholder.size(), digits);
    }
    return text;
}

bool BenchResource::isNamed(std::string_view text) const
{
    const std::string key = visa::resourceKey(text);
    if (visa::resourceKey(numbered(1)) == key) {
        return true;
    }
    // The running number is in the text, or in its normal form; finding it there spares trying all
    // of them.
    std::vector<std::uint32_t> candidates;
    addNumbers(text, size(), candidates);
    addNumbers(key, size(), candidates);
    std::sort(candidates.begin(), candidates.end());
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    return std::any_of(candidates.begin(), candidates.end(), [&](std::uint32_t number) {
        return visa::resourceKey(numbered(number)) == key;
    });
}

void Bench::addResource(BenchResource resource)
{
    if (resource.repeat == 0) {
        m_byKey.emplace(visa::resourceKey(resource.description), m_resources.size());
    } else {
        m_repeated.push_back(m_resources.size());
    }
    m_resources.push_back(std::move(resource));
}

const BenchResource* Bench::find(std::string_view text) const
{
    std::size_t first = m_resources.size();
    if (const auto known = m_byKey.find(visa::resourceKey(text)); known != m_byKey.end()) {
        first = known->second;
    }
    for (const std::size_t repeated : m_repeated) {
        if (repeated < first && m_resources[repeated].isNamed(text)) {
            first = repeated;
        }
    }
    return first < m_resources.size() ? &m_resources[first] : nullptr;
}

std::optional<visa::ResourceName> Bench::parse(std::string_view text) const
{
    std::optional<visa::ResourceName> name = visa::parseResourceName(text);
    const BenchResource* const known = find(text);
    if (known != nullptr && known->interface) {
        if (!name) {
            name.emplace();
            name->resourceClass = "INSTR";
            name->fullName = text;
        }
        name->interfaceType = known->interface->type;
        name->interfaceNumber = known->interface->number;
    }
    return name;
}

std::optional<ViStatus> Bench::status(Call call, std::uint32_t nth,
                                      std::string_view expression) const
{
    const ViStatus* const value = lastFor(m_statuses, call, nth, expression);
    return value != nullptr ? std::optional(*value) : std::nullopt;
}

std::optional<ViUInt32> Bench::count(std::string_view expression) const
{
    const ViUInt32* const value = lastFor(m_counts, Call::FindRsrc, 0, expression);
    return value != nullptr ? std::optional(*value) : std::nullopt;
}

std::chrono::milliseconds Bench::scanTime(std::string_view expression) const
{
    const auto* const value = lastFor(m_scanTimes, Call::FindRsrc, 0, expression);
    return value != nullptr ? *value : std::chrono::milliseconds(0);
}

std::string Bench::waitForFile(Call call, std::uint32_t nth, std::string_view expression) const
{
    const std::string* const value = lastFor(m_waits, call, nth, expression);
    return value != nullptr ? *value : std::string();
}

} // namespace simulator
