// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace QvVisa {

/// Rejects lines that cannot belong to the entries that were added, in a fraction of the matcher's
/// time. matchConfigurationLine() says what the lines that pass are.
class EntryFilter
{
public:
    /// From now on provider and property lines pass.
    void addKeys() { m_hasKeys = true; }

    /// From now on lines of an alias of this name, and of a resource without an alias, pass, upper
    /// and lower case alike.
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
