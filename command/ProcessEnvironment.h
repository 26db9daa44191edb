// SPDX-License-Identifier: MIT
#pragma once

#include "config/SearchPlaces.h"

#include <string>

namespace QvVisa {

/// The environment and working folder of another process, through /proc. Throws CommandError with
/// ExitCode::WrongUsage when there is no such process or it may not be looked at.
SearchEnvironment searchEnvironmentOf(const std::string& pid);

} // namespace QvVisa
