// SPDX-License-Identifier: MIT
#include "tests/visa/stub/Stub.h"

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace stub {

namespace {

/// Guards what follows. The last call is read when no call runs.
std::mutex s_mutex;
Call s_lastCall;
ViStatus s_status = VI_SUCCESS;

/// Throws what no caller expects, if the environment wants it at this point.
void throwAt(std::string_view point)
{
    const char* wanted = std::getenv("QVVISA_STUB_THROWS_AT");
    if (wanted != nullptr && point == wanted) {
        throw 7;
    }
}

/// One byte for each time that the library is loaded, in a file that the environment names.
[[gnu::constructor]] void noteLoad()
{
    throwAt("load");
    const char* path = std::getenv("QVVISA_STUB_LOADS");
    if (path == nullptr) {
        return;
    }
    const int file = ::open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (file < 0 || ::write(file, "x", 1) != 1) {
        std::abort();
    }
    ::close(file);
}

} // namespace

ViStatus note(const char* name, std::initializer_list<std::uintptr_t> arguments)
{
    throwAt("call");
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_lastCall.name = name;
    s_lastCall.argumentCount = static_cast<int>(arguments.size());
    std::copy(arguments.begin(), arguments.end(), s_lastCall.arguments);
    ++s_lastCall.total;
    return s_status;
}

void setStatus(ViStatus status)
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_status = status;
}

} // namespace stub

const stub::Call* stubLastCall()
{
    return &stub::s_lastCall;
}

void stubSetStatus(ViStatus status)
{
    stub::setStatus(status);
}
