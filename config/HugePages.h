// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace QvVisa {

/// Asks the system to back memory that has not been written yet with huge pages. Of a text of many
/// megabytes, page faults on small ones take longer than reading it. Without effect on less memory
/// and where there are no huge pages.
void adviseHugePages(void* memory, std::size_t size) noexcept;

/// Reserves capacity in an empty string or vector for many megabytes.
template <typename Container>
void reserveLarge(Container& container, std::size_t count)
{
    container.reserve(count);
    adviseHugePages(container.data(), count * sizeof(typename Container::value_type));
}

} // namespace QvVisa
