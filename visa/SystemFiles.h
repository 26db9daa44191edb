// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace visa {

/// The files below /sys and /dev, or below another root folder in tests. Links are followed by
/// their texts: a simulated /sys has no real paths.
class SystemFiles
{
public:
    /// root: goes before every path; empty for the system's own.
    explicit SystemFiles(std::string root = {}) : m_root(std::move(root)) {}

    /// The first 4,096 bytes of a file without a line feed at their end; nothing when it cannot be
    /// read. May block for as long as a device does.
    std::optional<std::string> read(const std::string& path) const;

    /// The first 64 KiB of a regular file; nothing for anything else, without blocking.
    std::optional<std::string> readRegularFile(const std::string& path) const;

    /// The names in a folder in natural order ("ttyS2" before "ttyS10"); empty when it cannot be
    /// read.
    std::vector<std::string> names(const std::string& folder) const;

    /// The last part of a link's text; nothing when the path is no link.
    std::optional<std::string> linkName(const std::string& path) const;

    /// The last part of the path after following its links, also those of missing files.
    std::string finalName(const std::string& path) const;

    bool exists(const std::string& path) const;

    /// Whether this user may read and write the file.
    bool isAccessible(const std::string& path) const;

    /// The name or number of the group that owns the file; empty when it is unknown.
    std::string groupOf(const std::string& path) const;

private:
    std::string m_root;
};

/// True when left comes before right and runs of digits compare by their value.
bool naturalLess(const std::string& left, const std::string& right);

} // namespace visa
