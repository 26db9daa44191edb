// SPDX-License-Identifier: MIT
#pragma once

#include "lint/LineFindings.h"
#include "lint/LineText.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lint {

/// Finds entries that belong together in lines far apart. A finding about two lines is reported at
/// the later one and names the earlier. A line costs the same however many there are. The views
/// that are added must outlive the object.
class EntryTables
{
public:
    explicit EntryTables(std::size_t lines);

    /// An alias of the current line, at these offsets. True when its resource is an alias itself,
    /// as far as the lines until here say.
    bool addAlias(std::string_view name, std::size_t nameOffset, std::string_view resource,
                  std::size_t resourceOffset, LineFindings& findings);

    /// A resource without an alias.
    void addResource(std::string_view resource, LineFindings& findings);

    /// A value that the reader keeps. The setting is a number of the caller's for the key of one
    /// device.
    void addValue(std::uint32_t setting, std::uint32_t value, std::string_view key,
                  std::size_t offset, LineFindings& findings);

    /// Lines with an alias for an alias that a later line defines.
    const std::vector<std::size_t>& linesForLaterAlias() const { return m_linesForLaterAlias; }

private:
    /// Upper and lower case alike.
    struct Hash
    {
        std::size_t operator()(std::string_view text) const noexcept;
    };
    struct Equal
    {
        bool operator()(std::string_view left, std::string_view right) const noexcept
        {
            return equalsIgnoringCase(left, right);
        }
    };
    template <typename Value>
    using Table = std::unordered_map<std::string_view, Value, Hash, Equal>;

    struct Alias
    {
        std::string_view resource;
        std::size_t line = 0;
    };
    /// What the file says of one text in the place of a resource. Lines are 0 where there is none.
    struct Resource
    {
        std::size_t plainLine = 0;
        std::size_t aliasLine = 0;
        std::string_view alias;
    };
    struct Value
    {
        std::uint32_t value = 0;
        std::size_t line = 0;
    };

    bool judgeAliasForAlias(std::string_view name, std::size_t nameOffset,
                            std::string_view resource, std::size_t resourceOffset,
                            LineFindings& findings);

    Table<Alias> m_aliases;
    Table<Resource> m_resources;
    std::unordered_map<std::uint32_t, Value> m_values;
    std::vector<std::size_t> m_linesForLaterAlias;
};

} // namespace lint
