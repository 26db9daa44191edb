// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

// Compiling the header of these takes seconds, so that only two sources include it.
namespace CLI {
class App;
class Option;
} // namespace CLI

namespace QvVisa {

/// An option or argument of a command. Valid as long as the CommandLine.
class CommandOption
{
public:
    explicit CommandOption(CLI::Option& option) : m_option(&option) {}

    CommandOption& required();
    /// The name of the value in the help; "" for none.
    CommandOption& typeName(const std::string& name);
    CommandOption& oneOf(std::initializer_list<const char*> values);
    /// One argument holds several values.
    CommandOption& separatedBy(char delimiter);

private:
    CLI::Option* m_option;
};

/// Declares the options and arguments of a command. Parsing stores them in the targets, which must
/// outlive the CommandLine: best in a std::shared_ptr that the command's action captures.
class CommandOptions
{
public:
    explicit CommandOptions(CLI::App& app) : m_app(&app) {}

    /// An option without a value: "-r,--resource".
    void addFlag(const std::string& names, bool& isGiven, const std::string& description);

    /// An option with a value, "--format", or an argument, "FILE". A list takes as many as follow.
    CommandOption addOption(const std::string& names, std::string& value,
                            const std::string& description);
    CommandOption addOption(const std::string& names, std::optional<std::string>& value,
                            const std::string& description);
    CommandOption addOption(const std::string& names, std::vector<std::string>& values,
                            const std::string& description);

    /// "--timeout SECONDS": from a tenth of a second to an hour.
    void addTimeout(std::chrono::milliseconds& timeout, const std::string& description);

private:
    CLI::App* m_app;
};

} // namespace QvVisa
