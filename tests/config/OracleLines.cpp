// SPDX-License-Identifier: MIT
#include "tests/config/OracleLines.h"

#include <array>

using namespace std::string_view_literals;

namespace {

constexpr auto s_spaces = " \t\v\f\r"sv;
constexpr auto s_signs = "=:#;[]. \t\r\v\f\0\x7F\x80\x85\xA0\xFF_+-09aZ"sv;
constexpr auto s_wordBytes = "ABCxyz019:._-;#[]\0\x80\xA0\xE4\xFF"sv;

constexpr std::array s_gpibKeys{"PrimaryAddress"sv, "SecondaryAddress"sv, "SystemController"sv};
constexpr std::array s_serialKeys{"Baudrate"sv, "DataBits"sv, "StopBits"sv, "Parity"sv,
                                  "FlowControl"sv};

constexpr std::array s_numbers{
    "0"sv,          "1"sv,          "2"sv,          "7"sv,
    "9"sv,          "10"sv,         "127"sv,        "128"sv,
    "254"sv,        "255"sv,        "256"sv,        "257"sv,
    "264"sv,        "9600"sv,       "32767"sv,      "32768"sv,
    "65534"sv,      "65535"sv,      "65536"sv,      "65537"sv,
    "16777216"sv,   "2147483646"sv, "2147483647"sv, "2147483648"sv,
    "4294967295"sv, "4294967296"sv, "9999999999"sv, "9223372036854775807"sv,
    "007"sv,        "00000000000"sv};

constexpr std::array s_longNumbers{"18446744073709551615"sv, "18446744073709551616"sv,
                                   "000000000000000000000000000002147483647"sv,
                                   "99999999999999999999999999999999999999"sv};

constexpr std::array s_fragments{":Provider"sv,
                                 ":PROVIDER"sv,
                                 "Provider"sv,
                                 "="sv,
                                 "=="sv,
                                 " = "sv,
                                 ":"sv,
                                 "::"sv,
                                 "#"sv,
                                 ";"sv,
                                 ":GPIBProperty"sv,
                                 ":GpibProperty"sv,
                                 ":SerialProperty"sv,
                                 ":SERIALPROPERTY"sv,
                                 "[DeviceNo="sv,
                                 "[DeviceNo ="sv,
                                 "[deviceno="sv,
                                 "]."sv,
                                 "]"sv,
                                 "] ."sv,
                                 "."sv,
                                 ".PrimaryAddress="sv,
                                 ".SystemController ="sv,
                                 ".Baudrate="sv,
                                 ".baudrate="sv,
                                 ".Parity"sv,
                                 "FlowControl="sv,
                                 "GPIB0::12::INSTR"sv,
                                 "TCPIP0::10.0.0.5::inst0::INSTR"sv,
                                 "DMM"sv,
                                 "dmm"sv,
                                 "-1"sv,
                                 "+1"sv,
                                 "0x10"sv,
                                 "1e3"sv,
                                 "\0"sv,
                                 "\xFF\xFE"sv,
                                 "\xC3\xA4"sv,
                                 ":QvVisaConfigurationFileVersion01"sv};

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

} // namespace

std::size_t OracleLines::below(std::size_t bound)
{
    return static_cast<std::size_t>(m_random() % bound);
}

std::string OracleLines::line()
{
    const std::size_t choice = below(100);
    if (choice < 40) {
        return validLine();
    }
    if (choice < 75) {
        return damaged(validLine());
    }
    if (choice < 90) {
        return fragments();
    }
    return noise();
}

std::string OracleLines::file(std::size_t lines)
{
    std::string text;
    if (chance(50)) {
        text = ":QvVisaConfigurationFileVersion01\n";
    }
    for (std::size_t i = 0; i < lines; ++i) {
        text += line();
        text += '\n';
    }
    if (chance(50)) {
        text.pop_back();
    }
    return text;
}

std::string OracleLines::validLine()
{
    switch (below(14)) {
    case 0:
        return inAnyCase(":Provider") + spaces() + '=' + spaces() + number() + spaces();
    case 1:
        return word() + spaces() + word() + spaces();
    case 2:
        return word() + spaces() + '=' + spaces() + word() + spaces();
    default:
        return property();
    }
}

std::string OracleLines::property()
{
    const bool gpib = chance(40);
    const std::string_view key = gpib ? pick(s_gpibKeys) : pick(s_serialKeys);
    std::string text(gpib ? ":GPIBProperty" : ":SerialProperty");
    text += "[DeviceNo=" + spaces() + number() + spaces() + "].";
    text += key;
    return text + '=' + spaces() + number() + spaces();
}

std::string OracleLines::damaged(std::string text)
{
    const std::size_t wounds = 1 + below(3);
    for (std::size_t i = 0; i < wounds; ++i) {
        const std::size_t place = below(text.size() + 1);
        if (place == text.size()) {
            text += hostileByte();
            continue;
        }
        switch (below(6)) {
        case 0:
            text.erase(place, 1 + below(3));
            break;
        case 1:
            text[place] = hostileByte();
            break;
        case 2:
            text.insert(place, 1, hostileByte());
            break;
        case 3:
            text.insert(place, text.substr(place, 1 + below(8)));
            break;
        case 4:
            text = text.substr(0, place);
            break;
        default:
            if (isLetter(text[place])) {
                text[place] = static_cast<char>(text[place] ^ 0x20);
            } else {
                text.insert(place, spaces());
            }
            break;
        }
    }
    return text;
}

std::string OracleLines::fragments()
{
    std::string text;
    const std::size_t count = below(7);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t choice = below(10);
        if (choice < 6) {
            text += pick(s_fragments);
        } else if (choice < 8) {
            text += number();
        } else {
            text += spaces();
        }
    }
    return text;
}

std::string OracleLines::noise()
{
    std::string text;
    const bool anyByte = chance(40);
    const std::size_t length = below(24);
    for (std::size_t i = 0; i < length; ++i) {
        const char byte = anyByte ? static_cast<char>(below(256)) : hostileByte();
        text += byte != '\n' ? byte : '\r';
    }
    return text;
}

std::string OracleLines::spaces()
{
    std::string text;
    if (chance(60)) {
        return text;
    }
    const std::size_t count = 1 + below(3);
    for (std::size_t i = 0; i < count; ++i) {
        text += pick(s_spaces);
    }
    return text;
}

std::string OracleLines::number()
{
    const std::size_t choice = below(100);
    if (choice < 45) {
        return std::string(pick(s_numbers));
    }
    if (choice < 48) {
        return std::string(pick(s_longNumbers));
    }
    return std::to_string(choice < 80 ? below(10) : below(70000));
}

std::string OracleLines::word()
{
    if (chance(15)) {
        return "GPIB" + number() + "::" + number() + "::INSTR";
    }
    if (chance(20)) {
        // Few names, so that one alias often meets another of the same name.
        static constexpr std::array names{"DMM"sv, "dmm"sv, "Dmm"sv, "PSU1"sv, "psu1"sv};
        return std::string(pick(names));
    }
    std::string text;
    const std::size_t length = 1 + below(10);
    for (std::size_t i = 0; i < length; ++i) {
        text += pick(s_wordBytes);
    }
    return text;
}

std::string OracleLines::inAnyCase(std::string_view text)
{
    std::string result(text);
    if (chance(50)) {
        for (char& c : result) {
            if (isLetter(c) && chance(50)) {
                c = static_cast<char>(c ^ 0x20);
            }
        }
    }
    return result;
}

char OracleLines::hostileByte()
{
    return chance(80) ? pick(s_signs) : pick(s_wordBytes);
}
