// SPDX-License-Identifier: MIT
// An answer to GETPORT as the finder receives it.

#include "finder/PortmapMessage.h"
#include "fuzz/Judgement.h"

#include <vector>

namespace {

constexpr std::uint32_t transaction = 0x51564649; // "QVFI", which the seeds begin with

std::uint32_t wordAt(const std::vector<char>& bytes, std::size_t offset)
{
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        word = word << 8 | static_cast<unsigned char>(bytes[offset + i]);
    }
    return word;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::vector<char> bytes(data, data + size); // on the heap: a read past its end shows
    const std::string_view packet(bytes.data(), bytes.size());
    const auto port = finder::decodeGetPortReply(packet, transaction);
    require(!finder::decodeGetPortReply(packet, transaction + 1) || !port,
            "an answer to two transactions");
    if (!port) {
        return 0;
    }
    require(size >= 28, "an answer that is too short");
    require(wordAt(bytes, 0) == transaction && wordAt(bytes, 4) == 1 && wordAt(bytes, 8) == 0,
            "an answer that is no accepted reply");
    // The port is the last thing read, after a verifier of whole words.
    const std::size_t end = 28 + (wordAt(bytes, 16) + 3) / 4 * 4;
    require(end <= size, "a port from beyond the packet");
    require(wordAt(bytes, end - 8) == 0, "a port from a call that failed");
    require(wordAt(bytes, end - 4) == *port, "another port than the packet has");
    return 0;
}
