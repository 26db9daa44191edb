// SPDX-License-Identifier: MIT
// The fortified <unistd.h> has definitions of read() and others.
#undef _FORTIFY_SOURCE

#include "tests/support/SystemCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#ifdef __linux__
#include <sys/xattr.h>
#endif
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <set>
#include <utility>

namespace {

using support::CallAnswer;
using support::SystemCalls;

/// As the system's headers declare calls that are no cancellation points.
constexpr bool s_isNoexcept = noexcept(::fchmod(0, 0));

struct State
{
    bool isArmed = false;
    SystemCalls::Handler handler;
    std::vector<std::string> names;
};

State& state()
{
    static State instance;
    return instance;
}

/// Notes the call and asks what is to become of it. The handler may throw.
CallAnswer ask(const char* name, std::size_t size, const char* path)
{
    State& now = state();
    if (!now.isArmed) {
        return {};
    }
    now.names.emplace_back(name);
    if (!now.handler) {
        return {};
    }
    struct Rearm
    {
        ~Rearm() { state().isArmed = true; }
    };
    const Rearm rearm;
    now.isArmed = false;
    return now.handler({name, static_cast<int>(now.names.size()), size, path});
}

/// The system's function of that name, or a sanitizer's that wraps it.
template <typename Function>
Function* next(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

/// call moves the given number of bytes.
template <typename Call>
auto move(const char* name, std::size_t size, Call call, const char* path = "")
    -> decltype(call(size))
{
    const CallAnswer answer = ask(name, size, path);
    if (answer.error != 0) {
        errno = answer.error;
        return -1;
    }
    if (answer.isSkipped) {
        return 0;
    }
    const auto result = call(std::min(size, answer.mostBytes));
    if (answer.isLast) {
        ::raise(SIGKILL);
    }
    return result;
}

template <typename Call>
auto pass(const char* name, Call call, const char* path = "") -> decltype(call())
{
    return move(
        name, 0, [&](std::size_t) { return call(); }, path);
}

/// Calls the system's function of that name.
template <typename Function, typename... Arguments>
auto forward(const char* name, Arguments... arguments)
{
    return pass(name, [&] { return next<Function>(name)(arguments...); });
}

std::size_t half(std::size_t size)
{
    return std::max<std::size_t>(size / 2, std::min<std::size_t>(size, 1));
}

bool isUnnamed([[maybe_unused]] int flags)
{
#ifdef O_TMPFILE
    return (flags & O_TMPFILE) == O_TMPFILE;
#else
    return false;
#endif
}

/// The argument that open() has only when it creates a file. Reading it when it is absent is
/// harmless on the platforms where this runs.
mode_t modeArgument(std::va_list arguments)
{
    return static_cast<mode_t>(va_arg(arguments, unsigned int));
}

} // namespace

namespace support {

SystemCalls::SystemCalls(Handler handler)
{
    state() = {true, std::move(handler), {}};
}

SystemCalls::~SystemCalls()
{
    state() = {};
}

const std::vector<std::string>& SystemCalls::names() const
{
    return state().names;
}

int SystemCalls::count(const std::string& name) const
{
    return static_cast<int>(std::count(names().begin(), names().end(), name));
}

SystemCalls::Handler SystemCalls::failing(int number, int error, bool isForGood)
{
    return [=](const SystemCall& call) {
        const bool isFailing = call.number == number || (isForGood && call.number > number);
        return CallAnswer{isFailing ? error : 0};
    };
}

SystemCalls::Handler SystemCalls::killing(int number)
{
    return [=](const SystemCall& call) {
        if (call.number == number) {
            ::raise(SIGKILL);
        }
        return CallAnswer();
    };
}

SystemCalls::Handler SystemCalls::killingHalfway(int number)
{
    return [=](const SystemCall& call) {
        CallAnswer answer;
        if (call.number == number && call.size > 0) {
            answer.mostBytes = half(call.size);
            answer.isLast = true;
        }
        return answer;
    };
}

SystemCalls::Handler SystemCalls::interrupting()
{
    return [wasInterrupted = false](const SystemCall& call) mutable {
        static const std::set<std::string> interruptible = {
            "open",   "openat", "read",      "pread",  "write",
            "pwrite", "fsync",  "ftruncate", "fchmod", "fchown"};
        wasInterrupted = !wasInterrupted && interruptible.count(call.name) != 0;
        return CallAnswer{wasInterrupted ? EINTR : 0};
    };
}

SystemCalls::Handler SystemCalls::answeringReads(std::function<CallAnswer(int number)> answer)
{
    return [answer = std::move(answer), number = 0](const SystemCall& call) mutable {
        return call.name == "read" || call.name == "pread" ? answer(++number) : CallAnswer();
    };
}

SystemCalls::Handler SystemCalls::readingOnly(std::size_t bytes)
{
    return answeringReads([bytes](int number) {
        return CallAnswer{number == 1 && bytes > 0 ? 0 : EIO, bytes};
    });
}

SystemCalls::Handler SystemCalls::shortening()
{
    return [](const SystemCall& call) { return CallAnswer{0, half(call.size)}; };
}

} // namespace support

#pragma GCC visibility push(default)
extern "C" {

int open(const char* path, int flags, ...)
{
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeArgument(arguments);
    va_end(arguments);
    return pass(
        "open", [&] { return next<decltype(::open)>("open")(path, flags, mode); }, path);
}

int openat(int folder, const char* path, int flags, ...)
{
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeArgument(arguments);
    va_end(arguments);
    return pass(
        isUnnamed(flags) ? "openat(O_TMPFILE)" : "openat",
        [&] { return next<decltype(::openat)>("openat")(folder, path, flags, mode); }, path);
}

int close(int file)
{
    // A close that fails has closed the file, too.
    const CallAnswer answer = ask("close", 0, "");
    const int result = next<decltype(::close)>("close")(file);
    if (answer.error != 0) {
        errno = answer.error;
        return -1;
    }
    return result;
}

ssize_t read(int file, void* bytes, std::size_t size)
{
    return move("read", size, [&](std::size_t part) {
        return next<decltype(::read)>("read")(file, bytes, part);
    });
}

ssize_t pread(int file, void* bytes, std::size_t size, off_t offset)
{
    return move("pread", size, [&](std::size_t part) {
        return next<decltype(::pread)>("pread")(file, bytes, part, offset);
    });
}

ssize_t write(int file, const void* bytes, std::size_t size)
{
    return move("write", size, [&](std::size_t part) {
        return next<decltype(::write)>("write")(file, bytes, part);
    });
}

ssize_t pwrite(int file, const void* bytes, std::size_t size, off_t offset)
{
    return move("pwrite", size, [&](std::size_t part) {
        return next<decltype(::pwrite)>("pwrite")(file, bytes, part, offset);
    });
}

int fsync(int file)
{
    return forward<decltype(::fsync)>("fsync", file);
}

int ftruncate(int file, off_t size) noexcept(s_isNoexcept)
{
    return forward<decltype(::ftruncate)>("ftruncate", file, size);
}

int fchmod(int file, mode_t mode) noexcept(s_isNoexcept)
{
    return forward<decltype(::fchmod)>("fchmod", file, mode);
}

int fchown(int file, uid_t user, gid_t group) noexcept(s_isNoexcept)
{
    return forward<decltype(::fchown)>("fchown", file, user, group);
}

int futimens(int file, const struct timespec times[2]) noexcept(s_isNoexcept)
{
    return forward<decltype(::futimens)>("futimens", file, times);
}

int fstat(int file, struct stat* status) noexcept(s_isNoexcept)
{
    return forward<decltype(::fstat)>("fstat", file, status);
}

int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept(s_isNoexcept)
{
    return forward<decltype(::fstatat)>("fstatat", folder, path, status, flags);
}

ssize_t readlinkat(int folder, const char* path, char* text,
                   std::size_t size) noexcept(s_isNoexcept)
{
    return forward<decltype(::readlinkat)>("readlinkat", folder, path, text, size);
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to,
           int flags) noexcept(s_isNoexcept)
{
    return forward<decltype(::linkat)>("linkat", fromFolder, from, toFolder, to, flags);
}

int unlinkat(int folder, const char* name, int flags) noexcept(s_isNoexcept)
{
    return forward<decltype(::unlinkat)>("unlinkat", folder, name, flags);
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept(s_isNoexcept)
{
    return pass(
        "renameat",
        [&] { return next<decltype(::renameat)>("renameat")(fromFolder, from, toFolder, to); }, to);
}

#ifdef RENAME_EXCHANGE
int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
              unsigned int flags) noexcept(s_isNoexcept)
{
    return forward<decltype(::renameat2)>("renameat2", fromFolder, from, toFolder, to, flags);
}
#endif

int flock(int file, int operation) noexcept(s_isNoexcept)
{
    return forward<decltype(::flock)>("flock", file, operation);
}

int nanosleep(const struct timespec* time, struct timespec* remaining)
{
    return forward<decltype(::nanosleep)>("nanosleep", time, remaining);
}

#ifdef __linux__
ssize_t flistxattr(int file, char* names, std::size_t size) noexcept(s_isNoexcept)
{
    return forward<decltype(::flistxattr)>("flistxattr", file, names, size);
}

ssize_t fgetxattr(int file, const char* name, void* value, std::size_t size) noexcept(s_isNoexcept)
{
    return forward<decltype(::fgetxattr)>("fgetxattr", file, name, value, size);
}

int fsetxattr(int file, const char* name, const void* value, std::size_t size,
              int flags) noexcept(s_isNoexcept)
{
    return forward<decltype(::fsetxattr)>("fsetxattr", file, name, value, size, flags);
}

int fremovexattr(int file, const char* name) noexcept(s_isNoexcept)
{
    return forward<decltype(::fremovexattr)>("fremovexattr", file, name);
}
#endif

} // extern "C"
#pragma GCC visibility pop
