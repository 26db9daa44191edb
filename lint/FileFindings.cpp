// SPDX-License-Identifier: MIT
#include "lint/FileFindings.h"

#include "config/ModernConfigurationFile.h"
#include "lint/LineText.h"
#include "lint/ResourceFindings.h"

#include <string>
#include <string_view>

namespace lint {

namespace {

using QvVisa::Document;

std::string_view header()
{
    static const std::string s_header = QvVisa::ModernConfigurationFile::GetVersionString();
    return s_header;
}

bool beginsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

/// A byte-order mark of UTF-16, or text in which every other byte is NUL.
bool isUtf16(std::string_view text)
{
    const std::string_view start = text.substr(0, 2);
    return start == "\xFF\xFE" || start == "\xFE\xFF" ||
           (text.size() >= 4 && ((text[0] == '\0' && text[1] != '\0' && text[2] == '\0') ||
                                 (text[0] != '\0' && text[1] == '\0' && text[3] == '\0')));
}

/// The line that begins with the header; the number of lines if there is none.
std::size_t findHeader(const Document& document)
{
    std::size_t index = 0;
    while (index < document.size() && !beginsWith(document.lineText(index), header())) {
        ++index;
    }
    return index;
}

std::string explainFirstLine(std::string_view line)
{
    const std::string intro = "Nothing in this file is read: ";
    if (beginsWithIgnoringCase(line, header())) {
        return intro + "the version header has to be in exactly these letters, " +
               quoted(header()) + ".";
    }
    if (beginsWith(line.substr(skipSpaces(line)), header())) {
        return intro + "there is white space before the version header.";
    }
    return intro + "the first line has to begin with " + quoted(header()) + ".";
}

bool isEntry(std::string_view text)
{
    using QvVisa::LineKind;
    const LineKind kind = QvVisa::matchConfigurationLine(text).kind;
    return kind == LineKind::Resource ? looksLikeResource(text) : kind != LineKind::None;
}

} // namespace

void judgeUnreadFile(const Document& document, LineFindings& findings)
{
    const std::string_view text = document.text();
    findings.setLine(1);
    if (text.empty()) {
        findings.add(FindingCode::HeaderMissing, 0,
                     "The file is empty: without the version header nothing is read.");
    } else if (isUtf16(text)) {
        findings.add(FindingCode::Utf16, 0,
                     "Nothing in this file is read: it is UTF-16, two bytes for each character.");
    } else if (beginsWith(text, "\xEF\xBB\xBF")) {
        findings.add(FindingCode::ByteOrderMark, 0,
                     "Nothing in this file is read: a byte-order mark precedes the version "
                     "header.");
    } else if (const std::size_t line = findHeader(document); line < document.size()) {
        findings.setLine(line + 1);
        findings.add(FindingCode::HeaderNotFirst, 0,
                     "Nothing in this file is read: the version header has to be on line 1.");
    } else {
        findings.add(FindingCode::HeaderMissing, 0, explainFirstLine(document.line(0).text));
    }
}

std::size_t findLoneCarriageReturn(std::string_view line)
{
    const std::size_t found = line.find('\r');
    return found != std::string_view::npos && found + 1 < line.size() ? found
                                                                      : std::string_view::npos;
}

void judgeHeader(std::string_view line, LineFindings& findings)
{
    if (const std::size_t found = findLoneCarriageReturn(line); found != std::string_view::npos) {
        findings.add(FindingCode::CarriageReturnsAlone, found,
                     "The rest of this line is not read: lines end in a line feed, and this one "
                     "goes on after a carriage return.");
        return;
    }
    const std::size_t end = header().size();
    const std::size_t begin = skipSpaces(line, end);
    const std::string_view rest = trimmedRight(line.substr(begin));
    if (rest.empty()) {
        return;
    }
    if (begin == end || isEntry(rest)) {
        findings.add(FindingCode::EntryInHeader, begin,
                     quoted(rest) + " is ignored: it is on the line of the version "
                                    "header.");
    } else {
        findings.add(FindingCode::TextInHeader, begin,
                     "The text after the version header is ignored, and a save in the window "
                     "drops it.");
    }
}

} // namespace lint
