// SPDX-License-Identifier: MIT
#pragma once

namespace QvVisa {

class CheckReport;
struct Machine;

// The checks of what surrounds the configuration file.

void checkSerial(const Machine& machine, CheckReport& report);
void checkRights(const Machine& machine, CheckReport& report);
void checkDisplay(const Machine& machine, CheckReport& report);

} // namespace QvVisa
