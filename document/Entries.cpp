// SPDX-License-Identifier: MIT
#include "document/Entries.h"

#include "config/ConfigurationValue.h"
#include "config/UpperCase.h"

namespace QvVisa {

Entries::Entries(const Document& document)
{
    if (!document.hasHeader()) {
        return;
    }
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

} // namespace QvVisa
