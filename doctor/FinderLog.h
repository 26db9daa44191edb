// SPDX-License-Identifier: MIT
#pragma once

#include "config/FileDescriptor.h"

#include <string>
#include <utility>
#include <vector>

namespace QvVisa {

/// What the finder writes while a probe uses it as the VISA library: the interfaces asked, the
/// answers, what was left out and why, serial ports and permissions. The log is kept in memory; no
/// file is created.
class FinderLog
{
public:
    /// Call before the probe: its child process inherits the log.
    FinderLog();

    /// For ProbeRequest::environment.
    std::vector<std::pair<std::string, std::string>> variables() const;

    /// The lines that were written, without the finder's name before them; empty when the library
    /// in use is another one. Call it once, after the probe: a log that the user wants (QVFIND_LOG)
    /// gets the lines too.
    std::vector<std::string> takeLines() const;

private:
    FileDescriptor m_memory; ///< Not open where the system has no such files.
};

/// The lines of the first search that say more than the list of resources does: not what was
/// searched for, and not what was found and is listed.
std::vector<std::string> beyondTheList(const std::vector<std::string>& lines);

} // namespace QvVisa
