// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json_fwd.hpp>

namespace QvVisa {

/// What --json prints. Keys keep the order in which they were added.
using Json = nlohmann::ordered_json;

} // namespace QvVisa
