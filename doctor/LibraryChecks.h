// SPDX-License-Identifier: MIT
#pragma once

namespace visa {
struct LibrarySearch;
} // namespace visa

namespace QvVisa {

class CheckReport;
struct Machine;

// The checks of the VISA library. They need Machine::probe, made with ProbeRequest::serialPorts.

/// Which files the candidates' names mean, what is wrong with those that are not used, and what
/// PyVISA misses in the one that is.
void checkCandidates(const Machine& machine, CheckReport& report);

/// The same for another search than that of this program.
void checkCandidates(const Machine& machine, const visa::LibrarySearch& search,
                     CheckReport& report);

/// Status and duration of each call, and the call in which the library hung or ended.
void checkCalls(const Machine& machine, CheckReport& report);

/// Why the window's list is empty or shorter than what the library delivered.
void checkList(const Machine& machine, CheckReport& report);

} // namespace QvVisa
