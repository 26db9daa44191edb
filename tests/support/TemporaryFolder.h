// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace support {

/// A new, empty folder, removed with its contents by the destructor.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

} // namespace support
