// SPDX-License-Identifier: MIT
#include "resourcemanager/Sessions.h"

#include "resourcemanager/VisaCalls.h"

namespace resourcemanager {

using Width = AttributeTable::Width;

void addCommonAttributes(AttributeTable& attributes, const std::string& manufacturerName)
{
    attributes.addText(VI_ATTR_RSRC_MANF_NAME, manufacturerName);
    attributes.addReadOnly(VI_ATTR_RSRC_MANF_ID, Width::Short, 0x0E5A);
    // Version 5.12.1 of the library, 5.8 of the interface: 12 bits major, 12 minor, 8 the rest.
    attributes.addReadOnly(VI_ATTR_RSRC_IMPL_VERSION, Width::Long, 0x00500C01);
    attributes.addReadOnly(VI_ATTR_RSRC_SPEC_VERSION, Width::Long, 0x00500800);
    attributes.addReadOnly(VI_ATTR_RSRC_LOCK_STATE, Width::Long, 0);
    attributes.add(VI_ATTR_MAX_QUEUE_LENGTH, Width::Long, 50, {1, UINT32_MAX});
    attributes.add(VI_ATTR_USER_DATA_32, Width::Long, 0);
    attributes.add(VI_ATTR_USER_DATA_64, Width::Wide, 0);
}

ManagerSession::ManagerSession(std::shared_ptr<ResourceSource> source) : m_source(std::move(source))
{
    addCommonAttributes(attributes(), m_source->manufacturerName());
    attributes().addText(VI_ATTR_RSRC_CLASS, "RM");
    attributes().addText(VI_ATTR_RSRC_NAME, "");
    attributes().add(QV_ATTR_SEARCH_TIME, Width::Long, 0);
    attributes().add(QV_ATTR_SEARCH_KINDS, Width::Long, 0);
}

std::optional<ViStatus> ManagerSession::beginCall(Call call, std::string_view expression)
{
    return beginNthCall(call, ++m_counts[static_cast<std::size_t>(call)], expression);
}

std::optional<ViStatus> ManagerSession::beginNthCall(Call call, std::uint32_t nth,
                                                     std::string_view expression)
{
    const std::optional<ViStatus> planned =
        m_source->beforeCall(call, nth, expression, m_cancellation);
    return m_cancellation.isCancelled() ? VI_ERROR_INV_OBJECT : planned;
}

ViStatus ResourceSource::open(std::string_view /*text*/, const visa::ResourceName& /*name*/,
                              std::shared_ptr<Object>& /*instrument*/)
{
    return VI_ERROR_NSUP_OPER;
}

ViObject HandleTable::add(const std::shared_ptr<ManagerSession>& manager)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_entries.emplace(++m_last, Entry{manager, manager});
    return m_last;
}

ViObject HandleTable::add(std::shared_ptr<Object> object, ViObject manager)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto owner = m_entries.find(manager);
    if (owner == m_entries.end()) {
        return VI_NULL;
    }
    m_entries.emplace(++m_last, Entry{std::move(object), owner->second.manager});
    return m_last;
}

bool HandleTable::close(ViObject handle)
{
    // Destroyed after the lock is released: a large find list takes its time.
    std::vector<Entry> closed;
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto entry = m_entries.find(handle);
    if (entry == m_entries.end()) {
        return false;
    }
    closed.push_back(std::move(entry->second));
    m_entries.erase(entry);
    const std::shared_ptr<ManagerSession> manager = closed.front().manager;
    if (closed.front().object != manager) {
        return true;
    }
    manager->cancellation().cancel();
    for (auto owned = m_entries.begin(); owned != m_entries.end();) {
        if (owned->second.manager == manager) {
            closed.push_back(std::move(owned->second));
            owned = m_entries.erase(owned);
        } else {
            ++owned;
        }
    }
    return true;
}

HandleTable& handles()
{
    static HandleTable table;
    return table;
}

} // namespace resourcemanager
