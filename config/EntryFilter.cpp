// SPDX-License-Identifier: MIT
#include "config/EntryFilter.h"

#include "config/UpperCase.h"

#include <algorithm>

namespace QvVisa {

void EntryFilter::addText(std::string_view text)
{
    // With more texts than this, matching every line is faster.
    constexpr std::size_t mostTexts = 8;
    if (m_texts.size() == mostTexts) {
        addAll();
    } else {
        m_texts.push_back(toUpperCase(text));
    }
}

bool EntryFilter::passes(std::string_view line) const
{
    if (m_hasAll) {
        return true;
    }
    // The matcher takes every line with a colon in front for a key, or for nothing, and finds names
    // and resources at the front of all others.
    if (!line.empty() && line.front() == ':') {
        return m_hasKeys;
    }
    return std::any_of(m_texts.begin(), m_texts.end(), [line](const std::string& text) {
        return equalsIgnoringCase(line.substr(0, text.size()), text);
    });
}

} // namespace QvVisa
