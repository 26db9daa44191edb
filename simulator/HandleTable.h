// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <map>
#include <memory>
#include <mutex>
#include <variant>

namespace simulator {

class FindList;
class InstrumentSession;
class ResourceManagerSession;

/// The open sessions and find lists by the number that a client holds. Numbers start at 1 and are
/// never given twice, so that one kept too long is always found out. Safe from several threads; an
/// object in use by a call stays alive when another thread closes it.
class HandleTable
{
public:
    using Object = std::variant<std::shared_ptr<ResourceManagerSession>,
                                std::shared_ptr<InstrumentSession>, std::shared_ptr<FindList>>;

    /// Enters an object; closing the owner closes it too. Answers VI_NULL, entering nothing, when
    /// the owner is not open (any more). VI_NULL as owner means none.
    ViObject add(Object object, ViObject owner = VI_NULL);

    /// The open object of that number and kind, null where there is none.
    template <typename T>
    std::shared_ptr<T> find(ViObject handle) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto entry = m_entries.find(handle);
        if (entry == m_entries.end()) {
            return nullptr;
        }
        const auto* const object = std::get_if<std::shared_ptr<T>>(&entry->second.object);
        return object != nullptr ? *object : nullptr;
    }

    /// Closes the object and all that it owns. False when it is not open.
    bool close(ViObject handle);

private:
    struct Entry
    {
        Object object;
        ViObject owner;
    };

    /// Guards what follows.
    mutable std::mutex m_mutex;
    std::map<ViObject, Entry> m_entries;
    ViObject m_last = VI_NULL;
};

} // namespace simulator
