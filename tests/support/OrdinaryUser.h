// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <functional>
#include <vector>

namespace support {

/// The user and group that take root's place.
constexpr uid_t ordinaryUser = 65534;
constexpr gid_t ordinaryGroup = 65534;

/// Runs the action in a child process and returns what it returned. When this process is root,
/// the child is not: it is the ordinary user, a member of the ordinary group and of these groups.
/// Throws when the child ended another way. The action must not throw nor use GoogleTest.
bool asOrdinaryUser(const std::function<bool()>& action, const std::vector<gid_t>& groups = {});

/// The same without a change of user.
bool inChildProcess(const std::function<bool()>& action);

} // namespace support
