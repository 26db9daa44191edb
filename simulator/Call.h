// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace simulator {

/// The calls that the library offers.
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
    Write,
    Read,
    DisableEvent,
    DiscardEvents,
};

constexpr std::array<std::string_view, 13> callNames{
    "viOpenDefaultRM", "viFindRsrc",     "viFindNext",     "viParseRsrc",    "viParseRsrcEx",
    "viOpen",          "viClose",        "viSetAttribute", "viGetAttribute", "viWrite",
    "viRead",          "viDisableEvent", "viDiscardEvents"};

/// "viFindRsrc" and so on.
constexpr std::string_view callName(Call call)
{
    return callNames[static_cast<std::size_t>(call)];
}

/// The call of that name, nothing where there is none. The case counts.
inline std::optional<Call> callFromText(std::string_view text)
{
    for (std::size_t i = 0; i < callNames.size(); ++i) {
        if (callNames[i] == text) {
            return static_cast<Call>(i);
        }
    }
    return std::nullopt;
}

} // namespace simulator
