// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>

namespace QvVisa {

/// The provider (manufacturer) ID of a configuration that names none.
inline constexpr unsigned short defaultProvider = 0xE5A;

/// Settings of one GPIB board.
struct SGpibProperties
{
    std::uint16_t primaryAddress = 0;
    /// 0xFFFF: the board has no secondary address.
    std::uint16_t secondaryAddress = 0xFFFF;
    /// 1: the board is system controller, 0: it is not.
    std::uint16_t systemController = 1;
};

/// Line settings of one serial (ASRL) port. The three codes are kept as the file or the editor gave
/// them, also when they are not listed here.
struct SSerialProperties
{
    /// Bits per second.
    std::uint32_t baudrate = 9600;
    std::uint8_t dataBits = 8;
    /// 0: one, 1: one and a half, 2: two.
    std::uint8_t stopBits = 0;
    /// 0: none, 1: odd, 2: even, 3: mark, 4: space.
    std::uint8_t parity = 0;
    /// 0: none, 1: XON/XOFF, 2: RTS/CTS, 6: RTS/CTS together with DTR/DSR.
    std::uint8_t flowControl = 0;
};

/// By board number. A board without an entry is not configured.
using GpibPropertiesMap = std::map<unsigned short, SGpibProperties>;
/// By port (interface) number. A port without an entry is not configured.
using SerialPropertiesMap = std::map<unsigned short, SSerialProperties>;

bool operator==(const SGpibProperties& left, const SGpibProperties& right);
bool operator==(const SSerialProperties& left, const SSerialProperties& right);

/// True when both maps hold the same numbers with equal records.
bool operator==(const GpibPropertiesMap& left, const GpibPropertiesMap& right);
bool operator==(const SerialPropertiesMap& left, const SerialPropertiesMap& right);

} // namespace QvVisa
