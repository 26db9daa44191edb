// SPDX-License-Identifier: MIT
#include "command/Commands.h"

#include "command/CommandLine.h"
#include "command/ConfigurationText.h"
#include "config/ConfigurationValue.h"
#include "config/Encoding.h"
#include "document/Difference.h"
#include "document/PropertyKeys.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <sstream>

namespace QvVisa {

namespace {

struct DiffOptions
{
    std::vector<std::string> files;
    bool isWindow = false;
};

ConfigurationText readFile(CommandContext& context, const std::string& path)
{
    CommandContext other = context;
    other.file = path;
    return readConfiguration(other);
}

Json valueOrNull(const Difference& difference, const std::optional<std::string>& value)
{
    if (!value) {
        return difference.key.kind == LineKind::Resource ? Json(0) : Json();
    }
    return difference.key.kind == LineKind::Alias ? Json(latin1ToUtf8(*value))
                                                  : Json(toNumber(*value).value_or(0));
}

Json toJson(const Difference& difference)
{
    const EntryKey& key = difference.key;
    Json object;
    if (key.kind == LineKind::Alias) {
        object["kind"] = "alias";
        object["name"] = latin1ToUtf8(key.name);
    } else if (key.kind == LineKind::Resource) {
        object["kind"] = "resource";
        object["resource"] = latin1ToUtf8(key.name);
    } else if (key.kind == LineKind::Provider) {
        object["kind"] = "provider";
    } else {
        const bool isGpib = isGpibProperty(key.kind);
        object["kind"] = isGpib ? "gpib" : "serial";
        object[isGpib ? "board" : "port"] = key.device;
        object["key"] = std::string(keyInFile(key.kind));
    }
    object["before"] = valueOrNull(difference, difference.before);
    object["after"] = valueOrNull(difference, difference.after);
    return object;
}

/// Lines as people see them: UTF-8, control characters made visible.
std::string printableLines(const std::string& latin1)
{
    std::string text;
    std::istringstream lines(latin1);
    for (std::string line; std::getline(lines, line);) {
        text += printable(latin1ToUtf8(line)) + '\n';
    }
    return text;
}

ExitCode diffFiles(CommandContext& context, const std::string& left, const std::string& right)
{
    if (left == "-" && right == "-") {
        throw CommandError(ExitCode::WrongUsage, "standard input can be only one of the files");
    }
    const ConfigurationText before = readFile(context, left);
    const ConfigurationText after = readFile(context, right);
    const std::vector<Difference> found =
        differences(Meaning(before.document), Meaning(after.document));
    if (context.output.isJson()) {
        Json object;
        object["schema"] = "qvvisa-diff/1";
        object["before"] = before.name;
        object["after"] = after.name;
        object["differences"] = Json::array();
        for (const Difference& difference : found) {
            object["differences"].push_back(toJson(difference));
        }
        context.output.json(object);
    } else if (!found.empty()) {
        context.output.data("--- " + printable(before.name) + "\n+++ " + printable(after.name) +
                            '\n');
        for (const Difference& difference : found) {
            context.output.data(printableLines(differenceLines(difference)));
        }
    }
    return found.empty() ? ExitCode::Done : ExitCode::No;
}

ExitCode diffWindow(CommandContext& context, const std::string& path)
{
    const ConfigurationText text = readFile(context, path);
    const WindowSave save(text.document);
    const bool isSame = save.lost.empty() && save.added.empty();
    if (context.output.isJson()) {
        Json object;
        object["schema"] = "qvvisa-diff/1";
        object["file"] = text.name;
        object["lost"] = Json::array();
        for (const std::size_t index : save.lost) {
            Json line;
            line["line"] = index + 1;
            line["text"] = latin1ToUtf8(text.document.line(index).text);
            object["lost"].push_back(std::move(line));
        }
        object["added"] = Json::array();
        for (const std::string& line : save.added) {
            object["added"].push_back(latin1ToUtf8(line));
        }
        context.output.json(object);
    } else if (!isSame) {
        std::string lines = "--- " + printable(text.name) + "\n+++ " + printable(text.name) +
                            " after a save in the window\n";
        for (const std::size_t index : save.lost) {
            lines += '-' + printable(latin1ToUtf8(text.document.line(index).text)) + '\n';
        }
        for (const std::string& line : save.added) {
            lines += '+' + printable(latin1ToUtf8(line)) + '\n';
        }
        context.output.data(lines);
    }
    return isSame ? ExitCode::Done : ExitCode::No;
}

ExitCode runDiff(CommandContext& context, const DiffOptions& options)
{
    const std::vector<std::string>& files = options.files;
    const std::size_t most = (options.isWindow ? 1U : 2U) - (context.file ? 1U : 0U);
    if (files.size() > most || (!options.isWindow && files.empty())) {
        throw CommandError(ExitCode::WrongUsage,
                           options.isWindow ? "diff --window takes one file"
                                            : "diff takes one file, which is compared with the "
                                              "file in use, or two");
    }
    if (options.isWindow) {
        return diffWindow(context, files.empty() ? configurationPath(context) : files[0]);
    }
    return files.size() == 2 ? diffFiles(context, files[0], files[1])
                             : diffFiles(context, configurationPath(context), files[0]);
}

} // namespace

void addDiffCommand(CommandLine& line)
{
    auto options = std::make_shared<DiffOptions>();
    CommandOptions command =
        line.addCommand("diff", "Print what two files mean differently",
                        [options](CommandContext& context) { return runDiff(context, *options); });
    command.addFlag("--window", options->isWindow,
                    "Print the lines that a save in the window would lose or add");
    command.addOption("FILE", options->files,
                      "The file before, unless it is the one in use, and the file after");
}

} // namespace QvVisa
