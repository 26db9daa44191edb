// SPDX-License-Identifier: MIT
#pragma once

#include "command/CommandOptions.h"
#include "command/ExitCode.h"
#include "command/Output.h"

#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace QvVisa {

/// What a command gets besides its own options.
struct CommandContext
{
    Output output;
    std::istream& in;
    /// The argument of -f; "-" is standard input.
    std::optional<std::string> file;
};

/// The program's arguments. Each command adds itself with addCommand(); run() parses and calls
/// the one that was named.
class CommandLine
{
public:
    using Action = std::function<ExitCode(CommandContext&)>;

    explicit CommandLine(const Streams& streams);

    ~CommandLine();

    /// Adds a command. The result declares its own options.
    CommandOptions addCommand(const std::string& name, const std::string& description,
                              Action action);

    /// Parses the arguments, without the program's name, and runs the command.
    ExitCode run(const std::vector<std::string>& arguments);

private:
    void parse(const std::vector<std::string>& arguments);

    CommandContext m_context;
    std::unique_ptr<CLI::App> m_app;
    std::string m_color = "auto";
    bool m_isJson = false;
    bool m_isQuiet = false;
    Action m_action;
};

/// Adds every command and runs the one that the arguments (without the program's name) name.
ExitCode runCommandLine(const std::vector<std::string>& arguments, const Streams& streams);

} // namespace QvVisa
