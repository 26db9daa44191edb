// SPDX-License-Identifier: MIT
#pragma once

#include "document/Document.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace QvVisa {

/// A line whose text an edit inserted, replaced or removed. The texts are without line endings.
struct LineChange
{
    /// Counted from 1: in the new text, for a removed line in the old one.
    std::size_t line = 0;
    std::optional<std::string> before; ///< None for an inserted line.
    std::optional<std::string> after;  ///< None for a removed line.
};

/// Consecutive lines of the old text and the lines that replace them. Indexes count from 0; either
/// count may be 0.
struct ChangedLines
{
    std::size_t oldBegin = 0;
    std::size_t oldCount = 0;
    std::size_t newBegin = 0;
    std::size_t newCount = 0;
};

/// A line of an edited text, named by the line of the document that it comes from or was inserted
/// after.
struct LinePlace
{
    std::size_t line = 0;      ///< Index in the document.
    std::size_t insertion = 0; ///< 0: that line itself. n: the n-th line inserted after it.
};

/// The text that edits have made of a document.
class EditedText
{
public:
    std::string text;
    /// In the order of the lines; empty when nothing has changed.
    std::vector<LineChange> changes;
    /// The changed lines for a diff, ascending and disjoint. Unlike changes they include an
    /// unterminated last line that got an ending.
    std::vector<ChangedLines> hunks;

    /// The number, counted from 1, that a place has in the new text; for a removed line that in the
    /// old text. Logarithmic in the number of edited lines.
    std::size_t lineNumber(const LinePlace& place) const;

private:
    friend class DocumentEditor;

    struct EditedLine
    {
        std::size_t line = 0; ///< Index in the document.
        bool isRemoved = false;
        std::size_t insertions = 0;
        std::size_t nextIndex = 0; ///< In the new text, of the document's line after this one.
    };

    std::vector<EditedLine> m_editedLines; ///< Ascending.
};

/// Collects changes to single lines of a document, then makes the new text, in which every other
/// byte is the document's. The document must outlive the editor.
class DocumentEditor
{
public:
    explicit DocumentEditor(const Document& document) : m_document(document) {}

    /// Replaces one part of a line; the part is a view into the document. At most once for a line.
    LinePlace replace(std::size_t line, std::string_view part, std::string_view replacement);

    LinePlace remove(std::size_t line);

    /// Inserts a line after another one and after those already inserted there. It ends as the
    /// line before does; a plain resource always ends in a line feed alone, because a carriage
    /// return would belong to it. If the line before is a last line without a line feed, both get
    /// an ending: that of the nearest line before that has one, else a line feed.
    LinePlace insertAfter(std::size_t line, std::string text);

    EditedText edit() const;

private:
    struct LineEdit
    {
        std::optional<std::string> text; ///< The line without its ending, when it is replaced.
        bool isRemoved = false;
        std::vector<std::string> insertions;
    };

    std::string_view endingAt(std::size_t line) const;
    void appendEditedLine(std::size_t line, const LineEdit& edit, std::size_t newIndex,
                          EditedText& result) const;

    const Document& m_document;
    std::map<std::size_t, LineEdit> m_edits;
};

} // namespace QvVisa
