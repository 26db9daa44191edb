// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/Bench.h"
#include "visa/ResourceName.h"

#include <optional>
#include <string_view>

namespace simulator {

/// What is known of a resource string: what the bench says of the resource's interface goes
/// before what the string says of itself. Nothing where neither says anything.
std::optional<visa::ResourceName> lookUp(const Bench& bench, std::string_view resource);

} // namespace simulator
