// SPDX-License-Identifier: MIT
#include "tests/config/format/HostileLines.h"

using namespace std::string_view_literals;

const std::array<std::string_view, 16> s_templateLines{
    ":QvVisaConfigurationFileVersion01"sv,
    ":Provider=1"sv,
    ":provider = 1 "sv,
    "GPIB0::12::INSTR"sv,
    "DX=X"sv,
    "dX = X "sv,
    "A:B=C=D"sv,
    ":GPIBProperty[DeviceNo=1].PrimaryAddress=2"sv,
    ":GPIBProperty[DeviceNo= 1 ].SecondaryAddress= 2 "sv,
    ":GPIBProperty[DeviceNo=1].SystemController=2"sv,
    ":SerialProperty[DeviceNo=1].Baudrate=2"sv,
    ":SerialProperty[DeviceNo= 1 ].DataBits= 2 "sv,
    ":SerialProperty[DeviceNo=1].StopBits=2"sv,
    ":SerialProperty[DeviceNo=1].Parity=2"sv,
    ":SerialProperty[DeviceNo=1].FlowControl=2"sv,
    "# :Provider=1"sv,
};

const std::string_view s_hostileBytes =
    "=:#;[]. \t\r\v\f\0\x08\x1F\x7F\x80\x85\xA0\xB2\xFF+-09aZ"sv;

const std::vector<std::string> s_numbers = [] {
    std::vector<std::string> numbers{"0", "1", "7", "007", "264", "9600", "16777216", "9999999999"};
    const std::string zeros(20, '0');
    for (const char* digits : {"", "2147483647", "2147483648"}) {
        numbers.push_back(zeros + digits);
    }
    numbers.emplace_back("18446744073709551616");
    numbers.emplace_back(38, '9');
    for (const unsigned bits : {7U, 8U, 15U, 16U, 31U, 32U, 63U}) {
        const std::uint64_t power = std::uint64_t{1} << bits;
        for (const std::uint64_t number : {power - 1, power, power + 1}) {
            numbers.push_back(std::to_string(number));
        }
    }
    return numbers;
}();

std::string HostileLines::file(std::size_t lines)
{
    std::string text = below(2) == 0 ? ":QvVisaConfigurationFileVersion01\n" : "";
    for (std::size_t i = 0; i < lines; ++i) {
        text += line();
        text += '\n';
    }
    if (below(2) == 0) {
        text.pop_back();
    }
    return text;
}

std::string HostileLines::line()
{
    switch (below(10)) {
    case 0:
        return anyBytes();
    case 1: {
        const std::string front = wellFormed();
        const std::string back = wellFormed();
        return front.substr(0, below(front.size() + 1)) + back.substr(below(back.size() + 1));
    }
    case 2:
    case 3:
    case 4:
        return damaged(wellFormed());
    default:
        return wellFormed();
    }
}

/// A template with its numbers and its blanks replaced.
std::string HostileLines::wellFormed()
{
    std::string text;
    for (const char c : pick(s_templateLines)) {
        if ((c == '1' || c == '2') && below(2) == 0) {
            text += below(2) == 0 ? pick(s_numbers) : std::to_string(below(300));
        } else if (c == ' ') {
            text += std::string(below(3), pick(" \t\v\f\r"sv));
        } else if (c == 'X') {
            text += anyBytes();
        } else {
            text += c;
        }
    }
    return text;
}

std::string HostileLines::damaged(std::string line)
{
    for (std::size_t left = 1 + below(3); left > 0; --left) {
        const std::size_t place = below(line.size() + 1);
        switch (below(4)) {
        case 0:
            line.insert(place, 1, pick(s_hostileBytes));
            break;
        case 1:
            line.insert(place, line.substr(place, 1 + below(8)));
            break;
        case 2:
            line.erase(place, 1 + below(3));
            break;
        default:
            if (place < line.size()) {
                line[place] =
                    below(2) == 0 ? pick(s_hostileBytes) : static_cast<char>(line[place] ^ 0x20);
            }
            break;
        }
    }
    return line;
}

std::string HostileLines::anyBytes()
{
    std::string text;
    for (std::size_t left = below(12); left > 0; --left) {
        const char byte = below(2) == 0 ? pick(s_hostileBytes) : static_cast<char>(below(256));
        text += byte != '\n' ? byte : '\r';
    }
    return text;
}
