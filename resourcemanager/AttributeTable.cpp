// SPDX-License-Identifier: MIT
#include "resourcemanager/AttributeTable.h"

#include "resourcemanager/ClientBuffer.h"
#include "resourcemanager/VisaCalls.h"

#include <cstring>
#include <utility>

namespace resourcemanager {

namespace {

template <typename T>
void store(void* target, std::uint64_t number)
{
    const T value = static_cast<T>(number);
    std::memcpy(target, &value, sizeof value);
}

} // namespace

void AttributeTable::addReadOnly(ViAttr attribute, Width width, std::uint64_t value)
{
    insert(attribute, {width, std::nullopt, value});
}

void AttributeTable::add(ViAttr attribute, Width width, std::uint64_t value)
{
    add(attribute, width, value, {0, UINT64_MAX >> (64 - 8 * static_cast<unsigned>(width))});
}

void AttributeTable::add(ViAttr attribute, Width width, std::uint64_t value, Range range)
{
    insert(attribute, {width, range, value});
}

void AttributeTable::addText(ViAttr attribute, std::string value)
{
    insert(attribute, {Width::Byte, std::nullopt, std::move(value)});
}

ViStatus AttributeTable::set(ViAttr attribute, ViAttrState value)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto entry = m_entries.find(attribute);
    if (entry == m_entries.end()) {
        return VI_ERROR_NSUP_ATTR;
    }
    const std::optional<Range>& range = entry->second.range;
    if (!range) {
        return VI_ERROR_ATTR_READONLY;
    }
    const auto number = static_cast<std::uint64_t>(value);
    if (number < range->least || number > range->most ||
        (number - range->least) % range->step != 0) {
        return VI_ERROR_NSUP_ATTR_STATE;
    }
    entry->second.value = number;
    entry->second.isSet = true;
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

std::optional<std::uint64_t> AttributeTable::numberSet(ViAttr attribute) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto entry = m_entries.find(attribute);
    return entry != m_entries.end() && entry->second.isSet
               ? std::optional(std::get<std::uint64_t>(entry->second.value))
               : std::nullopt;
}

void AttributeTable::insert(ViAttr attribute, Entry entry)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_entries[attribute] = std::move(entry);
}

} // namespace resourcemanager
