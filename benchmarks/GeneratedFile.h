// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/TemporaryFolder.h"

#include <cstddef>
#include <filesystem>
#include <string>

namespace benchmarks {

/// A configuration with this many lines of believable entries: of ten lines two are resources
/// without an alias and seven aliases, all different; the tenth is a serial line of some port.
std::string generateConfiguration(std::size_t lines);

/// Such a configuration as a file, removed with the object.
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
