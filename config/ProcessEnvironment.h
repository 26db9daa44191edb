// SPDX-License-Identifier: MIT
#pragma once

#include "config/SearchPlaces.h"

#include <optional>
#include <string>
#include <vector>

namespace QvVisa {

/// The environment and working folder of another process, through /proc. None when there is no such
/// process, it may not be looked at, or the system has no /proc. The text is the process's number.
std::optional<SearchEnvironment> searchEnvironmentOf(const std::string& pid);

/// The numbers of the processes that edit the file in a window: those of the window's program whose
/// search finds this file. Processes that may not be looked at are not among them.
std::vector<std::string> windowsEditing(const std::string& path);

} // namespace QvVisa
