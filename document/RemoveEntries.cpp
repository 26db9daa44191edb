// SPDX-License-Identifier: MIT
#include "document/EntryEdits.h"

#include "config/ConfigurationValue.h"
#include "config/EntryFilter.h"
#include "config/UpperCase.h"
#include "document/EntryOutcomes.h"

#include <unordered_set>
#include <utility>

namespace QvVisa {

namespace {

class UnwantedLines
{
public:
    explicit UnwantedLines(const UnwantedEntries& unwanted)
        : m_serial(unwanted.serial.begin(), unwanted.serial.end()),
          m_gpib(unwanted.gpib.begin(), unwanted.gpib.end())
    {
        for (const std::string& name : unwanted.names) {
            m_names.insert(toUpperCase(name));
            m_filter.addText(name);
        }
        for (const std::string& resource : unwanted.resources) {
            m_resources.insert(toUpperCase(resource));
            m_filter.addText(resource);
        }
        if (!m_serial.empty() || !m_gpib.empty()) {
            m_filter.addKeys();
        }
    }

    /// False only for a line that is not among them.
    bool mayContain(std::string_view line) const { return m_filter.passes(line); }

    bool contain(const ConfigurationLine& line) const
    {
        if (line.kind == LineKind::Alias) {
            return !m_names.empty() && m_names.count(toUpperCase(line.first)) > 0;
        }
        if (line.kind == LineKind::Resource) {
            return !m_resources.empty() && m_resources.count(toUpperCase(line.first)) > 0;
        }
        if (const auto property = toPropertyValue(line)) {
            const auto& devices = isSerialProperty(line.kind) ? m_serial : m_gpib;
            return devices.count(property->device) > 0;
        }
        return false;
    }

private:
    EntryFilter m_filter;
    std::unordered_set<std::string> m_names;
    std::unordered_set<std::string> m_resources;
    std::unordered_set<std::uint16_t> m_serial;
    std::unordered_set<std::uint16_t> m_gpib;
};

} // namespace

EditResult removeEntries(const Document& document, const UnwantedEntries& unwanted)
{
    const UnwantedLines lines(unwanted);
    DocumentEditor editor(document);
    EntryOutcomes outcomes;
    for (const std::string& name : unwanted.names) {
        outcomes.expectRemoval(LineKind::Alias, name);
    }
    for (const std::string& resource : unwanted.resources) {
        outcomes.expectRemoval(LineKind::Resource, resource);
    }
    for (std::size_t index = 0; index < document.size(); ++index) {
        if (!lines.mayContain(document.lineText(index))) {
            continue;
        }
        const ConfigurationLine line = document.line(index).match;
        if (lines.contain(line)) {
            outcomes.removeLine(editor, index, line);
        }
    }
    EditResult result;
    result.edited = editor.edit();
    result.entries = std::move(outcomes).numbered(result.edited);
    return result;
}

} // namespace QvVisa
