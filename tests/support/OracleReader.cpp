// SPDX-License-Identifier: MIT
#include "tests/support/OracleReader.h"

#include <cctype>
#include <cstdint>
#include <locale>
#include <regex>
#include <sstream>
#include <stdexcept>

using QvVisa::ConfigurationLine;
using QvVisa::LineKind;

namespace {

constexpr std::string_view s_header = ":QvVisaConfigurationFileVersion01";

struct Pattern
{
    LineKind kind;
    const char* text;
    bool ignoresCase;
    std::size_t groups;
};

/// In the order in which they are tried.
constexpr std::array<Pattern, 11> s_patterns{{
    {LineKind::Provider, R"(^:Provider\s*=\s*(\d+)\s*)", true, 1},
    {LineKind::Resource, R"(^([^:=#\s][^=]*)\s*)", true, 1},
    {LineKind::Alias, R"(^([^:=#\s][^=\s]*)\s*=\s*([^\s]+)\s*)", true, 2},
    {LineKind::GpibPrimaryAddress,
     R"(^:GPIBProperty\[DeviceNo=\s*(\d+)\s*\]\.PrimaryAddress=\s*(\d+)\s*)", false, 2},
    {LineKind::GpibSecondaryAddress,
     R"(^:GPIBProperty\[DeviceNo=\s*(\d+)\s*\]\.SecondaryAddress=\s*(\d+)\s*)", false, 2},
    {LineKind::GpibSystemController,
     R"(^:GPIBProperty\[DeviceNo=\s*(\d+)\s*\]\.SystemController=\s*(\d+)\s*)", false, 2},
    {LineKind::SerialBaudrate, R"(^:SerialProperty\[DeviceNo=\s*(\d+)\s*\]\.Baudrate=\s*(\d+)\s*)",
     false, 2},
    {LineKind::SerialDataBits, R"(^:SerialProperty\[DeviceNo=\s*(\d+)\s*\]\.DataBits=\s*(\d+)\s*)",
     false, 2},
    {LineKind::SerialStopBits, R"(^:SerialProperty\[DeviceNo=\s*(\d+)\s*\]\.StopBits=\s*(\d+)\s*)",
     false, 2},
    {LineKind::SerialParity, R"(^:SerialProperty\[DeviceNo=\s*(\d+)\s*\]\.Parity=\s*(\d+)\s*)",
     false, 2},
    {LineKind::SerialFlowControl,
     R"(^:SerialProperty\[DeviceNo=\s*(\d+)\s*\]\.FlowControl=\s*(\d+)\s*)", false, 2},
}};

std::array<std::regex, s_patterns.size()> buildExpressions()
{
    std::array<std::regex, s_patterns.size()> expressions;
    for (std::size_t i = 0; i < s_patterns.size(); ++i) {
        auto options = std::regex_constants::ECMAScript;
        if (s_patterns[i].ignoresCase) {
            options |= std::regex_constants::icase;
        }
        expressions[i].imbue(std::locale::classic());
        expressions[i].assign(s_patterns[i].text, options);
    }
    return expressions;
}

std::string_view group(const std::cmatch& match, std::size_t number)
{
    return {match[number].first, static_cast<std::size_t>(match[number].length())};
}

} // namespace

ConfigurationLine matchWithExpressions(std::string_view line)
{
    static const auto s_expressions = buildExpressions();
    // Reused: allocating the matches would cost more than matching.
    thread_local std::cmatch match;
    for (std::size_t i = 0; i < s_patterns.size(); ++i) {
        const Pattern& pattern = s_patterns[i];
        if (!std::regex_match(line.data(), line.data() + line.size(), match, s_expressions[i]) ||
            !match[1].matched || (pattern.groups == 2 && !match[2].matched)) {
            continue;
        }
        return {pattern.kind, group(match, 1),
                pattern.groups == 2 ? group(match, 2) : std::string_view()};
    }
    return {};
}

void OracleReader::read(std::string_view bytes)
{
    m_contents = {};
    while (!bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        readLine(bytes.substr(0, end));
        bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    }
}

void OracleReader::readLine(std::string_view text)
{
    const ConfigurationLine line = matchWithExpressions(text);
    ++m_linesOfKind[static_cast<std::size_t>(line.kind)];
    try {
        act(line);
    } catch (const std::out_of_range&) {
        ++m_linesOutOfRange;
    }
}

void OracleReader::act(const ConfigurationLine& line)
{
    const std::string first(line.first);
    const std::string second(line.second);
    switch (line.kind) {
    case LineKind::None:
        return;
    case LineKind::Provider:
        m_contents.provider = static_cast<unsigned short>(std::stoi(first));
        return;
    case LineKind::Resource:
        m_contents.resources.push_back(first);
        return;
    case LineKind::Alias: {
        std::string name;
        for (const char c : first) {
            name += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
        m_contents.aliases[name] = second;
        return;
    }
    default:
        break;
    }
    // Both conversions first: a line that is skipped creates no record.
    const auto number = static_cast<unsigned short>(std::stoi(first));
    const int value = std::stoi(second);
    const auto value16 = static_cast<std::uint16_t>(value);
    const auto value8 = static_cast<std::uint8_t>(value);
    switch (line.kind) {
    case LineKind::GpibPrimaryAddress:
        m_contents.gpib[number].primaryAddress = value16;
        break;
    case LineKind::GpibSecondaryAddress:
        m_contents.gpib[number].secondaryAddress = value16;
        break;
    case LineKind::GpibSystemController:
        m_contents.gpib[number].systemController = value16;
        break;
    case LineKind::SerialBaudrate:
        m_contents.serial[number].baudrate = static_cast<std::uint32_t>(value);
        break;
    case LineKind::SerialDataBits:
        m_contents.serial[number].dataBits = value8;
        break;
    case LineKind::SerialStopBits:
        m_contents.serial[number].stopBits = value8;
        break;
    case LineKind::SerialParity:
        m_contents.serial[number].parity = value8;
        break;
    default:
        m_contents.serial[number].flowControl = value8;
        break;
    }
}

bool beginsWithHeader(std::string_view bytes)
{
    return bytes.substr(0, bytes.find('\n')).substr(0, s_header.size()) == s_header;
}

std::string expectedStart(const FileContents& contents)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << s_header << "\n:Provider=" << contents.provider << '\n';
    for (const auto& [port, properties] : contents.serial) {
        const auto line = [&text, number = port](const char* key, std::uint32_t value) {
            text << ":SerialProperty[DeviceNo=" << number << "]." << key << '=' << value << '\n';
        };
        line("Baudrate", properties.baudrate);
        line("DataBits", properties.dataBits);
        line("StopBits", properties.stopBits);
        line("Parity", properties.parity);
        line("FlowControl", properties.flowControl);
    }
    for (const std::string& resource : contents.resources) {
        text << resource << '\n';
    }
    return text.str();
}

std::string expectedAliases(const FileContents& contents)
{
    std::string text;
    for (const auto& [alias, resource] : contents.aliases) {
        text.append(alias).append("=").append(resource).append("\n");
    }
    return text;
}
