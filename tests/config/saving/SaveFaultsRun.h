// SPDX-License-Identifier: MIT
#pragma once

#include "tests/config/saving/FaultyCalls.h"

#include <filesystem>
#include <sstream>
#include <string>

/// How one run of the saver ended.
struct SaverRun
{
    bool wasKilled = false;
    std::string answer; ///< The first line of its report; empty when it was killed.
    std::string calls;  ///< The second line.

    /// Whether the plan's call came.
    bool reached(const FaultPlan& plan) const
    {
        std::istringstream names(calls);
        std::string name;
        int count = 0;
        while (names >> name) {
            ++count;
        }
        return wasKilled || count >= plan.call;
    }
};

/// Runs the saver in a process of its own, with the library preloaded, and waits for it. The
/// report goes to a file in the folder. Throws when the saver ended otherwise than with 0 or by a
/// planned kill.
SaverRun runSaver(const std::string& mode, const std::filesystem::path& path,
                  const std::filesystem::path& input, const std::filesystem::path& folder,
                  const FaultPlan& plan);
