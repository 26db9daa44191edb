// SPDX-License-Identifier: MIT
#include "command/Commands.h"

#include "command/CommandLine.h"
#include "command/ConfigurationText.h"
#include "command/EditCommand.h"
#include "command/FileUpdate.h"
#include "config/Encoding.h"
#include "doctor/Wording.h"
#include "lint/Linter.h"
#include "lint/Repair.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <memory>
#include <set>
#include <utility>

namespace QvVisa {

namespace {

struct LintOptions
{
    std::vector<std::string> files;
    bool isFix = false;
    bool hasNotes = false;
    std::string failOn = "error";
    std::vector<std::string> ignored;
    std::string format = "gcc";
};

struct LintedFile
{
    std::string name; ///< In UTF-8.
    bool isRead = false;
    /// Without those of ignored codes.
    std::vector<lint::Finding> findings;
};

/// How many findings there are of each severity.
struct FindingCounts
{
    std::array<std::size_t, 3> counts{};
    std::size_t fixable = 0;

    std::size_t of(lint::Severity severity) const
    {
        return counts[static_cast<std::size_t>(severity)];
    }

    void add(const lint::Finding& finding)
    {
        ++counts[static_cast<std::size_t>(finding.severity)];
        fixable += finding.isFixable() ? 1 : 0;
    }
};

Severity outputSeverity(lint::Severity severity)
{
    return severity == lint::Severity::Error     ? Severity::Error
           : severity == lint::Severity::Warning ? Severity::Warning
                                                 : Severity::Note;
}

lint::Severity leastThatFails(const LintOptions& options)
{
    return options.failOn == "note"      ? lint::Severity::Note
           : options.failOn == "warning" ? lint::Severity::Warning
                                         : lint::Severity::Error;
}

std::set<lint::FindingCode> ignoredCodes(const LintOptions& options)
{
    std::set<lint::FindingCode> codes;
    for (const std::string& name : options.ignored) {
        const auto code = lint::codeFromName(name);
        if (!code) {
            throw CommandError(ExitCode::WrongUsage, "--ignore: there is no code " + name);
        }
        codes.insert(*code);
    }
    return codes;
}

/// Collects what is found in one file after another, and prints it.
class LintRun
{
public:
    LintRun(CommandContext& context, const LintOptions& options)
        : m_context(context),
          m_options(options),
          m_ignored(ignoredCodes(options)),
          m_hasNotes(options.hasNotes || options.failOn == "note")
    {}

    void lintFile(const std::string& path)
    {
        const bool isStandardInput = path == "-";
        const std::string name = isStandardInput ? "standard input" : pathToUtf8(path);
        std::string text;
        if (isStandardInput) {
            text = readStandardInput(m_context);
            if (m_options.isFix) {
                text = lint::repaired(Document(text), m_ignored);
                m_context.output.keepDataForText();
                m_context.output.data(text);
            }
        } else {
            text = m_options.isFix ? repairFile(path) : readWholeFile(path);
        }
        judge(name, Document(std::move(text)));
    }

    /// A file that cannot be read; the others are judged all the same.
    void addUnread(const CommandError& error) { m_unread.emplace_back(error.what()); }

    ExitCode finish()
    {
        if (!m_unread.empty() && m_context.output.isJson()) {
            throw CommandError(ExitCode::NoFile, m_unread.front());
        }
        if (m_context.output.isJson()) {
            printJson();
        } else {
            for (const LintedFile& file : m_files) {
                printFindings(file);
            }
            printSummary();
        }
        for (const std::string& message : m_unread) {
            m_context.output.message(Severity::Error, message);
        }
        if (!m_unread.empty()) {
            return ExitCode::NoFile;
        }
        std::size_t failing = 0;
        for (const lint::Severity severity :
             {lint::Severity::Note, lint::Severity::Warning, lint::Severity::Error}) {
            failing += severity >= leastThatFails(m_options) ? m_counts.of(severity) : 0;
        }
        return failing > 0 ? ExitCode::No : ExitCode::Done;
    }

private:
    std::string repairFile(const std::string& path)
    {
        std::string text;
        bool isChanged = false;
        updateFile(
            path,
            [&](const Document& before) {
                text = lint::repaired(before, m_ignored);
                isChanged = text != before.text();
                return isChanged ? std::optional<std::string>(text) : std::nullopt;
            },
            std::nullopt);
        if (isChanged) {
            m_context.output.message(Severity::Note, pathToUtf8(path) + ": repaired");
            warnOfWindows(m_context.output, path);
        }
        return text;
    }

    void judge(const std::string& name, const Document& document)
    {
        LintedFile file{name, document.hasHeader(), lint::findingsIn(document)};
        file.findings.erase(std::remove_if(file.findings.begin(), file.findings.end(),
                                           [this](const lint::Finding& finding) {
                                               return m_ignored.count(finding.code) != 0;
                                           }),
                            file.findings.end());
        for (const lint::Finding& finding : file.findings) {
            m_counts.add(finding);
        }
        m_files.push_back(std::move(file));
    }

    bool isShown(const lint::Finding& finding) const
    {
        return finding.severity != lint::Severity::Note || m_hasNotes;
    }

    void printFindings(const LintedFile& file)
    {
        std::string lines;
        for (const lint::Finding& finding : file.findings) {
            if (isShown(finding)) {
                lines += m_options.format == "github" ? githubLine(file.name, finding)
                                                      : gccLine(file.name, finding);
            }
        }
        // Of standard input that is repaired, standard output has the new text.
        m_context.output.diff(lines);
    }

    std::string gccLine(const std::string& name, const lint::Finding& finding) const
    {
        return printable(name) + ':' + std::to_string(finding.line) + ':' +
               std::to_string(finding.column) + ": " +
               m_context.output.dataWord(outputSeverity(finding.severity)) + ": " +
               latin1ToUtf8(finding.message) + ' ' + finding.remedy() + " [" +
               lint::codeName(finding.code) + "]\n";
    }

    /// A workflow command, which the service shows beside the line.
    static std::string githubLine(const std::string& name, const lint::Finding& finding)
    {
        const char* const command =
            finding.severity == lint::Severity::Note ? "notice" : severityName(finding.severity);
        return std::string("::") + command + " file=" + escapedForGithub(name, true) +
               ",line=" + std::to_string(finding.line) + ",col=" + std::to_string(finding.column) +
               ",title=" + lint::codeName(finding.code) + "::" +
               escapedForGithub(latin1ToUtf8(finding.message) + ' ' + finding.remedy(), false) +
               '\n';
    }

    static std::string escapedForGithub(const std::string& text, bool isProperty)
    {
        std::string result;
        for (const char c : text) {
            switch (c) {
            case '%':
                result += "%25";
                break;
            case '\r':
                result += "%0D";
                break;
            case '\n':
                result += "%0A";
                break;
            case ':':
                result += isProperty ? "%3A" : ":";
                break;
            case ',':
                result += isProperty ? "%2C" : ",";
                break;
            default:
                result += c;
                break;
            }
        }
        return result;
    }

    void printSummary()
    {
        const std::size_t notes = m_counts.of(lint::Severity::Note);
        const std::size_t errors = m_counts.of(lint::Severity::Error);
        const std::size_t warnings = m_counts.of(lint::Severity::Warning);
        if (errors + warnings + (m_hasNotes ? notes : 0) == 0) {
            return;
        }
        std::string text = counted(errors, "error") + ", " + counted(warnings, "warning") + ", " +
                           counted(notes, "note");
        text += !m_hasNotes && notes > 0 ? " (shown with --notes)" : "";
        text += m_counts.fixable > 0
                    ? "; qvvisa lint --fix repairs " + std::to_string(m_counts.fixable)
                    : "";
        m_context.output.message(Severity::Note, text);
    }

    void printJson()
    {
        Json object;
        object["schema"] = "qvvisa-lint/1";
        object["errors"] = m_counts.of(lint::Severity::Error);
        object["warnings"] = m_counts.of(lint::Severity::Warning);
        object["notes"] = m_counts.of(lint::Severity::Note);
        object["files"] = Json::array();
        for (const LintedFile& file : m_files) {
            Json entry;
            entry["file"] = file.name;
            entry["read"] = file.isRead;
            entry["findings"] = Json::array();
            for (const lint::Finding& finding : file.findings) {
                if (isShown(finding)) {
                    entry["findings"].push_back(toJson(finding));
                }
            }
            object["files"].push_back(std::move(entry));
        }
        m_context.output.json(object);
    }

    static Json toJson(const lint::Finding& finding)
    {
        Json object;
        object["line"] = finding.line;
        object["column"] = finding.column;
        object["severity"] = severityName(finding.severity);
        object["code"] = lint::codeName(finding.code);
        object["message"] = latin1ToUtf8(finding.message);
        object["remedy"] = finding.remedy();
        object["fixable"] = finding.isFixable();
        return object;
    }

    CommandContext& m_context;
    const LintOptions& m_options;
    std::set<lint::FindingCode> m_ignored;
    bool m_hasNotes;
    std::vector<LintedFile> m_files;
    std::vector<std::string> m_unread;
    FindingCounts m_counts;
};

ExitCode runLint(CommandContext& context, const LintOptions& options)
{
    if (context.file && !options.files.empty()) {
        throw CommandError(ExitCode::WrongUsage,
                           "name the file with -f or as an argument, not both");
    }
    const std::vector<std::string> paths =
        options.files.empty() ? std::vector{configurationPath(context)} : options.files;
    const bool hasStandardInput = std::find(paths.begin(), paths.end(), "-") != paths.end();
    if (hasStandardInput && options.isFix && (context.output.isJson() || paths.size() > 1)) {
        throw CommandError(ExitCode::WrongUsage,
                           "--fix of standard input needs standard output for the new text");
    }
    LintRun run(context, options);
    for (const std::string& path : paths) {
        try {
            run.lintFile(path);
        } catch (const CommandError& error) {
            if (error.code() != ExitCode::NoFile) {
                throw;
            }
            run.addUnread(error);
        }
    }
    return run.finish();
}

} // namespace

void addLintCommand(CommandLine& line)
{
    auto options = std::make_shared<LintOptions>();
    CommandOptions command =
        line.addCommand("lint", "Say what is wrong in a file, line by line",
                        [options](CommandContext& context) { return runLint(context, *options); });
    command.addOption("FILE", options->files,
                      "Files to check, instead of the one that the search finds");
    command.addFlag("--fix", options->isFix,
                    "Repair what can be repaired without a decision, then check what is left");
    command.addFlag("--notes", options->hasNotes, "Print notes too");
    command
        .addOption("--fail-on", options->failOn,
                   "Exit 1 from this severity on: error, warning or note (implies --notes)")
        .typeName("SEVERITY")
        .oneOf({"error", "warning", "note"});
    command
        .addOption("--ignore", options->ignored,
                   "Codes to leave out, and not to repair, such as V204,V301")
        .typeName("CODE,...")
        .separatedBy(',');
    command
        .addOption("--format", options->format,
                   "gcc (FILE:LINE:COLUMN: SEVERITY: TEXT [CODE]) or github (annotations)")
        .typeName("FORMAT")
        .oneOf({"gcc", "github"});
}

} // namespace QvVisa
