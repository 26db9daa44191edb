// SPDX-License-Identifier: MIT
#include "doctor/FileChecks.h"

#include "config/Encoding.h"
#include "doctor/CheckResult.h"
#include "doctor/Machine.h"
#include "doctor/Wording.h"
#include "document/Entries.h"
#include "lint/Linter.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace QvVisa {

namespace {

/// "HOME (/home/ada/.quorvane/visa.conf)".
std::string describe(const SearchPlace& place)
{
    return place.place + " (" + pathToUtf8(place.path) + ')';
}

bool isDanglingLink(const std::string& path)
{
    struct stat status = {};
    return ::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode) &&
           ::stat(path.c_str(), &status) != 0;
}

void reportMissing(const SearchPlace& place, CheckReport& report)
{
    if (isDanglingLink(place.path)) {
        report.warning(describe(place) + " is a symbolic link that leads to no file.",
                       "Restore the file that it leads to, or remove the link.");
    } else if (place.place == "QVVISACONFFILE") {
        report.warning(place.path.empty() ? "QVVISACONFFILE is set, but empty: it names no file."
                                          : "QVVISACONFFILE names " + pathToUtf8(place.path) +
                                                ", which does not exist; the search goes on.",
                       "Unset QVVISACONFFILE, or let it name an existing file.");
    }
}

void reportPlace(const SearchPlace& place, CheckReport& report)
{
    switch (place.verdict) {
    case PlaceVerdict::Used:
        report.ok(pathToUtf8(place.path) + " is used (" + place.place + ").");
        break;
    case PlaceVerdict::Shadowed:
        report.note(describe(place) + " exists as well, but an earlier place has a file.");
        break;
    case PlaceVerdict::NotRegular:
        report.warning(describe(place) + " is not a regular file; the search passes it over.",
                       "Put a file there, or name one with QVVISACONFFILE.");
        break;
    case PlaceVerdict::Denied:
        report.warning(describe(place) + " cannot be reached: permission denied on a folder of "
                                         "its path. The search takes it for missing.",
                       "Let this user search (x) each folder of the path.");
        break;
    case PlaceVerdict::Missing:
        reportMissing(place, report);
        break;
    case PlaceVerdict::Unset:
        if (place.place == "HOME") {
            report.warning("HOME is not set, so .quorvane/visa.conf is not searched for.",
                           "Set HOME.");
        } else if (place.place == "working folder") {
            report.warning("The working folder has no name that can be determined, so visa.conf "
                           "in it is not searched for.",
                           "Change to a folder that exists and can be read.");
        }
        break;
    }
}

/// The reason and the remedy for a file that cannot be read.
void reportUnreadable(const Machine& machine, CheckReport& report)
{
    const std::string path = pathToUtf8(machine.file);
    switch (machine.readError) {
    case EISDIR:
        report.problem(path + " is a folder, not a file.", "Name a file.");
        break;
    case EINVAL:
        report.problem(path + " is not a regular file, so it is not read.", "Name a file.");
        break;
    case EFBIG:
        report.problem(path + " is larger than 1 GiB and counts as unreadable.",
                       "Name a configuration file.");
        break;
    case EACCES:
        report.problem(path + " may not be read by this user.",
                       "Give this user the right to read the file and to search (x) its folders.");
        break;
    case ENOENT:
        report.problem(path + " does not exist.",
                       machine.command("init") + " creates a file without entries.");
        break;
    default:
        report.problem(path + " cannot be read: " + errorText(machine.readError) + '.');
        break;
    }
}

struct Count
{
    std::size_t number;
    const char* noun;
    const char* plural;
};

/// "2 errors" and so on, without those of which there are none.
std::vector<std::string> nonZero(const std::vector<Count>& counts)
{
    std::vector<std::string> texts;
    for (const Count& count : counts) {
        if (count.number > 0) {
            texts.push_back(counted(count.number, count.noun, count.plural));
        }
    }
    return texts;
}

std::string positionAndMessage(const lint::Finding& finding)
{
    return "line " + std::to_string(finding.line) + ": " + latin1ToUtf8(finding.message) + " [" +
           lint::codeName(finding.code) + ']';
}

std::string lintRemedy(const Machine& machine, std::size_t findings, std::size_t fixable)
{
    if (fixable == findings) {
        return machine.command("lint --fix") + (findings == 1 ? " repairs it." : " repairs them.");
    }
    const std::string show =
        machine.command("lint") +
        (findings == 1 ? " shows it and its remedy" : " shows them and their remedies");
    return fixable == 0 ? show + '.'
                        : show + "; " + machine.command("lint --fix") + " repairs " +
                              std::to_string(fixable) + " of " + std::to_string(findings) + '.';
}

} // namespace

void checkSearch(const Machine& machine, CheckReport& report)
{
    if (machine.fileOption) {
        if (machine.isRegularFile) {
            report.ok(pathToUtf8(machine.file) + " is named by -f.");
        } else {
            reportUnreadable(machine, report);
        }
        return;
    }
    const std::vector<SearchPlace> places = searchPlaces(machine.environment);
    if (machine.file.empty()) {
        report.problem("No configuration file was found.",
                       "qvvisa init creates one; qvvisa where lists the places.");
    }
    for (const SearchPlace& place : places) {
        std::error_code ignored;
        const bool isSameFile = place.verdict == PlaceVerdict::Shadowed &&
                                std::filesystem::equivalent(place.path, machine.file, ignored);
        if (!isSameFile) {
            reportPlace(place, report);
        }
    }
    const std::string& named = places.front().path;
    if (!named.empty() && named.front() != '/') {
        report.note("QVVISACONFFILE is a relative path: it names another file in each working "
                    "folder.",
                    "Let it begin with /.");
    }
}

void checkRead(const Machine& machine, CheckReport& report)
{
    if (!machine.document) {
        reportUnreadable(machine, report);
        return;
    }
    const Document& document = *machine.document;
    if (!document.hasHeader()) {
        const std::vector<lint::Finding> findings = lint::findingsIn(document);
        const lint::Finding& finding = findings.front();
        report.problem(latin1ToUtf8(finding.message) + " [" + lint::codeName(finding.code) + ']',
                       finding.isFixable() ? machine.command("lint --fix") + " repairs it."
                                           : finding.remedy());
        return;
    }
    if (machine.isHuge()) {
        report.warning("The file is read, but has " + sizeText(document.text().size()) +
                           ": every program that reads it takes long, and the doctor does not "
                           "examine its lines.",
                       machine.command("list") + " shows the entries.");
        return;
    }
    const Entries entries(document);
    const std::vector<std::string> kinds = nonZero({
        {entries.aliases.size(), "alias", "aliases"},
        {entries.resources.size(), "resource without an alias", "resources without an alias"},
        {entries.serial.size(), "serial port", "serial ports"},
        {entries.gpib.size(), "GPIB board", "GPIB boards"},
    });
    report.ok(kinds.empty() ? "The file is read; it has no entries."
                            : "The file is read: " + enumerated(kinds) + '.');
}

void checkLint(const Machine& machine, CheckReport& report)
{
    if (machine.isHuge()) {
        report.note("The lines of so large a file are not examined here.",
                    machine.command("lint") + " examines them.");
        return;
    }
    const std::vector<lint::Finding> findings = lint::findingsIn(*machine.document);
    std::array<std::size_t, 3> counts{};
    std::size_t fixable = 0;
    for (const lint::Finding& finding : findings) {
        ++counts[static_cast<std::size_t>(finding.severity)];
        fixable += finding.isFixable() && finding.severity != lint::Severity::Note ? 1 : 0;
    }
    const auto countOf = [&counts](lint::Severity severity) {
        return counts[static_cast<std::size_t>(severity)];
    };
    const std::size_t errors = countOf(lint::Severity::Error);
    const std::size_t warnings = countOf(lint::Severity::Warning);
    if (errors + warnings == 0) {
        const std::size_t notes = countOf(lint::Severity::Note);
        report.ok("No errors and no warnings" +
                  (notes > 0 ? "; " + counted(notes, "note") : std::string()) + '.');
        return;
    }
    const lint::Severity worst = errors > 0 ? lint::Severity::Error : lint::Severity::Warning;
    const auto first = std::find_if(findings.begin(), findings.end(),
                                    [=](const auto& finding) { return finding.severity == worst; });
    report.add(
        errors > 0 ? Mark::Problem : Mark::Warning,
        enumerated(nonZero({{errors, "error", "errors"}, {warnings, "warning", "warnings"}})) +
            "; the first " + (errors > 0 ? "error" : "warning") + " is on " +
            positionAndMessage(*first),
        lintRemedy(machine, errors + warnings, fixable));
}

} // namespace QvVisa
