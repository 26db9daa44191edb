// SPDX-License-Identifier: MIT
#include "command/Commands.h"

#include "command/ConfigurationText.h"
#include "command/EditCommand.h"
#include "command/EntryCheck.h"
#include "config/Encoding.h"
#include "config/UpperCase.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace QvVisa {

namespace {

using Arguments = std::vector<std::string>;

std::vector<std::string> resourcesOf(const Arguments& arguments)
{
    std::vector<std::string> resources;
    for (const std::string& argument : arguments) {
        resources.push_back(argumentToLatin1(argument));
    }
    return resources;
}

ExitCode runAdd(CommandContext& context, const Arguments& arguments, const EditOptions& options)
{
    WantedEntries wanted;
    wanted.resources = resourcesOf(arguments);
    for (const std::string& resource : wanted.resources) {
        checkResource(context.output, resource, options.isForce);
    }
    return runEdit(context, options,
                   [&](const Document& document) { return setEntries(document, wanted); });
}

std::string_view withoutWhiteSpaceAround(std::string_view text)
{
    constexpr std::string_view whiteSpace = " \t\v\f\r";
    const std::size_t first = text.find_first_not_of(whiteSpace);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(whiteSpace) - first + 1);
}

/// Quotes the resources that only differ in white space from one that was not found.
void quoteNearMisses(Output& output, const Document& document, const EditResult& result)
{
    for (const EntryOutcome& entry : result.entries) {
        if (entry.line) {
            continue;
        }
        const std::string_view wanted = withoutWhiteSpaceAround(entry.value);
        for (std::size_t index = 0; index < document.size(); ++index) {
            const ConfigurationLine line = document.line(index).match;
            if (line.kind == LineKind::Resource &&
                equalsIgnoringCase(withoutWhiteSpaceAround(line.first), wanted)) {
                output.message(Severity::Note, "line " + std::to_string(index + 1) + " is \"" +
                                                   latin1ToUtf8(line.first) +
                                                   "\": white space belongs to a resource");
            }
        }
    }
}

ExitCode runRemove(CommandContext& context, const Arguments& arguments, const EditOptions& options)
{
    UnwantedEntries unwanted;
    unwanted.resources = resourcesOf(arguments);
    return runEdit(context, options, [&](const Document& document) {
        EditResult result = removeEntries(document, unwanted);
        quoteNearMisses(context.output, document, result);
        return result;
    });
}

} // namespace

void addResourceCommands(CommandLine& line)
{
    const auto arguments = std::make_shared<Arguments>();
    const auto add = [&line, arguments](const char* name, const char* description, auto run) {
        addEditCommand(line, name, description,
                       [arguments, run](CommandContext& context, const EditOptions& options) {
                           return run(context, *arguments, options);
                       })
            .addOption("RESOURCE", *arguments, "Resource strings, in any case")
            .required();
    };
    add("add", "Add resources without an alias", runAdd);
    add("remove", "Remove resources without an alias", runRemove);
}

} // namespace QvVisa
