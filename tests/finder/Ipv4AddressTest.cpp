// SPDX-License-Identifier: MIT
#include "finder/Ipv4Address.h"

#include <gtest/gtest.h>

namespace {

using namespace finder;

constexpr Ipv4Address ipv4(unsigned a, unsigned b, unsigned c, unsigned d)
{
    return {a << 24 | b << 16 | c << 8 | d};
}

TEST(Ipv4Address, TextHasFourDecimalNumbers)
{
    EXPECT_EQ(toText(ipv4(198, 51, 100, 7)), "198.51.100.7");
    EXPECT_EQ(toText(ipv4(0, 0, 0, 0)), "0.0.0.0");
}

TEST(Subnet, BroadcastAndNetworkAddressDependOnThePrefix)
{
    const Subnet subnet{ipv4(198, 51, 100, 7), 24};
    EXPECT_EQ(toText(subnet.broadcast()), "198.51.100.255");
    EXPECT_EQ(toText(subnet.network()), "198.51.100.0");
    EXPECT_TRUE(subnet.hasBroadcast());
    EXPECT_FALSE((Subnet{ipv4(198, 51, 100, 7), 31}.hasBroadcast()));
    EXPECT_FALSE((Subnet{ipv4(198, 51, 100, 7), 32}.hasBroadcast()));
    EXPECT_EQ(toText(Subnet{ipv4(10, 0, 0, 1), 0}.broadcast()), "255.255.255.255");
}

TEST(Subnet, OnlyItsHostsAreOnLink)
{
    const Subnet subnet{ipv4(198, 51, 100, 7), 24};
    EXPECT_TRUE(isOnLink(subnet, ipv4(198, 51, 100, 1), false));
    EXPECT_TRUE(isOnLink(subnet, ipv4(198, 51, 100, 7), false)); // this machine
    EXPECT_FALSE(isOnLink(subnet, ipv4(198, 51, 101, 1), false));
    EXPECT_FALSE(isOnLink(subnet, ipv4(198, 51, 100, 0), false));
    EXPECT_FALSE(isOnLink(subnet, ipv4(198, 51, 100, 255), false));
    const Subnet pair{ipv4(198, 51, 100, 6), 31};
    EXPECT_TRUE(isOnLink(pair, ipv4(198, 51, 100, 6), false));
    EXPECT_TRUE(isOnLink(pair, ipv4(198, 51, 100, 7), false));
}

TEST(Ipv4Address, AddressesThatNoHostHasAreRefusedWhateverTheSubnet)
{
    const Subnet everything{ipv4(10, 0, 0, 1), 0};
    EXPECT_FALSE(isOnLink(everything, ipv4(0, 1, 2, 3), false));
    EXPECT_FALSE(isOnLink(everything, ipv4(224, 0, 0, 251), false));
    EXPECT_FALSE(isOnLink(everything, ipv4(240, 0, 0, 1), false));
    EXPECT_FALSE(isOnLink(everything, ipv4(127, 0, 0, 1), false));
    EXPECT_TRUE(isOnLink(everything, ipv4(127, 0, 0, 1), true));
    EXPECT_TRUE(isOnLink(everything, ipv4(223, 255, 255, 1), false));
}

} // namespace
