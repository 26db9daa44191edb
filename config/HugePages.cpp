// SPDX-License-Identifier: MIT
#include "config/HugePages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

namespace QvVisa {

void adviseHugePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) noexcept
{
#ifdef MADV_HUGEPAGE
    constexpr std::size_t least = std::size_t{4} * 1024 * 1024;
    // The advice is for whole pages.
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    if (size >= least && std::align(page, least / 2, memory, size) != nullptr) {
        const int error = errno;
        ::madvise(memory, size, MADV_HUGEPAGE);
        errno = error;
    }
#endif
}

} // namespace QvVisa
