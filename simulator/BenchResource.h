// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace simulator {

/// One resource line of a bench: a resource, or a row of numbered ones.
struct BenchResource
{
    struct Interface
    {
        ViUInt16 type;
        ViUInt16 number;
    };

    /// Any bytes but zero. In a repeated resource each {n} stands for the running number.
    std::string description;
    /// How many there are; zero for a single resource, whose {n} is plain text.
    std::uint32_t repeat = 0;
    /// False leaves out the terminating zero: all VI_FIND_BUFLEN characters are filled.
    bool hasEnd = true;
    /// What viParseRsrc answers instead of reading the description.
    std::optional<Interface> interface;
    /// What the instrument answers to *IDN?.
    std::string identification = "Quorvane,Stand-in instrument,0,1.0";

    std::uint32_t size() const { return repeat == 0 ? 1 : repeat; }

    /// The description with this running number (1 to size()).
    std::string numbered(std::uint32_t number) const;

    /// True where one of the descriptions means the same resource as this text.
    bool isNamed(std::string_view text) const;
};

} // namespace simulator
