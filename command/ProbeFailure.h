// SPDX-License-Identifier: MIT
#pragma once

#include "command/ExitCode.h"

#include <chrono>
#include <optional>
#include <string>

namespace visa {
struct ProbeReport;
} // namespace visa

namespace QvVisa {

/// What to call the library in use: the name by which the loader was asked for it, or the path of
/// its file where that was a path, which may have variables of the loader. Empty when none is in
/// use.
std::string libraryName(const visa::ProbeReport& report);

/// Why a search by the VISA library has no complete result, naming the call; nothing when it has
/// one, which may be empty. The code is ExitCode::LibraryFailed, or ExitCode::WrongUsage for an
/// expression that the library refuses.
std::optional<CommandError> failureOf(const visa::ProbeReport& report,
                                      std::chrono::milliseconds timeout);

} // namespace QvVisa
