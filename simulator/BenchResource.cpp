// SPDX-License-Identifier: MIT
#include "simulator/BenchResource.h"

#include "simulator/Numbers.h"
#include "simulator/ResourceName.h"

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
    const std::size_t at = repeat == 0 ? std::string::npos : description.find(placeholder);
    std::uint32_t number = 1;
    if (at != std::string::npos) {
        // Reading the number out of the text spares trying a million of them.
        const std::string_view rest = text.substr(std::min(at, text.size()));
        const auto read = parseNumber(rest.substr(0, rest.find_first_not_of("0123456789")), repeat);
        if (!read || *read == 0) {
            return false;
        }
        number = static_cast<std::uint32_t>(*read);
    }
    return resourceKey(numbered(number)) == resourceKey(text);
}

} // namespace simulator
