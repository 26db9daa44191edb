// SPDX-License-Identifier: MIT
#include "command/Commands.h"

#include "command/CommandLine.h"
#include "command/ConfigurationText.h"
#include "command/Suggestion.h"
#include "config/Encoding.h"
#include "config/UpperCase.h"
#include "document/Entries.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>

namespace QvVisa {

namespace {

struct GetOptions
{
    std::string text;
    bool isResource = false;
};

ExitCode getResource(Output& output, const ConfigurationText& text, const std::string& name)
{
    const std::optional<Entries::Alias> alias = findAlias(text.document, name);
    if (!alias) {
        throw CommandError(ExitCode::No, "there is no alias " + latin1ToUtf8(name) +
                                             suggestAlias(Entries(text.document), name));
    }
    const std::string resource = latin1ToUtf8(alias->resource);
    if (output.isJson()) {
        Json object;
        object["schema"] = "qvvisa-get/1";
        object["file"] = text.name;
        object["name"] = latin1ToUtf8(toUpperCase(name));
        object["resource"] = resource;
        object["line"] = alias->line + 1;
        output.json(object);
    } else {
        output.data(printable(resource) + '\n');
    }
    return ExitCode::Done;
}

ExitCode getNames(Output& output, const ConfigurationText& text, const std::string& resource)
{
    const Entries entries(text.document);
    std::vector<std::string> names;
    for (const auto& [name, alias] : entries.aliases) {
        if (equalsIgnoringCase(alias.resource, resource)) {
            names.push_back(latin1ToUtf8(name));
        }
    }
    if (names.empty()) {
        throw CommandError(ExitCode::No, "there is no alias for " + latin1ToUtf8(resource));
    }
    std::sort(names.begin(), names.end());
    if (output.isJson()) {
        Json object;
        object["schema"] = "qvvisa-get/1";
        object["file"] = text.name;
        object["resource"] = latin1ToUtf8(resource);
        object["aliases"] = names;
        output.json(object);
        return ExitCode::Done;
    }
    for (const std::string& name : names) {
        output.data(printable(name) + '\n');
    }
    return ExitCode::Done;
}

} // namespace

void addGetCommand(CommandLine& line)
{
    auto options = std::make_shared<GetOptions>();
    CommandOptions command =
        line.addCommand("get", "Print the resource string of an alias", [options](auto& context) {
            const std::string argument = argumentToLatin1(options->text);
            const ConfigurationText text = readConfiguration(context);
            return options->isResource ? getNames(context.output, text, argument)
                                       : getResource(context.output, text, argument);
        });
    command.addFlag("-r,--resource", options->isResource,
                    "Print the alias names of a resource string");
    command.addOption("NAME", options->text, "Alias, or with -r a resource string").required();
}

} // namespace QvVisa
