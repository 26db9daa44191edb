// SPDX-License-Identifier: MIT
#pragma once

#include "command/Json.h"
#include "config/ConfigurationRecords.h"
#include "document/EntryEdits.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace QvVisa {

/// The key as arguments spell it, such as "baud-rate".
std::string_view keyWord(LineKind kind);

/// The value of a key in words, such as "1.5" stop bits; a code without a word as its number.
std::string valueWord(LineKind kind, std::uint32_t value);

/// Reads "KEY=VALUE" of the family (serial or gpib); codes may be numbers. Throws CommandError with
/// ExitCode::WrongUsage for an unknown key or value and for a number wider than the key's.
std::pair<LineKind, std::uint32_t> parseSetting(std::string_view text, bool isSerial);

/// "baud-rate=9600 data-bits=8 ...".
std::string settingsText(const SSerialProperties& properties);
std::string settingsText(const SGpibProperties& properties);

/// The objects of the qvvisa-list/1 schema.
Json toJson(std::uint16_t port, const SSerialProperties& properties);
Json toJson(std::uint16_t board, const SGpibProperties& properties);

/// "DMM = TCPIP0::10.0.0.5::INSTR", "serial 1 baud-rate = 9600", "DMM removed"; in UTF-8.
std::string entryText(const EntryOutcome& entry);

} // namespace QvVisa
