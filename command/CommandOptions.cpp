// SPDX-License-Identifier: MIT
#include "command/CommandOptions.h"

#include <CLI/CLI.hpp>

namespace QvVisa {

CommandOption& CommandOption::required()
{
    m_option->required();
    return *this;
}

CommandOption& CommandOption::typeName(const std::string& name)
{
    m_option->type_name(name);
    return *this;
}

CommandOption& CommandOption::oneOf(std::initializer_list<const char*> values)
{
    m_option->check(CLI::IsMember(std::vector<std::string>(values.begin(), values.end())));
    return *this;
}

CommandOption& CommandOption::separatedBy(char delimiter)
{
    m_option->delimiter(delimiter)->allow_extra_args(false);
    return *this;
}

void CommandOptions::addFlag(const std::string& names, bool& isGiven,
                             const std::string& description)
{
    m_app->add_flag(names, isGiven, description);
}

CommandOption CommandOptions::addOption(const std::string& names, std::string& value,
                                        const std::string& description)
{
    return CommandOption(*m_app->add_option(names, value, description));
}

CommandOption CommandOptions::addOption(const std::string& names, std::optional<std::string>& value,
                                        const std::string& description)
{
    return CommandOption(*m_app->add_option_function<std::string>(
        names, [&value](const std::string& given) { value = given; }, description));
}

CommandOption CommandOptions::addOption(const std::string& names, std::vector<std::string>& values,
                                        const std::string& description)
{
    return CommandOption(*m_app->add_option(names, values, description));
}

void CommandOptions::addTimeout(std::chrono::milliseconds& timeout, const std::string& description)
{
    constexpr double least = 0.1;
    constexpr double most = 3600;
    const auto store = [&timeout](double seconds) {
        timeout = std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::duration<double>(seconds));
    };
    m_app->add_option_function<double>("--timeout", store, description)
        ->type_name("SECONDS")
        ->check(CLI::Validator(
            [](const std::string& text) {
                double seconds = 0;
                const bool isValid =
                    CLI::detail::lexical_cast(text, seconds) && seconds >= least && seconds <= most;
                return isValid ? std::string() : "takes from 0.1 to 3600 seconds";
            },
            ""));
}

} // namespace QvVisa
