// SPDX-License-Identifier: MIT
#include "visa/ProbeRecord.h"
#include "visa/ProbeReportBuilder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>

using visa::ProbeRecord;
using visa::ProbeRecordKind;
using visa::ProbeRecordReader;
using visa::ProbeReport;
using visa::ProbeReportBuilder;

namespace {

TEST(ProbeRecord, IsReadBackFromPiecesOfAnySize)
{
    const std::string text("a\0b", 3);
    const std::string bytes = visa::encodeProbeRecord(ProbeRecordKind::Found, text, -1, 5) +
                              visa::encodeProbeRecord(ProbeRecordKind::Finished);
    for (std::size_t size = 1; size <= bytes.size(); ++size) {
        ProbeRecordReader reader;
        std::vector<ProbeRecord> records;
        for (std::size_t begin = 0; begin < bytes.size(); begin += size) {
            reader.append(std::string_view(bytes).substr(begin, size));
            while (auto record = reader.next()) {
                records.push_back(*record);
            }
        }
        ASSERT_EQ(records.size(), 2U) << size;
        EXPECT_EQ(records[0].kind, ProbeRecordKind::Found);
        EXPECT_EQ(records[0].text, text);
        EXPECT_EQ(records[0].first, -1);
        EXPECT_EQ(records[0].second, 5);
        EXPECT_EQ(records[1].kind, ProbeRecordKind::Finished);
    }
}

TEST(ProbeRecord, ALongTextIsCut)
{
    ProbeRecordReader reader;
    reader.append(visa::encodeProbeRecord(ProbeRecordKind::Found, std::string(100000, 'x')));
    EXPECT_EQ(reader.next().value().text.size(), ProbeRecord::mostText);
    EXPECT_FALSE(reader.next());
    EXPECT_FALSE(reader.isGarbled());
}

/// A record whose text is said to have that length.
std::string textOfLength(std::uint32_t length)
{
    std::string bytes = visa::encodeProbeRecord(ProbeRecordKind::Found);
    std::memcpy(bytes.data() + 16, &length, sizeof length);
    return bytes;
}

TEST(ProbeRecord, BytesThatAreNoRecordEndTheStream)
{
    const std::string good = visa::encodeProbeRecord(ProbeRecordKind::Finished);
    for (const std::string& bad :
         {textOfLength(ProbeRecord::mostText + 1), std::string(24, '\0'), std::string(24, '\xFF'),
          std::string("This is no record of it.")}) {
        ProbeRecordReader reader;
        reader.append(good);
        reader.append(bad);
        reader.append(good);
        EXPECT_TRUE(reader.next());
        EXPECT_FALSE(reader.next());
        EXPECT_TRUE(reader.isGarbled());
        EXPECT_FALSE(reader.next());
    }
}

ProbeRecord record(ProbeRecordKind kind, const std::string& text = {}, std::int64_t first = 0,
                   std::int64_t second = 0)
{
    return {kind, first, second, text};
}

TEST(ProbeReportBuilder, KeepsNoMoreThanItsBounds)
{
    ProbeReportBuilder builder;
    for (std::size_t each = 0; each < ProbeReport::mostResources + 10; ++each) {
        builder.take(record(ProbeRecordKind::Found, "x"));
        builder.take(record(ProbeRecordKind::PortFound, "x"));
        builder.take(record(ProbeRecordKind::Tries, "x"));
        builder.take(record(ProbeRecordKind::LibraryLacks, "x"));
        builder.take(record(ProbeRecordKind::LibraryLacksToo, "x"));
        builder.take(record(ProbeRecordKind::CallBegins, std::to_string(each)));
        builder.take(record(ProbeRecordKind::CallReturns));
        builder.takeOutput("xyz");
    }
    builder.take(record(ProbeRecordKind::CallBegins, "the last"));
    const ProbeReport report = builder.finish({});
    EXPECT_EQ(report.resources.size(), ProbeReport::mostResources);
    EXPECT_EQ(report.serialPorts.size(), ProbeReport::mostResources);
    EXPECT_LT(report.attempts.size(), 100U);
    EXPECT_LT(report.attempts.back().missingCalls.size(), 100U);
    EXPECT_LT(report.missingOptionalCalls.size(), 100U);
    EXPECT_EQ(report.output.size(), ProbeReport::mostOutput);
    EXPECT_EQ(report.outputSize, 3 * (ProbeReport::mostResources + 10));
    EXPECT_EQ(report.calls.size(), ProbeReport::mostCalls + 1);
    EXPECT_EQ(report.omittedCalls, ProbeReport::mostResources + 10 - ProbeReport::mostCalls);
    ASSERT_NE(report.openCall(), nullptr);
    EXPECT_EQ(report.openCall()->name, "the last");
}

TEST(ProbeReportBuilder, CallsOfOneNameAndStatusInARowAreOne)
{
    ProbeReportBuilder builder;
    for (const std::int64_t status : {0, 0, -1, 0}) {
        builder.take(record(ProbeRecordKind::CallBegins, "viFindNext"));
        builder.take(record(ProbeRecordKind::CallReturns, {}, status, 10));
    }
    const ProbeReport report = builder.finish({});
    ASSERT_EQ(report.calls.size(), 3U);
    EXPECT_EQ(report.calls[0].times, 2U);
    EXPECT_EQ(report.calls[0].duration.count(), 20);
    EXPECT_EQ(report.calls[1].status, -1);
    EXPECT_EQ(report.openCall(), nullptr);
}

TEST(ProbeReportBuilder, TakesAnyRecordsInAnyOrder)
{
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in each run
    constexpr auto most = static_cast<unsigned>(ProbeRecordKind::Finished);
    constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();
    for (int round = 0; round < 200; ++round) {
        ProbeReportBuilder builder;
        for (int each = 0; each < 100; ++each) {
            const auto number = static_cast<std::int64_t>(random());
            for (const std::int64_t second : {number, -number, number % 8, highest, -highest}) {
                builder.take(record(static_cast<ProbeRecordKind>(1 + random() % most),
                                    std::string(random() % 5, 'x'), number, second));
            }
        }
        const ProbeReport report = builder.finish({});
        EXPECT_LE(report.windowList.size(), report.resources.size());
    }
}

} // namespace
