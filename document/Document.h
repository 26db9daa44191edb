// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationLine.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace QvVisa {

/// One line of a document. The views point into the document's text.
struct DocumentLine
{
    /// Without the line feed. A carriage return before it belongs to the text, as the reader has
    /// it.
    std::string_view text;
    /// False only for a last line that the text ends without a line feed.
    bool hasLineFeed = true;
    /// What the reader makes of the line.
    ConfigurationLine match;

    /// The text without the carriage return of a CRLF ending.
    std::string_view withoutCarriageReturn() const;
};

/// The text of a configuration file, split into the reader's lines. Nothing is lost: the lines and
/// their line feeds, one after another, are the text. Any bytes are valid. Immutable, so any number
/// of threads may read one object. Besides the text it holds 8 bytes a line.
class Document
{
public:
    explicit Document(std::string text);

    const std::string& text() const { return *m_text; }

    /// Whether the first line begins with the version header; without it the reader reads nothing.
    bool hasHeader() const;

    /// The number of lines. A text that ends in a line feed has no further, empty line after it.
    std::size_t size() const { return m_begins.size(); }

    /// The line at an index less than size(). It is matched in each call: time is linear in the
    /// line.
    DocumentLine line(std::size_t index) const;

    /// The text of line(index) alone, in constant time.
    std::string_view lineText(std::size_t index) const;

    /// The last line of this kind; none when there is none. Time is linear in the lines after it.
    std::optional<std::size_t> lastLine(LineKind kind) const;

    /// The offset in the text at which the line begins; for size(), the length of the text.
    std::size_t offset(std::size_t index) const;

private:
    /// On the heap, so that views stay valid when the document is moved.
    std::unique_ptr<const std::string> m_text;
    std::vector<std::size_t> m_begins;
};

} // namespace QvVisa
