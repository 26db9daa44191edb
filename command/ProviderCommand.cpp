// SPDX-License-Identifier: MIT
#include "command/Commands.h"

#include "command/ConfigurationText.h"
#include "command/EditCommand.h"
#include "document/Entries.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <memory>
#include <string>
#include <string_view>

namespace QvVisa {

namespace {

std::uint16_t parseProvider(const std::string& argument)
{
    std::string_view digits = argument;
    int base = 10;
    if (digits.substr(0, 2) == "0x" || digits.substr(0, 2) == "0X") {
        digits.remove_prefix(2);
        base = 16;
    }
    std::uint16_t id = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), id, base);
    if (result.ec != std::errc() || result.ptr != digits.data() + digits.size()) {
        throw CommandError(ExitCode::WrongUsage,
                           "a provider is a number from 0 to 65535 or 0x0 to 0xFFFF, not \"" +
                               argument + '"');
    }
    return id;
}

ExitCode runProvider(CommandContext& context, const std::string& argument,
                     const EditOptions& options)
{
    if (!argument.empty()) {
        WantedEntries wanted;
        wanted.provider = parseProvider(argument);
        return runEdit(context, options,
                       [&](const Document& document) { return setEntries(document, wanted); });
    }
    const ConfigurationText text = readConfiguration(context);
    const Entries entries(text.document);
    if (context.output.isJson()) {
        Json object;
        object["schema"] = "qvvisa-provider/1";
        object["file"] = text.name;
        object["provider"] = entries.provider;
        context.output.json(object);
    } else {
        context.output.data(std::to_string(entries.provider) + '\n');
    }
    return ExitCode::Done;
}

} // namespace

void addProviderCommand(CommandLine& line)
{
    auto argument = std::make_shared<std::string>();
    addEditCommand(line, "provider", "Show or change the provider (manufacturer) ID",
                   [argument](CommandContext& context, const EditOptions& options) {
                       return runProvider(context, *argument, options);
                   })
        .addOption("ID", *argument, "Decimal, or hexadecimal with 0x");
}

} // namespace QvVisa
