// SPDX-License-Identifier: MIT
#include "lint/IgnoredLine.h"

#include "config/ConfigurationLine.h"
#include "config/ModernConfigurationFile.h"
#include "lint/KeyLine.h"
#include "lint/LineText.h"
#include "lint/ResourceFindings.h"

#include <string>

namespace lint {

namespace {

/// A line of '=' alone separates parts of a file; it is not an alias.
bool isSeparator(std::string_view line)
{
    const std::string_view rest = trimmedRight(line);
    return rest.find_first_not_of('=') == std::string_view::npos;
}

void judgeKeyLine(std::string_view line, std::size_t offset, LineFindings& findings)
{
    if (beginsWithIgnoringCase(line, QvVisa::ModernConfigurationFile::GetVersionString())) {
        findings.add(FindingCode::HeaderAgain, offset,
                     "The version header is here again: two files may have been joined.");
        return;
    }
    KeyLine::parse(line).judge(findings, offset);
}

/// A line with '=' that is no alias. The offset is that of the line's first byte in the file's
/// line.
void judgeBrokenAlias(std::string_view line, std::size_t offset, LineFindings& findings)
{
    if (lacksColon(line)) {
        findings.add(FindingCode::MissingColon, offset,
                     "This setting is ignored: there is no ':' before it.");
        return;
    }
    const std::size_t equals = line.find('=');
    const std::string_view name = trimmedRight(line.substr(0, equals));
    std::size_t space = 0;
    while (space < name.size() && !isSpace(name[space])) {
        ++space;
    }
    const std::size_t value = skipSpaces(line, equals + 1);
    if (name.empty()) {
        findings.add(FindingCode::NoName, offset,
                     "This line is ignored: there is no name before the '='.");
    } else if (space < name.size()) {
        findings.add(FindingCode::WhiteSpaceInName, offset + space,
                     "This line is ignored: an alias cannot hold white space as " + quoted(name) +
                         " does.");
    } else if (value == line.size()) {
        findings.add(FindingCode::NoResource, offset + equals + 1,
                     "This line is ignored: " + quoted(name) +
                         " has no resource string after the '='.");
    } else {
        std::size_t end = value;
        while (end < line.size() && !isSpace(line[end])) {
            ++end;
        }
        const std::size_t extra = skipSpaces(line, end);
        findings.add(FindingCode::TextAfterAlias, offset + extra,
                     "This line is ignored: " + quoted(trimmedRight(line.substr(extra))) +
                         " follows the resource string of " + quoted(name) + ".");
    }
}

/// Whether an indented text was meant to be read, and is not a comment.
bool isMeantAsEntry(std::string_view text)
{
    using QvVisa::LineKind;
    if (text.front() == '#' || text.front() == ';' || text.substr(0, 2) == "//") {
        return false;
    }
    switch (QvVisa::matchConfigurationLine(text).kind) {
    case LineKind::None:
        break;
    case LineKind::Resource:
        return looksLikeResource(text);
    default:
        return true;
    }
    if (text.front() == ':') {
        return KeyLine::parse(text).looksLikeSetting();
    }
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) {
        return false;
    }
    return lacksColon(text) || looksLikeResource(text.substr(skipSpaces(text, equals + 1)));
}

void judgeIndented(std::string_view line, LineFindings& findings)
{
    const std::size_t begin = skipSpaces(line);
    const std::string_view text = line.substr(begin);
    if (text.empty() || !isMeantAsEntry(text)) {
        return;
    }
    findings.add(FindingCode::IndentedEntry, 0,
                 "This line is ignored: it begins with white space.");
    if (QvVisa::matchConfigurationLine(text).kind != QvVisa::LineKind::None) {
        return;
    }
    if (text.front() == ':') {
        judgeKeyLine(text, begin, findings);
    } else {
        judgeBrokenAlias(text, begin, findings);
    }
}

} // namespace

bool lacksColon(std::string_view line)
{
    if (!beginsWithIgnoringCase(line, "Provider") &&
        !beginsWithIgnoringCase(line, "SerialProperty") &&
        !beginsWithIgnoringCase(line, "GPIBProperty")) {
        return false;
    }
    const std::string withColon = ':' + std::string(line);
    const KeyLine setting = KeyLine::parse(withColon);
    if (setting.isProvider()) {
        return setting.hasEquals && !setting.value.text.empty() &&
               isDigit(setting.value.text.front());
    }
    return (setting.isSerial() || setting.isGpib()) && setting.hasBracket && setting.hasEquals;
}

void judgeIgnoredLine(std::string_view line, LineFindings& findings)
{
    if (line.empty() || line.front() == '#') {
        return;
    }
    if (isSpace(line.front())) {
        judgeIndented(line, findings);
    } else if (line.front() == ':') {
        judgeKeyLine(line, 0, findings);
    } else if (line.front() != ';' && line.substr(0, 2) != "//" && !isSeparator(line)) {
        judgeBrokenAlias(line, 0, findings);
    }
}

} // namespace lint
