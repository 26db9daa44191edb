// SPDX-License-Identifier: MIT
#include "finder/PortmapMessage.h"

namespace finder {

namespace {

constexpr std::size_t wordSize = 4;

std::optional<std::uint32_t> wordAt(std::string_view packet, std::size_t offset)
{
    if (offset > packet.size() || packet.size() - offset < wordSize) {
        return std::nullopt;
    }
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < wordSize; ++i) {
        word = word << 8 | static_cast<unsigned char>(packet[offset + i]);
    }
    return word;
}

} // namespace

std::array<unsigned char, 56> encodeGetPort(std::uint32_t transaction)
{
    constexpr std::uint32_t call = 0;
    constexpr std::uint32_t rpcVersion = 2;
    constexpr std::uint32_t portmapProgram = 100000;
    constexpr std::uint32_t portmapVersion = 2;
    constexpr std::uint32_t getPort = 3;
    constexpr std::uint32_t noAuthentication = 0;
    constexpr std::uint32_t tcp = 6;
    const std::array<std::uint32_t, 14> words{transaction,
                                              call,
                                              rpcVersion,
                                              portmapProgram,
                                              portmapVersion,
                                              getPort,
                                              noAuthentication,
                                              0,
                                              noAuthentication,
                                              0,
                                              vxi11CoreProgram,
                                              vxi11CoreVersion,
                                              tcp,
                                              0};
    std::array<unsigned char, 56> packet{};
    std::size_t offset = 0;
    for (const std::uint32_t word : words) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            packet[offset++] = static_cast<unsigned char>(word >> shift & 0xFFU);
        }
    }
    return packet;
}

std::optional<std::uint16_t> decodeGetPortReply(std::string_view packet, std::uint32_t transaction)
{
    constexpr std::uint32_t reply = 1;
    constexpr std::uint32_t accepted = 0;
    constexpr std::uint32_t success = 0;
    constexpr std::uint32_t longestVerifier = 400;
    if (wordAt(packet, 0) != transaction || wordAt(packet, 4) != reply ||
        wordAt(packet, 8) != accepted) {
        return std::nullopt;
    }
    const auto verifierLength = wordAt(packet, 16);
    if (!verifierLength || *verifierLength > longestVerifier) {
        return std::nullopt;
    }
    const std::size_t result = 20 + (*verifierLength + wordSize - 1) / wordSize * wordSize;
    const auto port = wordAt(packet, result + wordSize);
    if (wordAt(packet, result) != success || !port || *port > 0xFFFF) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(*port);
}

} // namespace finder
