// SPDX-License-Identifier: MIT
#include "lint/EntryFindings.h"

#include "lint/IgnoredLine.h"
#include "lint/LineText.h"
#include "lint/ResourceFindings.h"
#include "visa/ResourceName.h"
#include "visa/Text.h"

#include <algorithm>
#include <string>

namespace lint {

namespace {

bool beginsWithWrongCommentSign(std::string_view line)
{
    return line.front() == ';' || line.substr(0, 2) == "//";
}

std::size_t find(std::string_view text, bool (*isWanted)(char))
{
    const auto* const found = std::find_if(text.begin(), text.end(), isWanted);
    return found != text.end() ? static_cast<std::size_t>(found - text.begin())
                               : std::string_view::npos;
}

bool isOutsidePrintableAscii(char c)
{
    return c < '!' || c > '~';
}

bool isLowerCaseLetter(char c)
{
    return c >= 'a' && c <= 'z';
}

bool isPunctuation(char c)
{
    return c == ':' || c == ',';
}

/// True when the name has the form of a resource string.
bool judgeNameForm(std::string_view name, LineFindings& findings)
{
    // Only a name with "::", or with one of a serial port, can be one.
    const bool isPort = beginsWithIgnoringCase(name, "ASRL");
    if (!isPort && name.find("::") == std::string_view::npos) {
        return false;
    }
    if (visa::parseResourceName(name)) {
        findings.add(FindingCode::NameLikeResource, 0,
                     "The name " + quoted(name) +
                         " is a resource string: programs no longer reach that address.");
        return true;
    }
    if (isPort) {
        findings.add(FindingCode::NameLikeResource, Severity::Warning, 0,
                     "The name " + quoted(name) + " begins like the address of a serial port.");
    }
    return false;
}

void judgeName(std::string_view name, LineFindings& findings)
{
    constexpr std::size_t none = std::string_view::npos;
    if (const std::size_t nul = name.find('\0'); nul != none) {
        findings.add(FindingCode::NulByte, nul,
                     "The name holds a NUL byte: clients see " + quoted(name.substr(0, nul)) +
                         " only.");
        return;
    }
    if (const std::size_t other = find(name, isOutsidePrintableAscii); other != none) {
        findings.add(FindingCode::NameNotAscii, other,
                     "The name " + quoted(name) +
                         " has a character outside printable ASCII: PyVISA cannot ask for it.");
    }
    if (!judgeNameForm(name, findings)) {
        if (const std::size_t sign = find(name, isPunctuation); sign != none) {
            findings.add(FindingCode::PunctuationInName, sign,
                         name[sign] == ':'
                             ? "The window deletes ':' from the name " + quoted(name) +
                                   " when it is edited there."
                             : "Not every client takes the ',' in the name " + quoted(name) + ".");
        }
    }
    if (const std::size_t letter = find(name, isLowerCaseLetter); letter != none) {
        findings.add(FindingCode::LowerCaseAlias, letter,
                     "Names are read in upper case: clients see " +
                         quoted(visa::toUpperCase(name)) + ".");
    }
}

/// The white space at the end of a resource's line: a carriage return alone at the very end counts
/// as a Windows line ending, all other white space as typed.
void judgeTrailingSpace(std::string_view line, std::size_t bodySize, LineFindings& findings)
{
    const bool hasCarriageReturn = line.back() == '\r';
    const std::size_t spacesEnd = line.size() - (hasCarriageReturn ? 1 : 0);
    if (spacesEnd > bodySize) {
        findings.add(
            FindingCode::TrailingWhiteSpace, bodySize,
            "The white space at the end belongs to the resource string: clients see another "
            "resource than " +
                quoted(line.substr(0, bodySize)) + ".");
    }
    if (hasCarriageReturn) {
        findings.add(FindingCode::TrailingCarriageReturn, spacesEnd,
                     "The carriage return at the end (Windows line ending) belongs to the resource "
                     "string: clients see another resource than " +
                         quoted(line.substr(0, bodySize)) + ".");
    }
}

} // namespace

std::size_t findTrailingComment(std::string_view line)
{
    for (std::size_t i = 1; i < line.size(); ++i) {
        const bool isSign =
            line[i] == '#' || line[i] == ';' || (line[i] == '/' && line.substr(i, 2) == "//");
        if (isSign && isSpace(line[i - 1])) {
            return i;
        }
    }
    return std::string_view::npos;
}

void judgeAlias(std::string_view line, const QvVisa::ConfigurationLine& match, EntryTables& tables,
                LineFindings& findings)
{
    if (beginsWithWrongCommentSign(line)) {
        findings.add(FindingCode::WrongCommentSign, 0,
                     "This line is no comment: it sets the alias " + quoted(match.first) + ".");
        return;
    }
    if (lacksColon(line)) {
        findings.add(FindingCode::MissingColon, 0,
                     "This line is no setting, for there is no ':' before it: it sets the alias " +
                         quoted(match.first) + ".");
        return;
    }
    const auto offset = static_cast<std::size_t>(match.second.data() - line.data());
    judgeName(match.first, findings);
    if (!tables.addAlias(match.first, 0, match.second, offset, findings)) {
        judgeResource(match.second, offset, findings);
    }
}

void judgePlainResource(std::string_view line, EntryTables& tables, LineFindings& findings)
{
    if (beginsWithWrongCommentSign(line)) {
        findings.add(FindingCode::WrongCommentSign, 0,
                     "This line is no comment: it lists the resource " + quoted(line) + ".");
        return;
    }
    std::string_view body = trimmedRight(line);
    if (body.front() == '[' && body.back() == ']') {
        findings.add(FindingCode::SectionLine, 0,
                     "The format has no sections: this line lists the resource " + quoted(body) +
                         ".");
        return;
    }
    if (const std::size_t comment = findTrailingComment(body); comment != std::string_view::npos) {
        findings.add(FindingCode::CommentAfterResource, comment,
                     "The comment " + quoted(body.substr(comment)) +
                         " belongs to the resource string.");
        body = trimmedRight(body.substr(0, comment));
    } else if (body.size() < line.size()) {
        judgeTrailingSpace(line, body.size(), findings);
    }
    judgeResource(body, 0, findings);
    tables.addResource(body, findings);
}

} // namespace lint
