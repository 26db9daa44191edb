// SPDX-License-Identifier: MIT
#include "finder/InstrumentList.h"

#include "finder/SearchLog.h"

#include <array>

namespace finder {

namespace {

constexpr std::uint16_t s_hislipPort = 4880;

/// What the service says of itself: maker, model, serial number and firmware.
std::string identityOf(const AnnouncedService& service)
{
    constexpr std::array<const char*, 4> keys{"manufacturer", "model", "serialnumber",
                                              "firmwareversion"};
    std::string identity;
    for (const char* const key : keys) {
        const auto text = service.texts.find(key);
        if (text != service.texts.end() && !text->second.empty()) {
            identity += (identity.empty() ? "" : ", ") + text->second;
        }
    }
    return identity;
}

} // namespace

void InstrumentList::addService(Ipv4Address address, const AnnouncedService& service)
{
    Instrument& instrument = m_instruments[address];
    if (instrument.identity.empty()) {
        instrument.identity = identityOf(service);
    }
    switch (service.kind) {
    case ServiceKind::Vxi11:
        instrument.announcesVxi11 = true;
        break;
    case ServiceKind::Hislip:
    case ServiceKind::ScpiRaw:
        if (service.port == 0) {
            instrument.leftOut.insert(toText(service.instance) + ": announced without a port");
        } else if (service.kind == ServiceKind::Hislip) {
            instrument.hislipPorts.insert(service.port);
        } else {
            instrument.socketPorts.insert(service.port);
        }
        break;
    case ServiceKind::Lxi:
    case ServiceKind::ScpiTelnet:
        break;
    }
}

void InstrumentList::setVxi11Port(Ipv4Address address, std::uint16_t port)
{
    m_instruments[address].vxi11Port = port;
}

std::vector<std::string> InstrumentList::resourceStrings(Ipv4Address address,
                                                         const Instrument& instrument)
{
    const std::string prefix = "TCPIP0::" + toText(address) + "::";
    std::vector<std::string> strings;
    for (const std::uint16_t port : instrument.hislipPorts) {
        std::string text = prefix + "hislip0";
        if (port != s_hislipPort) {
            text.append(",").append(std::to_string(port));
        }
        strings.push_back(text + "::INSTR");
    }
    if (instrument.vxi11Port ? *instrument.vxi11Port != 0 : instrument.announcesVxi11) {
        strings.push_back(prefix + "inst0::INSTR");
    }
    for (const std::uint16_t port : instrument.socketPorts) {
        strings.push_back(prefix + std::to_string(port) + "::SOCKET");
    }
    return strings;
}

std::vector<std::string> InstrumentList::resourceStrings() const
{
    std::vector<std::string> strings;
    for (const auto& [address, instrument] : m_instruments) {
        const std::vector<std::string> own = resourceStrings(address, instrument);
        strings.insert(strings.end(), own.begin(), own.end());
    }
    return strings;
}

void InstrumentList::log(SearchLog& log) const
{
    for (const auto& [address, instrument] : m_instruments) {
        std::string text = "found " + toText(address);
        if (!instrument.identity.empty()) {
            text += " (" + instrument.identity + ")";
        }
        for (const std::string& resource : resourceStrings(address, instrument)) {
            text += " " + resource;
        }
        if (instrument.vxi11Port == 0 && instrument.announcesVxi11) {
            text += "; left out: VXI-11 is announced, but the port mapper has no port for it";
        }
        log.line(text);
        for (const std::string& reason : instrument.leftOut) {
            log.line("left out: " + reason);
        }
    }
}

} // namespace finder
