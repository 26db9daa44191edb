// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/TemporaryFolder.h"

#include <filesystem>

namespace support {

/// Sets HOME, the settings folder and the working folder to folders in a new temporary folder, and
/// unsets QVVISACONFFILE. The destructor restores the working folder.
class TestHome
{
public:
    TestHome();
    ~TestHome();
    TestHome(const TestHome&) = delete;
    TestHome& operator=(const TestHome&) = delete;

    /// The temporary folder.
    const std::filesystem::path& root() const { return m_folder.path(); }
    std::filesystem::path home() const { return root() / "home"; }
    std::filesystem::path workingFolder() const { return root() / "current"; }

private:
    TemporaryFolder m_folder;
    std::filesystem::path m_formerWorkingFolder;
};

} // namespace support
