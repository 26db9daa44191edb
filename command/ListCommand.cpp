// SPDX-License-Identifier: MIT
#include "command/Commands.h"

#include "command/CommandLine.h"
#include "command/ConfigurationText.h"
#include "command/EntryText.h"
#include "config/Encoding.h"
#include "document/Entries.h"
#include "document/PropertyKeys.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>

namespace QvVisa {

namespace {

struct NamedAlias
{
    std::string_view name;
    Entries::Alias alias;
};

/// Views into the entries.
std::vector<NamedAlias> sortedAliases(const Entries& entries)
{
    std::vector<NamedAlias> aliases;
    aliases.reserve(entries.aliases.size());
    for (const auto& [name, alias] : entries.aliases) {
        aliases.push_back({name, alias});
    }
    std::sort(aliases.begin(), aliases.end(),
              [](const NamedAlias& a, const NamedAlias& b) { return a.name < b.name; });
    return aliases;
}

template <typename Properties>
void appendLines(std::string& lines, std::uint16_t device, const Properties& properties)
{
    for (const auto& [kind, value] : propertyValues(properties)) {
        lines += propertyLine(kind, device, value) + '\n';
    }
}

/// The same text for any two files of the same meaning.
std::string canonicalLines(const Entries& entries)
{
    std::string lines = ":Provider=" + std::to_string(entries.provider) + '\n';
    for (const auto& [port, properties] : entries.serial) {
        appendLines(lines, port, properties);
    }
    for (const auto& [board, properties] : entries.gpib) {
        appendLines(lines, board, properties);
    }
    std::vector<std::string_view> resources;
    for (const Entries::Resource& resource : entries.resources) {
        resources.push_back(resource.resource);
    }
    std::sort(resources.begin(), resources.end());
    for (const std::string_view resource : resources) {
        lines.append(resource).append("\n");
    }
    for (const auto& [name, alias] : sortedAliases(entries)) {
        lines.append(name).append("=").append(alias.resource).append("\n");
    }
    return lines;
}

Json toJson(const std::string& file, const Entries& entries)
{
    Json object;
    object["schema"] = "qvvisa-list/1";
    object["file"] = file;
    object["provider"] = entries.provider;
    object["aliases"] = Json::array();
    for (const auto& [name, alias] : sortedAliases(entries)) {
        Json entry;
        entry["name"] = latin1ToUtf8(name);
        entry["resource"] = latin1ToUtf8(alias.resource);
        entry["line"] = alias.line + 1;
        object["aliases"].push_back(std::move(entry));
    }
    object["resources"] = Json::array();
    for (const Entries::Resource& resource : entries.resources) {
        Json entry;
        entry["resource"] = latin1ToUtf8(resource.resource);
        entry["line"] = resource.line + 1;
        object["resources"].push_back(std::move(entry));
    }
    object["serial"] = Json::array();
    for (const auto& [port, properties] : entries.serial) {
        object["serial"].push_back(QvVisa::toJson(port, properties));
    }
    object["gpib"] = Json::array();
    for (const auto& [board, properties] : entries.gpib) {
        object["gpib"].push_back(QvVisa::toJson(board, properties));
    }
    return object;
}

/// Columns: what the entry is, its name or number, what it says.
std::string table(const Entries& entries)
{
    constexpr std::string_view none = "-";
    const std::vector<NamedAlias> aliases = sortedAliases(entries);
    std::size_t width = none.size();
    for (const auto& [name, alias] : aliases) {
        width = std::max(width, name.size());
    }
    // One name of a megabyte must not pad every line to that width.
    constexpr std::size_t widest = 40;
    width = std::min(width, widest);
    std::string text;
    const auto addRow = [&text, width](std::string_view kind, std::string_view name,
                                       std::string_view value) {
        constexpr std::size_t kindWidth = 10;
        text += std::string(kind) + std::string(kindWidth - kind.size(), ' ');
        text += printable(latin1ToUtf8(name));
        text += std::string(name.size() < width ? width - name.size() : 0, ' ');
        text += "  " + printable(latin1ToUtf8(value)) + '\n';
    };
    for (const auto& [name, alias] : aliases) {
        addRow("alias", name, alias.resource);
    }
    for (const Entries::Resource& resource : entries.resources) {
        addRow("resource", none, resource.resource);
    }
    for (const auto& [port, properties] : entries.serial) {
        addRow("serial", std::to_string(port), settingsText(properties));
    }
    for (const auto& [board, properties] : entries.gpib) {
        addRow("gpib", std::to_string(board), settingsText(properties));
    }
    addRow("provider", none, std::to_string(entries.provider));
    return text;
}

ExitCode runList(CommandContext& context, bool isLines)
{
    Output& output = context.output;
    if (isLines && output.isJson()) {
        throw CommandError(ExitCode::WrongUsage, "--lines and --json exclude each other");
    }
    const ConfigurationText text = readConfiguration(context);
    const Entries entries(text.document);
    if (isLines) {
        output.data(canonicalLines(entries));
    } else if (output.isJson()) {
        output.json(toJson(text.name, entries));
    } else {
        output.data(table(entries));
    }
    return ExitCode::Done;
}

} // namespace

void addListCommand(CommandLine& line)
{
    auto isLines = std::make_shared<bool>(false);
    CommandOptions command = line.addCommand(
        "list", "List aliases, resources, serial ports, GPIB boards and the provider",
        [isLines](CommandContext& context) { return runList(context, *isLines); });
    command.addFlag("--lines", *isLines, "Sorted lines in the file's own syntax, for apply");
}

} // namespace QvVisa
