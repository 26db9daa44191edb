// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationLine.h"
#include "config/ConfigurationRecords.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace QvVisa {

/// The keys of each family, in the order in which they are written.
constexpr std::array<LineKind, 5> s_serialKeys{LineKind::SerialBaudrate, LineKind::SerialDataBits,
                                               LineKind::SerialStopBits, LineKind::SerialParity,
                                               LineKind::SerialFlowControl};
constexpr std::array<LineKind, 3> s_gpibKeys{
    LineKind::GpibPrimaryAddress, LineKind::GpibSecondaryAddress, LineKind::GpibSystemController};

/// The keys of a record, in that order, with its values.
std::array<std::pair<LineKind, std::uint32_t>, s_serialKeys.size()>
propertyValues(const SSerialProperties& properties);
std::array<std::pair<LineKind, std::uint32_t>, s_gpibKeys.size()>
propertyValues(const SGpibProperties& properties);

/// The key as the file spells it, such as "Baudrate"; empty for a kind that is no property.
std::string_view keyInFile(LineKind kind);

/// The value that holds where no line gives one.
std::uint32_t defaultValue(LineKind kind);

/// The largest value of the key that is held uncut.
std::uint32_t largestValue(LineKind kind);

/// The line that sets a property, without an ending.
std::string propertyLine(LineKind kind, std::uint16_t device, std::uint32_t value);

} // namespace QvVisa
