// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace QvVisa {

/// Sorts out, at a fraction of the matcher's time, lines that cannot be those of some entries. Of
/// the lines that remain, matchConfigurationLine() says what they are.
class EntryFilter
{
public:
    /// From now on provider and property lines pass.
    void addKeys() { m_hasKeys = true; }

    /// From now on lines of aliases of this name, and of this resource without an alias, pass, in
    /// upper and lower case.
    void addText(std::string_view text);

    /// From now on every line passes.
    void addAll() { m_hasAll = true; }

    /// False only for a line that belongs to none of the added entries. Compares the line's first
    /// bytes with a few texts at most.
    bool passes(std::string_view line) const;

private:
    bool m_hasAll = false;
    bool m_hasKeys = false;
    std::vector<std::string> m_texts;
};

} // namespace QvVisa
