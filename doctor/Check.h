// SPDX-License-Identifier: MIT
#pragma once

#include "doctor/CheckResult.h"
#include "doctor/Machine.h"

#include <string_view>
#include <vector>

namespace QvVisa {

/// What a check needs of the configuration file. A check that does not get it is not run: the check
/// that says why is run in its place.
enum class FileNeed
{
    Nothing,
    Regular, ///< A regular file, which need not be readable.
    Text,    ///< A text that the reader reads.
};

enum class LibraryNeed
{
    Nothing,
    Welcome,  ///< Finds more when Machine::probe is there.
    Required, ///< Is not run without Machine::probe.
};

/// One of the doctor's checks. It changes nothing and needs no network.
struct Check
{
    /// "file.lint": the group and, if it has more than one check, a name.
    const char* id;
    /// For a list of all checks.
    const char* description;
    FileNeed file;
    LibraryNeed library;
    void (*run)(const Machine& machine, CheckReport& report);
};

/// All checks in the order in which a user thinks: file, library, search, instruments, rights,
/// display.
const std::vector<Check>& checks();

/// The checks of that id, or of that group ("file"); empty when there are none.
std::vector<const Check*> checksNamed(std::string_view name);

/// The checks without those that cannot be run; for these, once, the checks that say why.
std::vector<const Check*> runnableChecks(const std::vector<const Check*>& selected,
                                         const Machine& machine);

/// Runs the checks that can be run, one after another. Those that require Machine::probe are left
/// out while it is null.
std::vector<CheckResult> runChecks(const std::vector<const Check*>& selected,
                                   const Machine& machine);

} // namespace QvVisa
