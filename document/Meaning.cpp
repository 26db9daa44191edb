// SPDX-License-Identifier: MIT
#include "document/Meaning.h"

#include "config/ConfigurationRecords.h"
#include "config/ConfigurationValue.h"
#include "config/UpperCase.h"
#include "document/Entries.h"
#include "document/PropertyKeys.h"

#include <tuple>

namespace QvVisa {

namespace {

std::string defaultText(LineKind kind)
{
    switch (kind) {
    case LineKind::Alias:
        return {};
    case LineKind::Resource:
        return "0";
    case LineKind::Provider:
        return std::to_string(defaultProvider);
    default:
        return std::to_string(defaultValue(kind));
    }
}

} // namespace

bool operator<(const EntryKey& left, const EntryKey& right)
{
    // All keys of one device are together.
    const auto leftDevice = deviceOf(left);
    const auto rightDevice = deviceOf(right);
    if (leftDevice && rightDevice && !(*leftDevice == *rightDevice)) {
        return *leftDevice < *rightDevice;
    }
    return std::tie(left.kind, left.device, left.name) <
           std::tie(right.kind, right.device, right.name);
}

bool operator==(const EntryKey& left, const EntryKey& right)
{
    return std::tie(left.kind, left.device, left.name) ==
           std::tie(right.kind, right.device, right.name);
}

bool operator<(const Device& left, const Device& right)
{
    // GPIB first, as the kinds are ordered.
    return std::make_pair(!left.isGpib, left.number) < std::make_pair(!right.isGpib, right.number);
}

bool operator==(const Device& left, const Device& right)
{
    return left.isGpib == right.isGpib && left.number == right.number;
}

std::optional<Device> deviceOf(const EntryKey& key)
{
    if (isGpibProperty(key.kind) || isSerialProperty(key.kind)) {
        return Device{isGpibProperty(key.kind), key.device};
    }
    return std::nullopt;
}

std::optional<EntryKey> keyOf(const ConfigurationLine& line)
{
    if (line.kind == LineKind::Alias) {
        return EntryKey{line.kind, 0, toUpperCase(line.first)};
    }
    if (line.kind == LineKind::Resource) {
        return EntryKey{line.kind, 0, std::string(line.first)};
    }
    if (toProvider(line)) {
        return EntryKey{line.kind};
    }
    if (const auto property = toPropertyValue(line)) {
        return EntryKey{property->kind, property->device};
    }
    return std::nullopt;
}

Meaning::Meaning(const Document& document)
{
    const Entries entries(document);
    for (const auto& [name, alias] : entries.aliases) {
        set({LineKind::Alias, 0, name}, std::string(alias.resource));
    }
    std::map<std::string_view, std::size_t> counts;
    for (const Entries::Resource& resource : entries.resources) {
        ++counts[resource.resource];
    }
    for (const auto& [resource, count] : counts) {
        set({LineKind::Resource, 0, std::string(resource)}, std::to_string(count));
    }
    set({LineKind::Provider}, std::to_string(entries.provider));
    for (const auto& [board, properties] : entries.gpib) {
        devices.insert({true, board});
        for (const auto& [kind, value] : propertyValues(properties)) {
            set({kind, board}, std::to_string(value));
        }
    }
    for (const auto& [port, properties] : entries.serial) {
        devices.insert({false, port});
        for (const auto& [kind, value] : propertyValues(properties)) {
            set({kind, port}, std::to_string(value));
        }
    }
}

std::string Meaning::value(const EntryKey& key) const
{
    const auto found = values.find(key);
    return found != values.end() ? found->second : defaultText(key.kind);
}

void Meaning::set(const EntryKey& key, const std::string& value)
{
    if (value == defaultText(key.kind)) {
        values.erase(key);
    } else {
        values[key] = value;
    }
}

bool operator==(const Meaning& left, const Meaning& right)
{
    return left.values == right.values && left.devices == right.devices;
}

std::string entryLine(const EntryKey& key, const std::string& value)
{
    switch (key.kind) {
    case LineKind::Alias:
        return key.name + '=' + value;
    case LineKind::Resource:
        return key.name;
    case LineKind::Provider:
        return ":Provider=" + value;
    default:
        return propertyLine(key.kind, key.device, toNumber(value).value_or(0));
    }
}

} // namespace QvVisa
