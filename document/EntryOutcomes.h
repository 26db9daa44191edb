// SPDX-License-Identifier: MIT
#pragma once

#include "document/DocumentEditor.h"
#include "document/EntryEdits.h"

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace QvVisa {

/// Collects the outcomes of an edit while the numbers of the new lines are not known yet.
class EntryOutcomes
{
public:
    void add(EntryOutcome outcome, std::optional<LinePlace> place = std::nullopt);

    /// Removes a line and notes that its entry was removed. The lines of one entry (an alias's
    /// name, a resource in any case, a key of a device) give one outcome, with the last line.
    void removeLine(DocumentEditor& editor, std::size_t line, const ConfigurationLine& match);

    /// Notes that an entry is asked to be removed; it stays unchanged unless removeLine() meets it.
    void expectRemoval(LineKind kind, std::string_view text);

    std::vector<EntryOutcome> numbered(const EditedText& edited) &&;

private:
    std::size_t indexOfRemoval(LineKind kind, const std::string& key);

    std::vector<EntryOutcome> m_outcomes;
    std::vector<std::optional<LinePlace>> m_places;
    std::unordered_map<std::string, std::size_t> m_removals;
};

} // namespace QvVisa
