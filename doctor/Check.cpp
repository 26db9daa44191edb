// SPDX-License-Identifier: MIT
#include "doctor/Check.h"

#include "doctor/FileChecks.h"
#include "doctor/InstrumentChecks.h"
#include "doctor/LibraryChecks.h"
#include "doctor/MachineChecks.h"

#include <algorithm>

namespace QvVisa {

namespace {

constexpr const char* s_search = "file.search";
constexpr const char* s_read = "file.read";

/// The check that explains why another one cannot be run; empty when that one can.
std::string_view explanationFor(const Check& check, const Machine& machine)
{
    if (check.file == FileNeed::Nothing) {
        return {};
    }
    if (!machine.isRegularFile) {
        return s_search;
    }
    const bool isMet = check.file == FileNeed::Regular || machine.hasReadableText();
    return isMet ? std::string_view() : s_read;
}

} // namespace

const std::vector<Check>& checks()
{
    using File = FileNeed;
    using Library = LibraryNeed;
    static const std::vector<Check> s_checks{
        {s_search, "the file in use, and each place of the search", File::Nothing, Library::Nothing,
         checkSearch},
        {s_read, "whether the file is read, and what is in it", File::Regular, Library::Nothing,
         checkRead},
        {"file.write", "whether the file can be written", File::Regular, Library::Nothing,
         checkWrite},
        {"file.lint", "what is wrong in the file's lines", File::Text, Library::Nothing, checkLint},
        {"file.how", "whether a save replaces the file as a whole or in place", File::Regular,
         Library::Nothing, checkHow},
        {"file.link", "links that lead to the file", File::Regular, Library::Nothing, checkLink},
        {"file.time", "the file's modification time", File::Regular, Library::Nothing, checkTime},
        {"file.left", "temporary files of interrupted saves", File::Regular, Library::Nothing,
         checkLeft},
        {"file.window", "windows that are running on the file", File::Regular, Library::Nothing,
         checkWindow},
        {"file.loses", "lines that a save in the window drops", File::Text, Library::Nothing,
         checkLoses},
        {"library.candidates", "the files of the VISA library, and what is wrong with them",
         File::Nothing, Library::Required, checkCandidates},
        {"library.calls", "each call of the VISA library, its status and duration", File::Nothing,
         Library::Required, checkCalls},
        {"library.list", "why the window's list of instruments is empty or short", File::Nothing,
         Library::Required, checkList},
        {"instruments.missing", "aliases whose instrument was not found", File::Text,
         Library::Required, checkMissing},
        {"instruments.finder", "what the finder asked and left out, if it is the library",
         File::Nothing, Library::Required, checkFinder},
        {"serial", "serial ports without settings, and settings without a port", File::Text,
         Library::Welcome, checkSerial},
        {"rights", "device files that this user may not open", File::Nothing, Library::Nothing,
         checkRights},
        {"display", "what the window needs to be shown", File::Nothing, Library::Nothing,
         checkDisplay},
    };
    return s_checks;
}

std::vector<const Check*> checksNamed(std::string_view name)
{
    std::vector<const Check*> found;
    for (const Check& check : checks()) {
        const std::string_view id = check.id;
        if (id == name || id.substr(0, id.find('.')) == name) {
            found.push_back(&check);
        }
    }
    return found;
}

std::vector<const Check*> runnableChecks(const std::vector<const Check*>& selected,
                                         const Machine& machine)
{
    std::vector<const Check*> runnable;
    for (const Check* check : selected) {
        const std::string_view explanation = explanationFor(*check, machine);
        const Check* chosen = explanation.empty() ? check : checksNamed(explanation).front();
        if (std::find(runnable.begin(), runnable.end(), chosen) == runnable.end()) {
            runnable.push_back(chosen);
        }
    }
    return runnable;
}

std::vector<CheckResult> runChecks(const std::vector<const Check*>& selected,
                                   const Machine& machine)
{
    std::vector<CheckResult> results;
    for (const Check* check : runnableChecks(selected, machine)) {
        if (check->library != LibraryNeed::Required || machine.probe != nullptr) {
            CheckReport report(check->id, results);
            check->run(machine, report);
        }
    }
    return results;
}

} // namespace QvVisa
