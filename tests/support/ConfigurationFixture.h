// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/TestHome.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace support {

/// The configuration file that the process's one store finds. The store keeps its path for life,
/// so there is one fixture in a test program, made before the first use of the store; each case
/// calls write() for a file of its own.
class ConfigurationFixture
{
public:
    ConfigurationFixture();

    /// Replaces the file by the version header and these lines, with a modification time that no
    /// file of this fixture had before: the store's next getInstance() reads it.
    void write(std::string_view lines);

    /// The file's bytes now.
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
