// SPDX-License-Identifier: MIT
#include "simulator/HandleTable.h"

#include <utility>
#include <vector>

namespace simulator {

ViObject HandleTable::add(Object object, ViObject owner)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (owner != VI_NULL && m_entries.count(owner) == 0) {
        return VI_NULL;
    }
    ++m_last;
    m_entries.emplace(m_last, Entry{std::move(object), owner});
    return m_last;
}

bool HandleTable::close(ViObject handle)
{
    // Destroyed behind the lock: a large find list takes its time.
    std::vector<Object> closed;
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto entry = m_entries.find(handle);
    if (entry == m_entries.end()) {
        return false;
    }
    closed.push_back(std::move(entry->second.object));
    m_entries.erase(entry);
    for (auto owned = m_entries.begin(); owned != m_entries.end();) {
        if (owned->second.owner == handle) {
            closed.push_back(std::move(owned->second.object));
            owned = m_entries.erase(owned);
        } else {
            ++owned;
        }
    }
    return true;
}

} // namespace simulator
