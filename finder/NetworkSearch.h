// SPDX-License-Identifier: MIT
#pragma once

#include "finder/Ipv4Address.h"
#include "finder/NetworkInterface.h"
#include "finder/ServiceCatalog.h"
#include "finder/UdpSocket.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace finder {

class SearchLog;

/// One search for instruments on the network: VXI-11 by broadcast, announced services by multicast
/// DNS, UDP only. Used once, in one thread. The packets, their times and their number are described
/// in docs/finder.md.
class NetworkSearch
{
public:
    using Clock = std::chrono::steady_clock;

    /// cancelDescriptor: becomes readable when the search is to end early; -1 for none. The log
    /// must outlive the search.
    NetworkSearch(std::vector<NetworkInterface> interfaces, int cancelDescriptor, SearchLog& log);

    /// Searches until the list is complete, at most until the deadline. The resource strings are
    /// sorted by address, then HiSLIP, VXI-11, socket, then port; each occurs once.
    std::vector<std::string> run(Clock::time_point deadline);

private:
    /// One interface's sockets and what was sent by it.
    struct Link
    {
        NetworkInterface interface;
        std::vector<UdpSocket> requests; ///< One a subnet, in the interface's order.
        std::optional<UdpSocket> group;
        int broadcasts = 0;
        int followUps = 0;
        int packets = 0;
    };

    /// What is known of a host's VXI-11 port.
    struct Host
    {
        bool isNamed = false; ///< By multicast DNS.
        int asked = 0;
        int roundAsked = 0;
        std::optional<std::uint16_t> port; ///< As it answered; 0 means that it has no VXI-11.
    };

    void openSockets();
    void sendRound();
    void askServicesOneByOne(Link& link);
    void askServicesAtOnce(Link& link);
    void broadcastGetPort(Link& link);
    void askNamedHosts();
    void sendFollowUps();
    void sendFollowUp(const std::set<ServiceCatalog::Question>& questions, bool isDirect);
    bool send(Link& link, const UdpSocket& socket, Endpoint receiver, std::string_view bytes);

    /// Waits for packets until the time, and reads them. False when the search is to end early.
    bool receiveUntil(Clock::time_point time);
    void receive(const UdpSocket& socket, bool isDirect);
    bool isWithinLimit(Ipv4Address sender);
    void takeMdns(const Packet& packet, bool isDirect);
    void takePortmap(const Packet& packet);
    void nameHosts();

    bool isOnLink(Ipv4Address address) const;
    Clock::time_point nextEvent() const;
    std::vector<std::string> results();

    std::vector<Link> m_links;
    int m_cancelDescriptor;
    SearchLog& m_log;
    std::uint32_t m_transaction;
    PacketBuffer m_buffer{};
    ServiceCatalog m_catalog;
    std::map<Ipv4Address, Host> m_hosts;
    std::map<Ipv4Address, int> m_packetsOfSource;
    std::set<Ipv4Address> m_unreachableSources;
    std::set<ServiceCatalog::Question> m_directQuestions; ///< After answers to us alone.
    std::set<ServiceCatalog::Question> m_groupQuestions;  ///< After answers by multicast.
    int m_round = 0;                                      ///< Rounds sent so far.
    int m_answers = 0;
    Clock::time_point m_begin;
    Clock::time_point m_lastSent;
    Clock::time_point m_lastNews;
    std::optional<Clock::time_point> m_followUpTime;
};

} // namespace finder
