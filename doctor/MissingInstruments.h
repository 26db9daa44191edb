// SPDX-License-Identifier: MIT
#pragma once

#include "document/Entries.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace QvVisa {

/// An alias whose instrument was not found. All texts but the hint are Latin-1.
struct MissingInstrument
{
    std::string name;
    std::string resource;
    std::size_t line = 0; ///< Index from 0.
    /// What may explain it, as a sentence without a full stop, in UTF-8; empty when nothing does.
    std::string hint;
    /// The resource string that the alias could have instead; empty when there is none.
    std::string replacement;
};

/// The aliases, sorted by name, whose instrument is not among the found resource strings. Resource
/// strings are compared by what they name, whatever their form. An alias on a host (TCPIP) counts
/// as found when the list has that host with another service as well, since many libraries list one
/// service of an instrument only; host names are looked up for it until the deadline. A device of a
/// gateway ("gpib0,12") must be listed itself.
std::vector<MissingInstrument> missingInstruments(const Entries& entries,
                                                  const std::vector<std::string>& found,
                                                  std::chrono::steady_clock::time_point deadline);

} // namespace QvVisa
