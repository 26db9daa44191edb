// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationLine.h"
#include "config/ConfigurationRecords.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace QvVisa {

/// The value of decimal digits; none when there are none or the value is beyond a signed 32-bit
/// integer. A line with such a number is skipped as a whole.
std::optional<std::uint32_t> toNumber(std::string_view digits);

/// What a property line sets, each number cut to the width in which it is held.
struct PropertyValue
{
    LineKind kind = LineKind::None;
    std::uint16_t device = 0; ///< The board or port.
    std::uint32_t value = 0;  ///< 16 bits for a board; 32 for a baud rate, 8 for the other keys.
};

bool isGpibProperty(LineKind kind);
bool isSerialProperty(LineKind kind);

/// None for a line that is no property line, or whose numbers are too large.
std::optional<PropertyValue> toPropertyValue(const ConfigurationLine& line);

/// None for a line that is no provider line, or whose number is too large; else cut to 16 bits.
std::optional<std::uint16_t> toProvider(const ConfigurationLine& line);

/// Stores the value in the field of its kind; a value of the other family is ignored.
void setProperty(SGpibProperties& properties, const PropertyValue& value);
void setProperty(SSerialProperties& properties, const PropertyValue& value);

} // namespace QvVisa
