// SPDX-License-Identifier: MIT
#include "doctor/HostLookup.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;
using QvVisa::lookUpHosts;

TEST(HostLookup, LiteralAddressesGiveThemselvesWithoutTime)
{
    const auto past = std::chrono::steady_clock::now() - 1s;
    const auto results = lookUpHosts({"10.0.0.5", "2001:0DB8::0001"}, past);
    EXPECT_EQ(results.at("10.0.0.5").addresses, std::set<std::string>{"10.0.0.5"});
    EXPECT_EQ(results.at("2001:0DB8::0001").addresses, std::set<std::string>{"2001:db8::1"});
}

TEST(HostLookup, MoreNamesThanThreadsAreAllLookedUp)
{
    std::set<std::string> names{"localhost"};
    for (int i = 0; i < 40; ++i) {
        names.insert("127.0.0." + std::to_string(i) + ".invalid");
    }
    const auto results = lookUpHosts(names, std::chrono::steady_clock::now() + 50s);
    EXPECT_EQ(results.size(), names.size());
    for (const auto& [name, result] : results) {
        EXPECT_EQ(result.addresses.empty(), !result.error.empty()) << name;
        EXPECT_EQ(result.addresses.empty(), name != "localhost") << name << ' ' << result.error;
        EXPECT_NE(result.error, "no answer within the time") << name;
    }
}

TEST(HostLookup, NoNamesGiveNoResults)
{
    EXPECT_TRUE(lookUpHosts({}, std::chrono::steady_clock::now() + 1s).empty());
}

} // namespace
