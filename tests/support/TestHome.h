// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/TemporaryFolder.h"

#include <filesystem>

namespace support {

/// A user's surroundings for one test: HOME, the settings' folder and the working folder lie in a
/// temporary folder, and no environment variable names a configuration file. The working folder
/// is put back at the end.
class TestHome
{
public:
    TestHome();
    ~TestHome();
    TestHome(const TestHome&) = delete;
    TestHome& operator=(const TestHome&) = delete;

    /// Everything lies beneath it.
    const std::filesystem::path& root() const { return m_folder.path(); }
    std::filesystem::path home() const { return root() / "home"; }
    std::filesystem::path workingFolder() const { return root() / "work"; }

private:
    TemporaryFolder m_folder;
    std::filesystem::path m_formerWorkingFolder;
};

} // namespace support
