// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace support {

// Mounts that only this process and its children see: call these in a child process. They return
// false where the system has no such mounts or does not allow them to this user.

/// Puts a file system of 128 KiB over the folder.
bool mountSmallFileSystem(const std::filesystem::path& folder);

/// Makes the file a mount point of itself, as containers have them: its name cannot be given to
/// another file.
bool mountOverItself(const std::filesystem::path& file);

} // namespace support
