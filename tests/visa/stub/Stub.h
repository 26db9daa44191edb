// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <cstdint>
#include <initializer_list>
#include <type_traits>

namespace stub {

/// The last call that a stub library has seen, each argument as a word.
struct Call
{
    const char* name = "";
    std::uintptr_t arguments[5] = {};
    int argumentCount = 0;
    /// Calls since the library was loaded.
    int total = 0;
};

/// What every call answers from now on.
void setStatus(ViStatus status);

ViStatus note(const char* name, std::initializer_list<std::uintptr_t> arguments);

template <typename Argument>
std::uintptr_t word(Argument argument)
{
    if constexpr (std::is_pointer_v<Argument>) {
        return reinterpret_cast<std::uintptr_t>(argument);
    } else {
        return argument;
    }
}

/// The whole body of a stub's call.
template <typename... Arguments>
ViStatus answer(const char* name, Arguments... arguments)
{
    return note(name, {word(arguments)...});
}

} // namespace stub

extern "C" {

/// Exported by every stub library, for the tests.
[[gnu::visibility("default")]] const stub::Call* stubLastCall();
[[gnu::visibility("default")]] void stubSetStatus(ViStatus status);

/// Has the library call its own viClose(), as it would from within another call.
[[gnu::visibility("default")]] ViStatus stubCloseItself(ViObject object);
}
