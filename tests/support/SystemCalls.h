// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace support {

/// A system call that the code under test is about to make.
struct SystemCall
{
    std::string name; ///< The function's; "openat(O_TMPFILE)" for the creation of an unnamed file.
    int number;       ///< 1 for the first call since the object was made.
    std::size_t size; ///< The bytes that a read or write asks for; else 0.
    std::string path; ///< What is opened, or the new name that is given; else empty.
};

/// What is to become of a call.
struct CallAnswer
{
    int error = 0;                    ///< Not 0: the call is not made and fails with this errno.
    std::size_t mostBytes = SIZE_MAX; ///< A read or write moves no more.
    bool isLast = false;              ///< The process is killed after the call.
    bool isSkipped = false;           ///< The call is not made and returns 0.
};

/// Intercepts the file system calls of this process: a program that links the library
/// qvvisa_test_calls has definitions of its own for them, which pass every call through while no
/// object lives. One object at a time, one thread. Children made by fork() are intercepted too.
class SystemCalls
{
public:
    using Handler = std::function<CallAnswer(const SystemCall& call)>;

    /// Asks the handler about each call; without one, only notes the calls. Calls that the handler
    /// makes are passed through.
    explicit SystemCalls(Handler handler = {});
    ~SystemCalls();
    SystemCalls(const SystemCalls&) = delete;
    SystemCalls& operator=(const SystemCalls&) = delete;

    /// The names of the calls so far, in order.
    const std::vector<std::string>& names() const;
    int count() const { return static_cast<int>(names().size()); }
    int count(const std::string& name) const;

    /// Handlers: the call of that number fails with this error, or (isForGood) all from it on.
    static Handler failing(int number, int error, bool isForGood = false);
    /// The process is killed before the call of that number.
    static Handler killing(int number);
    /// The process is killed after a read or write of that number has moved half of its bytes.
    static Handler killingHalfway(int number);
    /// Every call that a signal may interrupt is interrupted once before it is made.
    static Handler interrupting();
    /// Asks about reads alone, by their number from 1.
    static Handler answeringReads(std::function<CallAnswer(int number)> answer);
    /// The first read moves so many bytes, if not 0, and all others fail with EIO.
    static Handler readingOnly(std::size_t bytes);
    /// Every read and write moves half of its bytes, at least one.
    static Handler shortening();
};

} // namespace support
