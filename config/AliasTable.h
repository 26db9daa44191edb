// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>

namespace QvVisa {

/// Alias name to resource string, in a hash table's own order. It counts what may change that
/// order unseen, so that whoever remembers a position can tell whether it still holds: an order is
/// the same as long as generation(), size() and bucket_count() are. Change the table through this
/// type, not through a reference to its base.
class AliasTable : public std::unordered_map<std::string, std::string>
{
public:
    using Base = std::unordered_map<std::string, std::string>;
    using Base::Base;

    AliasTable() = default;
    AliasTable(const AliasTable&) = default;
    AliasTable(AliasTable&&) = default;
    ~AliasTable() = default;

    AliasTable& operator=(const AliasTable& other)
    {
        return *this = static_cast<const Base&>(other);
    }
    AliasTable& operator=(AliasTable&& other)
    {
        other.renew();
        return *this = static_cast<Base&&>(other);
    }
    AliasTable& operator=(const Base& other)
    {
        renew();
        Base::operator=(other);
        return *this;
    }
    AliasTable& operator=(Base&& other)
    {
        renew();
        Base::operator=(std::move(other));
        return *this;
    }
    AliasTable& operator=(std::initializer_list<value_type> entries)
    {
        renew();
        Base::operator=(entries);
        return *this;
    }

    template <typename... Arguments>
    auto erase(Arguments&&... arguments)
    {
        renew();
        return Base::erase(std::forward<Arguments>(arguments)...);
    }

    template <typename... Arguments>
    auto extract(Arguments&&... arguments)
    {
        renew();
        return Base::extract(std::forward<Arguments>(arguments)...);
    }

    void clear() noexcept
    {
        renew();
        Base::clear();
    }

    void swap(AliasTable& other)
    {
        other.renew();
        swap(static_cast<Base&>(other));
    }
    void swap(Base& other)
    {
        renew();
        Base::swap(other);
    }

    /// Another number after each change that can leave the size as it was.
    std::size_t generation() const noexcept { return m_generation; }

private:
    void renew() noexcept { ++m_generation; }

    std::size_t m_generation = 0;
};

} // namespace QvVisa
