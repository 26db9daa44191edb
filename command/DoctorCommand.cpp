// SPDX-License-Identifier: MIT
#include "command/Commands.h"

#include "command/CommandLine.h"
#include "command/CommandOptions.h"
#include "command/TextWrap.h"
#include "command/Watchdog.h"
#include "config/Encoding.h"
#include "doctor/Check.h"
#include "doctor/FinderLog.h"
#include "visa/LibraryProbe.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>

namespace QvVisa {

namespace {

struct DoctorOptions
{
    std::vector<std::string> names;
    bool isList = false;
    bool hasNoLibrary = false;
    std::chrono::milliseconds timeout = std::chrono::seconds(10);
};

/// The named checks, or all, in the usual order.
std::vector<const Check*> selectedChecks(const DoctorOptions& options)
{
    std::vector<const Check*> named;
    for (const std::string& name : options.names) {
        const std::vector<const Check*> found = checksNamed(name);
        if (found.empty()) {
            throw CommandError(ExitCode::WrongUsage, "there is no check " + pathToUtf8(name) +
                                                         " (see qvvisa doctor --list)");
        }
        named.insert(named.end(), found.begin(), found.end());
    }
    std::vector<const Check*> selected;
    for (const Check& check : checks()) {
        const bool isNamed =
            options.names.empty() || std::find(named.begin(), named.end(), &check) != named.end();
        const bool isPossible = !options.hasNoLibrary || check.library != LibraryNeed::Required;
        if (isNamed && isPossible) {
            selected.push_back(&check);
        }
    }
    if (selected.empty()) {
        throw CommandError(ExitCode::WrongUsage,
                           "the checks named examine the VISA library, which --no-library forbids");
    }
    return selected;
}

/// Calls the VISA library for the checks that want to know what it does.
visa::ProbeReport probe(Machine& machine, std::chrono::milliseconds timeout)
{
    visa::ProbeRequest request;
    request.timeout = timeout;
    request.serialPorts = true;
    const FinderLog log;
    request.environment = log.variables();
    visa::ProbeReport report = visa::probeLibrary(request);
    machine.finderLog = log.takeLines();
    return report;
}

std::size_t countOf(const std::vector<CheckResult>& results, Mark mark)
{
    return static_cast<std::size_t>(
        std::count_if(results.begin(), results.end(),
                      [=](const CheckResult& result) { return result.mark == mark; }));
}

/// The mark, coloured like the severity that it is.
std::string coloredMark(const Output& output, Mark mark)
{
    std::string word(markWord(mark));
    switch (mark) {
    case Mark::Ok:
        return word;
    case Mark::Note:
        return output.dataWord(Severity::Note, word);
    case Mark::Warning:
        return output.dataWord(Severity::Warning, word);
    case Mark::Problem:
        return output.dataWord(Severity::Error, word);
    }
    return word;
}

constexpr std::size_t s_indent = 9;

/// "problem  file.lint: TEXT", wrapped, with a line for the remedy.
std::string resultLines(const Output& output, const CheckResult& result)
{
    const std::size_t width = output.width();
    const std::string_view mark = markWord(result.mark);
    const std::string blanks(s_indent - mark.size(), ' ');
    // Wrapped with the plain word: colours take no columns.
    std::string text = wrapped(
        std::string(mark) + blanks + result.id + ": " + printable(result.text), width, s_indent);
    text.replace(0, mark.size(), coloredMark(output, result.mark));
    if (!result.remedy.empty()) {
        text += '\n' + wrapped(std::string(s_indent, ' ') + "-> " + printable(result.remedy), width,
                               s_indent + 3);
    }
    return text + '\n';
}

void printResults(Output& output, const std::vector<CheckResult>& results)
{
    for (const CheckResult& result : results) {
        if (!output.isQuiet() || result.mark == Mark::Problem) {
            output.data(resultLines(output, result));
        }
    }
    output.flush();
}

void printFirstRepair(Output& output, const std::vector<CheckResult>& results)
{
    const CheckResult* first = firstToRepair(results);
    if (output.isQuiet() && (first == nullptr || first->mark != Mark::Problem)) {
        return;
    }
    if (first == nullptr) {
        output.data("\nNothing needs repair.\n");
        return;
    }
    const std::string& what = first->remedy.empty() ? first->text : first->remedy;
    output.data(
        '\n' +
        wrapped("Repair first: " + first->id + ": " + printable(what), output.width(), s_indent) +
        '\n');
}

void printJson(Output& output, const std::vector<CheckResult>& results)
{
    Json object;
    object["schema"] = "qvvisa-doctor/1";
    object["problems"] = countOf(results, Mark::Problem);
    object["warnings"] = countOf(results, Mark::Warning);
    object["checks"] = Json::array();
    for (const CheckResult& result : results) {
        Json entry;
        entry["id"] = result.id;
        entry["mark"] = markWord(result.mark);
        entry["text"] = result.text;
        entry["remedy"] = result.remedy.empty() ? Json() : Json(result.remedy);
        object["checks"].push_back(std::move(entry));
    }
    output.json(object);
}

ExitCode printList(Output& output)
{
    if (output.isJson()) {
        throw CommandError(ExitCode::WrongUsage, "--list has no JSON form");
    }
    constexpr std::size_t width = 21;
    for (const Check& check : checks()) {
        std::string id = check.id;
        id.resize(std::max(id.size() + 1, width), ' ');
        output.data(id + check.description + '\n');
    }
    return ExitCode::Done;
}

/// The action's result. The probe needs a process with one thread, so each check has a watchdog of
/// its own.
template <typename Action>
auto withinTime(const std::string& name, Action action)
{
    constexpr std::chrono::seconds limit(30);
    const Watchdog watchdog(limit,
                            name + " did not end within 30 seconds: a file system or a device does "
                                   "not answer",
                            ExitCode::No);
    return action();
}

ExitCode runDoctor(CommandContext& context, const DoctorOptions& options)
{
    Output& output = context.output;
    if (options.isList) {
        return printList(output);
    }
    if (context.file == "-") {
        throw CommandError(ExitCode::WrongUsage,
                           "the doctor examines a file; qvvisa lint - reads standard input");
    }
    const std::vector<const Check*> selected = selectedChecks(options);
    Machine machine = withinTime("the search for the configuration file",
                                 [&] { return examineMachine(context.file); });
    machine.deadline = std::chrono::steady_clock::now() + options.timeout;
    std::optional<visa::ProbeReport> report;
    std::vector<CheckResult> results;
    for (const Check* check : runnableChecks(selected, machine)) {
        if (check->library != LibraryNeed::Nothing && !options.hasNoLibrary && !report) {
            report = probe(machine, options.timeout);
            machine.probe = &*report;
        }
        const std::vector<CheckResult> found =
            withinTime(check->id, [&] { return runChecks({check}, machine); });
        results.insert(results.end(), found.begin(), found.end());
        if (!output.isJson()) {
            printResults(output, found);
        }
    }
    if (output.isJson()) {
        printJson(output, results);
    } else {
        printFirstRepair(output, results);
    }
    return countOf(results, Mark::Problem) > 0 ? ExitCode::No : ExitCode::Done;
}

} // namespace

void addDoctorCommand(CommandLine& line)
{
    auto options = std::make_shared<DoctorOptions>();
    CommandOptions command = line.addCommand(
        "doctor", "Examine the machine: file, library, instruments, rights, display",
        [options](CommandContext& context) { return runDoctor(context, *options); });
    command.addOption("CHECK", options->names,
                      "Checks to run, such as file.lint, or groups, such as file; default: all");
    command.addFlag("--list", options->isList, "List the checks");
    command.addTimeout(options->timeout,
                       "How long the VISA library may take in all, 10 by default");
    command.addFlag("--no-library", options->hasNoLibrary, "Do not call the VISA library");
}

} // namespace QvVisa
