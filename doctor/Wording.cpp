// SPDX-License-Identifier: MIT
#include "doctor/Wording.h"

#include <algorithm>
#include <array>
#include <system_error>

namespace QvVisa {

std::string counted(std::size_t count, const std::string& noun, const std::string& plural)
{
    return std::to_string(count) + ' ' + (count == 1 ? noun : plural.empty() ? noun + 's' : plural);
}

std::string enumerated(const std::vector<std::string>& items, std::size_t most)
{
    std::vector<std::string> shown(
        items.begin(), items.begin() + static_cast<std::ptrdiff_t>(std::min(items.size(), most)));
    if (shown.size() < items.size()) {
        shown.push_back(std::to_string(items.size() - shown.size()) + " more");
    }
    std::string text;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        text += i == 0 ? "" : i + 1 < shown.size() ? ", " : " and ";
        text += shown[i];
    }
    return text;
}

std::string errorText(int error)
{
    std::string text = std::generic_category().message(error);
    if (!text.empty() && text[0] >= 'A' && text[0] <= 'Z') {
        text[0] = static_cast<char>(text[0] - 'A' + 'a');
    }
    return text;
}

std::string sizeText(std::uintmax_t bytes)
{
    constexpr std::array<const char*, 5> units{" bytes", " kB", " MB", " GB", " TB"};
    constexpr std::uintmax_t step = 1000;
    std::size_t unit = 0;
    std::uintmax_t tenths = bytes * 10;
    while (unit + 1 < units.size() && tenths >= step * 10) {
        tenths /= step;
        ++unit;
    }
    const std::string fraction =
        unit > 0 && tenths % 10 != 0 ? '.' + std::to_string(tenths % 10) : std::string();
    return std::to_string(tenths / 10) + fraction + units[unit];
}

} // namespace QvVisa
