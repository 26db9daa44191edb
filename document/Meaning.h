// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationLine.h"
#include "document/Document.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace QvVisa {

/// What one line of the file sets.
struct EntryKey
{
    LineKind kind = LineKind::None;
    std::uint16_t device = 0; ///< Property: the port or board.
    std::string name{};       ///< Alias: the upper-cased name. Resource: the resource string.
};

bool operator<(const EntryKey& left, const EntryKey& right);
bool operator==(const EntryKey& left, const EntryKey& right);

/// The key of a line; none for a line that sets nothing.
std::optional<EntryKey> keyOf(const ConfigurationLine& line);

/// A serial port or a GPIB board.
struct Device
{
    bool isGpib = false;
    std::uint16_t number = 0;
};

bool operator<(const Device& left, const Device& right);
bool operator==(const Device& left, const Device& right);

/// The device of a property's key; none for other keys.
std::optional<Device> deviceOf(const EntryKey& key);

/// What the reader makes of a document, without regard to the order of entries, as texts that can
/// be compared and merged one by one.
struct Meaning
{
    /// Alias: the resource string. Resource: how often it is listed. Provider and properties: the
    /// number in decimal. A value that is the default is not here.
    std::map<EntryKey, std::string> values;
    /// The devices that have settings, defaults included.
    std::set<Device> devices;

    Meaning() = default;
    explicit Meaning(const Document& document);

    /// The value, or the default: "" for an alias, "0" for a resource.
    std::string value(const EntryKey& key) const;

    /// Stores a value; the default removes it.
    void set(const EntryKey& key, const std::string& value);
};

bool operator==(const Meaning& left, const Meaning& right);

/// The line that sets the key to the value, without a line feed. For a resource, the value does not
/// count.
std::string entryLine(const EntryKey& key, const std::string& value);

} // namespace QvVisa
