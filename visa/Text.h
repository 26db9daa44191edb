// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace visa {

/// A whole number from 0 to maximum, decimal or, with 0x, hexadecimal; no sign and no white space.
/// Nothing for any other text.
std::optional<std::uint64_t> parseNumber(std::string_view text, std::uint64_t maximum);

/// A copy with the ASCII letters in upper case; other bytes are unchanged.
std::string toUpperCase(std::string_view text);

} // namespace visa
