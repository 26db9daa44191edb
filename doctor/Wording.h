// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace QvVisa {

/// "1 line", "2 lines". plural: for nouns that take more than an s.
std::string counted(std::size_t count, const std::string& noun, const std::string& plural = {});

/// "a", "a and b", "a, b and c"; after most items, "and 5 more".
std::string enumerated(const std::vector<std::string>& items, std::size_t most = 4);

/// The text for an errno value, beginning in lower case: "permission denied".
std::string errorText(int error);

/// "1.5 MB"; powers of 1000.
std::string sizeText(std::uintmax_t bytes);

/// "<0.1 ms", "0.3 ms", "150 ms", "1.5 s", "10 s".
std::string durationText(std::chrono::nanoseconds duration);

/// "VI_ERROR_IO (I/O error)"; the number alone for a status without a published name.
std::string statusText(ViStatus status);

} // namespace QvVisa
