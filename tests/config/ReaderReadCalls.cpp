// SPDX-License-Identifier: MIT
#include "tests/config/ReaderReadCalls.h"

// Without <unistd.h>: a fortified one defines read() itself.
#include <dlfcn.h>

#include <utility>

namespace {

ReaderReadCalls::Answer& answerInUse()
{
    static ReaderReadCalls::Answer answer;
    return answer;
}

} // namespace

extern "C" ssize_t read(int descriptor, void* buffer, std::size_t size);

extern "C" ssize_t read(int descriptor, void* buffer, std::size_t size)
{
    const ReaderReadCalls::Answer& answer = answerInUse();
    return answer ? answer(descriptor, buffer, size)
                  : ReaderReadCalls::original(descriptor, buffer, size);
}

ReaderReadCalls::ReaderReadCalls(Answer answer)
{
    answerInUse() = std::move(answer);
}

ReaderReadCalls::~ReaderReadCalls()
{
    answerInUse() = nullptr;
}

ssize_t ReaderReadCalls::original(int descriptor, void* buffer, std::size_t size)
{
    using Read = ssize_t (*)(int, void*, std::size_t);
    static const auto s_read = reinterpret_cast<Read>(::dlsym(RTLD_NEXT, "read"));
    return s_read(descriptor, buffer, size);
}
