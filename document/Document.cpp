// SPDX-License-Identifier: MIT
#include "document/Document.h"

#include "config/HugePages.h"
#include "config/ModernConfigurationFile.h"

namespace QvVisa {

std::string_view DocumentLine::withoutCarriageReturn() const
{
    const bool isCrLf = hasLineFeed && !text.empty() && text.back() == '\r';
    return text.substr(0, text.size() - (isCrLf ? 1 : 0));
}

Document::Document(std::string text) : m_text(std::make_unique<const std::string>(std::move(text)))
{
    const std::string_view whole = *m_text;
    // Counting the lines would take longer than growing in the few texts of shorter lines.
    constexpr std::size_t shortLine = 16;
    reserveLarge(m_begins, whole.size() / shortLine + 1);
    for (std::size_t begin = 0; begin < whole.size();) {
        m_begins.push_back(begin);
        const std::size_t end = whole.find('\n', begin);
        begin = end == std::string_view::npos ? whole.size() : end + 1;
    }
}

bool Document::hasHeader() const
{
    // The header contains no line feed, so a text that begins with it has it in the first line.
    const std::string header = ModernConfigurationFile::GetVersionString();
    return m_text->compare(0, header.size(), header) == 0;
}

DocumentLine Document::line(std::size_t index) const
{
    DocumentLine line;
    line.text = lineText(index);
    line.hasLineFeed = offset(index) + line.text.size() < offset(index + 1);
    line.match = matchConfigurationLine(line.text);
    return line;
}

std::string_view Document::lineText(std::size_t index) const
{
    const std::size_t begin = offset(index);
    std::string_view text = std::string_view(*m_text).substr(begin, offset(index + 1) - begin);
    if (text.back() == '\n') {
        text.remove_suffix(1);
    }
    return text;
}

std::optional<std::size_t> Document::lastLine(LineKind kind) const
{
    for (std::size_t index = size(); index-- > 0;) {
        if (line(index).match.kind == kind) {
            return index;
        }
    }
    return std::nullopt;
}

std::size_t Document::offset(std::size_t index) const
{
    return index < m_begins.size() ? m_begins[index] : m_text->size();
}

} // namespace QvVisa
