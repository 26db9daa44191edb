// SPDX-License-Identifier: MIT
#pragma once

namespace QvVisa {

class CheckReport;
struct Machine;

// The checks of what the VISA library found. They need Machine::probe.

/// Aliases whose instrument was not found. Looks host names up, for at most three seconds and not
/// beyond Machine::deadline.
void checkMissing(const Machine& machine, CheckReport& report);

/// What the finder did, if it is the library: whom it asked, what it left out and why, its serial
/// ports.
void checkFinder(const Machine& machine, CheckReport& report);

} // namespace QvVisa
