// SPDX-License-Identifier: MIT
#include "simulator/Bench.h"

#include "visa/ResourceName.h"

#include <utility>

namespace simulator {

namespace {

template <typename T>
const T* lastFor(const std::vector<Bench::SearchSetting<T>>& settings, std::string_view expression)
{
    for (auto setting = settings.rbegin(); setting != settings.rend(); ++setting) {
        if (setting->expression.empty() || setting->expression == expression) {
            return &setting->value;
        }
    }
    return nullptr;
}

/// The last setting that is for this call; null for none.
template <typename T>
const T* lastFor(const std::vector<T>& settings, Call call, std::uint32_t nth,
                 std::string_view expression)
{
    for (auto setting = settings.rbegin(); setting != settings.rend(); ++setting) {
        if (setting->call == call && (setting->at == 0 || setting->at == nth) &&
            (setting->expression.empty() || setting->expression == expression)) {
            return &*setting;
        }
    }
    return nullptr;
}

} // namespace

void Bench::addResource(BenchResource resource)
{
    if (resource.repeat == 0) {
        m_byName.emplace(visa::resourceKey(resource.description), m_resources.size());
    } else {
        m_repeated.push_back(m_resources.size());
    }
    m_resources.push_back(std::move(resource));
}

void Bench::addScanTime(SearchSetting<std::chrono::milliseconds> time)
{
    m_scanTimes.push_back(std::move(time));
}

std::string Bench::description(const Hit& hit) const
{
    return m_resources[hit.resource].numbered(hit.number);
}

std::string Bench::delivered(const Hit& hit) const
{
    std::string text = description(hit);
    if (m_resources[hit.resource].hasEnd) {
        text.push_back('\0');
    } else {
        text.resize(VI_FIND_BUFLEN, 'x');
    }
    return text;
}

const BenchResource* Bench::find(std::string_view name) const
{
    std::size_t first = m_resources.size();
    if (const auto known = m_byName.find(visa::resourceKey(name)); known != m_byName.end()) {
        first = known->second;
    }
    for (const std::size_t repeated : m_repeated) {
        if (repeated < first && m_resources[repeated].isNamed(name)) {
            first = repeated;
        }
    }
    return first < m_resources.size() ? &m_resources[first] : nullptr;
}

std::optional<ViStatus> Bench::status(Call call, std::uint32_t nth,
                                      std::string_view expression) const
{
    const CallStatus* const rule = lastFor(m_statuses, call, nth, expression);
    return rule != nullptr ? std::optional(rule->status) : std::nullopt;
}

std::optional<ViUInt32> Bench::count(std::string_view expression) const
{
    const ViUInt32* const value = lastFor(m_counts, expression);
    return value != nullptr ? std::optional(*value) : std::nullopt;
}

std::chrono::milliseconds Bench::scanTime(std::string_view expression) const
{
    const std::chrono::milliseconds* const value = lastFor(m_scanTimes, expression);
    return value != nullptr ? *value : std::chrono::milliseconds(0);
}

std::string Bench::waitForFile(Call call, std::uint32_t nth, std::string_view expression) const
{
    const FileWait* const wait = lastFor(m_waits, call, nth, expression);
    return wait != nullptr ? wait->path : std::string();
}

} // namespace simulator
