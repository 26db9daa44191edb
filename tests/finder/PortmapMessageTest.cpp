// SPDX-License-Identifier: MIT
#include "finder/PortmapMessage.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace finder;

constexpr std::uint32_t transaction = 0x12345678;

std::string words(const std::vector<std::uint32_t>& values)
{
    std::string bytes;
    for (const std::uint32_t value : values) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            bytes += static_cast<char>(value >> shift & 0xFFU);
        }
    }
    return bytes;
}

TEST(PortmapMessage, CallHasTheBytesOfTheStandard)
{
    const auto call = encodeGetPort(transaction);
    EXPECT_EQ(std::string(call.begin(), call.end()),
              words({transaction, 0, 2, 100000, 2, 3, 0, 0, 0, 0, 395183, 1, 6, 0}));
}

TEST(PortmapMessage, AcceptedReplyGivesItsPort)
{
    EXPECT_EQ(decodeGetPortReply(words({transaction, 1, 0, 0, 0, 0, 1024}), transaction), 1024);
    EXPECT_EQ(decodeGetPortReply(words({transaction, 1, 0, 0, 0, 0, 0}), transaction), 0);
    EXPECT_EQ(decodeGetPortReply(words({transaction, 1, 0, 0, 0, 0, 65535, 7}), transaction),
              65535);
}

TEST(PortmapMessage, VerifierOfAnyLengthIsSkipped)
{
    EXPECT_EQ(decodeGetPortReply(words({transaction, 1, 0, 0, 5, 9, 9, 0, 1024}), transaction),
              1024);
}

TEST(PortmapMessage, AnythingElseGivesNothing)
{
    const std::vector<std::vector<std::uint32_t>> others{
        {},
        {transaction + 1, 1, 0, 0, 0, 0, 1024},      // another transaction
        {transaction, 0, 0, 0, 0, 0, 1024},          // a call
        {transaction, 1, 1, 0, 0, 0, 1024},          // denied
        {transaction, 1, 0, 0, 0, 1, 1024},          // program unavailable
        {transaction, 1, 0, 0, 401, 0, 1024},        // a verifier that is too long
        {transaction, 1, 0, 0, 0xFFFFFFFF, 0, 1024}, //
        {transaction, 1, 0, 0, 8, 0, 1024},          // a verifier beyond the packet's end
        {transaction, 1, 0, 0, 0, 0},                // no port
        {transaction, 1, 0, 0, 0, 0, 65536},
        {transaction, 1, 0, 0, 0, 0, 0xFFFFFFFF}};
    for (const auto& other : others) {
        EXPECT_FALSE(decodeGetPortReply(words(other), transaction).has_value())
            << testing::PrintToString(other);
    }
}

TEST(PortmapMessage, EveryTruncationGivesNothing)
{
    const std::string reply = words({transaction, 1, 0, 0, 0, 0, 1024});
    for (std::size_t length = 0; length < reply.size(); ++length) {
        EXPECT_FALSE(decodeGetPortReply(reply.substr(0, length), transaction).has_value())
            << length;
    }
}

} // namespace
