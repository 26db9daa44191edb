// SPDX-License-Identifier: MIT
#pragma once

#include "command/ExitCode.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace QvVisa {

/// Ends the process if the object lives longer than a limit: for system calls that may never
/// return, such as those on a network file system whose server is gone. It has a thread of its own
/// while it lives; where none can be started, it does nothing.
class Watchdog
{
public:
    /// message: printed on standard error before the process ends with the code. Nothing that is
    /// buffered is written.
    Watchdog(std::chrono::milliseconds limit, std::string message, ExitCode code);
    ~Watchdog();

    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

private:
    void wait(std::chrono::milliseconds limit);

    const std::string m_message;
    const ExitCode m_code;
    std::mutex m_mutex; ///< Guards m_isDone.
    std::condition_variable m_done;
    bool m_isDone = false;
    std::thread m_thread;
};

} // namespace QvVisa
