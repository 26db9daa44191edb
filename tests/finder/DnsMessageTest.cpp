// SPDX-License-Identifier: MIT
#include "finder/DnsMessage.h"

#include <gtest/gtest.h>

namespace {

using namespace finder;

std::string word(unsigned value)
{
    return {static_cast<char>(value >> 8), static_cast<char>(value & 0xFFU)};
}

/// A response's header with its counts of questions and answers.
std::string header(unsigned questions, unsigned answers, unsigned flags = 0x8400)
{
    return word(0) + word(flags) + word(questions) + word(answers) + word(0) + word(0);
}

std::string wire(std::string_view name)
{
    return dnsName(name) + '\0';
}

std::string record(const std::string& name, unsigned type, const std::string& data,
                   unsigned ttl = 120, unsigned recordClass = 1)
{
    return name + word(type) + word(recordClass) + word(0) + word(ttl) +
           word(static_cast<unsigned>(data.size())) + data;
}

const std::string address{"\xC6\x33\x64\x07", 4}; // 198.51.100.7

std::vector<DnsRecord> decoded(const std::string& packet)
{
    return decodeDnsResponse(packet).value_or(std::vector<DnsRecord>());
}

TEST(DnsMessage, AddressRecordIsRead)
{
    const auto records = decoded(header(0, 1) + record(wire("Scope.local"), 1, address));
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].name, dnsName("scope.local"));
    EXPECT_EQ(toText(records[0].address), "198.51.100.7");
    EXPECT_EQ(records[0].ttl, 120U);
}

TEST(DnsMessage, CacheFlushBitOfTheClassIsIgnored)
{
    EXPECT_EQ(decoded(header(0, 1) + record(wire("a.local"), 1, address, 120, 0x8001)).size(), 1U);
}

TEST(DnsMessage, PointerAndServerRecordsFollowCompression)
{
    const std::string service = wire("_hislip._tcp.local"); // at byte 12
    const std::string instance = std::string("\x05Scope", 6) + '\xC0' + '\x0C';
    const std::string server = word(0) + word(0) + word(4880) + std::string("\x01h\xC0\x19", 4);
    const auto records = decoded(header(0, 2) + record(service, 12, instance) +
                                 record(std::string("\x05Scope\xC0\x0C", 8), 33, server));
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].target, dnsName("scope._hislip._tcp.local"));
    EXPECT_EQ(records[1].name, records[0].target);
    EXPECT_EQ(records[1].port, 4880);
    EXPECT_EQ(records[1].target, dnsName("h.local"));
}

TEST(DnsMessage, TextsAreReadWithKeysInLowerCaseAndTheFirstCounts)
{
    const std::string texts = std::string("\x09Model=ABC\x09model=XYZ\x05=none\x04word", 31);
    const auto records = decoded(header(0, 1) + record(wire("a.local"), 16, texts));
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].texts, (std::map<std::string, std::string>{{"model", "ABC"}}));
}

TEST(DnsMessage, QuestionsBeforeTheAnswersAreSkipped)
{
    const std::string question = wire("_lxi._tcp.local") + word(12) + word(1);
    EXPECT_EQ(decoded(header(1, 1) + question + record(wire("a.local"), 1, address)).size(), 1U);
}

TEST(DnsMessage, OtherTypesClassesAndMalformedDataAreLeftOut)
{
    const std::string good = record(wire("a.local"), 1, address);
    for (const std::string& bad :
         {record(wire("a.local"), 28, std::string(16, 'x')),
          record(wire("a.local"), 1, address, 1, 3), record(wire("a.local"), 1, "abc"),
          record(wire("a.local"), 1, address + "x"),
          record(wire("a.local"), 12, std::string(1, '\0')),
          record(wire("a.local"), 33, word(1))}) {
        EXPECT_EQ(decoded(header(0, 2) + bad + good).size(), 1U);
    }
}

TEST(DnsMessage, PacketThatIsNoSuccessfulResponseGivesNothing)
{
    const std::string body = record(wire("a.local"), 1, address);
    EXPECT_FALSE(decodeDnsResponse("").has_value());
    EXPECT_FALSE(decodeDnsResponse(header(0, 1).substr(0, 11)).has_value());
    EXPECT_FALSE(decodeDnsResponse(header(0, 1, 0x0000) + body).has_value()); // a query
    EXPECT_FALSE(decodeDnsResponse(header(0, 1, 0x8403) + body).has_value()); // an error
    EXPECT_FALSE(decodeDnsResponse(header(0, 1, 0xA400) + body).has_value()); // a notification
}

TEST(DnsMessage, PointerThatDoesNotPointBackwardsIsRefused)
{
    for (const char* const name : {"\xC0\x0C", "\xC0\x0E", "\xC0\xFF", "\xFF\xFF"}) {
        EXPECT_TRUE(decoded(header(0, 1) + record(name, 1, address)).empty());
    }
    // A pointer into its own name.
    EXPECT_TRUE(
        decoded(header(0, 1) + record(std::string("\x01z\xC0\x0C", 4), 1, address)).empty());
}

TEST(DnsMessage, NameAboveTheLimitsIsRefused)
{
    std::string longest;
    for (int i = 0; i < 3; ++i) {
        longest += '\x3F' + std::string(63, 'x');
    }
    const std::string fits = longest + '\x3D' + std::string(61, 'x') + '\0';
    const std::string tooLong = longest + '\x3E' + std::string(62, 'x') + '\0';
    EXPECT_EQ(decoded(header(0, 1) + record(fits, 1, address)).size(), 1U);
    EXPECT_TRUE(decoded(header(0, 1) + record(tooLong, 1, address)).empty());
    EXPECT_TRUE(
        decoded(header(0, 1) + record('\x40' + std::string(64, 'x') + '\0', 1, address)).empty());
}

TEST(DnsMessage, RecordsAreReadUpToTheLimit)
{
    std::string body;
    for (std::size_t i = 0; i <= dnsMostRecords; ++i) {
        body += record(wire("a.local"), 1, address);
    }
    EXPECT_EQ(decoded(header(0, dnsMostRecords + 1) + body).size(), dnsMostRecords);
    EXPECT_TRUE(decoded(header(dnsMostQuestions + 1, 1) + body).empty());
}

TEST(DnsMessage, BytesBeyondTheLimitAreNotRead)
{
    const std::string filler(8000, 'x');
    const std::string packet = header(0, 3) + record(wire("a.local"), 99, filler) +
                               record(wire("a.local"), 99, std::string(900, 'x')) +
                               record(wire("a.local"), 1, address);
    EXPECT_LE(packet.size(), dnsMostBytes);
    EXPECT_EQ(decoded(packet).size(), 1U);
    const std::string longer = header(0, 3) + record(wire("a.local"), 99, filler) +
                               record(wire("a.local"), 99, std::string(950, 'x')) +
                               record(wire("a.local"), 1, address);
    EXPECT_GT(longer.size(), dnsMostBytes);
    EXPECT_TRUE(decoded(longer).empty());
}

TEST(DnsMessage, EveryTruncationOfAPacketIsSurvived)
{
    const std::string packet =
        header(1, 2) + wire("_lxi._tcp.local") + word(12) + word(1) +
        record(wire("_lxi._tcp.local"), 12, std::string("\x01s\xC0\x0C", 4)) +
        record(std::string("\xC0\x0C", 2), 1, address);
    for (std::size_t length = 0; length < packet.size(); ++length) {
        EXPECT_LT(decoded(packet.substr(0, length)).size(), 2U) << length;
    }
    EXPECT_EQ(decoded(packet).size(), 2U);
}

TEST(DnsQuery, QuestionHasTheBytesOfTheStandard)
{
    DnsQuery query;
    query.addQuestion(dnsName("_lxi._tcp.local"), DnsType::Ptr, true);
    EXPECT_EQ(query.encoded(), word(0) + word(0) + word(1) + word(0) + word(0) + word(0) +
                                   std::string("\x04_lxi\x04_tcp\x05local\0", 17) + word(12) +
                                   word(0x8001));
}

TEST(DnsQuery, KnownAnswerIsReadBackByTheDecoder)
{
    DnsQuery query;
    query.addQuestion(dnsName("_lxi._tcp.local"), DnsType::Ptr, false);
    ASSERT_TRUE(query.addKnownAnswer(dnsName("_lxi._tcp.local"), dnsName("scope 1._lxi._tcp.local"),
                                     4500, 1400));
    std::string packet = query.encoded();
    packet[2] = '\x84'; // as if it were a response
    const auto records = decoded(packet);
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].name, dnsName("_lxi._tcp.local"));
    EXPECT_EQ(records[0].target, dnsName("scope 1._lxi._tcp.local"));
    EXPECT_EQ(records[0].ttl, 4500U);
}

TEST(DnsQuery, InstanceWhoseLabelEndsLikeTheServiceIsWrittenWhole)
{
    const DnsName service = dnsName("_lxi._tcp.local");
    const DnsName deceiver = static_cast<char>(service.size()) + service;
    DnsQuery query;
    query.addQuestion(service, DnsType::Ptr, false);
    ASSERT_TRUE(query.addKnownAnswer(service, deceiver, 4500, 1400));
    std::string packet = query.encoded();
    packet[2] = '\x84';
    ASSERT_EQ(decoded(packet).size(), 1U);
    EXPECT_EQ(decoded(packet)[0].target, deceiver);
}

TEST(DnsQuery, KnownAnswersEndAtTheSizeLimit)
{
    const DnsName service = dnsName("_lxi._tcp.local");
    DnsQuery query;
    query.addQuestion(service, DnsType::Ptr, false);
    EXPECT_FALSE(query.addKnownAnswer(dnsName("_hislip._tcp.local"), service, 1, 1400));
    int added = 0;
    while (query.addKnownAnswer(service, std::string("\x04test") + service, 4500, 200)) {
        ++added;
    }
    EXPECT_EQ(added, (200 - 12 - 21) / (12 + 7));
    EXPECT_LE(query.encoded().size(), 200U);
}

} // namespace
