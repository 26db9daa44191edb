// SPDX-License-Identifier: MIT
#include "doctor/MachineChecks.h"

#include "doctor/CheckResult.h"
#include "doctor/Machine.h"
#include "doctor/Wording.h"
#include "document/Entries.h"
#include "visa/DeviceFiles.h"

#include <algorithm>

namespace QvVisa {

void checkSerial(const Machine& machine, CheckReport& report)
{
    const Entries entries(*machine.document);
    std::vector<std::string> terminals = visa::serialTerminals(machine.files);
    for (std::string& name : terminals) {
        name.insert(0, "/dev/");
    }
    const std::string present = terminals.empty() ? "this machine has no serial port"
                                                  : "this machine has " +
                                                        counted(terminals.size(), "serial port") +
                                                        " (" + enumerated(terminals) + ')';
    if (entries.serial.size() > terminals.size()) {
        report.note("The file has settings for " + counted(entries.serial.size(), "serial port") +
                        ", but " + present + '.',
                    machine.command("serial") + " lists the settings.");
    } else {
        report.ok("The file has settings for " + counted(entries.serial.size(), "serial port") +
                  "; " + present + '.');
    }
}

} // namespace QvVisa
