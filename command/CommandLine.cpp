// SPDX-License-Identifier: MIT
#include "command/CommandLine.h"

#include "command/Commands.h"
#include "config/Encoding.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <utility>

namespace QvVisa {

namespace {

/// A bare "--backup" takes its default, so that the argument after it is not taken for its value.
std::vector<std::string> withDefaultValues(std::vector<std::string> arguments)
{
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    std::replace(arguments.begin(), end, std::string("--backup"), std::string("--backup=.old"));
    return arguments;
}

std::string usageError(const CLI::App& app, const CLI::ParseError& error)
{
    if (!app.get_subcommands().empty()) {
        return error.what();
    }
    const std::vector<std::string> remaining = app.remaining();
    const auto word = std::find_if(remaining.begin(), remaining.end(), [](const std::string& text) {
        return text.empty() || text.front() != '-';
    });
    if (word != remaining.end()) {
        return "there is no command " + pathToUtf8(*word);
    }
    return dynamic_cast<const CLI::RequiredError*>(&error) != nullptr ? "a command is missing"
                                                                      : error.what();
}

} // namespace

CommandLine::CommandLine(const Streams& streams)
    : m_context{Output(streams), streams.in, std::nullopt},
      m_app(std::make_unique<CLI::App>("Shows and edits the VISA configuration file.", "qvvisa"))
{
    m_app->set_version_flag("--version", "qvvisa " QVVISA_VERSION, "Print the version");
    m_app->set_help_flag("-h,--help", "Print this help");
    m_app->require_subcommand(1);
    const auto formatter = std::make_shared<CLI::Formatter>();
    formatter->label("SUBCOMMAND", "COMMAND");
    formatter->label("Positionals", "Arguments");
    formatter->label("TEXT", "");
    formatter->label("REQUIRED", "");
    m_app->formatter(formatter);
    CommandOptions(*m_app)
        .addOption("-f,--file", m_context.file,
                   "Configuration file, instead of the one that the search finds; - is standard "
                   "input")
        .typeName("FILE");
    m_app->add_flag("--json", m_isJson, "Print one JSON object");
    m_app->add_option("--color", m_color, "Color severity words: auto, always or never")
        ->type_name("WHEN")
        ->check(CLI::IsMember({"auto", "always", "never"}).description(""));
    m_app->add_flag("-q,--quiet", m_isQuiet, "Print no progress and no warnings");
}

CommandLine::~CommandLine() = default;

CommandOptions CommandLine::addCommand(const std::string& name, const std::string& description,
                                       Action action)
{
    CLI::App* command = m_app->add_subcommand(name, description);
    command->fallthrough();
    command->group("Commands");
    command->callback([this, action = std::move(action)] { m_action = action; });
    return CommandOptions(*command);
}

void CommandLine::parse(const std::vector<std::string>& arguments)
{
    std::vector<std::string> reversed = withDefaultValues(arguments);
    std::reverse(reversed.begin(), reversed.end());
    m_app->parse(reversed);
    m_context.output.setJson(m_isJson);
    m_context.output.setQuiet(m_isQuiet);
    m_context.output.setColorMode(m_color == "always"  ? ColorMode::Always
                                  : m_color == "never" ? ColorMode::Never
                                                       : ColorMode::Auto);
}

ExitCode CommandLine::run(const std::vector<std::string>& arguments)
{
    Output& output = m_context.output;
    try {
        try {
            parse(arguments);
            return m_action(m_context);
        } catch (const CLI::CallForHelp&) {
            output.data(m_app->help());
            return ExitCode::Done;
        } catch (const CLI::CallForVersion& version) {
            output.data(std::string(version.what()) + '\n');
            return ExitCode::Done;
        } catch (const CLI::ParseError& error) {
            // Parsing stopped before the option was stored.
            output.setJson(std::find(arguments.begin(), arguments.end(), "--json") !=
                           arguments.end());
            throw CommandError(ExitCode::WrongUsage,
                               usageError(*m_app, error) + " (see qvvisa --help)");
        } catch (const std::bad_alloc&) {
            throw CommandError(ExitCode::NotWritten, "out of memory");
        }
    } catch (const CommandError& error) {
        output.error(error);
        return error.code();
    }
}

ExitCode runCommandLine(const std::vector<std::string>& arguments, const Streams& streams)
{
    CommandLine line(streams);
    addWhereCommand(line);
    addInitCommand(line);
    addListCommand(line);
    addGetCommand(line);
    addAliasCommands(line);
    addResourceCommands(line);
    addDeviceCommands(line);
    addProviderCommand(line);
    addApplyCommand(line);
    addLintCommand(line);
    addDiffCommand(line);
    addMergeCommand(line);
    addFindCommand(line);
    addDoctorCommand(line);
    const ExitCode code = line.run(arguments);
    streams.out.flush();
    if (!streams.out) {
        streams.err << "qvvisa: error: standard output could not be written\n";
        return ExitCode::NotWritten;
    }
    return code;
}

} // namespace QvVisa
