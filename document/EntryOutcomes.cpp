// SPDX-License-Identifier: MIT
#include "document/EntryOutcomes.h"

#include "config/ConfigurationValue.h"
#include "config/UpperCase.h"

#include <utility>

namespace QvVisa {

namespace {

/// What makes two lines of one kind lines of one entry.
std::string entryKey(const ConfigurationLine& line)
{
    if (const auto property = toPropertyValue(line)) {
        return std::to_string(property->device);
    }
    return line.kind == LineKind::Provider ? std::string() : toUpperCase(line.first);
}

} // namespace

void EntryOutcomes::add(EntryOutcome outcome, std::optional<LinePlace> place)
{
    m_outcomes.push_back(std::move(outcome));
    m_places.push_back(place);
}

std::size_t EntryOutcomes::indexOfRemoval(LineKind kind, const std::string& key)
{
    const auto [found, isNew] = m_removals.try_emplace(
        std::to_string(static_cast<int>(kind)) + ' ' + key, m_outcomes.size());
    if (isNew) {
        EntryOutcome outcome;
        outcome.kind = kind;
        add(std::move(outcome));
    }
    return found->second;
}

void EntryOutcomes::removeLine(DocumentEditor& editor, std::size_t line,
                               const ConfigurationLine& match)
{
    const std::size_t index = indexOfRemoval(match.kind, entryKey(match));
    EntryOutcome& outcome = m_outcomes[index];
    outcome.action = EntryOutcome::Action::Removed;
    if (match.kind == LineKind::Alias) {
        outcome.name = toUpperCase(match.first);
        outcome.value = match.second;
    } else if (match.kind == LineKind::Resource) {
        outcome.value = match.first;
    } else if (const auto property = toPropertyValue(match)) {
        outcome.device = property->device;
        outcome.number = property->value;
    } else if (const auto provider = toProvider(match)) {
        outcome.number = *provider;
    }
    m_places[index] = editor.remove(line);
}

void EntryOutcomes::expectRemoval(LineKind kind, std::string_view text)
{
    const std::string key = toUpperCase(text);
    EntryOutcome& outcome = m_outcomes[indexOfRemoval(kind, key)];
    (kind == LineKind::Alias ? outcome.name : outcome.value) =
        kind == LineKind::Alias ? key : std::string(text);
}

std::vector<EntryOutcome> EntryOutcomes::numbered(const EditedText& edited) &&
{
    for (std::size_t i = 0; i < m_outcomes.size(); ++i) {
        if (m_places[i]) {
            m_outcomes[i].line = edited.lineNumber(*m_places[i]);
        }
    }
    return std::move(m_outcomes);
}

} // namespace QvVisa
