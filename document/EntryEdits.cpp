// SPDX-License-Identifier: MIT
#include "document/EntryEdits.h"

#include "config/EntryFilter.h"
#include "config/UpperCase.h"

namespace QvVisa {

bool isAlias(std::string_view name, std::string_view resource)
{
    const std::string text = std::string(name).append("=").append(resource);
    const ConfigurationLine line = matchConfigurationLine(text);
    return line.kind == LineKind::Alias && line.first == name && line.second == resource;
}

bool isPlainResource(std::string_view resource)
{
    return resource.find('\n') == std::string_view::npos &&
           matchConfigurationLine(resource).kind == LineKind::Resource;
}

Renaming renameAlias(const Document& document, std::string_view oldName, std::string_view newName,
                     EditResult& result)
{
    const std::string oldUpper = toUpperCase(oldName);
    const std::string newUpper = toUpperCase(newName);
    std::vector<std::size_t> lines;
    std::optional<std::size_t> lineOfNewName;
    EntryFilter filter;
    filter.addText(oldName);
    filter.addText(newName);
    for (std::size_t index = 0; index < document.size(); ++index) {
        if (!filter.passes(document.lineText(index))) {
            continue;
        }
        const ConfigurationLine line = document.line(index).match;
        if (line.kind != LineKind::Alias) {
            continue;
        }
        if (equalsIgnoringCase(line.first, oldUpper)) {
            lines.push_back(index);
        }
        if (equalsIgnoringCase(line.first, newUpper)) {
            lineOfNewName = index;
        }
    }
    if (lines.empty() && !lineOfNewName) {
        return Renaming::NoSuchName;
    }
    if (!lines.empty() && lineOfNewName && oldUpper != newUpper) {
        return Renaming::NewNameTaken;
    }
    DocumentEditor editor(document);
    EntryOutcome outcome;
    outcome.kind = LineKind::Alias;
    outcome.name = newUpper;
    const std::size_t deciding = lineOfNewName ? *lineOfNewName : lines.back();
    outcome.value = document.line(deciding).match.second;
    outcome.line = deciding + 1;
    if (!lineOfNewName) {
        for (const std::size_t line : lines) {
            editor.replace(line, document.line(line).match.first, newUpper);
        }
        outcome.action = EntryOutcome::Action::Written;
    }
    result.edited = editor.edit();
    result.entries = {std::move(outcome)};
    return Renaming::Done;
}

} // namespace QvVisa
