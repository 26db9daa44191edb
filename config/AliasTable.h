// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>

namespace QvVisa {

/// Alias name to resource string, in a hash table's own order. It counts what may change that
/// order unseen, so that whoever remembers a position can tell whether it still holds: an order is
/// the same as long as generation(), size() and bucket_count() are. Change single entries through
/// this type: what is erased through a reference to the base is not counted.
class AliasTable : public std::unordered_map<std::string, std::string>
{
public:
    using Base = std::unordered_map<std::string, std::string>;
    using Base::Base;

    AliasTable() = default;
    AliasTable(const AliasTable&) = default;
    AliasTable(AliasTable&& other) noexcept(std::is_nothrow_move_constructible_v<Base>)
        : Base(static_cast<Base&&>(other))
    {
        other.renew();
    }
    ~AliasTable() = default;

    AliasTable& operator=(const AliasTable& other)
    {
        return *this = static_cast<const Base&>(other);
    }
    AliasTable& operator=(AliasTable&& other) noexcept(std::is_nothrow_move_assignable_v<Base>)
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
    AliasTable& operator=(Base&& other) noexcept(std::is_nothrow_move_assignable_v<Base>)
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

    using Base::merge;
    void merge(AliasTable& source)
    {
        source.renew();
        Base::merge(static_cast<Base&>(source));
    }
    void merge(AliasTable&& source) { merge(source); }

    /// Going to another number of buckets and back reorders the entries.
    void rehash(size_type count)
    {
        renew();
        Base::rehash(count);
    }
    void reserve(size_type count)
    {
        renew();
        Base::reserve(count);
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
