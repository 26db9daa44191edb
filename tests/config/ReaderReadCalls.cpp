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

constexpr off_t s_sequential = -1;
/// The offset of the call that is being answered; none for read().
off_t s_offset = s_sequential;

/// The system's function of that name.
template <typename Function>
Function* next(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

ssize_t answerFrom(off_t offset, int descriptor, void* buffer, std::size_t size)
{
    s_offset = offset;
    const ReaderReadCalls::Answer& answer = answerInUse();
    return answer ? answer(descriptor, buffer, size)
                  : ReaderReadCalls::original(descriptor, buffer, size);
}

} // namespace

extern "C" ssize_t read(int descriptor, void* buffer, std::size_t size);
extern "C" ssize_t pread(int descriptor, void* buffer, std::size_t size, off_t offset);

extern "C" ssize_t read(int descriptor, void* buffer, std::size_t size)
{
    return answerFrom(s_sequential, descriptor, buffer, size);
}

extern "C" ssize_t pread(int descriptor, void* buffer, std::size_t size, off_t offset)
{
    return answerFrom(offset, descriptor, buffer, size);
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
    return s_offset == s_sequential
               ? next<decltype(::read)>("read")(descriptor, buffer, size)
               : next<decltype(::pread)>("pread")(descriptor, buffer, size, s_offset);
}
