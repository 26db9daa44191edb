// SPDX-License-Identifier: MIT
#include "command/Watchdog.h"

#include <unistd.h>

#include <system_error>
#include <utility>

namespace QvVisa {

Watchdog::Watchdog(std::chrono::milliseconds limit, std::string message, ExitCode code)
    : m_message("qvvisa: error: " + std::move(message) + '\n'),
      m_code(code)
{
    try {
        m_thread = std::thread([this, limit] { wait(limit); });
    } catch (const std::system_error&) {
        // The process may start no thread: the calls are made all the same.
    }
}

Watchdog::~Watchdog()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isDone = true;
    }
    m_done.notify_all();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void Watchdog::wait(std::chrono::milliseconds limit)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_done.wait_for(lock, limit, [this] { return m_isDone; })) {
        [[maybe_unused]] const ssize_t count =
            ::write(STDERR_FILENO, m_message.data(), m_message.size());
        // Not exit(): the thread that hangs may hold any lock.
        ::_exit(static_cast<int>(m_code));
    }
}

} // namespace QvVisa
