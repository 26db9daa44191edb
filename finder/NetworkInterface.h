// SPDX-License-Identifier: MIT
#pragma once

#include "finder/Ipv4Address.h"

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace finder {

class SearchLog;

/// A network interface that a search can send from.
struct NetworkInterface
{
    std::string name;
    unsigned index = 0; ///< The kernel's number for it.
    bool isLoopback = false;
    std::vector<Subnet> subnets; ///< One at least.

    bool isOnLink(Ipv4Address address) const;
};

/// The most interfaces that one search asks.
constexpr std::size_t mostInterfaces = 32;

/// The interfaces that are up, have a carrier and an IPv4 address, in the kernel's order.
/// Point-to-point interfaces are left out, and the loopback interface unless wanted names it.
/// wanted: the names to keep; empty keeps all. What is left out for the user's choice or for its
/// number, and names of wanted that do not exist, go to the log.
std::vector<NetworkInterface> networkInterfaces(const std::set<std::string>& wanted,
                                                SearchLog& log);

} // namespace finder
