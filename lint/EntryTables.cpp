// SPDX-License-Identifier: MIT
#include "lint/EntryTables.h"

#include <string>

namespace lint {

namespace {

std::string lineName(std::size_t line)
{
    return "line " + std::to_string(line);
}

} // namespace

std::size_t EntryTables::Hash::operator()(std::string_view text) const noexcept
{
    // FNV-1a over the text in upper case.
    std::uint64_t hash = 14695981039346656037U;
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(toUpper(c))) * 1099511628211U;
    }
    return static_cast<std::size_t>(hash);
}

EntryTables::EntryTables(std::size_t lines)
{
    m_aliases.reserve(lines);
    m_resources.reserve(lines);
}

bool EntryTables::addAlias(std::string_view name, std::size_t nameOffset, std::string_view resource,
                           std::size_t resourceOffset, LineFindings& findings)
{
    const bool isForAlias =
        judgeAliasForAlias(name, nameOffset, resource, resourceOffset, findings);
    const auto [place, isNew] = m_aliases.try_emplace(name, Alias{resource, findings.line()});
    Alias& alias = place->second;
    if (!isNew) {
        const bool isSame = equalsIgnoringCase(alias.resource, resource);
        findings.add(isSame ? FindingCode::AliasRepeated : FindingCode::AliasRedefined, nameOffset,
                     isSame
                         ? "The alias " + quoted(name) + " is also on " + lineName(alias.line) +
                               ", for the same resource."
                         : "The alias " + quoted(name) + " is also on " + lineName(alias.line) +
                               ", for " + quoted(alias.resource) + ", which this line replaces.");
        alias = {resource, findings.line()};
    }
    Resource& known = m_resources[resource];
    if (known.aliasLine != 0 && !equalsIgnoringCase(known.alias, name)) {
        findings.add(FindingCode::SecondName, resourceOffset,
                     "The resource has the alias " + quoted(known.alias) + " on " +
                         lineName(known.aliasLine) +
                         " too: which of the names a program shows for it is chance.");
    } else if (known.plainLine != 0) {
        findings.add(FindingCode::ResourceAlsoAliased, resourceOffset,
                     "The resource is also on " + lineName(known.plainLine) +
                         " without an alias: the window lists it twice.");
    }
    known.aliasLine = findings.line();
    known.alias = name;
    return isForAlias;
}

bool EntryTables::judgeAliasForAlias(std::string_view name, std::size_t nameOffset,
                                     std::string_view resource, std::size_t resourceOffset,
                                     LineFindings& findings)
{
    if (equalsIgnoringCase(name, resource)) {
        findings.add(FindingCode::AliasForAlias, resourceOffset,
                     "The alias " + quoted(name) + " is for itself, not for an instrument.");
        return true;
    }
    const auto meant = m_aliases.find(resource);
    if (meant != m_aliases.end()) {
        findings.add(FindingCode::AliasForAlias, resourceOffset,
                     quoted(resource) + " is an alias itself, on " + lineName(meant->second.line) +
                         "; an alias is looked up once only.");
    }
    const auto users = m_resources.find(name);
    if (users != m_resources.end() && users->second.aliasLine != 0) {
        findings.add(FindingCode::AliasForAlias, nameOffset,
                     "The alias " + quoted(users->second.alias) + " on " +
                         lineName(users->second.aliasLine) + " is for this alias, " + quoted(name) +
                         "; an alias is looked up once only.");
        m_linesForLaterAlias.push_back(users->second.aliasLine);
    }
    return meant != m_aliases.end();
}

void EntryTables::addResource(std::string_view resource, LineFindings& findings)
{
    Resource& known = m_resources[resource];
    if (known.plainLine != 0) {
        findings.add(FindingCode::ResourceRepeated, 0,
                     "The resource is also on " + lineName(known.plainLine) +
                         ": it is listed twice.");
    } else if (known.aliasLine != 0) {
        findings.add(FindingCode::ResourceAlsoAliased, 0,
                     "The resource also has the alias " + quoted(known.alias) + " on " +
                         lineName(known.aliasLine) + ": the window lists it twice.");
    }
    known.plainLine = findings.line();
}

void EntryTables::addValue(std::uint32_t setting, std::uint32_t value, std::string_view key,
                           std::size_t offset, LineFindings& findings)
{
    const auto [place, isNew] = m_values.try_emplace(setting, Value{value, findings.line()});
    Value& known = place->second;
    if (!isNew && known.value != value) {
        findings.add(FindingCode::ValueRedefined, offset,
                     std::string(key) + " is also on " + lineName(known.line) + ", as " +
                         std::to_string(known.value) + ", which this line replaces.");
    }
    known = {value, findings.line()};
}

} // namespace lint
