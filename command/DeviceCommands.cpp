// SPDX-License-Identifier: MIT
#include "command/Commands.h"

#include "command/ConfigurationText.h"
#include "command/EditCommand.h"
#include "command/EntryText.h"
#include "document/Entries.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace QvVisa {

namespace {

struct DeviceArguments
{
    bool isSerial = true;
    std::string device;
    std::vector<std::string> settings;
    bool isUnset = false;
};

std::string familyWord(const DeviceArguments& arguments)
{
    return arguments.isSerial ? "serial" : "gpib";
}

/// None when no port or board was given.
std::optional<std::uint16_t> deviceNumber(const DeviceArguments& arguments)
{
    if (arguments.device.empty()) {
        return std::nullopt;
    }
    std::uint16_t number = 0;
    const char* end = arguments.device.data() + arguments.device.size();
    const auto result = std::from_chars(arguments.device.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end) {
        throw CommandError(ExitCode::WrongUsage,
                           std::string(arguments.isSerial ? "a port" : "a board") +
                               " is a number from 0 to 65535, not \"" + arguments.device + '"');
    }
    return number;
}

/// Shows one device of the map, or all.
template <typename Map>
void show(Output& output, const std::string& file, const std::string& family, const Map& devices,
          std::optional<std::uint16_t> wanted)
{
    Map shown = devices;
    if (wanted) {
        const auto found = devices.find(*wanted);
        shown = {{*wanted, found != devices.end() ? found->second : typename Map::mapped_type()}};
    }
    Json object;
    object["schema"] = "qvvisa-" + family + "/1";
    object["file"] = file;
    object[family] = Json::array();
    for (const auto& [device, properties] : shown) {
        const bool isNamed = devices.count(device) > 0;
        if (output.isJson()) {
            Json entry = toJson(device, properties);
            entry["named"] = isNamed;
            object[family].push_back(std::move(entry));
            continue;
        }
        output.data((wanted ? "" : std::to_string(device) + ' ') + settingsText(properties) + '\n');
        if (!isNamed) {
            std::string note = file;
            note.append(" does not name ").append(family).append(" ");
            note.append(std::to_string(device)).append("; these are the defaults");
            output.message(Severity::Note, note);
        }
    }
    if (output.isJson()) {
        output.json(object);
    }
}

void warnOfUnusualValue(Output& output, LineKind kind, std::uint32_t value)
{
    constexpr std::uint32_t fewestDataBits = 5;
    constexpr std::uint32_t mostDataBits = 8;
    constexpr std::uint32_t highestAddress = 30;
    constexpr std::uint32_t noAddress = 0xFFFF;
    const std::string word = valueWord(kind, value);
    const bool isNumber = word == std::to_string(value);
    const bool isUnusual =
        (kind == LineKind::SerialBaudrate && value == 0) ||
        (kind == LineKind::SerialDataBits && (value < fewestDataBits || value > mostDataBits)) ||
        (kind == LineKind::GpibPrimaryAddress && value > highestAddress) ||
        (kind == LineKind::GpibSecondaryAddress && value > highestAddress && value != noAddress) ||
        (isNumber && (kind == LineKind::SerialParity || kind == LineKind::SerialFlowControl ||
                      kind == LineKind::GpibSystemController)) ||
        (kind == LineKind::SerialStopBits && value > 2);
    if (isUnusual) {
        output.message(Severity::Warning, std::string(keyWord(kind)) + ' ' + word + " is unusual");
    }
}

ExitCode runDevices(CommandContext& context, const DeviceArguments& arguments,
                    const EditOptions& options)
{
    const std::optional<std::uint16_t> device = deviceNumber(arguments);
    if (arguments.isUnset && (!device || !arguments.settings.empty())) {
        throw CommandError(ExitCode::WrongUsage, device ? "--unset and KEY=VALUE exclude each other"
                                                        : "--unset needs a number");
    }
    if (arguments.settings.empty() && !arguments.isUnset) {
        const ConfigurationText text = readConfiguration(context);
        const Entries entries(text.document);
        const std::string family = familyWord(arguments);
        if (arguments.isSerial) {
            show(context.output, text.name, family, entries.serial, device);
        } else {
            show(context.output, text.name, family, entries.gpib, device);
        }
        return ExitCode::Done;
    }
    if (arguments.isUnset) {
        UnwantedEntries unwanted;
        (arguments.isSerial ? unwanted.serial : unwanted.gpib).push_back(*device);
        return runEdit(context, options,
                       [&](const Document& document) { return removeEntries(document, unwanted); });
    }
    WantedEntries wanted;
    PropertyValues& values = (arguments.isSerial ? wanted.serial : wanted.gpib)[*device];
    for (const std::string& setting : arguments.settings) {
        const auto [kind, value] = parseSetting(setting, arguments.isSerial);
        warnOfUnusualValue(context.output, kind, value);
        values[kind] = value;
    }
    return runEdit(context, options,
                   [&](const Document& document) { return setEntries(document, wanted); });
}

void addFamily(CommandLine& line, bool isSerial)
{
    auto arguments = std::make_shared<DeviceArguments>();
    arguments->isSerial = isSerial;
    CommandOptions command =
        addEditCommand(line, isSerial ? "serial" : "gpib",
                       isSerial ? "Show or change the settings of serial ports"
                                : "Show or change the settings of GPIB boards",
                       [arguments](CommandContext& context, const EditOptions& options) {
                           return runDevices(context, *arguments, options);
                       });
    command.addOption(isSerial ? "PORT" : "BOARD", arguments->device,
                      isSerial ? "Number of the port; all ports without one"
                               : "Number of the board; all boards without one");
    command.addOption("SETTINGS", arguments->settings,
                      isSerial ? "KEY=VALUE: baud-rate, data-bits, stop-bits=1|1.5|2, "
                                 "parity=none|odd|even|mark|space, "
                                 "flow-control=none|xon-xoff|rts-cts|rts-cts-dtr-dsr"
                               : "KEY=VALUE: primary-address, secondary-address (or none), "
                                 "system-controller=yes|no");
    command.addFlag("--unset", arguments->isUnset, "Remove all its lines");
}

} // namespace

void addDeviceCommands(CommandLine& line)
{
    addFamily(line, true);
    addFamily(line, false);
}

} // namespace QvVisa
