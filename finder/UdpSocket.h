// SPDX-License-Identifier: MIT
#pragma once

#include "finder/Ipv4Address.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace finder {

/// A host's address and its UDP port.
struct Endpoint
{
    Ipv4Address address;
    std::uint16_t port = 0;
};

/// A packet that arrived; its bytes are valid until the next receive() into the same buffer.
struct Packet
{
    Endpoint sender;
    std::string_view bytes;
};

/// Room for the largest packet that is read; the system cuts longer ones.
using PacketBuffer = std::array<char, 9000>;

constexpr Endpoint mdnsGroup{{0xE00000FB}, 5353};

/// A UDP socket of one interface. Nothing blocks. With isOpen() false after creation, errno says
/// why.
class UdpSocket
{
public:
    /// Sends from the given address of the interface, by that interface whatever the routes say,
    /// to single hosts, broadcast addresses and multicast groups.
    static UdpSocket forRequests(Ipv4Address interfaceAddress, unsigned interfaceIndex);

    /// Receives what is sent to the multicast DNS group on that interface, sends from port 5353.
    /// Bound to the group's address: bound to any address it would take the unicast answers away
    /// from the machine's own responder.
    static UdpSocket forMdnsGroup(Ipv4Address interfaceAddress, unsigned interfaceIndex);

    UdpSocket(UdpSocket&& other) noexcept;
    UdpSocket& operator=(UdpSocket&& other) noexcept;
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;
    ~UdpSocket();

    bool isOpen() const { return m_descriptor >= 0; }
    int descriptor() const { return m_descriptor; }

    /// False, with errno set, when the system refused the packet.
    bool send(Endpoint receiver, std::string_view bytes) const;

    /// The next packet that has arrived, cut to the buffer; nothing when there is none.
    std::optional<Packet> receive(PacketBuffer& buffer) const;

private:
    explicit UdpSocket(int descriptor) : m_descriptor(descriptor) {}
    bool setOption(int level, int name, const void* value, std::size_t size) const;
    bool setNumber(int level, int name, int value) const;
    bool sendsBy(Ipv4Address interfaceAddress, unsigned interfaceIndex) const;
    bool bind(Endpoint local) const;

    int m_descriptor = -1;
};

} // namespace finder
