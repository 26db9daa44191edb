// SPDX-License-Identifier: MIT
#include "doctor/InstrumentChecks.h"

#include "config/Encoding.h"
#include "doctor/CheckResult.h"
#include "doctor/FinderLog.h"
#include "doctor/Machine.h"
#include "doctor/MissingInstruments.h"
#include "doctor/Wording.h"
#include "document/Entries.h"
#include "visa/LibraryProbe.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace QvVisa {

namespace {

using visa::ProbeReport;

/// More results of one kind are summed up in one.
constexpr std::size_t s_mostResults = 5;

/// Whether the list of what was found is complete, so that what is not in it is missing.
bool isComplete(const ProbeReport& probe)
{
    return probe.hasSearched && !probe.isListCut && probe.droppedEntries == 0 &&
           probe.end.kind == visa::ProbeEnd::Finished &&
           (probe.searchStatus >= VI_SUCCESS || probe.searchStatus == VI_ERROR_RSRC_NFOUND);
}

std::vector<std::string> resourcesOf(const ProbeReport& probe)
{
    std::vector<std::string> resources;
    resources.reserve(probe.resources.size());
    for (const visa::FoundResource& found : probe.resources) {
        resources.push_back(found.resource);
    }
    return resources;
}

/// A missing instrument about which there is something to say.
void reportHint(const MissingInstrument& instrument, const Machine& machine, CheckReport& report)
{
    const std::string name = latin1ToUtf8(instrument.name);
    const std::string resource = latin1ToUtf8(instrument.resource);
    const std::string text =
        "The instrument of " + name + " (" + resource + ") was not found; " + instrument.hint + '.';
    if (instrument.replacement.empty()) {
        report.warning(text, "Correct the name, or give the alias an address: " +
                                 machine.command("set " + shellWord(name) + " RESOURCE"));
    } else {
        report.warning(text, "If it was exchanged: " +
                                 machine.command("set " + shellWord(name) + ' ' +
                                                 shellWord(pathToUtf8(instrument.replacement))));
    }
}

bool startsWith(const std::string& text, std::string_view begin)
{
    return text.compare(0, begin.size(), begin) == 0;
}

/// "The finder: LINE."
std::string sentence(const std::string& line)
{
    return "The finder: " + line + '.';
}

/// "ASRL101::INSTR is /dev/ttyUSB0; to pin it: 101 = /dev/serial/by-id/usb-A".
void reportPort(const std::string& line, CheckReport& report)
{
    constexpr std::string_view pin = "; to pin it: ";
    const std::size_t at = line.find(pin);
    if (at == std::string::npos) {
        report.ok(line + '.');
    } else {
        report.note(line.substr(0, at) +
                        "; the number depends on the order in which adapters are plugged in.",
                    "To keep it, add this line to ~/.quorvane/serial-ports.conf: " +
                        line.substr(at + pin.size()));
    }
}

void reportFinderLine(const std::string& line, CheckReport& report)
{
    if (startsWith(line, "asked 0 ")) {
        report.warning("The finder asked no network: no interface is up with an IPv4 address.",
                       "Connect the network; QVFIND_INTERFACES restricts the interfaces.");
    } else if (startsWith(line, "asked ")) {
        report.ok("The finder " + line + '.');
    } else if (startsWith(line, "no network search: ")) {
        report.note(sentence(line));
    } else if (startsWith(line, "ASRL")) {
        reportPort(line, report);
    } else if (startsWith(line, "found but not reachable: ")) {
        report.warning(sentence(line), "Give it an address in a subnet of this machine, or add its "
                                       "resource string by hand.");
    } else if (!startsWith(line, "no permission for ")) { // The check of rights knows the remedy.
        report.warning(sentence(line));
    }
}

} // namespace

void checkMissing(const Machine& machine, CheckReport& report)
{
    const Entries entries(*machine.document);
    if (entries.aliases.empty()) {
        report.ok("The file has no aliases.");
        return;
    }
    if (!isComplete(*machine.probe)) {
        report.note("Whether the instruments of the aliases are there is not known: the VISA "
                    "library gave no complete list.");
        return;
    }
    constexpr std::chrono::seconds longestLookup(3);
    const std::vector<MissingInstrument> missing = missingInstruments(
        entries, resourcesOf(*machine.probe),
        std::min(machine.deadline, std::chrono::steady_clock::now() + longestLookup));
    const std::size_t count = entries.aliases.size();
    if (missing.empty()) {
        report.ok(count == 1
                      ? "The instrument of the alias was found."
                      : "The instruments of all " + std::to_string(count) + " aliases were found.");
        return;
    }
    std::vector<std::string> names;
    std::size_t hints = 0;
    for (const MissingInstrument& instrument : missing) {
        if (!instrument.hint.empty() && ++hints <= s_mostResults) {
            reportHint(instrument, machine, report);
        } else {
            names.push_back(latin1ToUtf8(instrument.name));
        }
    }
    if (!names.empty()) {
        report.warning("The instruments of " + std::to_string(names.size()) + " of " +
                           counted(count, "alias", "aliases") +
                           " were not found: " + enumerated(names) + '.',
                       "Switch them on and check their cables; " +
                           machine.command("find --missing") + " lists them.");
    }
}

void checkFinder(const Machine& machine, CheckReport& report)
{
    constexpr std::size_t mostLines = 10;
    const std::vector<std::string> lines = beyondTheList(machine.finderLog);
    for (std::size_t i = 0; i < std::min(lines.size(), mostLines); ++i) {
        reportFinderLine(lines[i], report);
    }
    if (lines.size() > mostLines) {
        report.note("The finder's log has " + counted(lines.size() - mostLines, "more line") + '.',
                    "QVFIND_LOG=FILE qvvisa find writes all of them to a file.");
    }
}

} // namespace QvVisa
