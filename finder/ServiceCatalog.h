// SPDX-License-Identifier: MIT
#pragma once

#include "finder/DnsMessage.h"
#include "finder/Ipv4Address.h"

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace finder {

/// The services that instruments announce by multicast DNS.
enum class ServiceKind
{
    Lxi,        ///< Only names a host.
    Vxi11,      ///< VXI-11, whose port the host's port mapper knows.
    Hislip,     ///< HiSLIP, with its port.
    ScpiRaw,    ///< A raw socket, with its port.
    ScpiTelnet, ///< Only names a host.
};

constexpr std::array<std::string_view, 5> serviceNames{"_lxi._tcp.local", "_vxi-11._tcp.local",
                                                       "_hislip._tcp.local", "_scpi-raw._tcp.local",
                                                       "_scpi-telnet._tcp.local"};

/// A service instance that a host announced.
struct AnnouncedService
{
    ServiceKind kind = ServiceKind::Lxi;
    DnsName instance;
    DnsName host;                       ///< Empty when the service's SRV record is unknown.
    std::uint16_t port = 0;             ///< 0 when unknown, or announced as 0.
    std::vector<Ipv4Address> addresses; ///< One at least.
    std::map<std::string, std::string> texts;
};

/// What multicast DNS responses said, kept by the host that sent them: two instruments fresh from
/// the factory may announce the same names. Bounded in size whatever is sent. Not for several
/// threads at once.
class ServiceCatalog
{
public:
    static constexpr std::size_t mostInstances = 512;
    static constexpr std::size_t mostInstancesOfSource = 32;
    static constexpr std::size_t mostHostsOfSource = 32;
    static constexpr std::size_t mostAddressesOfHost = 8;
    static constexpr std::size_t mostQuestions = 2048;

    /// A name and the type of record that is missing for it.
    using Question = std::pair<DnsName, DnsType>;

    ServiceCatalog();

    /// Takes the records of one response in. True when they said something new.
    bool add(Ipv4Address source, const std::vector<DnsRecord>& records);

    /// What incomplete answers leave open. A question is returned once only.
    std::set<Question> takeQuestions();

    /// Adds the instances known so far to a query for all services, as far as they fit.
    void addKnownAnswers(DnsQuery& query, std::size_t mostBytes) const;

    /// Every instance, by source and name. A host without an address record has its source's
    /// address.
    std::vector<AnnouncedService> services() const;

    /// True when a limit kept something out.
    bool isFull() const { return m_isFull; }

private:
    struct Instance
    {
        ServiceKind kind = ServiceKind::Lxi;
        bool hasPointer = false;
        bool hasServer = false;
        bool hasTexts = false;
        DnsName host;
        std::uint16_t port = 0;
        std::map<std::string, std::string> texts;
    };

    struct Source
    {
        std::map<DnsName, Instance> instances;
        std::map<DnsName, std::set<Ipv4Address>> hosts;
    };

    Instance* instance(Source& source, const DnsName& name, ServiceKind kind);
    bool addPointer(Source& source, const DnsRecord& record);
    bool addServer(Source& source, const DnsRecord& record);
    bool addTexts(Source& source, const DnsRecord& record);
    bool addAddress(Source& source, const DnsRecord& record);

    std::array<DnsName, serviceNames.size()> m_serviceNames;
    std::map<Ipv4Address, Source> m_sources;
    std::set<Question> m_asked;
    std::size_t m_instanceCount = 0;
    bool m_isFull = false;
};

} // namespace finder
