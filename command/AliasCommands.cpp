// SPDX-License-Identifier: MIT
#include "command/Commands.h"

#include "command/ConfigurationText.h"
#include "command/EditCommand.h"
#include "command/EntryCheck.h"
#include "command/Suggestion.h"
#include "config/Encoding.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace QvVisa {

namespace {

struct AliasArguments
{
    std::string name;
    std::string value; ///< The resource string, or the new name.
    std::vector<std::string> names;
};

ExitCode runSet(CommandContext& context, const AliasArguments& arguments,
                const EditOptions& options)
{
    const std::string name = argumentToLatin1(arguments.name);
    const std::string resource = argumentToLatin1(arguments.value);
    checkAlias(context.output, name, resource, options.isForce);
    WantedEntries wanted;
    wanted.aliases.emplace_back(name, resource);
    return runEdit(context, options,
                   [&](const Document& document) { return setEntries(document, wanted); });
}

void suggestForAbsent(Output& output, const Document& document, const EditResult& result)
{
    const bool isAnyAbsent =
        std::any_of(result.entries.begin(), result.entries.end(),
                    [](const EntryOutcome& entry) { return !entry.line.has_value(); });
    if (!isAnyAbsent) {
        return;
    }
    const Entries entries(document);
    for (const EntryOutcome& entry : result.entries) {
        if (!entry.line) {
            output.message(Severity::Note, "there is no alias " + latin1ToUtf8(entry.name) +
                                               suggestAlias(entries, entry.name));
        }
    }
}

ExitCode runUnset(CommandContext& context, const AliasArguments& arguments,
                  const EditOptions& options)
{
    UnwantedEntries unwanted;
    for (const std::string& name : arguments.names) {
        unwanted.names.push_back(argumentToLatin1(name));
    }
    return runEdit(context, options, [&](const Document& document) {
        EditResult result = removeEntries(document, unwanted);
        suggestForAbsent(context.output, document, result);
        return result;
    });
}

ExitCode runRename(CommandContext& context, const AliasArguments& arguments,
                   const EditOptions& options)
{
    const std::string oldName = argumentToLatin1(arguments.name);
    const std::string newName = argumentToLatin1(arguments.value);
    checkAliasName(context.output, newName, options.isForce);
    bool isAbsent = false;
    const ExitCode code = runEdit(context, options, [&](const Document& document) {
        EditResult result;
        isAbsent = false;
        switch (renameAlias(document, oldName, newName, result)) {
        case Renaming::NoSuchName:
            isAbsent = true;
            context.output.message(Severity::Error, "there is no alias " + latin1ToUtf8(oldName) +
                                                        suggestAlias(Entries(document), oldName));
            break;
        case Renaming::NewNameTaken:
            throw CommandError(ExitCode::WrongUsage,
                               "there is already an alias " + latin1ToUtf8(newName));
        case Renaming::Done:
            break;
        }
        return result;
    });
    return isAbsent ? ExitCode::No : code;
}

} // namespace

void addAliasCommands(CommandLine& line)
{
    const auto arguments = std::make_shared<AliasArguments>();
    const auto add = [&line, arguments](const char* name, const char* description,
                                        auto run) -> CommandOptions {
        return addEditCommand(
            line, name, description,
            [arguments, run](CommandContext& context, const EditOptions& options) {
                return run(context, *arguments, options);
            });
    };
    CommandOptions set = add("set", "Give an alias its resource string", runSet);
    set.addOption("NAME", arguments->name, "Alias, in any case").required();
    set.addOption("RESOURCE", arguments->value, "Resource string").required();

    CommandOptions unset = add("unset", "Remove aliases", runUnset);
    unset.addOption("NAME", arguments->names, "Aliases, in any case").required();

    CommandOptions rename = add("rename", "Give an alias another name", runRename);
    rename.addOption("OLD", arguments->name, "Alias, in any case").required();
    rename.addOption("NEW", arguments->value, "Its new name, written in upper case").required();
}

} // namespace QvVisa
