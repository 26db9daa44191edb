// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <variant>

namespace simulator {

/// The attributes of one session with their values. Safe from several threads.
class AttributeTable
{
public:
    /// How many bytes a value takes in the client's memory.
    enum class Width
    {
        Byte = 1,
        Short = 2,
        Long = 4,
        Wide = 8,
    };
    using Value = std::variant<std::uint64_t, std::string>;
    enum class Access
    {
        ReadOnly,
        ReadWrite,
    };

    void addNumber(ViAttr attribute, Width width, Access access, std::uint64_t value);

    /// Texts are read-only; a client gets VI_FIND_BUFLEN - 1 characters of it at most.
    void addText(ViAttr attribute, std::string value);

    /// VI_ERROR_NSUP_ATTR for an attribute that is not here, VI_ERROR_ATTR_READONLY,
    /// VI_ERROR_NSUP_ATTR_STATE for a value wider than the attribute, or VI_SUCCESS.
    ViStatus set(ViAttr attribute, ViAttrState value);

    /// Writes the value in its own width, VI_SUCCESS, or answers VI_ERROR_NSUP_ATTR.
    ViStatus get(ViAttr attribute, void* value) const;

    /// The value, nothing for an attribute that is not here.
    std::optional<Value> value(ViAttr attribute) const;

private:
    struct Entry
    {
        Width width;
        Access access;
        Value value;
    };

    /// Guards what follows.
    mutable std::mutex m_mutex;
    std::map<ViAttr, Entry> m_entries;
};

} // namespace simulator
