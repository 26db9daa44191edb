// SPDX-License-Identifier: MIT
#include "config/ConfigurationLine.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

using QvVisa::ConfigurationLine;
using QvVisa::LineKind;

namespace {

constexpr std::size_t s_megabyte = std::size_t{1024} * 1024;

std::string many(char c)
{
    return std::string(s_megabyte, c);
}

/// Sizes and places instead of texts: a failure is not to print a megabyte.
void expectViews(const std::string& line, LineKind kind, std::string_view first,
                 std::size_t firstPlace, std::string_view second = {}, std::size_t secondPlace = 0)
{
    const ConfigurationLine found = QvVisa::matchConfigurationLine(line);
    ASSERT_EQ(found.kind, kind);
    EXPECT_EQ(found.first.data(), line.data() + firstPlace);
    EXPECT_EQ(found.first.size(), first.size());
    EXPECT_TRUE(found.first == first);
    EXPECT_TRUE(found.second == second);
    if (!second.empty()) {
        EXPECT_EQ(found.second.data(), line.data() + secondPlace);
    }
}

void expectNothing(const std::string& line)
{
    const ConfigurationLine found = QvVisa::matchConfigurationLine(line);
    EXPECT_EQ(found.kind, LineKind::None);
    EXPECT_TRUE(found.first.empty());
    EXPECT_TRUE(found.second.empty());
}

} // namespace

TEST(LineOfAMegabyte, Resource)
{
    for (const char c : {'A', ':', '#', '\0', '\xFF', ' ', '9'}) {
        const std::string line = 'R' + many(c);
        expectViews(line, LineKind::Resource, line, 0);
    }
    expectNothing(' ' + many('A'));
    expectNothing('#' + many('A'));
    expectNothing(':' + many('A'));
    expectNothing('=' + many('A'));
    expectNothing(many(' '));
    expectNothing(many(':'));
}

TEST(LineOfAMegabyte, Alias)
{
    const std::string text = many('A');
    expectViews(text + "=B", LineKind::Alias, text, 0, "B", s_megabyte + 1);
    expectViews("B=" + text, LineKind::Alias, "B", 0, text, 2);
    expectViews("B" + many('\t') + "=" + many(' ') + "C" + many('\r'), LineKind::Alias, "B", 0, "C",
                2 * s_megabyte + 2);
    expectViews("A" + many('='), LineKind::Alias, "A", 0, std::string_view(many('=')).substr(1), 2);
    expectNothing(text + "=");
    expectNothing(text + "=" + many(' '));
    expectNothing("A " + text + "=B");
    expectNothing("A=" + text + " B");
    expectNothing("A" + many(' ') + "B=C");
    expectNothing("A=B" + many(' ') + "C");
}

TEST(LineOfAMegabyte, Provider)
{
    const std::string digits = many('9');
    expectViews(":Provider=" + digits, LineKind::Provider, digits, 10);
    expectViews(":PROVIDER" + many(' ') + "=" + many('\v') + "1" + many('\f'), LineKind::Provider,
                "1", 2 * s_megabyte + 10);
    expectNothing(":Provider" + many(' '));
    expectNothing(":Provider=" + many(' '));
    expectNothing(":Provider=" + digits + "x");
    expectNothing(":Provider=1" + many(' ') + "1");
}

TEST(LineOfAMegabyte, Property)
{
    const std::string head = ":SerialProperty[DeviceNo=";
    const std::string key = "].Parity=";
    const std::string digits = many('0');
    expectViews(head + digits + key + "2", LineKind::SerialParity, digits, head.size(), "2",
                head.size() + s_megabyte + key.size());
    expectViews(head + "1" + key + digits, LineKind::SerialParity, "1", head.size(), digits,
                head.size() + 1 + key.size());
    expectViews(head + many(' ') + "1" + many('\t') + key + many('\r') + "2" + many(' '),
                LineKind::SerialParity, "1", head.size() + s_megabyte, "2",
                head.size() + 3 * s_megabyte + 1 + key.size());
    expectNothing(head + many(' '));
    expectNothing(head + digits);
    expectNothing(head + "1" + key + many(' '));
    expectNothing(head + "1" + key + digits + "x");
    expectNothing(head + "1]" + many('.') + "Parity=2");
}
