// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

namespace guitest {

/// Reports to another thread whether the thread that constructed it is blocked in a system call, as
/// it is when it waits for a lock. On systems other than Linux it always counts as blocked.
class BlockedThread
{
public:
    BlockedThread() : m_state(stateFile()) {}

    bool isBlocked() const
    {
        std::ifstream file(m_state);
        const std::string state(std::istreambuf_iterator<char>(file), {});
        // "number (name) S ...", and the name may hold anything.
        const std::size_t name = state.rfind(") ");
        return name == std::string::npos || state.substr(name + 2, 1) == "S";
    }

private:
    static std::filesystem::path stateFile()
    {
        std::error_code ignored;
        return "/proc" / std::filesystem::read_symlink("/proc/thread-self", ignored) / "stat";
    }

    std::filesystem::path m_state;
};

} // namespace guitest
