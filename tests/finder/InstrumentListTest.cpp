// SPDX-License-Identifier: MIT
#include "finder/InstrumentList.h"

#include <gtest/gtest.h>

namespace {

using namespace finder;

using Strings = std::vector<std::string>;

constexpr Ipv4Address scope{0xC6336407}; // 198.51.100.7
constexpr Ipv4Address meter{0xC6336412}; // 198.51.100.18

AnnouncedService announced(ServiceKind kind, std::uint16_t port)
{
    AnnouncedService service;
    service.kind = kind;
    service.port = port;
    return service;
}

TEST(InstrumentList, EachServiceGivesOneStringBestFirst)
{
    InstrumentList list;
    list.addService(scope, announced(ServiceKind::ScpiRaw, 5025));
    list.addService(scope, announced(ServiceKind::ScpiRaw, 5024));
    list.addService(scope, announced(ServiceKind::Hislip, 4881));
    list.addService(scope, announced(ServiceKind::Hislip, 4880));
    list.addService(scope, announced(ServiceKind::Hislip, 4880));
    list.setVxi11Port(scope, 1024);
    EXPECT_EQ(
        list.resourceStrings(),
        (Strings{"TCPIP0::198.51.100.7::hislip0::INSTR",
                 "TCPIP0::198.51.100.7::hislip0,4881::INSTR", "TCPIP0::198.51.100.7::inst0::INSTR",
                 "TCPIP0::198.51.100.7::5024::SOCKET", "TCPIP0::198.51.100.7::5025::SOCKET"}));
}

TEST(InstrumentList, InstrumentsAreSortedByTheValueOfTheirAddress)
{
    InstrumentList list;
    list.setVxi11Port(meter, 1024);
    list.setVxi11Port(scope, 1024);
    EXPECT_EQ(list.resourceStrings(), (Strings{"TCPIP0::198.51.100.7::inst0::INSTR",
                                               "TCPIP0::198.51.100.18::inst0::INSTR"}));
}

TEST(InstrumentList, ServicesThatOnlyNameAHostGiveNoString)
{
    InstrumentList list;
    list.addService(scope, announced(ServiceKind::Lxi, 80));
    list.addService(scope, announced(ServiceKind::ScpiTelnet, 5024));
    EXPECT_TRUE(list.resourceStrings().empty());
}

TEST(InstrumentList, ServiceWithoutPortGivesNoString)
{
    InstrumentList list;
    list.addService(scope, announced(ServiceKind::Hislip, 0));
    list.addService(scope, announced(ServiceKind::ScpiRaw, 0));
    EXPECT_TRUE(list.resourceStrings().empty());
}

TEST(InstrumentList, PortMappersWordOnVxi11CountsMoreThanTheAnnouncement)
{
    InstrumentList announcedOnly;
    announcedOnly.addService(scope, announced(ServiceKind::Vxi11, 1024));
    EXPECT_EQ(announcedOnly.resourceStrings(), Strings{"TCPIP0::198.51.100.7::inst0::INSTR"});
    InstrumentList denied;
    denied.addService(scope, announced(ServiceKind::Vxi11, 1024));
    denied.setVxi11Port(scope, 0);
    EXPECT_TRUE(denied.resourceStrings().empty());
}

} // namespace
