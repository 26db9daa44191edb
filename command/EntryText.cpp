// SPDX-License-Identifier: MIT
#include "command/EntryText.h"

#include "command/ExitCode.h"
#include "config/ConfigurationValue.h"
#include "config/Encoding.h"
#include "document/PropertyKeys.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <optional>

namespace QvVisa {

namespace {

struct Word
{
    LineKind kind;
    std::uint32_t value;
    std::string_view word;
};

constexpr std::uint32_t s_noSecondaryAddress = 0xFFFF;

constexpr Word s_words[] = {
    {LineKind::SerialStopBits, 0, "1"},
    {LineKind::SerialStopBits, 1, "1.5"},
    {LineKind::SerialStopBits, 2, "2"},
    {LineKind::SerialParity, 0, "none"},
    {LineKind::SerialParity, 1, "odd"},
    {LineKind::SerialParity, 2, "even"},
    {LineKind::SerialParity, 3, "mark"},
    {LineKind::SerialParity, 4, "space"},
    {LineKind::SerialFlowControl, 0, "none"},
    {LineKind::SerialFlowControl, 1, "xon-xoff"},
    {LineKind::SerialFlowControl, 2, "rts-cts"},
    {LineKind::SerialFlowControl, 6, "rts-cts-dtr-dsr"},
    {LineKind::GpibSecondaryAddress, s_noSecondaryAddress, "none"},
    {LineKind::GpibSystemController, 0, "no"},
    {LineKind::GpibSystemController, 1, "yes"},
};

std::optional<std::string_view> wordOf(LineKind kind, std::uint32_t value)
{
    for (const Word& word : s_words) {
        if (word.kind == kind && word.value == value) {
            return word.word;
        }
    }
    return std::nullopt;
}

/// "1, 1.5, 2 or a code from 0 to 255" for a key with words, else "0 to 65535".
std::string allowedValues(LineKind kind)
{
    std::string allowed;
    for (const Word& word : s_words) {
        if (word.kind == kind) {
            allowed += (allowed.empty() ? "" : ", ") + std::string(word.word);
        }
    }
    const std::string numbers = "0 to " + std::to_string(largestValue(kind));
    return allowed.empty() ? numbers : allowed + " or a code from " + numbers;
}

std::uint32_t parseValue(LineKind kind, std::string_view text)
{
    for (const Word& word : s_words) {
        if (word.kind == kind && word.word == text) {
            return word.value;
        }
    }
    std::uint64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || result.ec != std::errc() || result.ptr != text.data() + text.size() ||
        number > largestValue(kind)) {
        throw CommandError(ExitCode::WrongUsage, std::string(keyWord(kind)) + " is " +
                                                     allowedValues(kind) + ", not \"" +
                                                     std::string(text) + '"');
    }
    return static_cast<std::uint32_t>(number);
}

template <typename Keys>
std::pair<LineKind, std::uint32_t> parseSettingOf(const Keys& keys, std::string_view text)
{
    const std::size_t separator = text.find('=');
    std::string known;
    for (const LineKind kind : keys) {
        if (separator != std::string_view::npos && text.substr(0, separator) == keyWord(kind)) {
            return {kind, parseValue(kind, text.substr(separator + 1))};
        }
        known += (known.empty() ? "" : ", ") + std::string(keyWord(kind));
    }
    throw CommandError(ExitCode::WrongUsage, '"' + std::string(text) +
                                                 "\" is no KEY=VALUE with one of the keys " +
                                                 known);
}

template <typename Properties>
std::string joinedSettings(const Properties& properties)
{
    std::string text;
    for (const auto& [kind, value] : propertyValues(properties)) {
        text += (text.empty() ? "" : " ") + std::string(keyWord(kind)) + '=';
        text += valueWord(kind, value);
    }
    return text;
}

/// The word in JSON; a code without one as a number.
Json wordOrNumber(LineKind kind, std::uint32_t value)
{
    const auto word = wordOf(kind, value);
    return word ? Json(std::string(*word)) : Json(value);
}

} // namespace

std::string_view keyWord(LineKind kind)
{
    switch (kind) {
    case LineKind::GpibPrimaryAddress:
        return "primary-address";
    case LineKind::GpibSecondaryAddress:
        return "secondary-address";
    case LineKind::GpibSystemController:
        return "system-controller";
    case LineKind::SerialBaudrate:
        return "baud-rate";
    case LineKind::SerialDataBits:
        return "data-bits";
    case LineKind::SerialStopBits:
        return "stop-bits";
    case LineKind::SerialParity:
        return "parity";
    case LineKind::SerialFlowControl:
        return "flow-control";
    default:
        return {};
    }
}

std::string valueWord(LineKind kind, std::uint32_t value)
{
    const auto word = wordOf(kind, value);
    return word ? std::string(*word) : std::to_string(value);
}

std::pair<LineKind, std::uint32_t> parseSetting(std::string_view text, bool isSerial)
{
    return isSerial ? parseSettingOf(s_serialKeys, text) : parseSettingOf(s_gpibKeys, text);
}

std::string settingsText(const SSerialProperties& properties)
{
    return joinedSettings(properties);
}

std::string settingsText(const SGpibProperties& properties)
{
    return joinedSettings(properties);
}

Json toJson(std::uint16_t port, const SSerialProperties& properties)
{
    Json object;
    object["port"] = port;
    object["baudRate"] = properties.baudrate;
    object["dataBits"] = properties.dataBits;
    object["stopBits"] = wordOrNumber(LineKind::SerialStopBits, properties.stopBits);
    object["parity"] = wordOrNumber(LineKind::SerialParity, properties.parity);
    object["flowControl"] = wordOrNumber(LineKind::SerialFlowControl, properties.flowControl);
    return object;
}

Json toJson(std::uint16_t board, const SGpibProperties& properties)
{
    Json object;
    object["board"] = board;
    object["primaryAddress"] = properties.primaryAddress;
    object["secondaryAddress"] = properties.secondaryAddress == s_noSecondaryAddress
                                     ? Json()
                                     : Json(properties.secondaryAddress);
    object["systemController"] = properties.systemController > 1
                                     ? Json(properties.systemController)
                                     : Json(properties.systemController == 1);
    return object;
}

std::string entryText(const EntryOutcome& entry)
{
    const bool isRemoved = entry.action == EntryOutcome::Action::Removed;
    const bool isAbsent = !isRemoved && !entry.line;
    std::string name;
    std::string value;
    if (entry.kind == LineKind::Alias) {
        name = latin1ToUtf8(entry.name);
        value = latin1ToUtf8(entry.value);
    } else if (entry.kind == LineKind::Resource) {
        name = latin1ToUtf8(entry.value);
    } else if (entry.kind == LineKind::Provider) {
        name = "provider";
        value = std::to_string(entry.number);
    } else {
        name = isSerialProperty(entry.kind) ? "serial " : "gpib ";
        name += std::to_string(entry.device) + ' ' + std::string(keyWord(entry.kind));
        value = valueWord(entry.kind, entry.number);
    }
    if (isRemoved) {
        return name + " removed";
    }
    if (value.empty()) {
        return isAbsent ? name + " is not listed" : name;
    }
    return name + " = " + value;
}

} // namespace QvVisa
