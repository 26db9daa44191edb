// SPDX-License-Identifier: MIT
#include "resourcemanager/Cancellation.h"

#include <fcntl.h>
#include <unistd.h>

namespace resourcemanager {

Cancellation::~Cancellation()
{
    for (const int end : m_pipe) {
        if (end >= 0) {
            ::close(end);
        }
    }
}

void Cancellation::cancel()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isCancelled = true;
    m_changed.notify_all();
    // End of file makes the other end readable.
    if (m_pipe[1] >= 0) {
        ::close(m_pipe[1]);
        m_pipe[1] = -1;
    }
}

bool Cancellation::isCancelled() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_isCancelled;
}

bool Cancellation::waitFor(std::chrono::milliseconds duration) const
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, duration, [this] { return m_isCancelled; });
}

int Cancellation::descriptor() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_pipe[0] < 0 && ::pipe(m_pipe.data()) == 0) {
        for (const int end : m_pipe) {
            ::fcntl(end, F_SETFD, FD_CLOEXEC);
        }
        if (m_isCancelled) {
            ::close(m_pipe[1]);
            m_pipe[1] = -1;
        }
    }
    return m_pipe[0];
}

} // namespace resourcemanager
