// SPDX-License-Identifier: MIT
#include "command/EditCommand.h"

#include "command/ConfigurationText.h"
#include "command/EntryText.h"
#include "command/FileUpdate.h"
#include "config/Encoding.h"
#include "config/ProcessEnvironment.h"
#include "document/UnifiedDiff.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

namespace QvVisa {

namespace {

/// The last result of an edit, which may have been repeated.
struct FinishedEdit
{
    EditResult result;
    std::string diff; ///< In UTF-8.
};

FinishedEdit finishEdit(const Document& document, const std::string& name,
                        const EditOptions& options, const Edit& edit)
{
    requireHeader(document, name);
    FinishedEdit finished{edit(document), {}};
    if (options.isDiff && finished.result.isChanged()) {
        const EditedText& edited = finished.result.edited;
        const std::string diff = unifiedDiff(document, Document(edited.text), edited.hunks, "", "");
        const std::size_t hunks = diff.find("@@");
        finished.diff = "--- " + printable(name) + "\n+++ " + printable(name) + '\n' +
                        latin1ToUtf8(diff.substr(hunks));
    }
    return finished;
}

/// The diff as people see it: control characters are made visible, but for those that patch needs,
/// tabs and the carriage returns of line endings.
std::string printableDiff(std::string_view diff)
{
    std::string text;
    while (!diff.empty()) {
        const std::size_t end = std::min(diff.find_first_of("\t\n"), diff.size());
        const bool isCrLf = end > 0 && end < diff.size() && diff.substr(end - 1, 2) == "\r\n";
        text += printable(diff.substr(0, end - (isCrLf ? 1 : 0)));
        text.append(isCrLf ? "\r" : "").append(diff.substr(end, 1));
        diff.remove_prefix(std::min(end + 1, diff.size()));
    }
    return text;
}

void printJson(Output& output, const std::string& name, const FinishedEdit& finished,
               const EditOptions& options, const std::optional<std::string>& backup)
{
    const auto textOrNull = [](const std::optional<std::string>& text) {
        return text ? Json(latin1ToUtf8(*text)) : Json();
    };
    Json object;
    object["schema"] = "qvvisa-edit/1";
    object["file"] = name;
    object["changed"] = finished.result.isChanged();
    object["lines"] = Json::array();
    for (const LineChange& change : finished.result.edited.changes) {
        Json line;
        line["line"] = change.line;
        line["before"] = textOrNull(change.before);
        line["after"] = textOrNull(change.after);
        object["lines"].push_back(std::move(line));
    }
    object["backup"] = backup ? Json(pathToUtf8(*backup)) : Json();
    if (options.isDiff) {
        object["diff"] = finished.diff;
    }
    output.json(object);
}

void printResult(Output& output, const std::string& name, const FinishedEdit& finished,
                 const EditOptions& options, const std::optional<std::string>& backup)
{
    if (output.isJson()) {
        printJson(output, name, finished, options, backup);
        return;
    }
    for (const EntryOutcome& entry : finished.result.entries) {
        std::string line =
            entry.action == EntryOutcome::Action::Unchanged ? "unchanged: " : "changed: ";
        line += name;
        if (entry.line) {
            line += ':' + std::to_string(*entry.line);
        }
        output.progress(printable(line + ": " + entryText(entry)));
    }
    output.diff(printableDiff(finished.diff));
}

ExitCode editStandardInput(CommandContext& context, const EditOptions& options, const Edit& edit)
{
    Output& output = context.output;
    if (output.isJson()) {
        throw CommandError(ExitCode::WrongUsage, "--json and -f - both need standard output");
    }
    if (options.backupSuffix) {
        throw CommandError(ExitCode::WrongUsage, "--backup needs a file");
    }
    output.keepDataForText();
    const Document document(readStandardInput(context));
    const FinishedEdit finished = finishEdit(document, "standard input", options, edit);
    printResult(output, "standard input", finished, options, std::nullopt);
    if (!options.isCheck) {
        output.data(finished.result.edited.text);
    }
    return finished.result.isChanged() && (options.isCheck || options.isExitCode) ? ExitCode::No
                                                                                  : ExitCode::Done;
}

} // namespace

void warnOfWindows(Output& output, const std::string& path)
{
    for (const std::string& pid : windowsEditing(path)) {
        output.message(Severity::Warning, "QvVisaConfigure is running on this file (process " +
                                              pid + "): its next Save writes its own table");
    }
}

CommandOptions addEditCommand(CommandLine& line, const std::string& name,
                              const std::string& description,
                              std::function<ExitCode(CommandContext&, const EditOptions&)> action)
{
    auto options = std::make_shared<EditOptions>();
    CommandOptions command = line.addCommand(
        name, description, [options, action = std::move(action)](CommandContext& context) {
            return action(context, *options);
        });
    command.addFlag("--check", options->isCheck, "Write nothing; exit 1 if something would change");
    command.addFlag("--diff", options->isDiff, "Print the change as a unified diff");
    command
        .addOption("--backup", options->backupSuffix,
                   "Keep the old file under its name and this suffix; .old without one")
        .typeName("[=SUFFIX]");
    command.addFlag("--exit-code", options->isExitCode, "Exit 1 when something was changed");
    command.addFlag("--force", options->isForce, "Accept an entry that lint calls an error");
    return command;
}

ExitCode runEdit(CommandContext& context, const EditOptions& options, const Edit& edit)
{
    const std::string path = configurationPath(context);
    if (path == "-") {
        return editStandardInput(context, options, edit);
    }
    if (options.backupSuffix &&
        (options.backupSuffix->empty() || options.backupSuffix->find('/') != std::string::npos)) {
        throw CommandError(ExitCode::WrongUsage, "a backup suffix is not empty and has no slash");
    }
    const std::string name = pathToUtf8(path);
    FinishedEdit finished;
    std::optional<std::string> backup;
    if (options.isCheck) {
        finished = finishEdit(Document(readWholeFile(path)), name, options, edit);
    } else {
        backup = updateFile(
            path,
            [&](const Document& document) {
                finished = finishEdit(document, name, options, edit);
                // What is printed afterwards needs the changes, not the text.
                return finished.result.isChanged()
                           ? std::optional<std::string>(std::move(finished.result.edited.text))
                           : std::nullopt;
            },
            options.backupSuffix);
    }
    printResult(context.output, name, finished, options, backup);
    if (finished.result.isChanged() && !options.isCheck) {
        warnOfWindows(context.output, path);
    }
    return finished.result.isChanged() && (options.isCheck || options.isExitCode) ? ExitCode::No
                                                                                  : ExitCode::Done;
}

} // namespace QvVisa
