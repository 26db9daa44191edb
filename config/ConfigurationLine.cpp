// SPDX-License-Identifier: MIT
#include "config/ConfigurationLine.h"

#include <array>
#include <cstring>

namespace QvVisa {

namespace {

constexpr bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

constexpr char toLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Reads a line from its front to its end.
class Cursor
{
public:
    explicit Cursor(std::string_view text) : m_rest(text) {}

    bool isAtEnd() const { return m_rest.empty(); }

    bool skip(std::string_view literal)
    {
        if (m_rest.substr(0, literal.size()) != literal) {
            return false;
        }
        m_rest.remove_prefix(literal.size());
        return true;
    }

    /// The literal is in lower case.
    bool skipIgnoringCase(std::string_view literal)
    {
        if (m_rest.size() < literal.size()) {
            return false;
        }
        for (std::size_t i = 0; i < literal.size(); ++i) {
            if (toLower(m_rest[i]) != literal[i]) {
                return false;
            }
        }
        m_rest.remove_prefix(literal.size());
        return true;
    }

    void skipSpaces()
    {
        takeWhile([](char c) { return isSpace(c); });
    }

    std::string_view takeDigits()
    {
        return takeWhile([](char c) { return isDigit(c); });
    }

    template <typename Predicate>
    std::string_view takeWhile(Predicate belongs)
    {
        std::size_t length = 0;
        while (length < m_rest.size() && belongs(m_rest[length])) {
            ++length;
        }
        const std::string_view taken = m_rest.substr(0, length);
        m_rest.remove_prefix(length);
        return taken;
    }

private:
    std::string_view m_rest;
};

struct Property
{
    std::string_view key;
    LineKind kind;
};

constexpr std::array<Property, 3> s_gpibProperties{{
    {"PrimaryAddress=", LineKind::GpibPrimaryAddress},
    {"SecondaryAddress=", LineKind::GpibSecondaryAddress},
    {"SystemController=", LineKind::GpibSystemController},
}};

constexpr std::array<Property, 5> s_serialProperties{{
    {"Baudrate=", LineKind::SerialBaudrate},
    {"DataBits=", LineKind::SerialDataBits},
    {"StopBits=", LineKind::SerialStopBits},
    {"Parity=", LineKind::SerialParity},
    {"FlowControl=", LineKind::SerialFlowControl},
}};

/// Digits between optional white space; empty when there is no digit.
std::string_view takeSpacedDigits(Cursor& cursor)
{
    cursor.skipSpaces();
    const std::string_view digits = cursor.takeDigits();
    cursor.skipSpaces();
    return digits;
}

template <std::size_t Count>
ConfigurationLine matchProperty(Cursor cursor, const std::array<Property, Count>& properties)
{
    const std::string_view number = takeSpacedDigits(cursor);
    if (number.empty() || !cursor.skip("].")) {
        return {};
    }
    for (const Property& property : properties) {
        if (cursor.skip(property.key)) {
            const std::string_view value = takeSpacedDigits(cursor);
            if (value.empty() || !cursor.isAtEnd()) {
                return {};
            }
            return {property.kind, number, value};
        }
    }
    return {};
}

ConfigurationLine matchProvider(Cursor cursor)
{
    cursor.skipSpaces();
    if (!cursor.skip("=")) {
        return {};
    }
    const std::string_view provider = takeSpacedDigits(cursor);
    if (provider.empty() || !cursor.isAtEnd()) {
        return {};
    }
    return {LineKind::Provider, provider, {}};
}

ConfigurationLine matchKey(std::string_view line)
{
    Cursor cursor(line);
    if (cursor.skip(":SerialProperty[DeviceNo=")) {
        return matchProperty(cursor, s_serialProperties);
    }
    if (cursor.skip(":GPIBProperty[DeviceNo=")) {
        return matchProperty(cursor, s_gpibProperties);
    }
    if (cursor.skipIgnoringCase(":provider")) {
        return matchProvider(cursor);
    }
    return {};
}

ConfigurationLine matchAlias(std::string_view line)
{
    Cursor cursor(line);
    const std::string_view name = cursor.takeWhile([](char c) { return c != '=' && !isSpace(c); });
    cursor.skipSpaces();
    if (!cursor.skip("=")) {
        return {};
    }
    cursor.skipSpaces();
    const std::string_view resource = cursor.takeWhile([](char c) { return !isSpace(c); });
    cursor.skipSpaces();
    if (resource.empty() || !cursor.isAtEnd()) {
        return {};
    }
    return {LineKind::Alias, name, resource};
}

} // namespace

ConfigurationLine matchConfigurationLine(std::string_view line) noexcept
{
    if (line.empty() || line.front() == '#' || line.front() == '=' || isSpace(line.front())) {
        return {};
    }
    if (line.front() == ':') {
        return matchKey(line);
    }
    if (std::memchr(line.data(), '=', line.size()) != nullptr) {
        return matchAlias(line);
    }
    // White space at the end belongs to the resource string, a carriage return too.
    return {LineKind::Resource, line, {}};
}

} // namespace QvVisa
