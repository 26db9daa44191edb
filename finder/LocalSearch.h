// SPDX-License-Identifier: MIT
#pragma once

#include "visa/SystemFiles.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace finder {

class SearchLog;

/// Searches the machine's USB instruments and serial ports in a thread of its own: reading a serial
/// number takes the device's lock and may hang for as long as the device does. At most one such
/// thread exists. May be used from several threads at once.
class LocalSearch
{
public:
    using Clock = std::chrono::steady_clock;

    /// portTable: the path of the user's port table. The log is shared with the thread, which may
    /// outlive this object.
    LocalSearch(visa::SystemFiles files, std::string portTable, std::shared_ptr<SearchLog> log);

    /// A search that has begun: its results grow until it is complete.
    class Run;

    /// Begins a search without waiting for it. While an earlier one still hangs, this is the
    /// earlier one.
    std::shared_ptr<Run> begin();

    struct Results
    {
        /// USB by identifiers and serial number, then serial ports by number.
        std::vector<std::string> resources;
        bool isComplete = false;
    };

    /// What the search has found when it is complete, or at the deadline.
    static Results results(Run& run, Clock::time_point deadline);

private:
    visa::SystemFiles m_files;
    std::string m_portTable;
    std::shared_ptr<SearchLog> m_log;
    std::mutex m_mutex; ///< Guards m_latest.
    std::shared_ptr<Run> m_latest;
};

} // namespace finder
