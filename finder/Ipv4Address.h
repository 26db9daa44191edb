// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace finder {

/// An IPv4 address in host byte order: comparing values sorts addresses as people do.
struct Ipv4Address
{
    std::uint32_t value = 0;

    friend bool operator==(Ipv4Address left, Ipv4Address right)
    {
        return left.value == right.value;
    }
    friend bool operator!=(Ipv4Address left, Ipv4Address right) { return !(left == right); }
    friend bool operator<(Ipv4Address left, Ipv4Address right) { return left.value < right.value; }
};

/// "198.51.100.7".
std::string toText(Ipv4Address address);

/// The addresses of one wire: an interface's own address and the length of its network prefix.
struct Subnet
{
    Ipv4Address interfaceAddress;
    int prefixLength = 32; ///< 0 to 32 bits.

    bool contains(Ipv4Address address) const;

    /// /31 and /32 have neither a network address nor a broadcast address.
    bool hasBroadcast() const { return prefixLength < 31; }
    Ipv4Address broadcast() const;
    Ipv4Address network() const;
};

/// True for an address that one host can have: not 0/8, not 224/3, and 127/8 only when the search
/// includes the loopback interface.
bool isHostAddress(Ipv4Address address, bool includesLoopback);

/// True when the address belongs to a host of the subnet: isHostAddress(), within the subnet, and
/// neither its network address nor its broadcast address.
bool isOnLink(const Subnet& subnet, Ipv4Address address, bool includesLoopback);

} // namespace finder
