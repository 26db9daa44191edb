// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>

/// Stands between the code under test and the system: a program that links this has a read() of
/// its own. One at a time; without one, calls go straight through.
class ReaderReadCalls
{
public:
    using Answer = std::function<ssize_t(int descriptor, void* buffer, std::size_t size)>;

    /// Every read() is answered by the function, which may call original().
    explicit ReaderReadCalls(Answer answer);
    ~ReaderReadCalls();
    ReaderReadCalls(const ReaderReadCalls&) = delete;
    ReaderReadCalls& operator=(const ReaderReadCalls&) = delete;

    /// The system's read().
    static ssize_t original(int descriptor, void* buffer, std::size_t size);
};
