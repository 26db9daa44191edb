// SPDX-License-Identifier: MIT
#include "finder/ServiceCatalog.h"

#include <gtest/gtest.h>

namespace {

using namespace finder;

constexpr Ipv4Address source{0xC6336402};      // 198.51.100.2
constexpr Ipv4Address otherSource{0xC6336403}; // 198.51.100.3

DnsRecord pointer(const std::string& instance, const std::string& service, unsigned ttl = 120)
{
    DnsRecord record;
    record.type = DnsType::Ptr;
    record.name = dnsName(service);
    record.target = dnsName(instance + "." + service);
    record.ttl = ttl;
    return record;
}

DnsRecord server(const std::string& name, unsigned port, const std::string& host,
                 unsigned ttl = 120)
{
    DnsRecord record;
    record.type = DnsType::Srv;
    record.name = dnsName(name);
    record.port = static_cast<std::uint16_t>(port);
    record.target = dnsName(host);
    record.ttl = ttl;
    return record;
}

DnsRecord addressRecord(const std::string& host, std::uint32_t value, unsigned ttl = 120)
{
    DnsRecord record;
    record.type = DnsType::A;
    record.name = dnsName(host);
    record.address.value = value;
    record.ttl = ttl;
    return record;
}

DnsRecord texts(const std::string& name, std::map<std::string, std::string> values)
{
    DnsRecord record;
    record.type = DnsType::Txt;
    record.name = dnsName(name);
    record.texts = std::move(values);
    record.ttl = 120;
    return record;
}

TEST(ServiceCatalog, CompleteAnswerGivesOneServiceAndLeavesNoQuestion)
{
    ServiceCatalog catalog;
    EXPECT_TRUE(catalog.add(source, {addressRecord("h.local", 0xC6336407),
                                     texts("s._hislip._tcp.local", {{"model", "ABC"}}),
                                     server("s._hislip._tcp.local", 4880, "h.local"),
                                     pointer("s", "_hislip._tcp.local")}));
    const auto services = catalog.services();
    ASSERT_EQ(services.size(), 1U);
    EXPECT_EQ(services[0].kind, ServiceKind::Hislip);
    EXPECT_EQ(services[0].port, 4880);
    EXPECT_EQ(services[0].host, dnsName("h.local"));
    EXPECT_EQ(services[0].texts.at("model"), "ABC");
    ASSERT_EQ(services[0].addresses.size(), 1U);
    EXPECT_EQ(toText(services[0].addresses[0]), "198.51.100.7");
    EXPECT_TRUE(catalog.takeQuestions().empty());
}

TEST(ServiceCatalog, RepeatedAnswerIsNoNews)
{
    ServiceCatalog catalog;
    const std::vector<DnsRecord> records{pointer("s", "_lxi._tcp.local"),
                                         server("s._lxi._tcp.local", 80, "h.local"),
                                         addressRecord("h.local", 0xC6336407)};
    EXPECT_TRUE(catalog.add(source, records));
    EXPECT_FALSE(catalog.add(source, records));
}

TEST(ServiceCatalog, EachServiceTypeIsRecognised)
{
    ServiceCatalog catalog;
    for (const std::string_view name : serviceNames) {
        catalog.add(source, {pointer("s", std::string(name))});
    }
    std::set<ServiceKind> kinds;
    for (const AnnouncedService& service : catalog.services()) {
        kinds.insert(service.kind);
    }
    EXPECT_EQ(kinds.size(), serviceNames.size());
}

TEST(ServiceCatalog, ForeignServicesAndNamesAreIgnored)
{
    ServiceCatalog catalog;
    DnsRecord mismatch = pointer("s", "_lxi._tcp.local");
    mismatch.target = dnsName("s._hislip._tcp.local");
    EXPECT_FALSE(catalog.add(source, {pointer("printer", "_ipp._tcp.local"), mismatch,
                                      server("s._ipp._tcp.local", 631, "h.local"),
                                      server("_lxi._tcp.local", 80, "h.local"),
                                      addressRecord("h.local", 0xC6336407)}));
    EXPECT_TRUE(catalog.services().empty());
}

TEST(ServiceCatalog, IncompleteAnswerLeavesEachQuestionOnce)
{
    ServiceCatalog catalog;
    catalog.add(source, {pointer("s", "_lxi._tcp.local")});
    const DnsName instance = dnsName("s._lxi._tcp.local");
    EXPECT_EQ(catalog.takeQuestions(), (std::set<ServiceCatalog::Question>{
                                           {instance, DnsType::Srv}, {instance, DnsType::Txt}}));
    EXPECT_TRUE(catalog.takeQuestions().empty());
    catalog.add(source, {server("s._lxi._tcp.local", 80, "h.local")});
    EXPECT_EQ(catalog.takeQuestions(),
              (std::set<ServiceCatalog::Question>{{dnsName("h.local"), DnsType::A}}));
}

TEST(ServiceCatalog, HostWithoutAddressRecordHasItsSourcesAddress)
{
    ServiceCatalog catalog;
    catalog.add(source, {server("s._lxi._tcp.local", 80, "h.local")});
    ASSERT_EQ(catalog.services().size(), 1U);
    EXPECT_EQ(catalog.services()[0].addresses, std::vector<Ipv4Address>{source});
}

TEST(ServiceCatalog, SameNamesFromTwoSourcesAreTwoInstruments)
{
    ServiceCatalog catalog;
    const auto records = [](std::uint32_t value) {
        return std::vector<DnsRecord>{pointer("s", "_lxi._tcp.local"),
                                      server("s._lxi._tcp.local", 80, "h.local"),
                                      addressRecord("h.local", value)};
    };
    EXPECT_TRUE(catalog.add(source, records(0xC6336402)));
    EXPECT_TRUE(catalog.add(otherSource, records(0xC6336403)));
    ASSERT_EQ(catalog.services().size(), 2U);
    EXPECT_EQ(catalog.services()[0].addresses, std::vector<Ipv4Address>{source});
    EXPECT_EQ(catalog.services()[1].addresses, std::vector<Ipv4Address>{otherSource});
}

TEST(ServiceCatalog, RecordWithoutLifeTakesItsFactBack)
{
    ServiceCatalog catalog;
    catalog.add(source,
                {pointer("s", "_lxi._tcp.local"), server("s._lxi._tcp.local", 80, "h.local"),
                 addressRecord("h.local", 0xC6336407)});
    EXPECT_TRUE(catalog.add(source, {addressRecord("h.local", 0xC6336407, 0)}));
    EXPECT_EQ(catalog.services()[0].addresses, std::vector<Ipv4Address>{source});
    EXPECT_TRUE(catalog.add(source, {server("s._lxi._tcp.local", 80, "h.local", 0)}));
    EXPECT_EQ(catalog.services()[0].port, 0);
    EXPECT_TRUE(catalog.add(source, {pointer("s", "_lxi._tcp.local", 0)}));
    EXPECT_TRUE(catalog.services().empty());
    EXPECT_FALSE(catalog.add(source, {pointer("s", "_lxi._tcp.local", 0)}));
}

TEST(ServiceCatalog, OneSourceFillsItsShareOnly)
{
    ServiceCatalog catalog;
    for (std::size_t i = 0; i <= ServiceCatalog::mostInstancesOfSource; ++i) {
        catalog.add(source, {pointer("s" + std::to_string(i), "_lxi._tcp.local")});
    }
    EXPECT_EQ(catalog.services().size(), ServiceCatalog::mostInstancesOfSource);
    EXPECT_TRUE(catalog.isFull());
    EXPECT_TRUE(catalog.add(otherSource, {pointer("s", "_lxi._tcp.local")}));
}

TEST(ServiceCatalog, AllSourcesTogetherFillTheCatalogOnly)
{
    ServiceCatalog catalog;
    for (std::size_t i = 0; i <= ServiceCatalog::mostInstances; ++i) {
        const Ipv4Address sender{source.value + static_cast<std::uint32_t>(i)};
        catalog.add(sender, {pointer("s", "_lxi._tcp.local")});
    }
    EXPECT_EQ(catalog.services().size(), ServiceCatalog::mostInstances);
    EXPECT_TRUE(catalog.isFull());
    // What is taken back makes room.
    catalog.add(source, {pointer("s", "_lxi._tcp.local", 0)});
    EXPECT_TRUE(catalog.add(source, {pointer("t", "_lxi._tcp.local")}));
}

TEST(ServiceCatalog, HostHasEightAddressesAtMost)
{
    ServiceCatalog catalog;
    catalog.add(source, {server("s._lxi._tcp.local", 80, "h.local")});
    for (std::uint32_t i = 0; i < 20; ++i) {
        catalog.add(source, {addressRecord("h.local", 0xC6336410 + i)});
    }
    EXPECT_EQ(catalog.services()[0].addresses.size(), ServiceCatalog::mostAddressesOfHost);
}

TEST(ServiceCatalog, KnownAnswersAreTheCompleteInstances)
{
    ServiceCatalog catalog;
    catalog.add(source, {pointer("whole", "_lxi._tcp.local"),
                         server("whole._lxi._tcp.local", 80, "h.local"),
                         pointer("half", "_lxi._tcp.local")});
    DnsQuery query;
    query.addQuestion(dnsName("_lxi._tcp.local"), DnsType::Ptr, false);
    catalog.addKnownAnswers(query, 1400);
    std::string packet = query.encoded();
    packet[2] = '\x84'; // as if it were a response
    const auto records = decodeDnsResponse(packet);
    ASSERT_TRUE(records.has_value());
    ASSERT_EQ(records->size(), 1U);
    EXPECT_EQ(records->front().target, dnsName("whole._lxi._tcp.local"));
}

} // namespace
