// SPDX-License-Identifier: MIT
#pragma once

#include "command/ExitCode.h"

#include <chrono>
#include <optional>

namespace visa {
struct ProbeReport;
} // namespace visa

namespace QvVisa {

/// Why a search by the VISA library has no complete result, naming the call; nothing when it has
/// one, which may be empty. The code is ExitCode::LibraryFailed, or ExitCode::WrongUsage for an
/// expression that the library refuses.
std::optional<CommandError> failureOf(const visa::ProbeReport& report,
                                      std::chrono::milliseconds timeout);

} // namespace QvVisa
