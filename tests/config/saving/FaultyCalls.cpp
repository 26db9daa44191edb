// SPDX-License-Identifier: MIT
#include "tests/config/saving/FaultyCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <string>

namespace {

bool s_isArmed = false;
FaultPlan s_plan;
int s_calls = 0;
std::string& seen()
{
    static std::string names;
    return names;
}

/// The function of that name which this library stands before.
template <typename Function>
Function* next(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

enum class Fate
{
    Made,
    Half, ///< Of a write's or read's bytes.
    Failed,
    HalfAndKilled
};

enum class Kind
{
    Plain,
    Interruptible, ///< The caller tries again.
    InterruptibleOnce
};

/// Every other call of those that may be interrupted, so that the second try goes through.
bool isInterruptedNow(Kind kind)
{
    static bool wasInterrupted = false;
    if (kind == Kind::Plain || wasInterrupted) {
        wasInterrupted = false;
        return false;
    }
    wasInterrupted = kind == Kind::Interruptible;
    return true;
}

/// Cuts the file to nothing and writes the other one's bytes, as many editors save.
void rewrite(const char* from, const char* to)
{
    s_isArmed = false;
    std::ofstream(to, std::ios::binary) << std::ifstream(from, std::ios::binary).rdbuf();
    s_isArmed = true;
}

/// Counts the call and decides; sets errno when it fails.
Fate decide(const char* name, Kind kind)
{
    if (!s_isArmed) {
        return Fate::Made;
    }
    const int call = ++s_calls;
    seen().append(name).append(" ");
    const bool isIt = call == s_plan.call;
    switch (s_plan.action) {
    case FaultPlan::Count:
        break;
    case FaultPlan::Fail:
    case FaultPlan::FailForGood:
        if (isIt || (s_plan.action == FaultPlan::FailForGood && call > s_plan.call)) {
            errno = s_plan.error;
            return Fate::Failed;
        }
        break;
    case FaultPlan::Interrupt:
        if (isInterruptedNow(kind)) {
            errno = EINTR;
            return Fate::Failed;
        }
        break;
    case FaultPlan::Shorten:
        return Fate::Half;
    case FaultPlan::Kill:
        if (isIt) {
            ::raise(SIGKILL);
        }
        break;
    case FaultPlan::KillAmidst:
        if (isIt) {
            return Fate::HalfAndKilled;
        }
        break;
    case FaultPlan::Replace:
        if (isIt) {
            next<decltype(::rename)>("rename")(s_plan.replacement, s_plan.target);
        }
        break;
    case FaultPlan::Rewrite:
        if (isIt) {
            rewrite(s_plan.replacement, s_plan.target);
        }
        break;
    }
    return Fate::Made;
}

template <typename Call>
auto answer(const char* name, Kind kind, Call call) -> decltype(call())
{
    return decide(name, kind) == Fate::Failed ? -1 : call();
}

/// call moves this many bytes.
template <typename Call>
ssize_t answerMoving(const char* name, std::size_t size, Call call)
{
    const std::size_t half = std::max<std::size_t>(size / 2, std::min<std::size_t>(size, 1));
    switch (decide(name, Kind::Interruptible)) {
    case Fate::Failed:
        return -1;
    case Fate::Half:
        return call(half);
    case Fate::HalfAndKilled:
        call(half);
        ::raise(SIGKILL);
        break;
    case Fate::Made:
        break;
    }
    return call(size);
}

mode_t modeArgument(int flags, std::va_list arguments)
{
    return (flags & O_CREAT) != 0 ? static_cast<mode_t>(va_arg(arguments, int)) : mode_t{0};
}

} // namespace

#pragma GCC visibility push(default)
extern "C" {

void faultyCallsStart(const FaultPlan* plan)
{
    s_plan = *plan;
    s_calls = 0;
    seen().clear();
    s_isArmed = true;
}

const char* faultyCallsStop()
{
    s_isArmed = false;
    return seen().c_str();
}

int open(const char* path, int flags, ...)
{
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeArgument(flags, arguments);
    va_end(arguments);
    return answer("open", Kind::Interruptible,
                  [&] { return next<decltype(::open)>("open")(path, flags, mode); });
}

int openat(int folder, const char* path, int flags, ...)
{
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeArgument(flags, arguments);
    va_end(arguments);
    return answer("openat", Kind::Interruptible,
                  [&] { return next<decltype(::openat)>("openat")(folder, path, flags, mode); });
}

int close(int file)
{
    // It is closed whatever the answer.
    const int result = next<decltype(::close)>("close")(file);
    return answer("close", Kind::InterruptibleOnce, [result] { return result; });
}

ssize_t read(int file, void* bytes, std::size_t size)
{
    return answerMoving("read", size, [&](std::size_t part) {
        return next<decltype(::read)>("read")(file, bytes, part);
    });
}

ssize_t write(int file, const void* bytes, std::size_t size)
{
    return answerMoving("write", size, [&](std::size_t part) {
        return next<decltype(::write)>("write")(file, bytes, part);
    });
}

ssize_t pread(int file, void* bytes, std::size_t size, off_t offset)
{
    return answerMoving("pread", size, [&](std::size_t part) {
        return next<decltype(::pread)>("pread")(file, bytes, part, offset);
    });
}

ssize_t pwrite(int file, const void* bytes, std::size_t size, off_t offset)
{
    return answerMoving("pwrite", size, [&](std::size_t part) {
        return next<decltype(::pwrite)>("pwrite")(file, bytes, part, offset);
    });
}

int fsync(int file)
{
    return answer("fsync", Kind::Interruptible,
                  [&] { return next<decltype(::fsync)>("fsync")(file); });
}

int ftruncate(int file, off_t size) noexcept
{
    return answer("ftruncate", Kind::Interruptible,
                  [&] { return next<decltype(::ftruncate)>("ftruncate")(file, size); });
}

int fchmod(int file, mode_t mode) noexcept
{
    return answer("fchmod", Kind::Interruptible,
                  [&] { return next<decltype(::fchmod)>("fchmod")(file, mode); });
}

int fchown(int file, uid_t user, gid_t group) noexcept
{
    return answer("fchown", Kind::Interruptible,
                  [&] { return next<decltype(::fchown)>("fchown")(file, user, group); });
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept
{
    return answer("renameat", Kind::Plain, [&] {
        return next<decltype(::renameat)>("renameat")(fromFolder, from, toFolder, to);
    });
}

int fstat(int file, struct stat* status) noexcept
{
    return answer("fstat", Kind::Plain,
                  [&] { return next<decltype(::fstat)>("fstat")(file, status); });
}

int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept
{
    return answer("fstatat", Kind::Plain, [&] {
        return next<decltype(::fstatat)>("fstatat")(folder, path, status, flags);
    });
}

ssize_t readlinkat(int folder, const char* path, char* target, std::size_t size) noexcept
{
    return answer("readlinkat", Kind::Plain, [&] {
        return next<decltype(::readlinkat)>("readlinkat")(folder, path, target, size);
    });
}

} // extern "C"
#pragma GCC visibility pop
