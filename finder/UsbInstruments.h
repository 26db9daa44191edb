// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace visa {
class SystemFiles;
} // namespace visa

namespace finder {

class SearchLog;

/// One USB Test and Measurement interface.
struct UsbInstrument
{
    unsigned vendor = 0;  ///< 16 bits.
    unsigned product = 0; ///< 16 bits.
    std::string serial;   ///< Fit for a resource string.
    unsigned interfaceNumber = 0;

    /// "USB0::0x1AB1::0x04CE::DS1::INSTR"; with an interface number that is not 0,
    /// "USB0::0x1AB1::0x04CE::DS1::2::INSTR".
    std::string resourceString() const;

    /// By vendor, product, serial number, interface number.
    friend bool operator<(const UsbInstrument& left, const UsbInstrument& right);
};

/// Lists the USB Test and Measurement instruments that the kernel knows: calls found with each one,
/// in the order of the kernel's names. What is left out, and device files that this user may not
/// open, go to the log. May block for as long as a device does, since reading a serial number takes
/// the device's lock.
void findUsbInstruments(const visa::SystemFiles& files, SearchLog& log,
                        const std::function<void(const UsbInstrument&)>& found);

} // namespace finder
