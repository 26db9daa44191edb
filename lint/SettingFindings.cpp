// SPDX-License-Identifier: MIT
#include "lint/SettingFindings.h"

#include "document/PropertyKeys.h"
#include "lint/LineText.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace lint {

namespace {

using QvVisa::ConfigurationLine;
using QvVisa::LineKind;

/// The bits that the record's field holds.
std::uint32_t maskOf(LineKind kind)
{
    switch (kind) {
    case LineKind::SerialBaudrate:
        return 0xFFFFFFFF;
    case LineKind::SerialDataBits:
    case LineKind::SerialStopBits:
    case LineKind::SerialParity:
    case LineKind::SerialFlowControl:
        return 0xFF;
    default:
        return 0xFFFF;
    }
}

std::string keyOf(LineKind kind)
{
    return kind == LineKind::Provider ? "Provider" : std::string(QvVisa::keyInFile(kind));
}

void judgeValue(LineKind kind, std::uint32_t value, std::size_t offset, LineFindings& findings)
{
    const std::string text = std::to_string(value);
    switch (kind) {
    case LineKind::SerialBaudrate:
        if (value == 0) {
            findings.add(FindingCode::BaudrateZero, offset, "The baud rate is 0.");
        }
        break;
    case LineKind::SerialDataBits:
        if (value < 5 || value > 8) {
            findings.add(FindingCode::UnusualDataBits, offset,
                         "No serial port has " + text + " data bits.");
        }
        break;
    case LineKind::SerialStopBits:
        if (value == 1) {
            findings.add(FindingCode::OneAndAHalfStopBits, offset,
                         "StopBits=1 is the code for one and a half stop bits, not for one.");
        } else if (value > 2) {
            findings.add(FindingCode::UnknownSerialCode, offset,
                         "There is no code " + text +
                             " for stop bits; OK in the window makes it "
                             "255.");
        }
        break;
    case LineKind::SerialParity:
        if (value > 4) {
            findings.add(FindingCode::UnknownSerialCode, offset,
                         "There is no code " + text +
                             " for the parity; OK in the window makes it "
                             "255.");
        }
        break;
    case LineKind::SerialFlowControl:
        if (value != 0 && value != 1 && value != 2 && value != 6) {
            findings.add(FindingCode::UnknownFlowControl, offset,
                         "There is no code " + text +
                             " for the flow control; OK in the window makes it 6.");
        }
        break;
    case LineKind::GpibPrimaryAddress:
        if (value > 30) {
            findings.add(FindingCode::UnusualGpibValue, offset,
                         "GPIB has no primary address " + text + ".");
        }
        break;
    case LineKind::GpibSecondaryAddress:
        if (value > 30 && value != 0xFFFF) {
            findings.add(FindingCode::UnusualGpibValue, offset,
                         "GPIB has no secondary address " + text + ".");
        }
        break;
    case LineKind::GpibSystemController:
        if (value > 1) {
            findings.add(FindingCode::UnusualGpibValue, offset,
                         "SystemController is neither 0 (no) nor 1 (yes).");
        }
        break;
    default:
        break;
    }
}

/// The number of the digits, which are a view into the line; reports one that is too large.
std::optional<std::uint32_t> readNumber(std::string_view line, std::string_view digits,
                                        LineFindings& findings)
{
    const std::optional<std::uint32_t> number = numberOf(digits);
    if (!number) {
        findings.add(FindingCode::NumberTooLarge,
                     static_cast<std::size_t>(digits.data() - line.data()),
                     "This setting is ignored: the number is above 2147483647.");
    }
    return number;
}

} // namespace

void judgeSetting(std::string_view line, const ConfigurationLine& match, EntryTables& tables,
                  LineFindings& findings)
{
    const bool isProvider = match.kind == LineKind::Provider;
    const std::string_view valueText = isProvider ? match.first : match.second;
    std::uint32_t device = 0;
    if (!isProvider) {
        const auto number = readNumber(line, match.first, findings);
        if (!number) {
            return;
        }
        device = *number & 0xFFFFU;
        if (*number > 0xFFFF) {
            findings.add(FindingCode::DeviceNumberCut,
                         static_cast<std::size_t>(match.first.data() - line.data()),
                         "The device number is cut to 16 bits: this sets number " +
                             std::to_string(device) + ".");
        }
    }
    const auto number = readNumber(line, valueText, findings);
    if (!number) {
        return;
    }
    const auto offset = static_cast<std::size_t>(valueText.data() - line.data());
    const std::uint32_t value = *number & maskOf(match.kind);
    if (value != *number) {
        findings.add(FindingCode::ValueCut, offset,
                     keyOf(match.kind) + " is cut to its width: this sets " +
                         std::to_string(value) + ".");
    } else {
        judgeValue(match.kind, value, offset, findings);
    }
    tables.addValue(static_cast<std::uint32_t>(match.kind) << 16U | device, value,
                    keyOf(match.kind), offset, findings);
}

} // namespace lint
