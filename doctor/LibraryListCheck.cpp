// SPDX-License-Identifier: MIT
#include "doctor/LibraryChecks.h"

#include "config/Encoding.h"
#include "doctor/CheckResult.h"
#include "doctor/Machine.h"
#include "doctor/Wording.h"
#include "visa/LibraryProbe.h"
#include "visa/StatusNames.h"

#include <algorithm>
#include <string>
#include <vector>

namespace QvVisa {

namespace {

using visa::FoundResource;
using visa::ProbedCall;
using visa::ProbeReport;

constexpr const char* s_empty = "The window's list is empty: ";

const ProbedCall* openingOf(const ProbeReport& probe)
{
    const auto call =
        std::find_if(probe.calls.begin(), probe.calls.end(), [](const ProbedCall& each) {
            return each.name == "viOpenDefaultRM" && each.hasAnswered;
        });
    return call != probe.calls.end() ? &*call : nullptr;
}

std::vector<std::string> textsOf(const std::vector<FoundResource>& resources)
{
    std::vector<std::string> texts;
    texts.reserve(resources.size());
    for (const FoundResource& found : resources) {
        texts.push_back(pathToUtf8(found.resource));
    }
    return texts;
}

/// Why the list is empty. False when it is not.
bool reportEmpty(const ProbeReport& probe, const Machine& machine, CheckReport& report)
{
    const ProbedCall* const opening = openingOf(probe);
    if (probe.library.empty()) {
        report.problem(std::string(s_empty) + "no VISA library is in use.",
                       probe.end.kind == visa::ProbeEnd::Finished
                           ? "qvvisa doctor library.candidates says why."
                           : "qvvisa doctor library.calls says why.");
    } else if (opening != nullptr && opening->status < VI_SUCCESS) {
        report.problem(s_empty + ("viOpenDefaultRM fails with " + statusText(opening->status)) +
                           '.',
                       "Start the services that belong to the library, or install it again.");
    } else if (!probe.hasSearched) {
        report.problem(std::string(s_empty) + "the library does not complete its search.",
                       "qvvisa doctor library.calls says in which call.");
    } else if (probe.searchStatus == VI_ERROR_RSRC_NFOUND ||
               (probe.searchStatus == VI_SUCCESS && probe.count == 0)) {
        report.warning(s_empty +
                           ("the library found nothing (viFindRsrc answered " +
                            visa::statusName(probe.searchStatus)) +
                           (probe.searchStatus == VI_SUCCESS ? " with a count of 0)." : ")."),
                       "Switch the instruments on and check their cables and addresses.");
    } else if (probe.searchStatus < VI_SUCCESS) {
        report.problem(s_empty + ("viFindRsrc fails with " + statusText(probe.searchStatus)) + '.',
                       "Install another version of the library.");
    } else if (probe.searchStatus > VI_SUCCESS) {
        report.problem(
            s_empty + ("viFindRsrc answered with the warning " + statusText(probe.searchStatus)) +
                ", and the window takes only success. The library delivered " +
                (probe.resources.empty() ? "nothing" : enumerated(textsOf(probe.resources))) + '.',
            machine.command("add RESOURCE") + " adds a resource to the file.");
    } else {
        return false;
    }
    return true;
}

std::size_t deliveredWithWarning(const ProbeReport& probe)
{
    return static_cast<std::size_t>(
        std::count_if(probe.resources.begin(), probe.resources.end(),
                      [](const FoundResource& each) { return each.status > VI_SUCCESS; }));
}

std::string allOf(std::size_t count)
{
    return count == 1 ? "the resource" : "all " + counted(count, "resource");
}

/// Whether the list is shorter than it should be.
bool reportDropped(const ProbeReport& probe, CheckReport& report)
{
    const std::string lists = "The window lists " + std::to_string(probe.windowList.size()) +
                              " of " + counted(probe.count, "announced resource") + ": ";
    const std::size_t warned = deliveredWithWarning(probe);
    if (probe.isListCut && probe.droppedEntries > 0) {
        report.problem(lists + "the library fails to deliver the others. The window asks for each "
                               "of them, which may take very long.",
                       "Install another version of the library.");
    } else if (probe.droppedEntries > 0) {
        report.warning(lists + "viFindNext failed for " +
                           counted(probe.droppedEntries, "entry", "entries") + '.',
                       "Search again; qvvisa doctor library.calls names the status.");
    }
    if (warned > 0) {
        report.warning(lists + "viFindNext delivered " + counted(warned, "entry", "entries") +
                           " with a warning, and the window takes only success.",
                       "qvvisa find lists " + std::string(warned == 1 ? "it." : "them."));
    }
    if (probe.hasMoreThanCount) {
        report.warning("The library has more resources than the " + std::to_string(probe.count) +
                           " that it announces; the window does not list them.",
                       "Install another version of the library.");
    }
    return probe.droppedEntries > 0 || warned > 0 || probe.hasMoreThanCount;
}

bool isAscii(const FoundResource& found)
{
    return std::all_of(found.resource.begin(), found.resource.end(),
                       [](char each) { return static_cast<unsigned char>(each) < 0x80; });
}

/// Entries that are listed and still cause trouble.
bool reportOddEntries(const ProbeReport& probe, CheckReport& report)
{
    const auto countIf = [&probe](auto condition) {
        return static_cast<std::size_t>(
            std::count_if(probe.resources.begin(), probe.resources.end(), condition));
    };
    const std::size_t odd = countIf([](const FoundResource& each) { return !isAscii(each); });
    const std::size_t endless =
        countIf([](const FoundResource& each) { return each.isUnterminated; });
    const std::size_t empty =
        countIf([](const FoundResource& each) { return each.resource.empty(); });
    const std::string newer = "Install another version of the library.";
    if (odd > 0) {
        report.warning("Bytes that are not ASCII are in " + counted(odd, "listed resource") +
                           ", so PyVISA lists nothing.",
                       newer);
    }
    if (endless > 0) {
        report.warning("No terminating zero is in " + counted(endless, "listed resource") +
                           "; the window cuts it after 256 bytes, other programs may crash.",
                       newer);
    }
    if (empty > 0) {
        report.warning("The list has " + counted(empty, "empty entry", "empty entries") + '.',
                       newer);
    }
    const auto& list = probe.windowList;
    const auto twice = std::adjacent_find(list.begin(), list.end());
    if (twice != list.end()) {
        report.note("The library delivers " + pathToUtf8(*twice) +
                    " more than once, and the window lists it as often.");
    }
    return odd + endless + empty > 0;
}

/// What the window's property dialog makes of the serial ports.
void reportPorts(const ProbeReport& probe, CheckReport& report)
{
    if (probe.hasSearchedSerialPorts && probe.serialSearchStatus < VI_SUCCESS &&
        probe.serialSearchStatus != VI_ERROR_RSRC_NFOUND) {
        report.warning("The window offers no serial port: viFindRsrc ASRL?* fails with " +
                       statusText(probe.serialSearchStatus) + '.');
    }
    std::vector<std::string> unparsed;
    for (const visa::FoundSerialPort& port : probe.serialPorts) {
        if (port.parseStatus < VI_SUCCESS) {
            unparsed.push_back(port.resource.empty() ? "an empty entry"
                                                     : pathToUtf8(port.resource));
        }
    }
    if (!unparsed.empty()) {
        report.warning("The window takes " + enumerated(unparsed) +
                           " for port number 0, since viParseRsrc fails.",
                       "Write the settings with qvvisa serial PORT KEY=VALUE.");
    }
}

} // namespace

void checkList(const Machine& machine, CheckReport& report)
{
    const ProbeReport& probe = *machine.probe;
    if (reportEmpty(probe, machine, report)) {
        return;
    }
    const bool isShort = reportDropped(probe, report);
    const bool isOdd = reportOddEntries(probe, report);
    reportPorts(probe, report);
    const ProbedCall* const open = probe.openCall();
    if (open != nullptr && open->name == "viFindNext" && !probe.hasSearchedSerialPorts) {
        report.problem(std::string(s_empty) +
                           "viFindNext does not return. The library had delivered " +
                           enumerated(textsOf(probe.resources)) + '.',
                       "qvvisa doctor library.calls says what happens in it.");
    } else if (probe.isListCut && !isShort) {
        report.note("The list was read up to " + counted(probe.resources.size(), "resource") +
                    " of " + std::to_string(probe.count) + '.');
    } else if (!isShort && !isOdd) {
        report.ok("The window lists " + allOf(probe.resources.size()) +
                  " that the library delivers: " + enumerated(textsOf(probe.resources)) + '.');
    }
}

} // namespace QvVisa
