// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/TestHome.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace support {

/// The configuration file that the store finds, through QVVISACONFFILE. The store never changes
/// its path: create one fixture in a process, before the store is first used.
class ConfigurationFixture
{
public:
    ConfigurationFixture();

    /// Replaces the file by the version header and these lines, with a modification time that it
    /// never had before, so the store's next change check reads it.
    void write(std::string_view lines);

    /// The same by a rename, so that a reader in another thread sees one of the two files.
    void replace(std::string_view lines);

    /// The file's bytes.
    std::string read() const;

    std::filesystem::path path() const;
    const TestHome& home() const { return m_home; }

    /// ":QvVisaConfigurationFileVersion01" and a line feed.
    static std::string header();

private:
    TestHome m_home;
    std::int64_t m_time = 1'000'000'000;
};

} // namespace support
