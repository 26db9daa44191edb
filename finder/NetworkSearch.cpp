// SPDX-License-Identifier: MIT
#include "finder/NetworkSearch.h"

#include "finder/DnsMessage.h"
#include "finder/InstrumentList.h"
#include "finder/PortmapMessage.h"
#include "finder/SearchLog.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <random>
#include <utility>

namespace finder {

namespace {

using namespace std::chrono_literals;

/// One transmission in 20 gets lost on a bad network: three find what one misses.
constexpr std::array<std::chrono::milliseconds, 3> s_roundTimes{0ms, 250ms, 500ms};
constexpr auto s_quietTime = 400ms;
constexpr auto s_followUpDelay = 30ms;

constexpr std::size_t s_mostQueryBytes = 1400;
/// For each interface, however many subnets it has: with multicast DNS it sends 12 packets.
constexpr int s_mostBroadcasts = 5;
constexpr int s_mostFollowUps = 4; ///< For each interface.
constexpr std::size_t s_mostNamedHosts = 256;
constexpr std::size_t s_mostHosts = 1024;
constexpr std::size_t s_mostSources = 4096;
constexpr int s_mostPacketsOfSource = 512;
constexpr int s_mostReadsOfTurn = 16;
constexpr std::size_t s_mostReportedSources = 16; ///< A flood must not fill the log.

const std::array<DnsName, serviceNames.size()>& services()
{
    static const auto names = [] {
        std::array<DnsName, serviceNames.size()> result;
        std::transform(serviceNames.begin(), serviceNames.end(), result.begin(), dnsName);
        return result;
    }();
    return names;
}

std::uint32_t randomTransaction()
{
    std::random_device device;
    return static_cast<std::uint32_t>(device());
}

} // namespace

NetworkSearch::NetworkSearch(std::vector<NetworkInterface> interfaces, int cancelDescriptor,
                             SearchLog& log)
    : m_cancelDescriptor(cancelDescriptor),
      m_log(log),
      m_transaction(randomTransaction())
{
    for (NetworkInterface& interface : interfaces) {
        Link link;
        link.interface = std::move(interface);
        m_links.push_back(std::move(link));
    }
}

std::vector<std::string> NetworkSearch::run(Clock::time_point deadline)
{
    openSockets();
    m_begin = m_lastSent = m_lastNews = Clock::now();
    bool goesOn = !m_links.empty();
    while (goesOn) {
        const auto now = Clock::now();
        if (now >= deadline) {
            break;
        }
        const auto rounds = static_cast<std::size_t>(m_round);
        if (rounds < s_roundTimes.size() && now >= m_begin + s_roundTimes[rounds]) {
            sendRound();
        }
        if (m_followUpTime && now >= *m_followUpTime) {
            sendFollowUps();
        }
        const auto next = nextEvent();
        if (next <= Clock::now() && static_cast<std::size_t>(m_round) == s_roundTimes.size() &&
            !m_followUpTime) {
            break;
        }
        goesOn = receiveUntil(std::min(next, deadline));
    }
    return results();
}

NetworkSearch::Clock::time_point NetworkSearch::nextEvent() const
{
    const auto round = static_cast<std::size_t>(m_round);
    auto next = round < s_roundTimes.size() ? m_begin + s_roundTimes[round]
                                            : std::max(m_lastSent, m_lastNews) + s_quietTime;
    if (m_followUpTime) {
        next = std::min(next, *m_followUpTime);
    }
    return next;
}

void NetworkSearch::openSockets()
{
    for (Link& link : m_links) {
        const NetworkInterface& interface = link.interface;
        for (const Subnet& subnet : interface.subnets) {
            UdpSocket socket = UdpSocket::forRequests(subnet.interfaceAddress, interface.index);
            if (!socket.isOpen()) {
                m_log.line("cannot ask from " + toText(subnet.interfaceAddress) + " (" +
                           interface.name + "): " + std::strerror(errno));
            }
            link.requests.push_back(std::move(socket));
        }
        UdpSocket group =
            UdpSocket::forMdnsGroup(interface.subnets.front().interfaceAddress, interface.index);
        if (group.isOpen()) {
            link.group = std::move(group);
        } else {
            m_log.line("cannot receive multicast DNS on " + interface.name + ": " +
                       std::strerror(errno) + "; asking for direct answers only");
        }
    }
}

void NetworkSearch::sendRound()
{
    for (Link& link : m_links) {
        broadcastGetPort(link);
        if (m_round > 0 && link.group) {
            askServicesAtOnce(link);
        } else {
            askServicesOneByOne(link);
        }
    }
    ++m_round;
    askNamedHosts();
}

void NetworkSearch::askServicesOneByOne(Link& link)
{
    // Five questions in one packet would share one answer, and direct answers end at 512 bytes.
    for (const DnsName& service : services()) {
        DnsQuery query;
        query.addQuestion(service, DnsType::Ptr, true);
        send(link, link.requests.front(), mdnsGroup, query.encoded());
    }
}

void NetworkSearch::askServicesAtOnce(Link& link)
{
    DnsQuery query;
    for (const DnsName& service : services()) {
        query.addQuestion(service, DnsType::Ptr, false);
    }
    m_catalog.addKnownAnswers(query, s_mostQueryBytes);
    send(link, *link.group, mdnsGroup, query.encoded());
}

void NetworkSearch::broadcastGetPort(Link& link)
{
    const auto call = encodeGetPort(m_transaction);
    const std::string_view bytes(reinterpret_cast<const char*>(call.data()), call.size());
    for (std::size_t i = 0; i < link.requests.size(); ++i) {
        const Subnet& subnet = link.interface.subnets[i];
        if (subnet.hasBroadcast() && link.broadcasts < s_mostBroadcasts) {
            ++link.broadcasts;
            send(link, link.requests[i], {subnet.broadcast(), portmapPort}, bytes);
        }
    }
}

void NetworkSearch::askNamedHosts()
{
    constexpr int mostQuestions = 2;
    const auto call = encodeGetPort(m_transaction);
    const std::string_view bytes(reinterpret_cast<const char*>(call.data()), call.size());
    for (auto& entry : m_hosts) {
        const Ipv4Address address = entry.first;
        Host& host = entry.second;
        if (!host.isNamed || host.port || host.asked == mostQuestions ||
            (host.asked > 0 && host.roundAsked == m_round)) {
            continue;
        }
        const auto link = std::find_if(m_links.begin(), m_links.end(), [&](const Link& candidate) {
            return candidate.interface.isOnLink(address);
        });
        if (link == m_links.end()) {
            continue;
        }
        ++host.asked;
        host.roundAsked = m_round;
        send(*link, link->requests.front(), {address, portmapPort}, bytes);
    }
}

void NetworkSearch::sendFollowUps()
{
    m_followUpTime.reset();
    // A responder that has just announced its records keeps silent for a second where the answer
    // goes to the group, but it answers a direct question at once.
    sendFollowUp(std::exchange(m_directQuestions, {}), true);
    sendFollowUp(std::exchange(m_groupQuestions, {}), false);
}

void NetworkSearch::sendFollowUp(const std::set<ServiceCatalog::Question>& questions, bool isDirect)
{
    DnsQuery query;
    // The server first: a direct answer ends at 512 bytes.
    for (const DnsType type : {DnsType::Srv, DnsType::A, DnsType::Txt}) {
        for (const ServiceCatalog::Question& question : questions) {
            if (question.second == type && query.questionCount() < dnsMostQuestions &&
                query.encoded().size() + question.first.size() + 5 <= s_mostQueryBytes) {
                query.addQuestion(question.first, type, isDirect);
            }
        }
    }
    if (query.questionCount() == 0) {
        return;
    }
    for (Link& link : m_links) {
        if (link.followUps < s_mostFollowUps) {
            ++link.followUps;
            send(link, link.group && !isDirect ? *link.group : link.requests.front(), mdnsGroup,
                 query.encoded());
        }
    }
}

bool NetworkSearch::send(Link& link, const UdpSocket& socket, Endpoint receiver,
                         std::string_view bytes)
{
    if (!socket.isOpen()) {
        return false;
    }
    ++link.packets;
    m_lastSent = Clock::now();
    if (!socket.send(receiver, bytes)) {
        m_log.line("cannot send to " + toText(receiver.address) + " by " + link.interface.name +
                   ": " + std::strerror(errno));
        return false;
    }
    return true;
}

bool NetworkSearch::receiveUntil(Clock::time_point time)
{
    struct Watched
    {
        const UdpSocket* socket;
        bool isDirect;
    };
    std::vector<pollfd> waits;
    std::vector<Watched> watched;
    const auto watch = [&](const UdpSocket& socket, bool isDirect) {
        if (socket.isOpen()) {
            waits.push_back({socket.descriptor(), POLLIN, 0});
            watched.push_back({&socket, isDirect});
        }
    };
    for (const Link& link : m_links) {
        for (const UdpSocket& socket : link.requests) {
            watch(socket, true);
        }
        if (link.group) {
            watch(*link.group, false);
        }
    }
    waits.push_back({m_cancelDescriptor, POLLIN, 0});
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - Clock::now());
    const int timeout = static_cast<int>(std::max<std::chrono::milliseconds::rep>(0, left.count()));
    if (::poll(waits.data(), static_cast<nfds_t>(waits.size()), timeout) <= 0) {
        return true;
    }
    for (std::size_t i = 0; i < watched.size(); ++i) {
        if (waits[i].revents != 0) {
            receive(*watched[i].socket, watched[i].isDirect);
        }
    }
    return waits.back().revents == 0;
}

void NetworkSearch::receive(const UdpSocket& socket, bool isDirect)
{
    for (int i = 0; i < s_mostReadsOfTurn; ++i) {
        const std::optional<Packet> packet = socket.receive(m_buffer);
        if (!packet) {
            return;
        }
        if (!isWithinLimit(packet->sender.address)) {
            continue;
        }
        if (packet->sender.port == mdnsGroup.port) {
            takeMdns(*packet, isDirect);
        }
        takePortmap(*packet);
    }
}

bool NetworkSearch::isWithinLimit(Ipv4Address sender)
{
    const auto known = m_packetsOfSource.find(sender);
    if (known == m_packetsOfSource.end()) {
        if (m_packetsOfSource.size() == s_mostSources) {
            return false;
        }
        m_packetsOfSource.emplace(sender, 1);
        return true;
    }
    if (known->second == s_mostPacketsOfSource) {
        m_log.line("too many packets from " + toText(sender) + ": the rest is ignored");
    }
    return ++known->second <= s_mostPacketsOfSource;
}

void NetworkSearch::takeMdns(const Packet& packet, bool isDirect)
{
    const auto records = decodeDnsResponse(packet.bytes);
    if (!records || records->empty()) {
        return;
    }
    const Ipv4Address sender = packet.sender.address;
    if (!isOnLink(sender)) {
        if (m_unreachableSources.size() < s_mostReportedSources &&
            m_unreachableSources.insert(sender).second) {
            m_log.line("answer from " + toText(sender) +
                       ", which is in no subnet of this machine: found but not reachable");
        }
        return;
    }
    if (!m_catalog.add(sender, *records)) {
        return;
    }
    ++m_answers;
    m_lastNews = Clock::now();
    auto& questions = isDirect ? m_directQuestions : m_groupQuestions;
    questions.merge(m_catalog.takeQuestions());
    if (!questions.empty() && !m_followUpTime) {
        m_followUpTime = m_lastNews + s_followUpDelay;
    }
    nameHosts();
}

void NetworkSearch::nameHosts()
{
    for (const AnnouncedService& service : m_catalog.services()) {
        for (const Ipv4Address address : service.addresses) {
            const bool isKnown = m_hosts.count(address) != 0;
            if (isOnLink(address) && (isKnown || m_hosts.size() < s_mostNamedHosts)) {
                m_hosts[address].isNamed = true;
            }
        }
    }
    askNamedHosts();
}

void NetworkSearch::takePortmap(const Packet& packet)
{
    const Ipv4Address sender = packet.sender.address;
    const auto port = decodeGetPortReply(packet.bytes, m_transaction);
    if (!port || !isOnLink(sender) ||
        (m_hosts.count(sender) == 0 && m_hosts.size() == s_mostHosts)) {
        return;
    }
    Host& host = m_hosts[sender];
    if (!host.port) {
        host.port = port;
        ++m_answers;
        m_lastNews = Clock::now();
    }
}

bool NetworkSearch::isOnLink(Ipv4Address address) const
{
    return std::any_of(m_links.begin(), m_links.end(),
                       [address](const Link& link) { return link.interface.isOnLink(address); });
}

std::vector<std::string> NetworkSearch::results()
{
    InstrumentList list;
    for (const AnnouncedService& service : m_catalog.services()) {
        for (const Ipv4Address address : service.addresses) {
            if (isOnLink(address)) {
                list.addService(address, service);
            } else {
                m_log.line("found but not reachable: " + toText(service.instance) + " at " +
                           toText(address));
            }
        }
    }
    for (const auto& [address, host] : m_hosts) {
        if (host.port) {
            list.setVxi11Port(address, *host.port);
        }
    }
    if (m_catalog.isFull()) {
        m_log.line("more services were announced than one search lists");
    }
    int packets = 0;
    std::string names;
    for (const Link& link : m_links) {
        packets += link.packets;
        names += (names.empty() ? " (" : ", ") + link.interface.name;
    }
    m_log.line("asked " + std::to_string(m_links.size()) +
               (m_links.size() == 1 ? " interface" : " interfaces") +
               (names.empty() ? "" : names + ')') + " with " + std::to_string(packets) +
               " packets, " + std::to_string(m_answers) + " answers");
    list.log(m_log);
    return list.resourceStrings();
}

} // namespace finder
