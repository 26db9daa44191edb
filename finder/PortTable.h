// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace visa {
class SystemFiles;
} // namespace visa

namespace finder {

class SearchLog;

/// The user's table that pins port numbers to serial adapters. Lines are "NUMBER = PATH", NUMBER 1
/// to 65535, PATH a link or node below /dev, usually one in /dev/serial/by-id/. Blank lines and
/// lines that begin with # are comments.
class PortTable
{
public:
    PortTable() = default;

    /// A line that cannot be used, a second pin of a number and a second number of an adapter are
    /// ignored and go to the log with their line's number.
    PortTable(std::string_view text, const visa::SystemFiles& files, SearchLog& log);

    /// The table at that path; an empty one when there is no such file. Files of more than 64 KiB
    /// are cut.
    static PortTable read(const std::string& path, const visa::SystemFiles& files, SearchLog& log);

    struct Pin
    {
        std::string path;
        /// The port's name below /dev that the path leads to now, such as "ttyUSB0"; the path's
        /// last part while the adapter is unplugged.
        std::string port;
    };

    /// By port number.
    const std::map<std::uint16_t, Pin>& pins() const { return m_pins; }

private:
    /// Why the line cannot be used; empty when it was taken in.
    std::string add(std::string_view line, const visa::SystemFiles& files);

    std::map<std::uint16_t, Pin> m_pins;
};

} // namespace finder
