// SPDX-License-Identifier: MIT
#include "doctor/MachineChecks.h"

#include "doctor/CheckResult.h"
#include "doctor/Machine.h"
#include "doctor/Wording.h"
#include "document/Entries.h"
#include "visa/DeviceFiles.h"
#include "visa/LibraryProbe.h"

#include <algorithm>
#include <set>

namespace QvVisa {

namespace {

using PortNumbers = std::set<std::uint16_t>;

/// The serial ports of the file, the library and the machine.
struct Ports
{
    PortNumbers configured;
    PortNumbers listed;
    std::vector<std::string> deviceFiles;

    std::string onThisMachine() const
    {
        return deviceFiles.empty()
                   ? "this machine has no serial port"
                   : "this machine has " + counted(deviceFiles.size(), "serial port") + " (" +
                         enumerated(deviceFiles) + ')';
    }
};

Ports portsOf(const Machine& machine)
{
    Ports ports;
    for (const auto& [number, properties] : Entries(*machine.document).serial) {
        ports.configured.insert(number);
    }
    for (const std::string& name : visa::serialTerminals(machine.files)) {
        ports.deviceFiles.push_back("/dev/" + name);
    }
    if (machine.probe != nullptr) {
        for (const visa::FoundSerialPort& port : machine.probe->serialPorts) {
            if (port.parseStatus >= VI_SUCCESS) {
                ports.listed.insert(port.interfaceNumber);
            }
        }
    }
    return ports;
}

/// The ports of all that are not among the others, as "ASRL1".
std::vector<std::string> lackingIn(const PortNumbers& others, const PortNumbers& all)
{
    std::vector<std::string> names;
    for (const std::uint16_t number : all) {
        if (others.count(number) == 0) {
            names.push_back("ASRL" + std::to_string(number));
        }
    }
    return names;
}

/// Without the library's list, the ports have no numbers: only how many there are can be compared.
void compareWithMachine(const Machine& machine, const Ports& ports, CheckReport& report)
{
    const std::string settings =
        "The file has settings for " + counted(ports.configured.size(), "serial port");
    if (ports.configured.size() > ports.deviceFiles.size()) {
        report.note(settings + ", but " + ports.onThisMachine() + '.',
                    machine.command("serial") + " lists the settings.");
    } else {
        report.ok(settings + "; " + ports.onThisMachine() + '.');
    }
}

void compareWithLibrary(const Machine& machine, const Ports& ports, CheckReport& report)
{
    const std::vector<std::string> gone = lackingIn(ports.listed, ports.configured);
    if (!gone.empty()) {
        report.note("The file has settings for " + enumerated(gone) +
                        ", which the VISA library does not list.",
                    "If a port is gone for good: " + machine.command("serial PORT --unset"));
    }
    const std::vector<std::string> bare = lackingIn(ports.configured, ports.listed);
    if (!bare.empty()) {
        report.note("The file has no settings for " + enumerated(bare) +
                        (bare.size() == 1 ? ": it starts" : ": they start") +
                        " with 9600 baud, 8 data bits, 1 stop bit and no parity.",
                    "Others are set with " + machine.command("serial PORT baud-rate=19200"));
    }
    // A library may list ports of other machines, or number placeholders.
    if (ports.listed.size() != ports.deviceFiles.size() && machine.files.exists("/sys/class/tty")) {
        report.note("The VISA library lists " + counted(ports.listed.size(), "serial port") + "; " +
                    ports.onThisMachine() + '.');
    }
    if (gone.empty() && bare.empty()) {
        report.ok(
            ports.listed.empty()
                ? "The VISA library lists no serial port, and the file has no settings for one."
                : "The file has settings for all serial ports that the VISA library lists.");
    }
}

} // namespace

void checkSerial(const Machine& machine, CheckReport& report)
{
    if (machine.isHuge()) {
        report.note("The lines of so large a file are not examined here.");
        return;
    }
    const Ports ports = portsOf(machine);
    const bool hasList = machine.probe != nullptr && machine.probe->hasSearchedSerialPorts;
    if (hasList) {
        compareWithLibrary(machine, ports, report);
    } else {
        compareWithMachine(machine, ports, report);
    }
}

} // namespace QvVisa
