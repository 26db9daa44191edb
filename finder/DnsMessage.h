// SPDX-License-Identifier: MIT
#pragma once

#include "finder/Ipv4Address.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace finder {

/// A domain name as the wire has it: labels, each after its length, without the zero at the end.
/// ASCII letters are in lower case, so that equal names are equal strings. A label may hold any
/// bytes.
using DnsName = std::string;

/// "_lxi._tcp.local" to a name. Labels of 1 to 63 bytes without dots.
DnsName dnsName(std::string_view text);

/// The labels with dots between them, in whatever bytes they have.
std::string toText(const DnsName& name);

enum class DnsType : std::uint16_t
{
    A = 1,
    Ptr = 12,
    Txt = 16,
    Srv = 33,
};

/// One resource record of the types above, class Internet.
struct DnsRecord
{
    DnsName name;
    DnsType type = DnsType::A;
    std::uint32_t ttl = 0; ///< Seconds; 0 says that the record no longer holds.
    DnsName target;        ///< PTR: the instance. SRV: the host.
    std::uint16_t port = 0;
    Ipv4Address address;
    /// TXT: keys in lower case; the first of equal keys counts.
    std::map<std::string, std::string> texts;
};

constexpr std::size_t dnsMostBytes = 9000;
constexpr std::size_t dnsMostQuestions = 32;
constexpr std::size_t dnsMostRecords = 128;

/// The records of a DNS response from all its sections, in their order. Records of other types or
/// classes and malformed ones are left out; the rest of a packet that exceeds the limits or breaks
/// off is not read. Nothing when the packet is no response.
std::optional<std::vector<DnsRecord>> decodeDnsResponse(std::string_view packet);

/// Builds one multicast DNS query.
class DnsQuery
{
public:
    /// unicastResponse asks for an answer to the sender instead of the group.
    void addQuestion(const DnsName& name, DnsType type, bool unicastResponse);

    /// Adds an answer to a PTR question that is known already, so that responders do not repeat it.
    /// False, and nothing added, when the question was not added before or the packet would exceed
    /// the given size.
    bool addKnownAnswer(const DnsName& service, const DnsName& instance, std::uint32_t ttl,
                        std::size_t mostBytes);

    std::size_t questionCount() const { return m_questions.size(); }

    /// The packet's bytes.
    std::string encoded() const;

private:
    std::map<DnsName, std::size_t> m_questions; ///< Offset of each question's name in the packet.
    std::string m_questionBytes;
    std::string m_answerBytes;
    std::uint16_t m_questionCount = 0;
    std::uint16_t m_answerCount = 0;
};

} // namespace finder
