// SPDX-License-Identifier: MIT
#include "finder/UsbInstruments.h"

#include "finder/SearchLog.h"
#include "visa/DeviceFiles.h"
#include "visa/SystemFiles.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

namespace finder {

namespace {

constexpr std::string_view s_usbDevices = "/sys/bus/usb/devices/";
constexpr std::size_t s_longestDescription = 255;

/// Hexadecimal digits, as sysfs writes identifiers.
std::optional<unsigned> hexadecimal(const std::optional<std::string>& text)
{
    unsigned number = 0;
    if (!text || text->empty()) {
        return std::nullopt;
    }
    constexpr int base = 16;
    const char* const end = text->data() + text->size();
    const auto result = std::from_chars(text->data(), end, number, base);
    return result.ec == std::errc() && result.ptr == end && number <= 0xFFFF ? std::optional(number)
                                                                             : std::nullopt;
}

/// "0x56A0".
std::string identifier(unsigned number)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text = "0x";
    for (int shift = 12; shift >= 0; shift -= 4) {
        text += digits[number >> shift & 0xFU];
    }
    return text;
}

/// Why a serial number cannot be a part of a resource string; empty when it can.
std::string faultOf(const std::string& serial)
{
    if (serial.empty()) {
        return "it has no serial number";
    }
    const bool isPrintable =
        std::all_of(serial.begin(), serial.end(), [](char c) { return c >= '!' && c <= '~'; });
    if (!isPrintable) {
        return "its serial number \"" + serial + "\" holds characters that no resource string can";
    }
    if (serial.front() == ':' || serial.back() == ':' || serial.find("::") != std::string::npos ||
        serial.find_first_of("[]") != std::string::npos) {
        return "its serial number \"" + serial + "\" would be read as something else";
    }
    return {};
}

void logAccess(const visa::SystemFiles& files, SearchLog& log, const std::string& device,
               const std::string& resource)
{
    const std::string node = visa::usbDeviceFile(files, device);
    if (files.exists(node) && !files.isAccessible(node)) {
        log.line("no permission for " + node + " (group " + files.groupOf(node) + "): " + resource +
                 " is listed, but cannot be opened");
    }
}

/// The instrument of one USB interface; nothing where it is none, or cannot be listed.
std::optional<UsbInstrument> instrumentOf(const visa::SystemFiles& files, SearchLog& log,
                                          const std::string& interfaceName)
{
    const std::string interface = std::string(s_usbDevices) + interfaceName;
    if (!visa::isTestAndMeasurement(files, interface)) {
        return std::nullopt;
    }
    const std::string device =
        std::string(s_usbDevices) + interfaceName.substr(0, interfaceName.find(':'));
    const auto vendor = hexadecimal(files.read(device + "/idVendor"));
    const auto product = hexadecimal(files.read(device + "/idProduct"));
    const auto number = hexadecimal(files.read(interface + "/bInterfaceNumber"));
    if (!vendor || !product || !number) {
        log.line("left out: USB instrument " + interfaceName + ": its identifiers are unreadable");
        return std::nullopt;
    }
    std::string serial = files.read(device + "/serial").value_or("");
    serial.erase(serial.find_last_not_of(' ') + 1);
    UsbInstrument instrument{*vendor, *product, std::move(serial), *number};
    const std::string resource = instrument.resourceString();
    std::string fault = faultOf(instrument.serial);
    if (fault.empty() && resource.size() > s_longestDescription) {
        fault = "its resource string would exceed 255 characters";
    }
    if (!fault.empty()) {
        log.line("left out: USB instrument " + identifier(*vendor) + " " + identifier(*product) +
                 " at " + interfaceName + ": " + fault);
        return std::nullopt;
    }
    logAccess(files, log, device, resource);
    return instrument;
}

} // namespace

std::string UsbInstrument::resourceString() const
{
    return "USB0::" + identifier(vendor) + "::" + identifier(product) + "::" + serial +
           (interfaceNumber != 0 ? "::" + std::to_string(interfaceNumber) : std::string()) +
           "::INSTR";
}

bool operator<(const UsbInstrument& left, const UsbInstrument& right)
{
    return std::tie(left.vendor, left.product, left.serial, left.interfaceNumber) <
           std::tie(right.vendor, right.product, right.serial, right.interfaceNumber);
}

void findUsbInstruments(const visa::SystemFiles& files, SearchLog& log,
                        const std::function<void(const UsbInstrument&)>& found)
{
    for (const std::string& name : files.names(std::string(s_usbDevices))) {
        if (name.find(':') == std::string::npos) {
            continue;
        }
        if (const auto instrument = instrumentOf(files, log, name)) {
            found(*instrument);
        }
    }
}

} // namespace finder
