// SPDX-License-Identifier: MIT
#include "simulator/ResourceLookup.h"

namespace simulator {

std::optional<visa::ResourceName> lookUp(const Bench& bench, std::string_view resource)
{
    std::optional<visa::ResourceName> name = visa::parseResourceName(resource);
    const BenchResource* const known = bench.find(resource);
    if (known != nullptr && known->interface) {
        if (!name) {
            name.emplace();
            name->resourceClass = "INSTR";
            name->fullName = resource;
        }
        name->interfaceType = known->interface->type;
        name->interfaceNumber = known->interface->number;
    }
    return name;
}

} // namespace simulator
