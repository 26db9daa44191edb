// SPDX-License-Identifier: MIT
#include "simulator/AttributeTable.h"

#include "simulator/ClientBuffer.h"
#include "simulator/VisaClientApi.h"

#include <cstring>
#include <utility>

namespace simulator {

namespace {

template <typename T>
void store(void* target, std::uint64_t number)
{
    const T value = static_cast<T>(number);
    std::memcpy(target, &value, sizeof value);
}

} // namespace

void AttributeTable::addNumber(ViAttr attribute, Width width, Access access, std::uint64_t value)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_entries[attribute] = {width, access, value};
}

void AttributeTable::addText(ViAttr attribute, std::string value)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_entries[attribute] = {Width::Byte, Access::ReadOnly, std::move(value)};
}

ViStatus AttributeTable::set(ViAttr attribute, ViAttrState value)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto entry = m_entries.find(attribute);
    if (entry == m_entries.end()) {
        return VI_ERROR_NSUP_ATTR;
    }
    if (entry->second.access == Access::ReadOnly) {
        return VI_ERROR_ATTR_READONLY;
    }
    const unsigned bits = 8 * static_cast<unsigned>(entry->second.width);
    if (bits < 64 && (static_cast<std::uint64_t>(value) >> bits) != 0) {
        return VI_ERROR_NSUP_ATTR_STATE;
    }
    entry->second.value = static_cast<std::uint64_t>(value);
    return VI_SUCCESS;
}

ViStatus AttributeTable::get(ViAttr attribute, void* value) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto entry = m_entries.find(attribute);
    if (entry == m_entries.end()) {
        return VI_ERROR_NSUP_ATTR;
    }
    if (const auto* const text = std::get_if<std::string>(&entry->second.value)) {
        copyText(*text, static_cast<ViChar*>(value));
        return VI_SUCCESS;
    }
    const std::uint64_t number = std::get<std::uint64_t>(entry->second.value);
    switch (entry->second.width) {
    case Width::Byte:
        store<std::uint8_t>(value, number);
        break;
    case Width::Short:
        store<std::uint16_t>(value, number);
        break;
    case Width::Long:
        store<std::uint32_t>(value, number);
        break;
    case Width::Wide:
        store<std::uint64_t>(value, number);
        break;
    }
    return VI_SUCCESS;
}

std::optional<AttributeTable::Value> AttributeTable::value(ViAttr attribute) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto entry = m_entries.find(attribute);
    return entry != m_entries.end() ? std::optional(entry->second.value) : std::nullopt;
}

} // namespace simulator
