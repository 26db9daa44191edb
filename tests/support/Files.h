// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace support {

/// All bytes of a file; throws when it cannot be read.
std::string readFile(const std::filesystem::path& path);

/// Creates or replaces a file in place; throws when that fails.
void writeFile(const std::filesystem::path& path, std::string_view bytes);

/// Seconds since the epoch.
void setModificationTime(const std::filesystem::path& path, std::int64_t seconds);

} // namespace support
