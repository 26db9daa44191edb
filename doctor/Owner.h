// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <string>

namespace QvVisa {

/// The name, or the number of a user or group without a name.
std::string userName(uid_t user);
std::string groupName(gid_t group);

/// "0644".
std::string rightsText(mode_t mode);

/// Whether the system's list of groups has the user in the group: a process may lack that group
/// until the next login.
bool isListedMember(const std::string& user, const std::string& group);

} // namespace QvVisa
