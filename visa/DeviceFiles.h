// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace visa {

class SystemFiles;

/// The names below /dev of the serial ports that exist ("ttyS0", "ttyUSB0"), in natural order. A
/// driver's placeholders for ports that a machine may have are left out.
std::vector<std::string> serialTerminals(const SystemFiles& files);

/// True for the folder below /sys of a USB interface of the Test and Measurement class.
bool isTestAndMeasurement(const SystemFiles& files, const std::string& interface);

/// The device file of a USB device, "/dev/bus/usb/001/004", by the device's folder below /sys.
std::string usbDeviceFile(const SystemFiles& files, const std::string& device);

} // namespace visa
