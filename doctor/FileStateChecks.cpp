// SPDX-License-Identifier: MIT
#include "doctor/FileChecks.h"

#include "config/Encoding.h"
#include "config/ProcessEnvironment.h"
#include "config/TargetFile.h"
#include "config/TemporaryFile.h"
#include "doctor/CheckResult.h"
#include "doctor/Machine.h"
#include "doctor/Wording.h"
#include "document/Difference.h"
#include "lint/FindingCode.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

namespace QvVisa {

namespace {

/// "3 hours", in the largest unit of which there are two.
std::string durationText(std::int64_t seconds)
{
    constexpr std::int64_t minute = 60;
    constexpr std::int64_t hour = 60 * minute;
    constexpr std::int64_t day = 24 * hour;
    const auto text = [seconds](std::int64_t unit, const char* name) {
        return counted(static_cast<std::size_t>(seconds / unit), name);
    };
    return seconds >= 2 * day      ? text(day, "day")
           : seconds >= 2 * hour   ? text(hour, "hour")
           : seconds >= 2 * minute ? text(minute, "minute")
                                   : text(1, "second");
}

/// The folders in which an interrupted save of the file may have left something.
std::set<std::filesystem::path> foldersOfTemporaryFiles(const Machine& machine)
{
    std::set<std::filesystem::path> folders;
    if (const auto target = TargetFile::resolve(machine.file)) {
        // Absolute, or a folder that is named twice would be searched twice.
        std::error_code error;
        folders.insert(std::filesystem::absolute(target->path(), error).parent_path());
    }
    // For files that are written in place.
    if (machine.environment.home && !machine.environment.home->empty()) {
        folders.insert(*machine.environment.home);
    }
    std::error_code error;
    const std::filesystem::path temporary = std::filesystem::temp_directory_path(error);
    if (!error) {
        folders.insert(temporary);
    }
    return folders;
}

} // namespace

void checkTime(const Machine& machine, CheckReport& report)
{
    struct stat status = {};
    if (::stat(machine.file.c_str(), &status) != 0) {
        report.problem("The file's modification time cannot be read.");
        return;
    }
    const std::int64_t time = status.st_mtime;
    if (time > machine.now) {
        report.warning("The file's modification time is " + durationText(time - machine.now) +
                           " in the future: programs that compare times may miss changes.",
                       "Set the machine's clock; then: touch " + shellWord(machine.file));
    } else if (time == machine.now) {
        report.note("The file was changed in this very second: a program that has just read it "
                    "does not notice another change within the second.");
    } else {
        report.ok("The file's modification time lies in the past.");
    }
}

void checkLeft(const Machine& machine, CheckReport& report)
{
    std::vector<std::string> paths;
    for (const std::filesystem::path& path : foldersOfTemporaryFiles(machine)) {
        const FileDescriptor folder = FileDescriptor::openFolder(AT_FDCWD, path / ".");
        if (folder.isOpen()) {
            for (const std::string& name : TemporaryFile::leftovers(folder.get())) {
                paths.push_back((path / name).string());
            }
        }
    }
    if (paths.empty()) {
        report.ok("No interrupted save has left a temporary file.");
        return;
    }
    std::sort(paths.begin(), paths.end());
    const std::string first = paths.front();
    for (std::string& path : paths) {
        path = pathToUtf8(path);
    }
    report.warning("Interrupted saves have left " + counted(paths.size(), "temporary file") + ": " +
                       enumerated(paths) + '.',
                   "Compare, if the configuration lacks something (" +
                       machine.command("diff " + shellWord(first)) + "), then remove: rm " +
                       shellWord(first));
}

void checkWindow(const Machine& machine, CheckReport& report)
{
    const std::vector<std::string> windows = windowsEditing(machine.file);
    if (windows.empty()) {
        report.ok("No window of this user is running on the file.");
        return;
    }
    report.note("QvVisaConfigure is running on the file (" +
                    std::string(windows.size() == 1 ? "process " : "processes ") +
                    enumerated(windows) +
                    "): its next Save writes its own table, without what others changed "
                    "meanwhile.",
                "Close the window before you edit the file by other means.");
}

void checkLoses(const Machine& machine, CheckReport& report)
{
    if (machine.isHuge()) {
        report.note("The lines of so large a file are not examined here.",
                    machine.command("diff --window") + " examines them.");
        return;
    }
    const Document& document = *machine.document;
    const WindowSave save(document);
    std::size_t ignored = 0;
    std::size_t gpib = 0;
    for (const std::size_t index : save.lost) {
        switch (document.line(index).match.kind) {
        case LineKind::GpibPrimaryAddress:
        case LineKind::GpibSecondaryAddress:
        case LineKind::GpibSystemController:
            ++gpib;
            break;
        case LineKind::None:
            ++ignored;
            break;
        default:
            break;
        }
    }
    if (ignored + gpib == 0) {
        report.ok("A save in the window drops nothing.");
        return;
    }
    std::vector<std::string> kinds;
    if (gpib > 0) {
        kinds.push_back(counted(gpib, "line") + " of GPIB boards");
    }
    if (ignored > 0) {
        kinds.push_back(counted(ignored, "comment or ignored line", "comments or ignored lines"));
    }
    report.add(gpib > 0 ? Mark::Warning : Mark::Note,
               "A save in the window drops " + enumerated(kinds) + '.',
               machine.command("diff --window") +
                   (gpib + ignored == 1 ? " shows it" : " shows them") +
                   "; edits with qvvisa drop nothing.");
}

} // namespace QvVisa
