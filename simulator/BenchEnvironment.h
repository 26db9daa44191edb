// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/Bench.h"

#include <string_view>

namespace simulator {

/// The bench of a machine where none is named: one resource of each interface kind and two serial
/// ports, in the text form of a bench file.
extern const std::string_view builtinBench;

/// The bench that the environment variable QVVISA_BENCH names at this moment, or the built-in one.
/// Messages about the file go to standard error, as FILE:LINE: MESSAGE.
Bench benchFromEnvironment();

} // namespace simulator
