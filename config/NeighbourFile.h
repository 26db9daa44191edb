// SPDX-License-Identifier: MIT
#pragma once

#include "config/FileDescriptor.h"

#include <sys/types.h>

#include <filesystem>

namespace QvVisa {

/// A new file in a target's folder, meant to take the target's name once it is complete. It is
/// taken away again unless it did.
class NeighbourFile
{
public:
    /// Creates the file, its permissions as open() treats its mode argument. With isOpen() false
    /// afterwards, errno tells why.
    NeighbourFile(const std::filesystem::path& target, mode_t mode);
    ~NeighbourFile();

    NeighbourFile(const NeighbourFile&) = delete;
    NeighbourFile& operator=(const NeighbourFile&) = delete;

    bool isOpen() const { return m_file.isOpen(); }
    int descriptor() const { return m_file.get(); }

    /// Closes the file and renames it over the target. False, with errno set, when either failed.
    bool takeTargetsName();

private:
    std::filesystem::path m_target;
    std::filesystem::path m_path;
    FileDescriptor m_file;
    bool m_exists = false;
};

} // namespace QvVisa
