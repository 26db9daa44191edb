// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "visa/SystemFiles.h"

#include <filesystem>
#include <string>

namespace support {

/// A root folder with the parts of /sys and /dev that the programs read.
class FakeSystem
{
public:
    std::filesystem::path path(const std::string& path) const
    {
        return m_root.path() / path.substr(1);
    }

    visa::SystemFiles files() const { return visa::SystemFiles(m_root.path().string()); }

    void file(const std::string& name, const std::string& text) const
    {
        std::filesystem::create_directories(path(name).parent_path());
        writeFile(path(name), text);
    }

    void link(const std::string& name, const std::string& target) const
    {
        std::filesystem::create_directories(path(name).parent_path());
        std::filesystem::create_symlink(target, path(name));
    }

    /// A terminal whose driver has that name. type: what its file "type" says, empty for no file.
    void terminal(const std::string& name, const std::string& driver,
                  const std::string& type = {}) const
    {
        const std::string device = "/sys/devices/" + driver + "-" + name;
        std::filesystem::create_directories(path(device));
        link(device + "/driver", "../../bus/drivers/" + driver);
        link("/sys/class/tty/" + name + "/device", "../../../devices/" + driver + "-" + name);
        if (!type.empty()) {
            file("/sys/class/tty/" + name + "/type", type + "\n");
        }
        file("/dev/" + name, "");
    }

    /// A USB interface "1-2:1.0" of a device "1-2".
    void usbInterface(const std::string& name, const std::string& number = "00") const
    {
        const std::string folder = "/sys/bus/usb/devices/" + name;
        file(folder + "/bInterfaceClass", "fe\n");
        file(folder + "/bInterfaceSubClass", "03\n");
        file(folder + "/bInterfaceNumber", number + "\n");
    }

    void usbDevice(const std::string& name, const std::string& vendor, const std::string& product,
                   const std::string& serial) const
    {
        const std::string folder = "/sys/bus/usb/devices/" + name;
        file(folder + "/idVendor", vendor + "\n");
        file(folder + "/idProduct", product + "\n");
        file(folder + "/serial", serial + "\n");
    }

private:
    TemporaryFolder m_root;
};

} // namespace support
