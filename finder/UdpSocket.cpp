// SPDX-License-Identifier: MIT
#include "finder/UdpSocket.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace finder {

namespace {

sockaddr_in toSystem(Endpoint endpoint)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(endpoint.address.value);
    address.sin_port = htons(endpoint.port);
    return address;
}

int openDatagramSocket()
{
    const int descriptor = ::socket(AF_INET, SOCK_DGRAM, 0);
    if (descriptor >= 0) {
        // Set one by one: macOS has no flags for socket().
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg)
        ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg)
        ::fcntl(descriptor, F_SETFL, O_NONBLOCK);
    }
    return descriptor;
}

} // namespace

UdpSocket UdpSocket::forRequests(Ipv4Address interfaceAddress, unsigned interfaceIndex)
{
    UdpSocket socket(openDatagramSocket());
    if (socket.isOpen() &&
        !(socket.setNumber(SOL_SOCKET, SO_BROADCAST, 1) &&
          socket.sendsBy(interfaceAddress, interfaceIndex) && socket.bind({interfaceAddress, 0}))) {
        return UdpSocket(-1);
    }
    return socket;
}

UdpSocket UdpSocket::forMdnsGroup(Ipv4Address interfaceAddress, unsigned interfaceIndex)
{
    UdpSocket socket(openDatagramSocket());
    ip_mreqn membership = {};
    membership.imr_multiaddr.s_addr = htonl(mdnsGroup.address.value);
    membership.imr_address.s_addr = htonl(interfaceAddress.value);
    membership.imr_ifindex = static_cast<int>(interfaceIndex);
    if (socket.isOpen() &&
        !(socket.setNumber(SOL_SOCKET, SO_REUSEADDR, 1) &&
          socket.setNumber(SOL_SOCKET, SO_REUSEPORT, 1) && socket.bind(mdnsGroup) &&
          socket.setOption(IPPROTO_IP, IP_ADD_MEMBERSHIP, &membership, sizeof membership) &&
          socket.sendsBy(interfaceAddress, interfaceIndex))) {
        return UdpSocket(-1);
    }
#ifdef IP_MULTICAST_ALL
    // Else the socket also gets what arrives for other sockets' memberships on other interfaces.
    socket.setNumber(IPPROTO_IP, IP_MULTICAST_ALL, 0);
#endif
    return socket;
}

bool UdpSocket::sendsBy(Ipv4Address interfaceAddress, unsigned interfaceIndex) const
{
    constexpr int mdnsTimeToLive = 255;
    ip_mreqn interface = {};
    interface.imr_address.s_addr = htonl(interfaceAddress.value);
    interface.imr_ifindex = static_cast<int>(interfaceIndex);
    const bool sendsMulticast =
        setOption(IPPROTO_IP, IP_MULTICAST_IF, &interface, sizeof interface) &&
        setNumber(IPPROTO_IP, IP_MULTICAST_TTL, mdnsTimeToLive);
#if defined(IP_UNICAST_IF)
    return sendsMulticast &&
           setNumber(IPPROTO_IP, IP_UNICAST_IF, static_cast<int>(htonl(interfaceIndex)));
#elif defined(IP_BOUND_IF)
    return sendsMulticast && setNumber(IPPROTO_IP, IP_BOUND_IF, static_cast<int>(interfaceIndex));
#else
    return sendsMulticast;
#endif
}

UdpSocket::UdpSocket(UdpSocket&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
{}

UdpSocket& UdpSocket::operator=(UdpSocket&& other) noexcept
{
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
}

UdpSocket::~UdpSocket()
{
    if (isOpen()) {
        const int error = errno;
        ::close(m_descriptor);
        errno = error;
    }
}

bool UdpSocket::setOption(int level, int name, const void* value, std::size_t size) const
{
    return ::setsockopt(m_descriptor, level, name, value, static_cast<socklen_t>(size)) == 0;
}

bool UdpSocket::setNumber(int level, int name, int value) const
{
    return setOption(level, name, &value, sizeof value);
}

bool UdpSocket::bind(Endpoint local) const
{
    const sockaddr_in address = toSystem(local);
    sockaddr generic = {};
    static_assert(sizeof generic == sizeof address);
    std::memcpy(&generic, &address, sizeof generic);
    return ::bind(m_descriptor, &generic, sizeof generic) == 0;
}

bool UdpSocket::send(Endpoint receiver, std::string_view bytes) const
{
    const sockaddr_in address = toSystem(receiver);
    sockaddr generic = {};
    std::memcpy(&generic, &address, sizeof generic);
    return ::sendto(m_descriptor, bytes.data(), bytes.size(), 0, &generic, sizeof generic) ==
           static_cast<ssize_t>(bytes.size());
}

std::optional<Packet> UdpSocket::receive(PacketBuffer& buffer) const
{
    sockaddr_in sender = {};
    sockaddr generic = {};
    socklen_t length = sizeof generic;
    ssize_t count = 0;
    do {
        count = ::recvfrom(m_descriptor, buffer.data(), buffer.size(), 0, &generic, &length);
        // An ICMP error for an earlier packet is reported here once: it is no packet.
    } while (count < 0 && (errno == EINTR || errno == ECONNREFUSED));
    if (count < 0) {
        return std::nullopt;
    }
    std::memcpy(&sender, &generic, sizeof sender);
    return Packet{{{ntohl(sender.sin_addr.s_addr)}, ntohs(sender.sin_port)},
                  std::string_view(buffer.data(), static_cast<std::size_t>(count))};
}

} // namespace finder
