// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace QvVisa {

/// What one line of the configuration file is.
enum class LineKind
{
    None, ///< Nothing the reader uses: a comment, a blank line, a malformed one.
    Provider,
    Resource,
    Alias,
    GpibPrimaryAddress,
    GpibSecondaryAddress,
    GpibSystemController,
    SerialBaudrate,
    SerialDataBits,
    SerialStopBits,
    SerialParity,
    SerialFlowControl,
};

/// A line's kind and the texts it carries, as views into the line.
struct ConfigurationLine
{
    LineKind kind = LineKind::None;
    /// Provider: its digits. Resource: the whole line. Alias: the name. Property: the number of
    /// the board or port in digits.
    std::string_view first;
    /// Alias: the resource string. Property: the value in digits. Else empty.
    std::string_view second;
};

/// Classifies a line (without its line feed). Any bytes are valid. The time is linear in the
/// line, nothing is allocated, and the global locale is ignored: white space is blank, \t, \n,
/// \v, \f and \r, digits are 0 to 9, letters those of ASCII.
ConfigurationLine matchConfigurationLine(std::string_view line) noexcept;

} // namespace QvVisa
