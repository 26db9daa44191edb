// SPDX-License-Identifier: MIT
#pragma once

#include "document/Document.h"
#include "document/Meaning.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace QvVisa {

/// An entry that two documents have differently.
struct Difference
{
    EntryKey key;
    /// As Meaning has it; none where the document has no such entry.
    std::optional<std::string> before;
    std::optional<std::string> after;
};

/// The differences of meaning: aliases, resources with how often they are listed, provider, and
/// settings. Sorted by provider, resources, aliases, GPIB boards and serial ports. A device that
/// only one document has differs in all its keys. The order of entries is no difference.
std::vector<Difference> differences(const Meaning& before, const Meaning& after);

/// A difference as lines of the file's syntax: first the lines that are removed, each after a '-',
/// then those that are added, each after a '+'. Each ends in a line feed.
std::string differenceLines(const Difference& difference);

/// What a save in the window makes of a document's lines. The order of lines is no difference.
struct WindowSave
{
    /// Indexes of the lines that the saved file does not have.
    std::vector<std::size_t> lost;
    /// Lines that only the saved file has, in its order.
    std::vector<std::string> added;

    /// The document has the version header.
    explicit WindowSave(const Document& document);
};

} // namespace QvVisa
