// SPDX-License-Identifier: MIT
#include "command/Commands.h"

#include "command/CommandLine.h"
#include "command/ConfigurationText.h"
#include "command/EditCommand.h"
#include "command/FileUpdate.h"
#include "config/Encoding.h"
#include "document/Merge.h"

#include <nlohmann/json.hpp>

#include <memory>

namespace QvVisa {

namespace {

struct MergeOptions
{
    std::string base;
    std::string ours;
    std::string theirs;
};

ExitCode runMerge(CommandContext& context, const MergeOptions& options)
{
    if (context.file) {
        throw CommandError(ExitCode::WrongUsage, "merge takes its files as arguments, not with -f");
    }
    const Document base(readWholeFile(options.base));
    // git gives an empty base for a file that both sides have added.
    if (!base.text().empty()) {
        requireHeader(base, pathToUtf8(options.base));
    }
    const Document theirs(readWholeFile(options.theirs));
    requireHeader(theirs, pathToUtf8(options.theirs));
    const std::string name = pathToUtf8(options.ours);
    MergedText merged;
    bool isChanged = false;
    updateFile(
        options.ours,
        [&](const Document& ours) {
            requireHeader(ours, name);
            merged = mergeDocuments(base, ours, theirs);
            isChanged = merged.text != ours.text();
            return isChanged ? std::optional<std::string>(merged.text) : std::nullopt;
        },
        std::nullopt);
    if (isChanged) {
        warnOfWindows(context.output, options.ours);
    }
    if (merged.hasConflict) {
        throw CommandError(ExitCode::Conflict,
                           name + ": conflict: decide between the lines that the markers <<<<<<< "
                                  "and >>>>>>> enclose, then delete the markers");
    }
    if (context.output.isJson()) {
        Json object;
        object["schema"] = "qvvisa-merge/1";
        object["file"] = name;
        object["changed"] = isChanged;
        context.output.json(object);
    } else {
        context.output.progress((isChanged ? "changed: " : "unchanged: ") + printable(name));
    }
    return ExitCode::Done;
}

} // namespace

void addMergeCommand(CommandLine& line)
{
    auto options = std::make_shared<MergeOptions>();
    CommandOptions command =
        line.addCommand("merge", "Merge the changes of two files into one, entry by entry",
                        [options](CommandContext& context) { return runMerge(context, *options); });
    command.addOption("BASE", options->base, "The file that both come from").required();
    command.addOption("OURS", options->ours, "The file to change").required();
    command.addOption("THEIRS", options->theirs, "The file with the other changes").required();
}

} // namespace QvVisa
