// SPDX-License-Identifier: MIT
#include "simulator/BenchResource.h"

#include "visa/ResourceName.h"
#include "visa/Text.h"

#include <algorithm>

namespace simulator {

namespace {

constexpr std::string_view placeholder = "{n}";

} // namespace

std::string BenchResource::numbered(std::uint32_t number) const
{
    std::string text = description;
    if (repeat == 0) {
        return text;
    }
    const std::string digits = std::to_string(number);
    for (std::size_t at = text.find(placeholder); at != std::string::npos;
         at = text.find(placeholder, at + digits.size())) {
        text.replace(at, placeholder.size(), digits);
    }
    return text;
}

bool BenchResource::isNamed(std::string_view text) const
{
    const std::string key = visa::resourceKey(text);
    const std::string first = visa::resourceKey(numbered(1));
    if (key == first || repeat < 2) {
        return key == first;
    }
    // Reading the number out of the text spares trying a million of them. It stands where the
    // first two differ.
    const std::string second = visa::resourceKey(numbered(2));
    const auto at = static_cast<std::size_t>(
        std::mismatch(first.begin(), first.end(), second.begin(), second.end()).first -
        first.begin());
    const std::string rest = key.substr(std::min(at, key.size()));
    const auto number =
        visa::parseNumber(rest.substr(0, rest.find_first_not_of("0123456789")), repeat);
    return number && *number != 0 &&
           visa::resourceKey(numbered(static_cast<std::uint32_t>(*number))) == key;
}

} // namespace simulator
