// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace finder {

/// ONC RPC to a host's port mapper: at which TCP port is its VXI-11 core channel?
constexpr std::uint16_t portmapPort = 111;
constexpr std::uint32_t vxi11CoreProgram = 395183;
constexpr std::uint32_t vxi11CoreVersion = 1;

/// The GETPORT call for the VXI-11 core channel over TCP.
std::array<unsigned char, 56> encodeGetPort(std::uint32_t transaction);

/// The port in an accepted, successful reply to the call with that transaction number; 0 means that
/// the host does not offer VXI-11. Nothing for any other bytes, and for ports above 65535.
std::optional<std::uint16_t> decodeGetPortReply(std::string_view packet, std::uint32_t transaction);

} // namespace finder
