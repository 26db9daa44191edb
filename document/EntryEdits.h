// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationLine.h"
#include "document/Document.h"
#include "document/DocumentEditor.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace QvVisa {

/// The keys of one device with their values, in the order in which the file lists them.
using PropertyValues = std::map<LineKind, std::uint32_t>;

/// Entries that a document is to have. All texts are the file's bytes.
struct WantedEntries
{
    /// Names in any case, each with its resource string; of equal names the last one counts.
    std::vector<std::pair<std::string, std::string>> aliases;
    std::vector<std::string> resources;
    std::map<std::uint16_t, PropertyValues> serial; ///< By port.
    std::map<std::uint16_t, PropertyValues> gpib;   ///< By board.
    std::optional<std::uint16_t> provider;
};

/// Entries that a document is not to have.
struct UnwantedEntries
{
    std::vector<std::string> names; ///< Of aliases, in any case.
    std::vector<std::string> resources;
    std::vector<std::uint16_t> serial; ///< Ports.
    std::vector<std::uint16_t> gpib;   ///< Boards.
};

/// What became of one entry that an edit was asked for.
struct EntryOutcome
{
    enum class Action
    {
        Unchanged,
        Written,
        Removed,
    };

    Action action = Action::Unchanged;
    LineKind kind = LineKind::None;
    std::string name{};       ///< Alias: the upper-cased name.
    std::string value{};      ///< Alias and resource: the resource string.
    std::uint16_t device = 0; ///< Property: the port or board.
    std::uint32_t number = 0; ///< Property: the value. Provider: the ID.
    /// Counted from 1, in the new text, or in the old one for a removed entry, where it is the last
    /// of the removed lines; none for an entry that is in neither.
    std::optional<std::size_t> line;
};

/// The new text and what became of each entry.
struct EditResult
{
    EditedText edited;
    std::vector<EntryOutcome> entries;

    bool isChanged() const { return !edited.hunks.empty(); }
};

/// Whether the reader reads "NAME=RESOURCE" back as this alias.
bool isAlias(std::string_view name, std::string_view resource);

/// Whether the reader reads the line back as this resource without an alias.
bool isPlainResource(std::string_view resource);

/// Whether entries that are not wanted stay.
enum class OtherEntries
{
    Keep,
    Remove,
};

/// Each of these edits touches only the lines of the entries it is asked for, and nothing when the
/// document already means what it is asked for. The document must have the version header; the
/// texts must be such that isAlias() and isPlainResource() accept them, and values must fit the
/// width of their key.
///
/// An alias's value is replaced in the last line of its name; a number in the last line of its key.
/// A new alias goes after the last alias, a new resource after the last plain resource, else to the
/// end; a new property after the last line of its device, else of its family, else after the
/// provider line, else after the header, and so does a provider line.
EditResult setEntries(const Document& document, const WantedEntries& wanted,
                      OtherEntries others = OtherEntries::Keep);

/// Removes all lines of these names and devices, and all equal plain resources, upper and lower
/// case alike.
EditResult removeEntries(const Document& document, const UnwantedEntries& unwanted);

/// What became of a rename.
enum class Renaming
{
    Done, ///< Or nothing to do: the old name is gone and the new one is there, or they are equal.
    NewNameTaken,
    NoSuchName,
};

/// Changes the name in all lines of the old one; the new name is written in upper case.
Renaming renameAlias(const Document& document, std::string_view oldName, std::string_view newName,
                     EditResult& result);

} // namespace QvVisa
