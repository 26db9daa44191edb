// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

/// Makes lines that are meant to confuse a reader of the format: valid ones of every kind with
/// odd spacing and odd numbers, valid ones damaged in a byte or two, fragments of the patterns
/// strung together, and noise. The same seed gives the same lines on every machine.
class OracleLines
{
public:
    explicit OracleLines(std::uint64_t seed) : m_random(seed) {}

    /// Any bytes but a line feed; short enough for the standard library's expressions.
    std::string line();

    /// So many lines; the last one with or without a line feed.
    std::string file(std::size_t lines);

private:
    std::size_t below(std::size_t bound);
    bool chance(std::size_t percent) { return below(100) < percent; }
    template <typename Table>
    auto pick(const Table& table)
    {
        return table[below(std::size(table))];
    }

    std::string validLine();
    std::string property();
    std::string damaged(std::string text);
    std::string fragments();
    std::string noise();
    std::string spaces();
    std::string number();
    std::string word();
    std::string inAnyCase(std::string_view text);
    char hostileByte();

    /// Its sequence is fixed by the language's standard, unlike what distributions make of it.
    std::mt19937_64 m_random;
};
