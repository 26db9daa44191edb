// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/Bench.h"
#include "simulator/ResourceName.h"

#include <optional>
#include <string_view>

namespace simulator {

/// What is known of a resource string: what the bench says of the resource's interface goes
/// before what the string says of itself. Nothing where neither says anything.
std::optional<ResourceName> lookUp(const Bench& bench, std::string_view resource);

} // namespace simulator
