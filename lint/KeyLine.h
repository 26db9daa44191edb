// SPDX-License-Identifier: MIT
#pragma once

#include "lint/LineFindings.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace lint {

/// A part of a line.
struct LinePart
{
    std::size_t offset = 0;
    std::string_view text;

    std::size_t end() const { return offset + text.size(); }
};

/// A line that begins with ':', taken apart as a setting as far as it goes. It is only for lines
/// that the reader ignores: it explains what keeps them from being read.
struct KeyLine
{
    /// Provider, SerialProperty, GPIBProperty or another word.
    LinePart word;
    bool hasBracket = false;
    LinePart deviceKey;
    bool hasDeviceEquals = false;
    LinePart device; ///< Without the white space around it.
    bool isBracketClosed = false;
    bool hasDot = false;
    LinePart key;
    bool hasEquals = false;
    LinePart value; ///< Without the white space around it.
    /// White space where the reader takes none.
    std::optional<std::size_t> whiteSpace;

    /// The line begins with ':'.
    static KeyLine parse(std::string_view line);

    bool isProvider() const;
    bool isSerial() const;
    bool isGpib() const;

    /// False for a comment: nothing in the line is like a key.
    bool looksLikeSetting() const;

    /// Says why the reader ignores the line; nothing for a comment. The line is one that the
    /// reader ignores. The offset is added to each column.
    void judge(LineFindings& findings, std::size_t offset) const;

    /// The line with the known words in their right case and no white space where the reader takes
    /// none; all else is as in the line.
    std::string repaired() const;

private:
    void judgeProvider(LineFindings& findings, std::size_t offset) const;
    void judgeProperty(LineFindings& findings, std::size_t offset) const;
    bool judgeDevice(LineFindings& findings, std::size_t offset) const;
    bool judgeKey(LineFindings& findings, std::size_t offset) const;
    void judgeValue(LineFindings& findings, std::size_t offset) const;

    std::string_view m_line;
};

} // namespace lint
