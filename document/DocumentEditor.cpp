// SPDX-License-Identifier: MIT
#include "document/DocumentEditor.h"

#include "config/HugePages.h"

#include <algorithm>

namespace QvVisa {

namespace {

constexpr std::string_view s_lineFeed = "\n";
constexpr std::string_view s_crLf = "\r\n";

/// The line's text without its ending. The carriage return of a plain resource is no ending.
std::string textWithoutEnding(const DocumentLine& line)
{
    return std::string(line.match.kind == LineKind::Resource ? line.text
                                                             : line.withoutCarriageReturn());
}

void addHunk(std::vector<ChangedLines>& hunks, const ChangedLines& lines)
{
    if (!hunks.empty()) {
        ChangedLines& last = hunks.back();
        if (last.oldBegin + last.oldCount == lines.oldBegin &&
            last.newBegin + last.newCount == lines.newBegin) {
            last.oldCount += lines.oldCount;
            last.newCount += lines.newCount;
            return;
        }
    }
    hunks.push_back(lines);
}

} // namespace

std::size_t EditedText::lineNumber(const LinePlace& place) const
{
    const auto after = std::upper_bound(
        m_editedLines.begin(), m_editedLines.end(), place.line,
        [](std::size_t line, const EditedLine& edited) { return line < edited.line; });
    if (after == m_editedLines.begin()) {
        return place.line + 1;
    }
    const EditedLine& edited = *std::prev(after);
    if (edited.line != place.line) {
        return edited.nextIndex + (place.line - edited.line);
    }
    if (place.insertion > 0) {
        return edited.nextIndex - edited.insertions + place.insertion;
    }
    return edited.isRemoved ? place.line + 1 : edited.nextIndex - edited.insertions;
}

LinePlace DocumentEditor::replace(std::size_t line, std::string_view part,
                                  std::string_view replacement)
{
    const DocumentLine old = m_document.line(line);
    const auto begin = static_cast<std::size_t>(part.data() - old.text.data());
    std::string text(old.text);
    text.replace(begin, part.size(), replacement);
    m_edits[line].text = std::move(text);
    return {line, 0};
}

LinePlace DocumentEditor::remove(std::size_t line)
{
    m_edits[line].isRemoved = true;
    return {line, 0};
}

LinePlace DocumentEditor::insertAfter(std::size_t line, std::string text)
{
    std::vector<std::string>& insertions = m_edits[line].insertions;
    insertions.push_back(std::move(text));
    return {line, insertions.size()};
}

std::string_view DocumentEditor::endingAt(std::size_t line) const
{
    DocumentLine terminated = m_document.line(line);
    if (!terminated.hasLineFeed) {
        if (line == 0) {
            return s_lineFeed;
        }
        terminated = m_document.line(line - 1);
    }
    return !terminated.text.empty() && terminated.text.back() == '\r' ? s_crLf : s_lineFeed;
}

void DocumentEditor::appendEditedLine(std::size_t line, const LineEdit& edit, std::size_t newIndex,
                                      EditedText& result) const
{
    const DocumentLine old = m_document.line(line);
    const std::string_view newText = edit.text ? std::string_view(*edit.text) : old.text;
    std::string& text = result.text;
    const bool isUnchanged = !edit.isRemoved && newText == old.text;
    const bool getsEnding = !old.hasLineFeed && !edit.insertions.empty();
    const std::string_view ending = endingAt(line);
    if (edit.isRemoved) {
        result.changes.push_back({line + 1, textWithoutEnding(old), std::nullopt});
    } else {
        text += newText;
        if (getsEnding && old.match.kind != LineKind::Resource && old.text.back() != '\r') {
            text += ending;
        } else if (old.hasLineFeed || getsEnding) {
            text += s_lineFeed;
        }
    }
    if (!isUnchanged && !edit.isRemoved) {
        DocumentLine replaced = old;
        replaced.text = newText;
        result.changes.push_back(
            {newIndex + 1, textWithoutEnding(old), textWithoutEnding(replaced)});
    }
    const std::size_t kept = edit.isRemoved ? 0 : 1;
    for (std::size_t i = 0; i < edit.insertions.size(); ++i) {
        const std::string& insertion = edit.insertions[i];
        text += insertion;
        text += matchConfigurationLine(insertion).kind == LineKind::Resource ? s_lineFeed : ending;
        result.changes.push_back({newIndex + kept + i + 1, std::nullopt, insertion});
    }
    const std::size_t insertions = edit.insertions.size();
    result.m_editedLines.push_back(
        {line, edit.isRemoved, insertions, newIndex + kept + insertions});
    if (!isUnchanged || getsEnding) {
        addHunk(result.hunks, {line, 1, newIndex, kept + insertions});
    } else if (insertions > 0) {
        addHunk(result.hunks, {line + 1, 0, newIndex + 1, insertions});
    }
}

EditedText DocumentEditor::edit() const
{
    EditedText result;
    const std::string& old = m_document.text();
    constexpr std::size_t usualInsertion = 100;
    reserveLarge(result.text, old.size() + m_edits.size() * usualInsertion);
    std::size_t nextLine = 0;
    std::size_t newIndex = 0;
    const auto copyUpTo = [&](std::size_t line) {
        const std::size_t begin = m_document.offset(nextLine);
        result.text.append(old, begin, m_document.offset(line) - begin);
        newIndex += line - nextLine;
        nextLine = line;
    };
    for (const auto& [line, edit] : m_edits) {
        copyUpTo(line);
        appendEditedLine(line, edit, newIndex, result);
        newIndex = result.m_editedLines.back().nextIndex;
        ++nextLine;
    }
    copyUpTo(m_document.size());
    return result;
}

} // namespace QvVisa
