// SPDX-License-Identifier: MIT
#include "document/Difference.h"

#include "config/ConfigurationValue.h"
#include "config/ModernConfigurationFile.h"
#include "document/Entries.h"
#include "document/PropertyKeys.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <unordered_map>

namespace QvVisa {

namespace {

std::optional<std::string> valueIn(const Meaning& meaning, const EntryKey& key)
{
    if (const auto device = deviceOf(key)) {
        return meaning.devices.count(*device) != 0 ? std::optional(meaning.value(key))
                                                   : std::nullopt;
    }
    if (key.kind == LineKind::Provider || meaning.values.count(key) != 0) {
        return meaning.value(key);
    }
    return std::nullopt;
}

/// Every key that either of them has, those of devices included.
std::set<EntryKey> keysOf(const Meaning& left, const Meaning& right)
{
    std::set<EntryKey> keys;
    for (const Meaning* meaning : {&left, &right}) {
        for (const auto& [key, value] : meaning->values) {
            keys.insert(key);
        }
        for (const Device& device : meaning->devices) {
            if (device.isGpib) {
                for (const LineKind kind : s_gpibKeys) {
                    keys.insert({kind, device.number});
                }
            } else {
                for (const LineKind kind : s_serialKeys) {
                    keys.insert({kind, device.number});
                }
            }
        }
    }
    return keys;
}

std::size_t countOf(const std::optional<std::string>& value)
{
    return toNumber(value.value_or("0")).value_or(0);
}

void appendLine(std::string& text, char sign, const std::string& line)
{
    text.append(1, sign).append(line).append(1, '\n');
}

/// The lines of a saved file, as the window writes it.
std::vector<std::string> savedLines(const Entries& entries)
{
    std::vector<std::string> lines;
    lines.push_back(ModernConfigurationFile::GetVersionString());
    lines.push_back(entryLine({LineKind::Provider}, std::to_string(entries.provider)));
    for (const auto& [port, properties] : entries.serial) {
        for (const auto& [kind, value] : propertyValues(properties)) {
            lines.push_back(propertyLine(kind, port, value));
        }
    }
    for (const Entries::Resource& resource : entries.resources) {
        lines.emplace_back(resource.resource);
    }
    const std::size_t firstAlias = lines.size();
    for (const auto& [name, alias] : entries.aliases) {
        lines.push_back(name + '=' + std::string(alias.resource));
    }
    // The window's order is that of a hash table.
    std::sort(lines.begin() + static_cast<std::ptrdiff_t>(firstAlias), lines.end());
    return lines;
}

} // namespace

std::vector<Difference> differences(const Meaning& before, const Meaning& after)
{
    std::vector<Difference> result;
    for (const EntryKey& key : keysOf(before, after)) {
        Difference difference{key, valueIn(before, key), valueIn(after, key)};
        if (difference.before != difference.after) {
            result.push_back(std::move(difference));
        }
    }
    return result;
}

std::string differenceLines(const Difference& difference)
{
    std::string text;
    if (difference.key.kind == LineKind::Resource) {
        const std::size_t before = countOf(difference.before);
        const std::size_t after = countOf(difference.after);
        for (std::size_t i = after; i < before; ++i) {
            appendLine(text, '-', difference.key.name);
        }
        for (std::size_t i = before; i < after; ++i) {
            appendLine(text, '+', difference.key.name);
        }
        return text;
    }
    if (difference.before) {
        appendLine(text, '-', entryLine(difference.key, *difference.before));
    }
    if (difference.after) {
        appendLine(text, '+', entryLine(difference.key, *difference.after));
    }
    return text;
}

WindowSave::WindowSave(const Document& document)
{
    const std::vector<std::string> saved = savedLines(Entries(document));
    std::unordered_map<std::string_view, std::size_t> left;
    for (const std::string& line : saved) {
        ++left[line];
    }
    for (std::size_t index = 0; index < document.size(); ++index) {
        const auto found = left.find(document.lineText(index));
        if (found == left.end() || found->second == 0) {
            lost.push_back(index);
        } else {
            --found->second;
        }
    }
    for (const std::string& line : saved) {
        std::size_t& count = left[line];
        if (count > 0) {
            --count;
            added.push_back(line);
        }
    }
}

} // namespace QvVisa
