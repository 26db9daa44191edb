// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace resourcemanager {

/// The calls that a library can export.
enum class Call
{
    OpenDefaultRM,
    FindRsrc,
    FindNext,
    ParseRsrc,
    ParseRsrcEx,
    Open,
    Close,
    SetAttribute,
    GetAttribute,
    StatusDesc,
    Write,
    Read,
    DisableEvent,
    DiscardEvents,
};

constexpr std::array<std::string_view, 14> callNames{
    "viOpenDefaultRM", "viFindRsrc", "viFindNext",     "viParseRsrc",    "viParseRsrcEx",
    "viOpen",          "viClose",    "viSetAttribute", "viGetAttribute", "viStatusDesc",
    "viWrite",         "viRead",     "viDisableEvent", "viDiscardEvents"};

/// "viFindRsrc" and so on.
constexpr std::string_view callName(Call call)
{
    return callNames[static_cast<std::size_t>(call)];
}

/// The call of that name, case-sensitive; nothing for any other text.
inline std::optional<Call> callFromText(std::string_view text)
{
    const auto* const found = std::find(callNames.begin(), callNames.end(), text);
    return found != callNames.end() ? std::optional(static_cast<Call>(found - callNames.begin()))
                                    : std::nullopt;
}

} // namespace resourcemanager
