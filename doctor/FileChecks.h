// SPDX-License-Identifier: MIT
#pragma once

namespace QvVisa {

class CheckReport;
struct Machine;

// The checks of the configuration file; doctor/Check.h says which of them need a file.

void checkSearch(const Machine& machine, CheckReport& report);
void checkRead(const Machine& machine, CheckReport& report);
void checkLint(const Machine& machine, CheckReport& report);
void checkWrite(const Machine& machine, CheckReport& report);
void checkHow(const Machine& machine, CheckReport& report);
void checkLink(const Machine& machine, CheckReport& report);
void checkTime(const Machine& machine, CheckReport& report);
void checkLeft(const Machine& machine, CheckReport& report);
void checkWindow(const Machine& machine, CheckReport& report);
void checkLoses(const Machine& machine, CheckReport& report);

} // namespace QvVisa
