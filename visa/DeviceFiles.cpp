// SPDX-License-Identifier: MIT
#include "visa/DeviceFiles.h"

#include "visa/SystemFiles.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace visa {

namespace {

constexpr std::string_view s_terminals = "/sys/class/tty/";

/// True when the driver of the port, or of a device above it, only reserves a number for a port
/// that a machine may have.
bool isPlaceholderDriver(const SystemFiles& files, const std::string& terminal,
                         const std::string& driver)
{
    constexpr std::string_view placeholder = "serial8250";
    if (driver != "port") {
        return driver == placeholder;
    }
    // Since kernel 6.5 a port is below a controller, which is below the device with the driver.
    constexpr std::array<std::string_view, 3> above{"/device/../driver", "/device/../../driver",
                                                    "/device/../../../driver"};
    return std::any_of(above.begin(), above.end(), [&](std::string_view link) {
        return files.linkName(terminal + std::string(link)) == placeholder;
    });
}

bool exists(const SystemFiles& files, const std::string& name)
{
    const std::string terminal = std::string(s_terminals) + name;
    const auto driver = files.linkName(terminal + "/device/driver");
    if (!driver) {
        return false;
    }
    const auto type = files.read(terminal + "/type");
    return type ? *type != "0" : !isPlaceholderDriver(files, terminal, *driver);
}

std::string threeDigits(const std::optional<std::string>& number)
{
    constexpr std::size_t width = 3;
    const std::string text = number.value_or("");
    return std::string(width - std::min(width, text.size()), '0') + text;
}

} // namespace

std::vector<std::string> serialTerminals(const SystemFiles& files)
{
    std::vector<std::string> names = files.names(std::string(s_terminals));
    names.erase(std::remove_if(names.begin(), names.end(),
                               [&files](const auto& name) { return !exists(files, name); }),
                names.end());
    return names;
}

bool isTestAndMeasurement(const SystemFiles& files, const std::string& interface)
{
    return files.read(interface + "/bInterfaceClass") == "fe" &&
           files.read(interface + "/bInterfaceSubClass") == "03";
}

std::string usbDeviceFile(const SystemFiles& files, const std::string& device)
{
    return "/dev/bus/usb/" + threeDigits(files.read(device + "/busnum")) + '/' +
           threeDigits(files.read(device + "/devnum"));
}

} // namespace visa
