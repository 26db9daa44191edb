// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/Bench.h"

#include <cstdint>
#include <string_view>

namespace simulator {

/// Comes back when the bench lets the nth call (from 1) come back: a search has taken its time,
/// and the file that the call waits for exists. Any thread.
void hold(const Bench& bench, Call call, std::uint32_t nth, std::string_view expression = {});

} // namespace simulator
