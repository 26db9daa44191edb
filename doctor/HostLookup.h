// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>
#include <set>
#include <string>

namespace QvVisa {

/// What the system's resolver knows of a host.
struct HostLookup
{
    std::set<std::string> addresses; ///< IPv4 and IPv6 as numbers; empty when there is none.
    std::string error;               ///< Why there is none, as the resolver says.
};

/// Looks the names up, several at once, and returns at the deadline at the latest; a name without
/// an answer by then has an error. Literal addresses (without brackets) give themselves in their
/// normal form, without asking. Lookups that hang go on in threads of their own, which end with the
/// process.
std::map<std::string, HostLookup> lookUpHosts(const std::set<std::string>& names,
                                              std::chrono::steady_clock::time_point deadline);

} // namespace QvVisa
