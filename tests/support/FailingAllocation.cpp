// SPDX-License-Identifier: MIT
#include "tests/support/FailingAllocation.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

/// Allocations until the one that fails; 0 when none does, -1 when it has failed.
thread_local int s_left = 0;

} // namespace

void* operator new(std::size_t size)
{
    if (s_left > 0 && --s_left == 0) {
        s_left = -1;
        throw std::bad_alloc();
    }
    if (void* memory = std::malloc(size != 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace support {

FailingAllocation::FailingAllocation(int number)
{
    s_left = number;
}

FailingAllocation::~FailingAllocation()
{
    s_left = 0;
}

bool FailingAllocation::hasFailed() const
{
    return s_left < 0;
}

} // namespace support
