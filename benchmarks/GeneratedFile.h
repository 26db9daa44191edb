// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/TemporaryFolder.h"

#include <cstddef>
#include <filesystem>
#include <string>

namespace benchmarks {

constexpr std::size_t usualLines = 100'000;

/// A configuration with this many lines of realistic entries: of ten lines, two are resources
/// without an alias, seven are aliases, all different, and one is a serial property.
std::string generateConfiguration(std::size_t lines);

/// Such a configuration in a file, which the destructor removes.
class GeneratedFile
{
public:
    explicit GeneratedFile(std::size_t lines);

    std::filesystem::path path() const;
    std::uintmax_t size() const;

private:
    support::TemporaryFolder m_folder;
};

} // namespace benchmarks
