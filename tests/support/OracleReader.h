// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationLine.h"
#include "tests/support/FileContents.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// Matches the line against the eleven regular expressions that define the format. For lines up to
/// a few hundred bytes: the standard library's matcher recurses for each byte.
QvVisa::ConfigurationLine matchWithExpressions(std::string_view line);

/// A second reader of the format, built on those expressions only: slow and simple.
class OracleReader
{
public:
    static constexpr std::size_t kinds = 12;

    /// The bytes of a whole file.
    void read(std::string_view bytes);

    /// The contents of the last file read.
    const FileContents& contents() const { return m_contents; }

    /// The number of lines of each kind in all files, indexed by LineKind.
    const std::array<std::size_t, kinds>& linesOfKind() const { return m_linesOfKind; }

    /// The number of lines that were skipped because a number was too large.
    std::size_t linesOutOfRange() const { return m_linesOutOfRange; }

private:
    void readLine(std::string_view text);
    void act(const QvVisa::ConfigurationLine& line);

    FileContents m_contents;
    std::array<std::size_t, kinds> m_linesOfKind{};
    std::size_t m_linesOutOfRange = 0;
};

/// True when the first line begins with the version header.
bool beginsWithHeader(std::string_view bytes);

/// The file that a save writes for these contents: the part before the aliases, and the lines of
/// the aliases in their table's iteration order.
std::string expectedStart(const FileContents& contents);
std::string expectedAliases(const FileContents& contents);
