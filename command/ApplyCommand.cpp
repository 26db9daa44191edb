// SPDX-License-Identifier: MIT
#include "command/Commands.h"

#include "command/ConfigurationText.h"
#include "command/EditCommand.h"
#include "command/EntryCheck.h"
#include "config/ConfigurationValue.h"
#include "config/Encoding.h"

#include <memory>
#include <string>

namespace QvVisa {

namespace {

struct ApplyArguments
{
    std::string file;
    bool isPrune = false;
};

/// The entries of lines in the file's syntax.
WantedEntries entriesOf(const Document& lines)
{
    WantedEntries wanted;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const ConfigurationLine line = lines.line(index).match;
        if (line.kind == LineKind::Alias) {
            wanted.aliases.emplace_back(line.first, line.second);
        } else if (line.kind == LineKind::Resource) {
            wanted.resources.emplace_back(line.first);
        } else if (const auto provider = toProvider(line)) {
            wanted.provider = *provider;
        } else if (const auto property = toPropertyValue(line)) {
            auto& devices = isSerialProperty(property->kind) ? wanted.serial : wanted.gpib;
            devices[property->device][property->kind] = property->value;
        }
    }
    return wanted;
}

ExitCode runApply(CommandContext& context, const ApplyArguments& arguments,
                  const EditOptions& options)
{
    const bool isStandardInput = arguments.file == "-";
    if (isStandardInput && context.file == "-") {
        throw CommandError(ExitCode::WrongUsage, "the lines and the file cannot both be -");
    }
    const Document lines(isStandardInput ? readStandardInput(context)
                                         : readWholeFile(arguments.file));
    checkLines(context.output, lines,
               isStandardInput ? "standard input" : pathToUtf8(arguments.file), options.isForce);
    const WantedEntries wanted = entriesOf(lines);
    const OtherEntries others = arguments.isPrune ? OtherEntries::Remove : OtherEntries::Keep;
    return runEdit(context, options,
                   [&](const Document& document) { return setEntries(document, wanted, others); });
}

} // namespace

void addApplyCommand(CommandLine& line)
{
    auto arguments = std::make_shared<ApplyArguments>();
    CommandOptions command =
        addEditCommand(line, "apply", "Set the entries of lines in the file's own syntax",
                       [arguments](CommandContext& context, const EditOptions& options) {
                           return runApply(context, *arguments, options);
                       });
    command.addOption("FILE", arguments->file, "The lines; - is standard input").required();
    command.addFlag("--prune", arguments->isPrune, "Remove entries that are not in the lines");
}

} // namespace QvVisa
