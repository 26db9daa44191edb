// SPDX-License-Identifier: MIT
#include "document/EntryEdits.h"

#include "config/ConfigurationRecords.h"
#include "config/ConfigurationValue.h"
#include "config/EntryFilter.h"
#include "config/UpperCase.h"
#include "document/Entries.h"
#include "document/EntryOutcomes.h"
#include "document/PropertyKeys.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace QvVisa {

namespace {

using Action = EntryOutcome::Action;
using DeviceValues = std::map<std::uint16_t, PropertyValues>;

/// The lines of one device.
struct DeviceLines
{
    struct Key
    {
        std::size_t line = 0; ///< The last one.
        std::uint32_t value = 0;
    };

    std::map<LineKind, Key> keys;
    std::size_t lastLine = 0;
};

/// The lines of all ports, or of all boards.
struct FamilyLines
{
    std::map<std::uint16_t, DeviceLines> devices;
    std::optional<std::size_t> lastLine;
};

/// By upper-cased alias name or resource: its last line, none if it has no line.
using NamedLines = std::unordered_map<std::string, std::optional<std::size_t>>;

bool isAnyMissing(const NamedLines& lines)
{
    return std::any_of(lines.begin(), lines.end(),
                       [](const auto& entry) { return !entry.second.has_value(); });
}

template <typename Map, typename Key>
const typename Map::mapped_type* findIn(const Map& map, const Key& key)
{
    const auto found = map.find(key);
    return found != map.end() ? &found->second : nullptr;
}

/// Finds the lines of the wanted entries in one pass, then writes what is missing or different.
class EntryWriter
{
public:
    EntryWriter(const Document& document, const WantedEntries& wanted, OtherEntries others)
        : m_document(document),
          m_wanted(wanted),
          m_removesOthers(others == OtherEntries::Remove),
          m_editor(document)
    {
        for (const auto& [name, resource] : wanted.aliases) {
            m_aliasLines[toUpperCase(name)];
            m_filter.addText(name);
        }
        for (const std::string& resource : wanted.resources) {
            m_resourceLines[toUpperCase(resource)];
            m_filter.addText(resource);
        }
        if (!wanted.serial.empty() || !wanted.gpib.empty() || wanted.provider) {
            m_filter.addKeys();
        }
        if (m_removesOthers) {
            m_filter.addAll();
        }
    }

    EditResult write()
    {
        for (std::size_t index = 0; index < m_document.size(); ++index) {
            if (m_filter.passes(m_document.lineText(index))) {
                visit(index, m_document.line(index).match);
            }
        }
        if (isAnyMissing(m_aliasLines)) {
            m_lastAlias = m_document.lastLine(LineKind::Alias);
        }
        if (isAnyMissing(m_resourceLines)) {
            m_lastResource = m_document.lastLine(LineKind::Resource);
        }
        writeProvider();
        writeFamily(m_wanted.serial, m_serial);
        writeFamily(m_wanted.gpib, m_gpib);
        // Both go to the end of a file that has none. After an alias in the last line, aliases come
        // first.
        if (m_lastAlias) {
            writeAliases();
            writeResources();
        } else {
            writeResources();
            writeAliases();
        }
        EditResult result;
        result.edited = m_editor.edit();
        result.entries = std::move(m_outcomes).numbered(result.edited);
        return result;
    }

private:
    void visit(std::size_t index, const ConfigurationLine& line);
    void visitProperty(std::size_t index, const ConfigurationLine& line,
                       const PropertyValue& property);
    void visitNamed(std::size_t index, const ConfigurationLine& line, NamedLines& lines);

    void writeProvider();
    void writeFamily(const DeviceValues& wanted, const FamilyLines& family);
    void writeDevice(std::uint16_t device, const PropertyValues& wanted, const DeviceLines* lines,
                     std::size_t anchor);
    void writeResources();
    void writeAliases();

    const Document& m_document;
    const WantedEntries& m_wanted;
    const bool m_removesOthers;
    EntryFilter m_filter;
    DocumentEditor m_editor;
    EntryOutcomes m_outcomes;
    /// Of the wanted ones.
    NamedLines m_aliasLines;
    NamedLines m_resourceLines;
    /// After these go what the document lacks. If it lacks nothing, any lines of these kinds.
    std::optional<std::size_t> m_lastAlias;
    std::optional<std::size_t> m_lastResource;
    FamilyLines m_serial;
    FamilyLines m_gpib;
    std::optional<std::size_t> m_providerLine;
};

void EntryWriter::visit(std::size_t index, const ConfigurationLine& line)
{
    if (line.kind == LineKind::Alias) {
        m_lastAlias = index;
        visitNamed(index, line, m_aliasLines);
    } else if (line.kind == LineKind::Resource) {
        m_lastResource = index;
        visitNamed(index, line, m_resourceLines);
    } else if (toProvider(line)) {
        m_providerLine = index;
        if (m_removesOthers && !m_wanted.provider) {
            m_outcomes.removeLine(m_editor, index, line);
        }
    } else if (const auto property = toPropertyValue(line)) {
        visitProperty(index, line, *property);
    }
}

void EntryWriter::visitNamed(std::size_t index, const ConfigurationLine& line, NamedLines& lines)
{
    if (lines.empty() && !m_removesOthers) {
        return;
    }
    const auto found = lines.find(toUpperCase(line.first));
    if (found != lines.end()) {
        found->second = index;
    } else if (m_removesOthers) {
        m_outcomes.removeLine(m_editor, index, line);
    }
}

void EntryWriter::visitProperty(std::size_t index, const ConfigurationLine& line,
                                const PropertyValue& property)
{
    const bool isSerial = isSerialProperty(property.kind);
    FamilyLines& family = isSerial ? m_serial : m_gpib;
    DeviceLines& device = family.devices[property.device];
    family.lastLine = index;
    device.lastLine = index;
    const PropertyValues* values =
        findIn(isSerial ? m_wanted.serial : m_wanted.gpib, property.device);
    if (m_removesOthers && (values == nullptr || values->count(property.kind) == 0)) {
        m_outcomes.removeLine(m_editor, index, line);
    } else {
        device.keys[property.kind] = {index, property.value};
    }
}

void EntryWriter::writeProvider()
{
    if (!m_wanted.provider) {
        return;
    }
    EntryOutcome outcome;
    outcome.kind = LineKind::Provider;
    outcome.number = *m_wanted.provider;
    const std::string digits = std::to_string(outcome.number);
    if (!m_providerLine) {
        if (outcome.number == defaultProvider) {
            m_outcomes.add(std::move(outcome));
            return;
        }
        outcome.action = Action::Written;
        m_outcomes.add(std::move(outcome), m_editor.insertAfter(0, ":Provider=" + digits));
        return;
    }
    const ConfigurationLine line = m_document.line(*m_providerLine).match;
    LinePlace place{*m_providerLine, 0};
    if (toProvider(line) != outcome.number) {
        place = m_editor.replace(*m_providerLine, line.first, digits);
        outcome.action = Action::Written;
    }
    m_outcomes.add(std::move(outcome), place);
}

void EntryWriter::writeFamily(const DeviceValues& wanted, const FamilyLines& family)
{
    // Devices with lines first: a new device goes after the family's last line, and that may be
    // where one of them gets another key.
    for (const auto& [device, values] : wanted) {
        if (const DeviceLines* lines = findIn(family.devices, device)) {
            writeDevice(device, values, lines, lines->lastLine);
        }
    }
    const std::size_t anchor = family.lastLine.value_or(m_providerLine.value_or(0));
    for (const auto& [device, values] : wanted) {
        if (findIn(family.devices, device) == nullptr) {
            writeDevice(device, values, nullptr, anchor);
        }
    }
}

void EntryWriter::writeDevice(std::uint16_t device, const PropertyValues& wanted,
                              const DeviceLines* lines, std::size_t anchor)
{
    const bool isNamed = lines != nullptr && !lines->keys.empty();
    for (const auto& [kind, value] : wanted) {
        EntryOutcome outcome;
        outcome.kind = kind;
        outcome.device = device;
        outcome.number = value;
        const DeviceLines::Key* key = isNamed ? findIn(lines->keys, kind) : nullptr;
        std::optional<LinePlace> place;
        if (key != nullptr && key->value == value) {
            place = LinePlace{key->line, 0};
        } else if (key != nullptr) {
            outcome.action = Action::Written;
            place = m_editor.replace(key->line, m_document.line(key->line).match.second,
                                     std::to_string(value));
        } else if (!isNamed || value != defaultValue(kind)) {
            outcome.action = Action::Written;
            place = m_editor.insertAfter(anchor, propertyLine(kind, device, value));
        }
        m_outcomes.add(std::move(outcome), place);
    }
}

void EntryWriter::writeResources()
{
    const std::size_t anchor = m_lastResource.value_or(m_document.size() - 1);
    for (const std::string& resource : m_wanted.resources) {
        const auto entry = m_resourceLines.find(toUpperCase(resource));
        if (entry == m_resourceLines.end()) {
            continue; // Wanted twice, and already written.
        }
        EntryOutcome outcome;
        outcome.kind = LineKind::Resource;
        outcome.value = resource;
        LinePlace place;
        if (entry->second) {
            place.line = *entry->second;
        } else {
            outcome.action = Action::Written;
            place = m_editor.insertAfter(anchor, resource);
        }
        m_outcomes.add(std::move(outcome), place);
        m_resourceLines.erase(entry);
    }
}

void EntryWriter::writeAliases()
{
    const std::size_t anchor = m_lastAlias.value_or(m_document.size() - 1);
    // From the end, so that the last one of equal names is met first.
    std::vector<const std::pair<std::string, std::string>*> wanted;
    std::unordered_set<std::string> known;
    for (auto alias = m_wanted.aliases.rbegin(); alias != m_wanted.aliases.rend(); ++alias) {
        if (known.insert(toUpperCase(alias->first)).second) {
            wanted.push_back(&*alias);
        }
    }
    for (auto alias = wanted.rbegin(); alias != wanted.rend(); ++alias) {
        EntryOutcome outcome;
        outcome.kind = LineKind::Alias;
        outcome.name = toUpperCase((*alias)->first);
        outcome.value = (*alias)->second;
        const std::optional<std::size_t> line = m_aliasLines[outcome.name];
        LinePlace place;
        if (!line) {
            outcome.action = Action::Written;
            place = m_editor.insertAfter(anchor, outcome.name + '=' + outcome.value);
        } else {
            place.line = *line;
            const std::string_view value = m_document.line(*line).match.second;
            if (value != outcome.value) {
                outcome.action = Action::Written;
                m_editor.replace(*line, value, outcome.value);
            }
        }
        m_outcomes.add(std::move(outcome), place);
    }
}

} // namespace

EditResult setEntries(const Document& document, const WantedEntries& wanted, OtherEntries others)
{
    EditResult result = EntryWriter(document, wanted, others).write();
    // Removing a line that only states a default may change nothing.
    if (others == OtherEntries::Remove && result.isChanged() &&
        haveSameMeaning(Entries(document), Entries(Document(result.edited.text)))) {
        result = EntryWriter(document, wanted, OtherEntries::Keep).write();
    }
    return result;
}

} // namespace QvVisa
