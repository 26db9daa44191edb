// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <functional>
#include <vector>

namespace support {

/// The user and group that replace root.
constexpr uid_t ordinaryUser = 65534;
constexpr gid_t ordinaryGroup = 65534;

/// Runs the action in a child process and returns its result. If this process is root, the child
/// runs as the ordinary user, in the ordinary group and these groups. Throws when the child exits
/// in another way. The action must not throw or use GoogleTest.
bool asOrdinaryUser(const std::function<bool()>& action, const std::vector<gid_t>& groups = {});

/// The same as the user of this process.
bool inChildProcess(const std::function<bool()>& action);

} // namespace support
