// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace resourcemanager {

/// Set once, when the client closes the resource manager session: searches and holds on that
/// session end early. Any thread.
class Cancellation
{
public:
    Cancellation() = default;
    ~Cancellation();
    Cancellation(const Cancellation&) = delete;
    Cancellation& operator=(const Cancellation&) = delete;

    void cancel();

    bool isCancelled() const;

    /// Waits for that long, or until cancelled. Answers isCancelled().
    bool waitFor(std::chrono::milliseconds duration) const;

    /// A file descriptor for poll() that is readable once cancelled; this object closes it. Made by
    /// the first call; -1 when the process has no descriptor left.
    int descriptor() const;

private:
    /// Guards what follows.
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    bool m_isCancelled = false;
    /// The two ends of a pipe.
    mutable std::array<int, 2> m_pipe{-1, -1};
};

} // namespace resourcemanager
