// SPDX-License-Identifier: MIT
#include "doctor/MachineChecks.h"

#include "doctor/CheckResult.h"
#include "doctor/Machine.h"
#include "doctor/Owner.h"
#include "doctor/Wording.h"
#include "visa/DeviceFiles.h"

#include <unistd.h>

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace QvVisa {

namespace {

constexpr const char* s_usbDevices = "/sys/bus/usb/devices/";

/// A device file that this user may not open.
struct ClosedFile
{
    std::string path;
    bool isInstrument = false; ///< A USB instrument; else a serial port.
    std::string vendor;        ///< Of a USB device, four hexadecimal digits.
};

/// Those that exist and are examined, and those of them that are closed.
struct DeviceFiles
{
    bool isAny = false;
    std::vector<ClosedFile> closed;

    void examine(const visa::SystemFiles& files, const ClosedFile& file)
    {
        if (files.exists(file.path)) {
            isAny = true;
            if (!files.isAccessible(file.path)) {
                closed.push_back(file);
            }
        }
    }
};

DeviceFiles deviceFiles(const visa::SystemFiles& files)
{
    DeviceFiles found;
    std::set<std::string> seen;
    for (const std::string& name : files.names(s_usbDevices)) {
        if (name.find(':') == std::string::npos ||
            !visa::isTestAndMeasurement(files, s_usbDevices + name)) {
            continue;
        }
        const std::string device = s_usbDevices + name.substr(0, name.find(':'));
        const std::string path = visa::usbDeviceFile(files, device);
        if (seen.insert(path).second) {
            found.examine(files, {path, true, files.read(device + "/idVendor").value_or("")});
        }
    }
    for (const std::string& name : files.names("/dev")) {
        if (name.rfind("usbtmc", 0) == 0) {
            found.examine(files, {"/dev/" + name, true, {}});
        }
    }
    for (const std::string& name : visa::serialTerminals(files)) {
        found.examine(files, {"/dev/" + name, false, {}});
    }
    return found;
}

std::string lastPart(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}

/// How this user gets to open files of that group, which are all of one kind.
std::string remedyFor(const std::string& group, const ClosedFile& file)
{
    const std::string user = userName(::geteuid());
    if (group == "root" || group.empty()) {
        return "As root, put this line into /etc/udev/rules.d/70-instruments.rules, then plug the "
               "device in again: " +
               (file.vendor.empty()
                    ? "KERNEL==\"" + lastPart(file.path) + '"'
                    : "SUBSYSTEM==\"usb\", ATTR{idVendor}==\"" + file.vendor + '"') +
               ", TAG+=\"uaccess\"";
    }
    if (isListedMember(user, group)) {
        return "This user has joined the group " + group +
               " since the last login: log out and in again.";
    }
    return "sudo usermod -aG " + group + ' ' + user + "; then log out and in again.";
}

} // namespace

void checkRights(const Machine& machine, CheckReport& report)
{
    const DeviceFiles found = deviceFiles(machine.files);
    if (found.closed.empty()) {
        report.ok(!found.isAny ? "There is no serial port and no USB instrument to open."
                               : "This user may open all serial ports and USB instruments.");
        return;
    }
    // One result for each group and kind: that is what has one remedy.
    std::map<std::pair<bool, std::string>, std::vector<ClosedFile>> groups;
    for (const ClosedFile& file : found.closed) {
        groups[{!file.isInstrument, machine.files.groupOf(file.path)}].push_back(file);
    }
    for (const auto& [key, files] : groups) {
        const auto& [isSerial, group] = key;
        std::vector<std::string> paths;
        for (const ClosedFile& file : files) {
            paths.push_back(file.path);
        }
        report.add(isSerial ? Mark::Warning : Mark::Problem,
                   "This user may not open " + enumerated(paths) + " (group " + group + ')' +
                       (isSerial ? "." : ", so the instrument cannot be used."),
                   remedyFor(group, files.front()));
    }
}

} // namespace QvVisa
