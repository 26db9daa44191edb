// SPDX-License-Identifier: MIT
#include "document/Entries.h"

#include "config/ConfigurationValue.h"
#include "config/EntryFilter.h"
#include "config/UpperCase.h"

#include <algorithm>

namespace QvVisa {

Entries::Entries(const Document& document)
{
    if (!document.hasHeader()) {
        return;
    }
    // Growing step by step would hash every name several times.
    aliases.reserve(document.size());
    for (std::size_t index = 0; index < document.size(); ++index) {
        const ConfigurationLine line = document.line(index).match;
        if (line.kind == LineKind::Resource) {
            resources.push_back({line.first, index});
        } else if (line.kind == LineKind::Alias) {
            aliases[toUpperCase(line.first)] = {line.second, index};
        } else if (const auto number = toProvider(line)) {
            provider = *number;
            providerLine = index;
        } else if (const auto property = toPropertyValue(line)) {
            if (isGpibProperty(property->kind)) {
                setProperty(gpib[property->device], *property);
            } else {
                setProperty(serial[property->device], *property);
            }
        }
    }
}

std::optional<Entries::Alias> findAlias(const Document& document, std::string_view name)
{
    EntryFilter filter;
    filter.addText(name);
    // The last line of a name decides.
    for (std::size_t index = document.size(); index-- > 0;) {
        if (filter.passes(document.lineText(index))) {
            const ConfigurationLine line = document.line(index).match;
            if (line.kind == LineKind::Alias && equalsIgnoringCase(line.first, name)) {
                return Entries::Alias{line.second, index};
            }
        }
    }
    return std::nullopt;
}

bool haveSameMeaning(const Entries& left, const Entries& right)
{
    return left.aliases.size() == right.aliases.size() && left.gpib == right.gpib &&
           left.serial == right.serial && left.provider == right.provider &&
           std::equal(left.resources.begin(), left.resources.end(), right.resources.begin(),
                      right.resources.end(),
                      [](const auto& a, const auto& b) { return a.resource == b.resource; }) &&
           std::all_of(left.aliases.begin(), left.aliases.end(), [&right](const auto& alias) {
               const auto found = right.aliases.find(alias.first);
               return found != right.aliases.end() &&
                      found->second.resource == alias.second.resource;
           });
}

} // namespace QvVisa
