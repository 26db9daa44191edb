// SPDX-License-Identifier: MIT
#include "finder/Ipv4Address.h"

namespace finder {

namespace {

constexpr std::uint32_t mask(int prefixLength)
{
    // A shift by the full width is undefined.
    return prefixLength == 0 ? 0 : 0xFFFFFFFFU << (32 - prefixLength);
}

} // namespace

std::string toText(Ipv4Address address)
{
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        text += std::to_string((address.value >> shift) & 0xFFU);
        if (shift != 0) {
            text += '.';
        }
    }
    return text;
}

bool Subnet::contains(Ipv4Address address) const
{
    return ((address.value ^ interfaceAddress.value) & mask(prefixLength)) == 0;
}

Ipv4Address Subnet::broadcast() const
{
    return {interfaceAddress.value | ~mask(prefixLength)};
}

Ipv4Address Subnet::network() const
{
    return {interfaceAddress.value & mask(prefixLength)};
}

bool isHostAddress(Ipv4Address address, bool includesLoopback)
{
    constexpr std::uint32_t loopbackNet = 127;
    constexpr std::uint32_t firstMulticastNet = 224;
    const std::uint32_t net = address.value >> 24;
    return net != 0 && net < firstMulticastNet && (net != loopbackNet || includesLoopback);
}

bool isOnLink(const Subnet& subnet, Ipv4Address address, bool includesLoopback)
{
    if (!isHostAddress(address, includesLoopback) || !subnet.contains(address)) {
        return false;
    }
    return !subnet.hasBroadcast() || (address != subnet.broadcast() && address != subnet.network());
}

} // namespace finder
