// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

namespace stub {

/// The last call that a stub library has seen, each argument as a word.
struct Call
{
    std::string name;
    std::vector<std::uintptr_t> arguments;
    /// Calls since the library was loaded.
    int total = 0;
};

template <typename Argument>
std::uintptr_t word(Argument argument)
{
    if constexpr (std::is_pointer_v<Argument>) {
        return reinterpret_cast<std::uintptr_t>(argument);
    } else {
        return argument;
    }
}

} // namespace stub

/// What every stub library exports for the tests, beside its calls.
extern "C" {

[[gnu::visibility("default")]] const stub::Call* stubLastCall();

/// What every call answers from now on.
[[gnu::visibility("default")]] void stubSetStatus(ViStatus status);

/// Has the library call its own viClose(), as it would from within another call.
[[gnu::visibility("default")]] ViStatus stubCloseItself(ViObject object);
}
