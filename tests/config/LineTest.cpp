// SPDX-License-Identifier: MIT
#include "config/ConfigurationLine.h"

#include "tests/config/FileContents.h"
#include "tests/config/OracleReader.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

using QvVisa::ConfigurationLine;
using QvVisa::LineKind;
using namespace std::string_view_literals;

namespace {

struct Row
{
    std::string_view line;
    LineKind kind = LineKind::None;
    std::string_view first{};
    std::string_view second{};
};

void expectRow(const Row& row)
{
    SCOPED_TRACE('"' + printable(std::string(row.line)) + '"');
    const ConfigurationLine line = QvVisa::matchConfigurationLine(row.line);
    EXPECT_EQ(line.kind, row.kind);
    EXPECT_EQ(line.first, row.first);
    EXPECT_EQ(line.second, row.second);

    const ConfigurationLine expected = matchWithExpressions(row.line);
    EXPECT_EQ(line.kind, expected.kind) << "the expression says otherwise";
    EXPECT_EQ(line.first, expected.first) << "the expression says otherwise";
    EXPECT_EQ(line.second, expected.second) << "the expression says otherwise";
}

/// What may stand where the format allows white space, and what looks like it but may not.
constexpr std::string_view s_whiteSpace[] = {""sv,   " "sv,  "\t"sv, "\v"sv,
                                             "\f"sv, "\r"sv, "  "sv, " \t\v\f\r "sv};
constexpr std::string_view s_noWhiteSpace[] = {"\0"sv,   "\x1F"sv, "\x7F"sv,
                                               "\x85"sv, "\xA0"sv, "\x08"sv};

struct PropertyKind
{
    std::string_view device;
    std::string_view key;
    LineKind kind;
};

constexpr PropertyKind s_properties[] = {
    {":GPIBProperty"sv, "PrimaryAddress"sv, LineKind::GpibPrimaryAddress},
    {":GPIBProperty"sv, "SecondaryAddress"sv, LineKind::GpibSecondaryAddress},
    {":GPIBProperty"sv, "SystemController"sv, LineKind::GpibSystemController},
    {":SerialProperty"sv, "Baudrate"sv, LineKind::SerialBaudrate},
    {":SerialProperty"sv, "DataBits"sv, LineKind::SerialDataBits},
    {":SerialProperty"sv, "StopBits"sv, LineKind::SerialStopBits},
    {":SerialProperty"sv, "Parity"sv, LineKind::SerialParity},
    {":SerialProperty"sv, "FlowControl"sv, LineKind::SerialFlowControl},
};

std::string join(std::initializer_list<std::string_view> parts)
{
    std::string text;
    for (const std::string_view part : parts) {
        text += part;
    }
    return text;
}

void expectNothing(const std::string& line)
{
    expectRow({line});
}

} // namespace

TEST(Line, Comments)
{
    const Row rows[] = {
        {""},
        {" "},
        {"\r"},
        {"\t"},
        {"="},
        {"=="},
        {":"},
        {"#"},
        {"::"},
        {"# note"},
        {"#A=B"},
        {" A=B"},
        {"\tGPIB0::1::INSTR"},
        {"\vA"},
        {"\fA"},
        {"\rA=B"},
        {"=B"},
        {"=A=B"},
        {":A=B"},
        {":Comment"},
        {": Provider=1"},
        {":QvVisaConfigurationFileVersion01"},
        {":QvVisaConfigurationFileVersion01\r"},
    };
    for (const Row& row : rows) {
        expectRow(row);
    }
}

TEST(Line, Providers)
{
    const Row rows[] = {
        {":Provider=0", LineKind::Provider, "0"},
        {":Provider=3674", LineKind::Provider, "3674"},
        {":provider=1", LineKind::Provider, "1"},
        {":PROVIDER=1", LineKind::Provider, "1"},
        {":pROvIDer=1", LineKind::Provider, "1"},
        {":PROVIDER = 42", LineKind::Provider, "42"},
        {":Provider=3674\r", LineKind::Provider, "3674"},
        {":Provider=007", LineKind::Provider, "007"},
        {":Provider=99999999999999999999", LineKind::Provider, "99999999999999999999"},
        {":Provider"},
        {":Provider="},
        {":Provider= "},
        {":Provider=-1"},
        {":Provider=+1"},
        {":Provider=0x10"},
        {":Provider=1.0"},
        {":Provider=1 2"},
        {":Provider=1,000"},
        {":Provider==1"},
        {":Provider:1"},
        {":Provider1"},
        {":Provide=1"},
        {":Providers=1"},
        {": Provider=1"},
        {"::Provider=1"},
        {" :Provider=1"},
        {"Provider=1", LineKind::Alias, "Provider", "1"},
        {":Prov\xEF"
         "der=1"sv},
        {":Provider=1\0"sv},
        {":Provider\0=1"sv},
        {":Provider=\xB2"sv},
        // What differs from a letter or a sign in the bit that tells upper case from lower.
        {"\x1AProvider=1", LineKind::Alias, "\x1AProvider", "1"},
        {":Provider\x1D"
         "1"sv},
    };
    for (const Row& row : rows) {
        expectRow(row);
    }
}

TEST(Line, Resources)
{
    const Row rows[] = {
        {"A", LineKind::Resource, "A"},
        {";", LineKind::Resource, ";"},
        {"; spare", LineKind::Resource, "; spare"},
        {"[", LineKind::Resource, "["},
        {"0", LineKind::Resource, "0"},
        {"-", LineKind::Resource, "-"},
        {"GPIB0::12::INSTR", LineKind::Resource, "GPIB0::12::INSTR"},
        {"GPIB0::12::INSTR  ", LineKind::Resource, "GPIB0::12::INSTR  "},
        {"GPIB0::12::INSTR\r", LineKind::Resource, "GPIB0::12::INSTR\r"},
        {"A \t\v\f\r", LineKind::Resource, "A \t\v\f\r"},
        {"A B C", LineKind::Resource, "A B C"},
        {"A#B", LineKind::Resource, "A#B"},
        {"A:B", LineKind::Resource, "A:B"},
        {"\0"sv, LineKind::Resource, "\0"sv},
        {"A\0B"sv, LineKind::Resource, "A\0B"sv},
        {"\x01", LineKind::Resource, "\x01"},
        {"\x1F", LineKind::Resource, "\x1F"},
        {"\x7F", LineKind::Resource, "\x7F"},
        {"\x80", LineKind::Resource, "\x80"},
        {"\x85", LineKind::Resource, "\x85"},
        {"\xA0", LineKind::Resource, "\xA0"},
        {"\xFF\xFE", LineKind::Resource, "\xFF\xFE"},
        {"\xEF\xBB\xBF:Provider", LineKind::Resource, "\xEF\xBB\xBF:Provider"},
        {"SerialProperty[DeviceNo", LineKind::Resource, "SerialProperty[DeviceNo"},
    };
    for (const Row& row : rows) {
        expectRow(row);
    }
}

TEST(Line, Aliases)
{
    const Row rows[] = {
        {"A=B", LineKind::Alias, "A", "B"},
        {"DMM=TCPIP0::10.0.0.5::INSTR", LineKind::Alias, "DMM", "TCPIP0::10.0.0.5::INSTR"},
        {"dmm = USB::1", LineKind::Alias, "dmm", "USB::1"},
        {"A=B\r", LineKind::Alias, "A", "B"},
        {"A==B", LineKind::Alias, "A", "=B"},
        {"A= =B", LineKind::Alias, "A", "=B"},
        {"A =B", LineKind::Alias, "A", "B"},
        {"A===", LineKind::Alias, "A", "=="},
        {"A==", LineKind::Alias, "A", "="},
        {"A=B=C", LineKind::Alias, "A", "B=C"},
        {"A=#B", LineKind::Alias, "A", "#B"},
        {"A=:B", LineKind::Alias, "A", ":B"},
        {"A:B=C", LineKind::Alias, "A:B", "C"},
        {"A#B=C", LineKind::Alias, "A#B", "C"},
        {";A=B", LineKind::Alias, ";A", "B"},
        {"[x]=B", LineKind::Alias, "[x]", "B"},
        {"\0=\0"sv, LineKind::Alias, "\0"sv, "\0"sv},
        {"\x80=\xFF", LineKind::Alias, "\x80", "\xFF"},
        {"A\xA0=\xA0"
         "B",
         LineKind::Alias, "A\xA0",
         "\xA0"
         "B"},
        {"A="},
        {"A= "},
        {"A=\r"},
        {"A ="},
        {"A=B C"},
        {"A = B C"},
        {"A=B C\r"},
        {"A B=C"},
        {"A B = C"},
        {"A = B ="},
        {"A B="},
        {"A B\t="},
    };
    for (const Row& row : rows) {
        expectRow(row);
    }
}

TEST(Line, PropertiesOfEachKind)
{
    for (const PropertyKind& property : s_properties) {
        const std::string head = join({property.device, "[DeviceNo="});
        const std::string key = join({"].", property.key, "="});
        const auto expectValue = [&](const std::string& line, std::string_view number,
                                     std::string_view value) {
            expectRow({line, property.kind, number, value});
        };
        expectValue(head + "0" + key + "0", "0", "0");
        expectValue(head + "12" + key + "345", "12", "345");
        expectValue(head + "007" + key + "008", "007", "008");
        expectValue(head + " 1 " + key + " 2 ", "1", "2");
        expectValue(head + "1" + key + "2\r", "1", "2");
        expectValue(head + "2147483648" + key + "99999999999", "2147483648", "99999999999");

        for (const char* number : {"", " ", "-1", "+1", "0x1", "1.", "1 2", "a", "\xB2", "1,0"}) {
            expectNothing(head + number + key + "2");
            expectNothing(head + "1" + key + number);
        }
        expectNothing(head + "1" + key + std::string(1, '\0'));
        expectNothing(head + "1" + key + "2" + std::string(1, '\0'));
        expectNothing(head + "1" + key + "2;");
        expectNothing(head);
        expectNothing(head + "1");
        expectNothing(head + "1]");
        expectNothing(head + "1].");
        expectNothing(head + "1" + key);
        expectNothing(' ' + head + "1" + key + "2");
        expectNothing(head + "1" + key + "=2");
    }
}

TEST(Line, PropertyKeysAreExact)
{
    for (const PropertyKind& property : s_properties) {
        const std::string line = join({property.device, "[DeviceNo=1].", property.key, "=2"});
        const std::size_t digits = line.find('1');
        const std::size_t value = line.size() - 1;
        expectRow({line, property.kind, "1", "2"});
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (i == digits || i == value) {
                continue;
            }
            std::string otherCase = line;
            otherCase[i] = static_cast<char>(otherCase[i] ^ 0x20);
            std::string missing = line;
            missing.erase(i, 1);
            std::string doubled = line;
            doubled.insert(i, 1, line[i]);
            std::string spaced = line;
            spaced.insert(i, 1, ' ');
            for (const std::string& other : {otherCase, missing, doubled, spaced}) {
                // Without the colon in front it is an alias; a blank beside a number is allowed.
                const ConfigurationLine found = QvVisa::matchConfigurationLine(other);
                const ConfigurationLine expected = matchWithExpressions(other);
                EXPECT_EQ(found.kind, expected.kind) << other;
                if (other.front() == ':' && i != digits + 1) {
                    EXPECT_EQ(found.kind, LineKind::None) << other;
                }
            }
        }
    }
}

TEST(Line, KeysOfTheOtherDeviceAreNothing)
{
    for (const PropertyKind& property : s_properties) {
        const bool gpib = property.device == ":GPIBProperty";
        const std::string_view other = gpib ? ":SerialProperty"sv : ":GPIBProperty"sv;
        expectNothing(join({other, "[DeviceNo=1].", property.key, "=2"}));
        expectNothing(join({property.device, "[DeviceNo=1].", "Speed=2"}));
    }
}

TEST(Line, EveryWhiteSpaceAtEachPlaceThatAllowsIt)
{
    for (const std::string_view space : s_whiteSpace) {
        for (const std::string_view other : s_whiteSpace) {
            const std::string provider = join({":Provider", space, "=", other, "42", space, other});
            expectRow({provider, LineKind::Provider, "42"});
            const std::string alias = join({"A", space, "=", other, "B", space});
            expectRow({alias, LineKind::Alias, "A", "B"});
            for (const PropertyKind& property : s_properties) {
                const std::string line = join({property.device, "[DeviceNo=", space, "1", other,
                                               "].", property.key, "=", other, "2", space});
                expectRow({line, property.kind, "1", "2"});
            }
        }
    }
}

TEST(Line, OtherControlBytesAreNoWhiteSpace)
{
    for (const std::string_view byte : s_noWhiteSpace) {
        expectNothing(join({":Provider", byte, "=1"}));
        expectNothing(join({":Provider=", byte, "1"}));
        expectNothing(join({":Provider=1", byte}));
        for (const PropertyKind& property : s_properties) {
            const std::string head = join({property.device, "[DeviceNo="});
            const std::string key = join({"].", property.key, "="});
            expectNothing(head + std::string(byte) + "1" + key + "2");
            expectNothing(head + "1" + std::string(byte) + key + "2");
            expectNothing(head + "1" + key + std::string(byte) + "2");
            expectNothing(head + "1" + key + "2" + std::string(byte));
        }
        const std::string name = join({"A", byte});
        const std::string alias = join({name, "=", byte, "B"});
        const std::string value = join({byte, "B"});
        expectRow({alias, LineKind::Alias, name, value});
    }
}

TEST(Line, EveryByteAsALineOfItsOwn)
{
    for (int byte = 0; byte < 256; ++byte) {
        const std::string line(1, static_cast<char>(byte));
        const bool isNothing = (byte >= '\t' && byte <= '\r') || byte == ' ' || byte == ':' ||
                               byte == '=' || byte == '#';
        if (isNothing) {
            expectRow({line});
        } else {
            expectRow({line, LineKind::Resource, line});
        }
    }
}
