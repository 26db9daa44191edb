// SPDX-License-Identifier: MIT
#include "lint/Linter.h"

#include "lint/EntryFindings.h"
#include "lint/EntryTables.h"
#include "lint/FileFindings.h"
#include "lint/IgnoredLine.h"
#include "lint/LineText.h"
#include "lint/SettingFindings.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <tuple>

namespace lint {

namespace {

using QvVisa::Document;
using QvVisa::DocumentLine;
using QvVisa::LineKind;

void judgeLine(std::string_view text, const QvVisa::ConfigurationLine& match, EntryTables& tables,
               LineFindings& findings)
{
    switch (match.kind) {
    case LineKind::None:
        judgeIgnoredLine(text, findings);
        break;
    case LineKind::Alias:
        judgeAlias(text, match, tables, findings);
        break;
    case LineKind::Resource:
        judgePlainResource(text, tables, findings);
        break;
    default:
        judgeSetting(text, match, tables, findings);
        break;
    }
}

/// The findings of a document that the reader reads, line by line.
class Linter
{
public:
    explicit Linter(const Document& document) : m_document(document), m_tables(document.size()) {}

    std::vector<Finding> run()
    {
        if (!m_document.hasHeader()) {
            judgeUnreadFile(m_document, m_lineFindings);
            return std::move(m_findings);
        }
        for (std::size_t index = 0; index < m_document.size(); ++index) {
            m_lineFindings.setLine(index + 1);
            const DocumentLine line = m_document.line(index);
            if (index == 0) {
                judgeHeader(line.text, m_lineFindings);
            } else if (!isConflictMarker(line.text)) {
                judge(line);
            }
            if (!line.hasLineFeed && !hasCarriageReturnsAlone(index, line.text)) {
                m_lineFindings.add(FindingCode::NoLastLineFeed, line.text.size(),
                                   "The last line does not end in a line feed: what a program "
                                   "appends to the file joins this line.");
            }
        }
        addDroppedLines();
        dropExplainedFindings();
        std::stable_sort(m_findings.begin(), m_findings.end(),
                         [](const Finding& left, const Finding& right) {
                             return std::tie(left.line, left.column, right.severity) <
                                    std::tie(right.line, right.column, left.severity);
                         });
        return std::move(m_findings);
    }

private:
    /// Lines of one kind that a save in the window drops.
    struct Dropped
    {
        std::size_t first = 0;
        std::size_t count = 0;

        void add(std::size_t line)
        {
            first = count == 0 ? line : first;
            ++count;
        }
    };

    static bool hasCarriageReturnsAlone(std::size_t index, std::string_view text)
    {
        return index == 0 && findLoneCarriageReturn(text) != std::string_view::npos;
    }

    void judge(const DocumentLine& line)
    {
        judgeLine(line.text, line.match, m_tables, m_lineFindings);
        switch (line.match.kind) {
        case LineKind::None:
            if (!m_lineFindings.hasFinding()) {
                m_comments.add(m_lineFindings.line());
            }
            break;
        case LineKind::GpibPrimaryAddress:
        case LineKind::GpibSecondaryAddress:
        case LineKind::GpibSystemController:
            m_gpibLines.add(m_lineFindings.line());
            break;
        default:
            break;
        }
    }

    /// The markers that version control leaves in a file with a conflict. A line of seven '=' is
    /// one only between the two others.
    bool isConflictMarker(std::string_view line)
    {
        constexpr std::size_t length = 7;
        constexpr std::string_view signs = "<|=>";
        const char sign = line.empty() ? '\0' : line.front();
        if (signs.find(sign) == std::string_view::npos || line.size() < length ||
            line.find_first_not_of(sign) < length ||
            (line.size() > length && !isSpace(line[length])) || (sign == '=' && !m_isInConflict)) {
            return false;
        }
        m_isInConflict = sign == '<' || (sign != '>' && m_isInConflict);
        m_lineFindings.add(FindingCode::ConflictMarker, 0,
                           "This is a marker that a merge with a conflict has left.");
        return true;
    }

    void addDroppedLines()
    {
        if (m_gpibLines.count > 0) {
            m_lineFindings.setLine(m_gpibLines.first);
            m_lineFindings.add(FindingCode::GpibLinesDropped, 0,
                               "A save in the window drops the GPIB lines of this file: " +
                                   std::to_string(m_gpibLines.count) + ".");
        }
        if (m_comments.count > 0) {
            m_lineFindings.setLine(m_comments.first);
            m_lineFindings.add(FindingCode::CommentsDropped, 0,
                               "A save in the window drops the comments and blank lines of this "
                               "file: " +
                                   std::to_string(m_comments.count) + ".");
        }
    }

    /// That an alias is no resource string has been said better once its own line was seen.
    void dropExplainedFindings()
    {
        std::vector<std::size_t> lines = m_tables.linesForLaterAlias();
        if (lines.empty()) {
            return;
        }
        std::sort(lines.begin(), lines.end());
        const auto isExplained = [&lines](const Finding& finding) {
            return finding.code == FindingCode::NotAResource &&
                   std::binary_search(lines.begin(), lines.end(), finding.line);
        };
        m_findings.erase(std::remove_if(m_findings.begin(), m_findings.end(), isExplained),
                         m_findings.end());
    }

    const Document& m_document;
    EntryTables m_tables;
    std::vector<Finding> m_findings;
    LineFindings m_lineFindings{m_findings};
    Dropped m_gpibLines;
    Dropped m_comments;
    bool m_isInConflict = false;
};

} // namespace

std::vector<Finding> findingsIn(const Document& document)
{
    return Linter(document).run();
}

std::vector<Finding> findingsInLine(std::string_view line)
{
    std::vector<Finding> findings;
    LineFindings lineFindings(findings);
    EntryTables tables(1);
    judgeLine(line, QvVisa::matchConfigurationLine(line), tables, lineFindings);
    return findings;
}

} // namespace lint
