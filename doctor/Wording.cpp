// SPDX-License-Identifier: MIT
#include "doctor/Wording.h"

#include "visa/StatusNames.h"

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

std::string durationText(std::chrono::nanoseconds duration)
{
    constexpr std::int64_t perMillisecond = 1000000;
    constexpr std::int64_t longInMilliseconds = 1000;
    const auto tenths = [](std::int64_t number) {
        return std::to_string(number / 10) + '.' + std::to_string(number % 10);
    };
    if (duration < std::chrono::microseconds(100)) {
        return "<0.1 ms";
    }
    const std::int64_t milliseconds = duration.count() / perMillisecond;
    if (milliseconds >= longInMilliseconds) {
        const bool isWhole = milliseconds / 100 % 10 == 0;
        return (isWhole ? std::to_string(milliseconds / 1000) : tenths(milliseconds / 100)) + " s";
    }
    return (milliseconds >= 10 ? std::to_string(milliseconds)
                               : tenths(duration.count() / (perMillisecond / 10))) +
           " ms";
}

std::string statusText(ViStatus status)
{
    const char* const description = visa::statusDescription(status);
    if (description == nullptr) {
        return visa::statusName(status);
    }
    std::string text = description;
    if (!text.empty() && text.back() == '.') {
        text.pop_back();
    }
    return visa::statusName(status) + " (" + text + ')';
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
