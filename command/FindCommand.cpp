// SPDX-License-Identifier: MIT
#include "command/Commands.h"

#include "command/CommandLine.h"
#include "command/ConfigurationText.h"
#include "command/ProbeFailure.h"
#include "command/TextTable.h"
#include "config/Encoding.h"
#include "doctor/FinderLog.h"
#include "doctor/MissingInstruments.h"
#include "doctor/Wording.h"
#include "document/Entries.h"
#include "visa/LibraryProbe.h"
#include "visa/ResourceName.h"
#include "visa/StatusNames.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>

namespace QvVisa {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* s_everything = "?*";
constexpr std::size_t s_mostNotes = 20;

struct FindOptions
{
    std::string expression = s_everything;
    bool isMissing = false;
    bool isIdentify = false;
    std::chrono::milliseconds timeout{10000};
};

/// The names of each instrument.
class AliasNames
{
public:
    AliasNames() = default;
    explicit AliasNames(const Entries& entries)
    {
        for (const auto& [name, alias] : entries.aliases) {
            m_names[visa::resourceKey(alias.resource)].push_back(latin1ToUtf8(name));
        }
        for (auto& [key, names] : m_names) {
            std::sort(names.begin(), names.end());
        }
    }

    bool isEmpty() const { return m_names.empty(); }

    std::vector<std::string> of(const std::string& resource) const
    {
        const auto found = m_names.find(visa::resourceKey(resource));
        return found != m_names.end() ? found->second : std::vector<std::string>();
    }

private:
    std::unordered_map<std::string, std::vector<std::string>> m_names;
};

/// The configuration file, if there is one that is read. Without it find lists without aliases,
/// unless the file was named or is what the command is about.
std::optional<ConfigurationText> configurationFor(CommandContext& context,
                                                  const FindOptions& options)
{
    try {
        return readConfiguration(context);
    } catch (const CommandError& error) {
        if (context.file || options.isMissing) {
            throw;
        }
        context.output.message(Severity::Note, std::string("without aliases: ") + error.what());
        return std::nullopt;
    }
}

/// What a search brought, and what the file says about it.
struct FindResult
{
    visa::ProbeReport report;
    std::optional<CommandError> failure;
    std::vector<std::string> finderLog;
    AliasNames aliases;
    /// Nothing when it is not known: without a file, for a part of the instruments, and when the
    /// library failed.
    std::optional<std::vector<MissingInstrument>> missing;
};

FindResult find(CommandContext& context, const FindOptions& options)
{
    const Clock::time_point deadline = Clock::now() + options.timeout;
    const std::optional<ConfigurationText> text = configurationFor(context, options);
    const FinderLog log;
    visa::ProbeRequest request;
    request.expression = options.expression;
    request.identify = options.isIdentify;
    request.timeout = options.timeout;
    request.environment = log.variables();

    FindResult result;
    result.report = visa::probeLibrary(request);
    result.finderLog = log.takeLines();
    result.failure = failureOf(result.report, request.timeout);
    if (!text) {
        return result;
    }
    const Entries entries(text->document);
    result.aliases = AliasNames(entries);
    const bool needsMissing = options.isMissing || context.output.isJson();
    if (needsMissing && !result.failure && options.expression == s_everything) {
        std::vector<std::string> found;
        for (const visa::FoundResource& resource : result.report.resources) {
            found.push_back(resource.resource);
        }
        result.missing = missingInstruments(entries, found, deadline);
    }
    return result;
}

bool wasAsked(const visa::FoundResource& resource)
{
    return resource.isIdentified || resource.identifyStatus != VI_ERROR_LIBRARY_NFOUND;
}

Json resourcesToJson(const FindResult& result, bool isIdentify)
{
    Json resources = Json::array();
    for (const visa::FoundResource& resource : result.report.resources) {
        Json entry;
        entry["resource"] = pathToUtf8(resource.resource);
        entry["aliases"] = result.aliases.of(resource.resource);
        if (isIdentify) {
            entry["identity"] =
                resource.isIdentified ? Json(pathToUtf8(resource.identity)) : Json(nullptr);
            entry["identifyStatus"] = wasAsked(resource)
                                          ? Json(visa::statusName(resource.identifyStatus))
                                          : Json(nullptr);
        }
        resources.push_back(std::move(entry));
    }
    return resources;
}

Json toJson(const FindResult& result, bool isIdentify)
{
    Json object;
    object["schema"] = "qvvisa-find/1";
    object["library"] = libraryName(result.report);
    object["libraryFile"] = pathToUtf8(result.report.libraryFile);
    object["resources"] = resourcesToJson(result, isIdentify);
    object["missing"] = nullptr;
    if (result.missing) {
        object["missing"] = Json::array();
        for (const MissingInstrument& instrument : *result.missing) {
            Json entry;
            entry["name"] = latin1ToUtf8(instrument.name);
            entry["resource"] = latin1ToUtf8(instrument.resource);
            entry["hint"] = instrument.hint.empty() ? Json(nullptr) : Json(instrument.hint);
            object["missing"].push_back(std::move(entry));
        }
    }
    object["finderLog"] = result.finderLog;
    return object;
}

std::string joined(const std::vector<std::string>& texts)
{
    std::string text;
    for (const std::string& each : texts) {
        text += (text.empty() ? "" : ", ") + each;
    }
    return text.empty() ? "-" : text;
}

/// The answer to *IDN?, or the status in parentheses.
std::string identityText(const visa::FoundResource& resource)
{
    if (resource.isIdentified) {
        return printable(pathToUtf8(resource.identity));
    }
    return wasAsked(resource) ? '(' + visa::statusName(resource.identifyStatus) + ')' : "-";
}

std::string foundTable(const FindResult& result, bool isIdentify, std::size_t width)
{
    std::vector<std::vector<std::string>> rows;
    for (const visa::FoundResource& resource : result.report.resources) {
        std::vector<std::string> row{printable(pathToUtf8(resource.resource))};
        if (!result.aliases.isEmpty()) {
            row.push_back(printable(joined(result.aliases.of(resource.resource))));
        }
        if (isIdentify) {
            row.push_back(identityText(resource));
        }
        rows.push_back(std::move(row));
    }
    return textTable(rows, width);
}

std::string missingTable(const std::vector<MissingInstrument>& missing, std::size_t width)
{
    std::vector<std::vector<std::string>> rows;
    rows.reserve(missing.size());
    for (const MissingInstrument& instrument : missing) {
        rows.push_back({printable(latin1ToUtf8(instrument.name)),
                        printable(latin1ToUtf8(instrument.resource))});
    }
    return textTable(rows, width);
}

/// What the finder left out and why, whom it asked, and its serial ports.
void printFinderLog(Output& output, const std::vector<std::string>& log)
{
    const std::vector<std::string> lines = beyondTheList(log);
    for (std::size_t i = 0; i < std::min(lines.size(), s_mostNotes); ++i) {
        output.message(Severity::Note, lines[i]);
    }
    if (lines.size() > s_mostNotes) {
        output.message(Severity::Note, std::to_string(lines.size() - s_mostNotes) +
                                           " more (QVFIND_LOG=FILE writes all to a file)");
    }
}

/// Why no instrument was asked *IDN?, if the library cannot.
void printNoteOnSilentLibrary(Output& output, const visa::ProbeReport& report)
{
    std::vector<std::string> missing;
    for (const char* const call : {"viOpen", "viWrite", "viRead"}) {
        const auto& calls = report.missingOptionalCalls;
        if (std::find(calls.begin(), calls.end(), call) != calls.end()) {
            missing.emplace_back(call);
        }
    }
    if (!missing.empty()) {
        output.message(Severity::Note, libraryName(report) + " cannot ask instruments: it lacks " +
                                           joined(missing));
    }
}

/// What else a user has to know about the list.
void printNotes(Output& output, const FindResult& result, const FindOptions& options)
{
    const visa::ProbeReport& report = result.report;
    if (report.droppedEntries > 0) {
        output.message(Severity::Warning, counted(report.droppedEntries, "entry", "entries") +
                                              " of the list could not be read: viFindNext failed");
    }
    if (report.isListCut) {
        output.message(Severity::Warning, "the library's list is longer: the rest was not read");
    }
    if (options.expression == s_everything && !result.failure &&
        report.windowList.size() != report.resources.size()) {
        output.message(Severity::Note, "the window lists " +
                                           std::to_string(report.windowList.size()) + " of these " +
                                           std::to_string(report.resources.size()) +
                                           ", because viFindRsrc or viFindNext ended in a warning");
    }
    if (options.isIdentify && !report.resources.empty()) {
        printNoteOnSilentLibrary(output, report);
    }
    constexpr std::size_t mostOutput = 200;
    if (!report.output.empty()) {
        const bool isCut = report.output.size() > mostOutput;
        output.message(Severity::Note,
                       "the library printed: " + pathToUtf8(report.output.substr(0, mostOutput)) +
                           (isCut ? "..." : ""));
    }
    printFinderLog(output, result.finderLog);
}

ExitCode exitCodeOf(const FindResult& result, bool isMissing)
{
    const bool isNo = isMissing ? !result.missing->empty() : result.report.resources.empty();
    return isNo ? ExitCode::No : ExitCode::Done;
}

ExitCode printJson(Output& output, const FindResult& result, const FindOptions& options)
{
    if (!result.failure) {
        output.json(toJson(result, options.isIdentify));
        return exitCodeOf(result, options.isMissing);
    }
    Json object = errorToJson(*result.failure);
    object["library"] = libraryName(result.report);
    object["resources"] = resourcesToJson(result, options.isIdentify);
    output.json(object);
    return result.failure->code();
}

ExitCode printText(Output& output, const FindResult& result, const FindOptions& options)
{
    if (!options.isMissing) {
        output.data(foundTable(result, options.isIdentify, output.width()));
    } else if (result.missing) {
        output.data(missingTable(*result.missing, output.width()));
    }
    output.flush();
    printNotes(output, result, options);
    if (result.failure) {
        throw CommandError(*result.failure);
    }
    if (options.isMissing) {
        for (const MissingInstrument& instrument : *result.missing) {
            if (!instrument.hint.empty()) {
                output.message(Severity::Note,
                               latin1ToUtf8(instrument.name) + ": " + instrument.hint);
            }
        }
    } else if (result.report.resources.empty()) {
        output.message(Severity::Warning, "nothing was found (qvvisa doctor says why)");
    }
    return exitCodeOf(result, options.isMissing);
}

ExitCode runFind(CommandContext& context, const FindOptions& options)
{
    if (options.isMissing && options.isIdentify) {
        throw CommandError(ExitCode::WrongUsage, "--missing and --identify exclude each other");
    }
    if (options.isMissing && options.expression != s_everything) {
        throw CommandError(ExitCode::WrongUsage, "--missing looks for the instruments of all "
                                                 "aliases and takes no expression");
    }
    const FindResult result = find(context, options);
    return context.output.isJson() ? printJson(context.output, result, options)
                                   : printText(context.output, result, options);
}

} // namespace

void addFindCommand(CommandLine& line)
{
    auto options = std::make_shared<FindOptions>();
    CommandOptions command =
        line.addCommand("find", "List what the VISA library finds, with aliases",
                        [options](CommandContext& context) { return runFind(context, *options); });
    command.addOption("EXPRESSION", options->expression,
                      "VISA search expression, such as \"USB?*INSTR\"; everything without it");
    command.addFlag("--missing", options->isMissing,
                    "List only the aliases whose instrument was not found");
    command.addFlag("--identify", options->isIdentify, "Ask each instrument *IDN?");
    command.addTimeout(options->timeout, "Time for everything, 10 by default");
}

} // namespace QvVisa
