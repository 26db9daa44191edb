// SPDX-License-Identifier: MIT
#include "lint/Repair.h"

#include "lint/EntryFindings.h"
#include "lint/FileFindings.h"
#include "lint/KeyLine.h"
#include "lint/LineText.h"
#include "lint/Linter.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace lint {

namespace {

using QvVisa::Document;

std::string join(std::string_view start, std::string_view rest)
{
    return std::string(start).append(rest);
}

/// The comment on a line of its own, then the resource.
std::string moveComment(std::string_view line)
{
    const std::size_t begin = findTrailingComment(line);
    const std::string_view resource = trimmedRight(line.substr(0, begin));
    std::string_view comment = trimmedRight(line.substr(begin));
    comment.remove_prefix(comment.front() == '/' ? 2 : 1);
    return join("#", comment).append("\n").append(resource);
}

/// Every carriage return that no line feed follows becomes a line feed.
std::string splitAtCarriageReturns(const QvVisa::DocumentLine& line)
{
    std::string text(line.text);
    const bool endsInBoth = line.hasLineFeed && text.back() == '\r';
    std::replace(text.begin(), text.end() - (endsInBoth ? 1 : 0), '\r', '\n');
    return text;
}

/// One finding of the line repaired.
std::string repairLine(FindingCode code, std::string_view line)
{
    constexpr std::size_t markSize = 3;
    switch (code) {
    case FindingCode::ByteOrderMark:
        return std::string(line.substr(markSize));
    case FindingCode::IndentedEntry:
        return std::string(line.substr(skipSpaces(line)));
    case FindingCode::KeyCase:
    case FindingCode::WhiteSpaceInKey: {
        const std::size_t begin = skipSpaces(line);
        return join(line.substr(0, begin), KeyLine::parse(line.substr(begin)).repaired());
    }
    case FindingCode::MissingColon:
        return join(line.substr(0, skipSpaces(line)), ":").append(line.substr(skipSpaces(line)));
    case FindingCode::WrongCommentSign:
        return join("#", line.substr(line.front() == '/' ? 2 : 1));
    case FindingCode::CommentAfterResource:
        return moveComment(line);
    case FindingCode::TrailingWhiteSpace:
    case FindingCode::TrailingCarriageReturn:
        return std::string(trimmedRight(line));
    case FindingCode::SectionLine:
        return join("# ", line);
    case FindingCode::NoLastLineFeed:
        return join(line, "\n");
    default:
        return std::string(line);
    }
}

/// The first finding of each line repaired.
std::string repairOnce(const Document& document, const std::vector<Finding>& findings)
{
    std::string text;
    text.reserve(document.text().size() + 64);
    std::size_t next = 0; ///< The first byte that is not copied yet.
    std::size_t lastLine = 0;
    for (const Finding& finding : findings) {
        if (finding.line == lastLine) {
            continue;
        }
        lastLine = finding.line;
        const std::size_t begin = document.offset(finding.line - 1);
        const QvVisa::DocumentLine line = document.line(finding.line - 1);
        text.append(document.text(), next, begin - next);
        if (finding.code == FindingCode::CarriageReturnsAlone) {
            text.append(splitAtCarriageReturns(line));
        } else {
            text.append(repairLine(finding.code, line.text));
        }
        next = begin + line.text.size();
    }
    return text.append(document.text(), next, std::string::npos);
}

/// The findings that are to be repaired.
std::vector<Finding> fixableFindings(const Document& document, const std::set<FindingCode>& ignored)
{
    std::vector<Finding> findings = findingsIn(document);
    findings.erase(std::remove_if(findings.begin(), findings.end(),
                                  [&ignored](const Finding& finding) {
                                      return !finding.isFixable() ||
                                             ignored.count(finding.code) != 0;
                                  }),
                   findings.end());
    return findings;
}

} // namespace

std::string repaired(const Document& document, const std::set<FindingCode>& ignored)
{
    std::string text = document.text();
    // A repair can bring to light what it had hidden, a few times at most: white space before a
    // key without its colon, in the wrong case. The limit only guards against an endless loop.
    constexpr int mostRounds = 12;
    for (int round = 0; round < mostRounds; ++round) {
        const Document current(text);
        const std::vector<Finding> findings = fixableFindings(current, ignored);
        if (findings.empty()) {
            break;
        }
        text = repairOnce(current, findings);
    }
    return text;
}

} // namespace lint
