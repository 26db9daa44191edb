// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

/// What a resource string says about itself.
struct ResourceName
{
    ViUInt16 interfaceType = 0;
    ViUInt16 interfaceNumber = 0;
    /// "INSTR", "SOCKET", "INTFC" and so on, in upper case.
    std::string resourceClass;
    /// The string with interface number and class written out: "GPIB::5" is "GPIB0::5::INSTR".
    std::string fullName;

    /// Reads the published forms, upper and lower case alike; beside them QVIB::host, which is an
    /// instrument on interface TCPIP 0. Nothing where the text has none of these forms.
    static std::optional<ResourceName> parse(std::string_view text);
};

/// The interface type that a name ("ASRL", "TCPIP", either case) or number (0 to 65535) stands
/// for.
std::optional<ViUInt16> interfaceTypeFromText(std::string_view text);

/// What two strings for the same resource share: the full form in upper case, without the parts
/// that may be left out (device inst0, USB interface 0, GPIB secondary
/// address 0). A text that is no resource string is its
/// own key, in upper case.
std::string resourceKey(std::string_view text);

/// The parts between the double colons, one at least; a double colon in an address in [brackets]
/// parts nothing.
std::vector<std::string> splitResource(std::string_view text);

/// A copy with ASCII letters in upper case; other bytes stay.
std::string toUpper(std::string_view text);

} // namespace simulator
