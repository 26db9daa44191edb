// SPDX-License-Identifier: MIT
#pragma once

#include "resourcemanager/AttributeTable.h"
#include "resourcemanager/ResourceSource.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace resourcemanager {

/// What a client has a handle for.
class Object
{
public:
    Object() = default;
    virtual ~Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    /// Empty for a find list.
    AttributeTable& attributes() { return m_attributes; }

private:
    AttributeTable m_attributes;
};

/// Adds the attributes that every session has: maker, versions, lock state, queue length, user
/// data.
void addCommonAttributes(AttributeTable& attributes, const std::string& manufacturerName);

/// A session to the resource manager. Any thread.
class ManagerSession : public Object
{
public:
    explicit ManagerSession(std::shared_ptr<ResourceSource> source);

    ResourceSource& source() { return *m_source; }
    Cancellation& cancellation() { return m_cancellation; }

    /// Counts a call and asks the source's beforeCall(). VI_ERROR_INV_OBJECT when the session was
    /// closed meanwhile.
    std::optional<ViStatus> beginCall(Call call, std::string_view expression = {});

    /// The same for a call that is counted elsewhere.
    std::optional<ViStatus> beginNthCall(Call call, std::uint32_t nth, std::string_view expression);

private:
    const std::shared_ptr<ResourceSource> m_source;
    Cancellation m_cancellation;
    std::array<std::atomic<std::uint32_t>, callNames.size()> m_counts{};
};

/// What one search found, and how far the client has read. Any thread.
class FindList : public Object
{
public:
    explicit FindList(std::vector<std::string> descriptions)
        : m_descriptions(std::move(descriptions))
    {}

    /// The number of the next viFindNext, from 1; each is given once.
    std::uint32_t nextStep() { return m_step.fetch_add(1) + 1; }

    /// The match that belongs to a step; null past the end. viFindRsrc itself gave the first match,
    /// so step 1 is the second.
    const std::string* match(std::uint32_t step) const
    {
        return step < m_descriptions.size() ? &m_descriptions[step] : nullptr;
    }

private:
    const std::vector<std::string> m_descriptions;
    std::atomic<std::uint32_t> m_step{0};
};

/// The open objects by handle. Handles start at 1 and are never reused, so that one kept too long
/// is always detected. An object in use by a call stays alive when another thread closes it. Any
/// thread.
class HandleTable
{
public:
    template <typename T>
    struct Found
    {
        std::shared_ptr<T> object;
        /// The session that the object is or belongs to.
        std::shared_ptr<ManagerSession> manager;

        explicit operator bool() const { return object != nullptr; }
    };

    ViObject add(const std::shared_ptr<ManagerSession>& manager);

    /// Adds an object that is closed together with the manager. VI_NULL, and nothing is added, when
    /// the manager is not open any more.
    ViObject add(std::shared_ptr<Object> object, ViObject manager);

    /// The open object with that handle, if it is a T.
    template <typename T>
    Found<T> find(ViObject handle) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto entry = m_entries.find(handle);
        if (entry == m_entries.end()) {
            return {};
        }
        return {std::dynamic_pointer_cast<T>(entry->second.object), entry->second.manager};
    }

    /// Closes an object; a manager with all that belongs to it, cancelling what runs on it. False
    /// when it is not open.
    bool close(ViObject handle);

private:
    struct Entry
    {
        std::shared_ptr<Object> object;
        std::shared_ptr<ManagerSession> manager;
    };

    /// Guards what follows.
    mutable std::mutex m_mutex;
    std::map<ViObject, Entry> m_entries;
    ViObject m_last = VI_NULL;
};

/// The table of this process.
HandleTable& handles();

} // namespace resourcemanager
