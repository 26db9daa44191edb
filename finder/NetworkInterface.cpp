// SPDX-License-Identifier: MIT
#include "finder/NetworkInterface.h"

#include "finder/SearchLog.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <algorithm>
#include <bitset>
#include <cerrno>
#include <cstring>
#include <memory>

namespace finder {

namespace {

Ipv4Address toAddress(const sockaddr* address)
{
    sockaddr_in internet = {};
    std::memcpy(&internet, address, sizeof internet);
    return {ntohl(internet.sin_addr.s_addr)};
}

Subnet toSubnet(const ifaddrs& entry)
{
    Subnet subnet;
    subnet.interfaceAddress = toAddress(entry.ifa_addr);
    if (entry.ifa_netmask != nullptr) {
        const std::bitset<32> mask(toAddress(entry.ifa_netmask).value);
        subnet.prefixLength = static_cast<int>(mask.count());
    }
    return subnet;
}

bool canSend(const ifaddrs& entry)
{
    return (entry.ifa_flags & IFF_UP) != 0 && (entry.ifa_flags & IFF_RUNNING) != 0 &&
           (entry.ifa_flags & IFF_POINTOPOINT) == 0;
}

bool isWanted(const NetworkInterface& interface, const std::set<std::string>& wanted)
{
    return wanted.empty() ? !interface.isLoopback : wanted.count(interface.name) != 0;
}

/// Every interface that can send, whether wanted or not.
std::vector<NetworkInterface> usableInterfaces(const ifaddrs* entries)
{
    std::vector<NetworkInterface> interfaces;
    for (const ifaddrs* entry = entries; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET ||
            !canSend(*entry)) {
            continue;
        }
        // A second address may carry a label such as "eth0:1".
        const std::string label = entry->ifa_name;
        const std::string name = label.substr(0, label.find(':'));
        auto known = std::find_if(interfaces.begin(), interfaces.end(),
                                  [&name](const auto& other) { return other.name == name; });
        if (known == interfaces.end()) {
            interfaces.push_back(
                {name, ::if_nametoindex(name.c_str()), (entry->ifa_flags & IFF_LOOPBACK) != 0, {}});
            known = interfaces.end() - 1;
        }
        known->subnets.push_back(toSubnet(*entry));
    }
    return interfaces;
}

} // namespace

bool NetworkInterface::isOnLink(Ipv4Address address) const
{
    return std::any_of(subnets.begin(), subnets.end(), [this, address](const Subnet& subnet) {
        return finder::isOnLink(subnet, address, isLoopback);
    });
}

std::vector<NetworkInterface> networkInterfaces(const std::set<std::string>& wanted, SearchLog& log)
{
    ifaddrs* list = nullptr;
    if (::getifaddrs(&list) != 0) {
        log.line("cannot list the network interfaces: " + std::string(std::strerror(errno)));
        return {};
    }
    const std::unique_ptr<ifaddrs, void (*)(ifaddrs*)> entries(list, ::freeifaddrs);
    std::vector<NetworkInterface> interfaces = usableInterfaces(list);
    for (const std::string& name : wanted) {
        const bool exists =
            std::any_of(interfaces.begin(), interfaces.end(),
                        [&name](const auto& interface) { return interface.name == name; });
        if (!exists) {
            log.line("QVFIND_INTERFACES: no usable interface " + name);
        }
    }
    interfaces.erase(
        std::remove_if(interfaces.begin(), interfaces.end(),
                       [&wanted](const auto& interface) { return !isWanted(interface, wanted); }),
        interfaces.end());
    if (interfaces.size() > mostInterfaces) {
        log.line("asking the first " + std::to_string(mostInterfaces) + " of " +
                 std::to_string(interfaces.size()) + " interfaces");
        interfaces.resize(mostInterfaces);
    }
    return interfaces;
}

} // namespace finder
