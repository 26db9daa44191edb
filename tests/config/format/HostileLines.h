// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

/// One well-formed line of each kind, and lines that are skipped. No line feeds.
extern const std::array<std::string_view, 16> s_templateLines;

/// Bytes that have a meaning in the format, or resemble one that has.
extern const std::string_view s_hostileBytes;

/// Decimal numbers around the limits of 8, 16 and 32 bits, signed and unsigned, and longer ones.
extern const std::vector<std::string> s_numbers;

/// Generates lines that are hard to read: well-formed ones with unusual spacing and numbers,
/// the same damaged in up to three places, halves of two lines joined, and random bytes. A seed
/// gives the same lines on every machine.
class HostileLines
{
public:
    explicit HostileLines(std::uint64_t seed) : m_random(seed) {}

    /// Lines of at most 200 bytes. The last one may lack its line feed.
    std::string file(std::size_t lines);

private:
    std::size_t below(std::size_t bound) { return static_cast<std::size_t>(m_random() % bound); }
    template <typename Table>
    auto pick(const Table& table)
    {
        return table[below(std::size(table))];
    }

    std::string line();
    std::string wellFormed();
    std::string damaged(std::string line);
    std::string anyBytes();

    /// mt19937_64's sequence is fixed by the standard; the distributions' results are not.
    std::mt19937_64 m_random;
};
