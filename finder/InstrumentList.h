// SPDX-License-Identifier: MIT
#pragma once

#include "finder/Ipv4Address.h"
#include "finder/ServiceCatalog.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace finder {

class SearchLog;

/// The instruments that a network search found. One instrument is one IPv4 address; each service
/// that answered gives one resource string. No name from the network enters a resource string.
class InstrumentList
{
public:
    /// A service that multicast DNS announced for the address.
    void addService(Ipv4Address address, const AnnouncedService& service);

    /// The host's own word on VXI-11, which counts more than an announcement; 0 means that it does
    /// not offer it.
    void setVxi11Port(Ipv4Address address, std::uint16_t port);

    /// Sorted by address, then HiSLIP, VXI-11, socket, then port.
    std::vector<std::string> resourceStrings() const;

    /// Writes each instrument with its identity, its services and what was left out.
    void log(SearchLog& log) const;

private:
    struct Instrument
    {
        std::set<std::uint16_t> hislipPorts;
        std::set<std::uint16_t> socketPorts;
        bool announcesVxi11 = false;
        std::optional<std::uint16_t> vxi11Port;
        std::string identity;          ///< From the network: any bytes.
        std::set<std::string> leftOut; ///< Any bytes.
    };

    static std::vector<std::string> resourceStrings(Ipv4Address address,
                                                    const Instrument& instrument);

    std::map<Ipv4Address, Instrument> m_instruments;
};

} // namespace finder
