// SPDX-License-Identifier: MIT
#include "visa/HostName.h"

#include "visa/Text.h"

#include <algorithm>
#include <array>

#include <arpa/inet.h>

namespace visa {

namespace {

constexpr std::size_t longestHost = 253;
constexpr std::size_t longestLabel = 63;

/// The underscore is not in the standard for host names, but in use.
bool isLabel(std::string_view label)
{
    return !label.empty() && label.size() <= longestLabel && label.front() != '-' &&
           label.back() != '-' && std::all_of(label.begin(), label.end(), [](char c) {
               return isDigit(c) || isLetter(c) || c == '-' || c == '_';
           });
}

} // namespace

bool isHostName(std::string_view text)
{
    if (!text.empty() && text.back() == '.') {
        text.remove_suffix(1);
    }
    if (text.size() > longestHost) {
        return false;
    }
    for (bool isLast = false; !isLast;) {
        const std::size_t dot = text.find('.');
        isLast = dot == std::string_view::npos;
        if (!isLabel(text.substr(0, dot))) {
            return false;
        }
        text.remove_prefix(isLast ? text.size() : dot + 1);
    }
    return true;
}

std::optional<std::string> normalIpv6(std::string_view text)
{
    if (text.size() < 2 || text.front() != '[' || text.back() != ']') {
        return std::nullopt;
    }
    text = text.substr(1, text.size() - 2);
    const std::size_t percent = std::min(text.find('%'), text.size());
    const std::string_view zone = text.substr(percent);
    const std::string_view numbers = text.substr(0, percent);
    std::array<unsigned char, 16> address{};
    std::array<char, INET6_ADDRSTRLEN> shortest{};
    if (numbers.size() >= shortest.size() ||
        ::inet_pton(AF_INET6, std::string(numbers).c_str(), address.data()) != 1 ||
        zone.size() == 1 || zone.find_first_of(" []") != std::string_view::npos) {
        return std::nullopt;
    }
    ::inet_ntop(AF_INET6, address.data(), shortest.data(), shortest.size());
    return '[' + std::string(shortest.data()) + std::string(zone) + ']';
}

} // namespace visa
