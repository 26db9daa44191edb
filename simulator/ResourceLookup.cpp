// SPDX-License-Identifier: MIT
#include "simulator/ResourceLookup.h"

namespace simulator {

std::optional<ResourceName> lookUp(const Bench& bench, std::string_view resource)
{
    std::optional<ResourceName> name = ResourceName::parse(resource);
    const BenchResource* const known = bench.find(resource);
    if (known != nullptr && known->interface) {
        if (!name) {
            name = ResourceName{0, 0, "INSTR", std::string(resource)};
        }
        name->interfaceType = known->interface->type;
        name->interfaceNumber = known->interface->number;
    }
    return name;
}

} // namespace simulator
