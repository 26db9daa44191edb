// SPDX-License-Identifier: MIT
// A multicast DNS packet as the finder receives it, from the decoder to the resource strings.

#include "finder/DnsMessage.h"
#include "finder/InstrumentList.h"
#include "finder/ServiceCatalog.h"
#include "fuzz/Judgement.h"

#include <algorithm>

namespace {

constexpr finder::Ipv4Address source{0xC6336402}; // 198.51.100.2

bool isName(const finder::DnsName& name)
{
    std::size_t position = 0;
    while (position < name.size()) {
        const std::size_t length = static_cast<unsigned char>(name[position]);
        if (length == 0 || length > 63) {
            return false;
        }
        position += length + 1;
    }
    return position == name.size() && name.size() < 255;
}

void requireSense(const finder::DnsRecord& record)
{
    require(isName(record.name), "a record with a malformed name");
    const bool needsTarget =
        record.type == finder::DnsType::Ptr || record.type == finder::DnsType::Srv;
    require(needsTarget ? !record.target.empty() && isName(record.target) : record.target.empty(),
            "a record with a wrong target");
}

/// No byte of the packet but addresses and ports may enter a resource string.
void requireOwnCharacters(const std::string& resource)
{
    require(resource.size() < 64, "a resource string that is too long");
    require(resource.find_first_not_of("0123456789.:,TCPIPinsthislipINSTRSOCKET") ==
                std::string::npos,
            "a resource string with foreign characters");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::vector<char> bytes(data, data + size); // on the heap: a read past its end shows
    const auto records = finder::decodeDnsResponse({bytes.data(), bytes.size()});
    if (!records) {
        return 0;
    }
    require(records->size() <= finder::dnsMostRecords, "too many records");
    std::for_each(records->begin(), records->end(), requireSense);
    finder::ServiceCatalog catalog;
    catalog.add(source, *records);
    catalog.add(source, *records);
    finder::DnsQuery query;
    for (const std::string_view service : finder::serviceNames) {
        query.addQuestion(finder::dnsName(service), finder::DnsType::Ptr, false);
    }
    constexpr std::size_t mostBytes = 1400;
    catalog.addKnownAnswers(query, mostBytes);
    std::string packet = query.encoded();
    require(packet.size() <= mostBytes, "a query that is too long");
    packet[2] = '\x84'; // as if it were a response
    const auto known = finder::decodeDnsResponse(packet);
    require(known && known->size() <= finder::ServiceCatalog::mostInstancesOfSource,
            "known answers that cannot be read back");
    finder::InstrumentList list;
    for (const finder::AnnouncedService& service : catalog.services()) {
        require(!service.addresses.empty(), "a service without an address");
        list.addService(service.addresses.front(), service);
        const bool isKnown = std::any_of(known->begin(), known->end(), [&](const auto& record) {
            return record.target == service.instance;
        });
        require(!isKnown || service.port != 0 || !service.host.empty(),
                "an incomplete instance is a known answer");
    }
    const std::vector<std::string> resources = list.resourceStrings();
    require(resources.size() <= finder::ServiceCatalog::mostInstancesOfSource, "too many services");
    std::for_each(resources.begin(), resources.end(), requireOwnCharacters);
    return 0;
}
