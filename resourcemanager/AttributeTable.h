// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <variant>

namespace resourcemanager {

/// The attributes of one session with their values. Any thread.
class AttributeTable
{
public:
    /// The size of a value in the client's memory, in bytes.
    enum class Width
    {
        Byte = 1,
        Short = 2,
        Long = 4,
        Wide = 8,
    };

    /// The values that a client may set: least, least + step, ... up to most.
    struct Range
    {
        std::uint64_t least;
        std::uint64_t most;
        std::uint64_t step = 1;
    };

    void addReadOnly(ViAttr attribute, Width width, std::uint64_t value);

    /// Takes every value of its width.
    void add(ViAttr attribute, Width width, std::uint64_t value);

    void add(ViAttr attribute, Width width, std::uint64_t value, Range range);

    /// Texts are read-only; a client gets at most VI_FIND_BUFLEN - 1 characters of one.
    void addText(ViAttr attribute, std::string value);

    /// VI_SUCCESS, or VI_ERROR_NSUP_ATTR for an attribute that is not in the table,
    /// VI_ERROR_ATTR_READONLY, or VI_ERROR_NSUP_ATTR_STATE for a value outside its range.
    ViStatus set(ViAttr attribute, ViAttrState value);

    /// Writes the value in its own width: VI_SUCCESS, or VI_ERROR_NSUP_ATTR.
    ViStatus get(ViAttr attribute, void* value) const;

    /// The number that the client has set; nothing when it has not.
    std::optional<std::uint64_t> numberSet(ViAttr attribute) const;

private:
    struct Entry
    {
        Width width = Width::Byte;
        /// Nothing for a read-only attribute.
        std::optional<Range> range;
        std::variant<std::uint64_t, std::string> value;
        bool isSet = false;
    };

    void insert(ViAttr attribute, Entry entry);

    /// Guards what follows.
    mutable std::mutex m_mutex;
    std::map<ViAttr, Entry> m_entries;
};

} // namespace resourcemanager
