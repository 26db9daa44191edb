// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationLine.h"
#include "tests/config/FileContents.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// The line as the eleven regular expressions of the format see it. For short lines: the standard
/// library's matcher recurses once or more for each byte.
QvVisa::ConfigurationLine matchWithExpressions(std::string_view line);

/// A second reader of the format, built on nothing but those expressions: slow, and simple enough
/// to be believed.
class OracleReader
{
public:
    static constexpr std::size_t kinds = 12;

    /// The bytes of a whole file.
    void read(std::string_view bytes);

    /// What the bytes of the last read() say.
    const FileContents& contents() const { return m_contents; }

    /// How many lines of each kind there were in all files.
    const std::array<std::size_t, kinds>& linesOfKind() const { return m_linesOfKind; }

    /// How many lines were skipped for a number that was too large.
    std::size_t linesOutOfRange() const { return m_linesOutOfRange; }

private:
    void readLine(std::string_view text);
    void act(const QvVisa::ConfigurationLine& line);

    FileContents m_contents;
    std::array<std::size_t, kinds> m_linesOfKind{};
    std::size_t m_linesOutOfRange = 0;
};
