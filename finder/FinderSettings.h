// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>

namespace finder {

/// What the user decided by environment variables.
struct FinderSettings
{
    bool isLocalOnly = false;         ///< QVFIND=local: no packet is sent.
    std::set<std::string> interfaces; ///< QVFIND_INTERFACES, separated by commas; empty for all.
    std::string portTable; ///< QVFIND_PORTS, else .quorvane/serial-ports.conf in HOME; or empty.
    std::string log;       ///< QVFIND_LOG: a file, "-" for standard error, empty for none.

    /// Reads the process's environment, which must not be changed meanwhile.
    static FinderSettings fromEnvironment();
};

} // namespace finder
