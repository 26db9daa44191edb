// SPDX-License-Identifier: MIT
#pragma once

#include "config/FileDescriptor.h"

#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <string>

namespace QvVisa {

/// The file that a write replaces: a regular file, opened for writing, or a name in an existing
/// folder that is still free. The folder is held open, so that what happens to the path meanwhile
/// (links or folders exchanged by others) does not redirect the write.
class TargetFile
{
public:
    /// Follows the path's symbolic links and opens the file for reading and writing, or only for
    /// writing where reading is not permitted. Nothing, with errno set, when
    /// - the file may not be written or its folder does not exist,
    /// - it is not a regular file,
    /// - the links are a loop, or one of them lies in a folder like /tmp (sticky, writable for all)
    ///   and belongs to neither this user nor the folder's owner,
    /// - the system's own resolution of the path leads to another file (through a link below
    ///   /proc/self/fd to a deleted file).
    static std::optional<TargetFile> open(const std::filesystem::path& path);

    /// Follows the path's symbolic links like open(), but opens nothing: the result has folder(),
    /// name() and path(), and exists() is false. Nothing, with errno set, when the folder does not
    /// exist or a link may not be followed.
    static std::optional<TargetFile> resolve(const std::filesystem::path& path);

    /// False for a name that is still free; descriptor() and status() are then meaningless.
    bool exists() const { return m_file.isOpen(); }
    int descriptor() const { return m_file.get(); }

    /// As it was when the file was opened.
    const struct stat& status() const { return m_status; }

    /// The folder's descriptor, good for calls like openat(), and the file's name in the folder.
    int folder() const { return m_folder.get(); }
    const std::string& name() const { return m_name; }

    /// The path without symbolic links.
    const std::filesystem::path& path() const { return m_path; }

    /// True when the name in the folder still belongs to the opened file.
    bool isStillNamed() const;

private:
    TargetFile() = default;

    bool openFile();

    FileDescriptor m_folder;
    FileDescriptor m_file;
    std::string m_name;
    std::filesystem::path m_path;
    struct stat m_status = {};
};

/// True when both are the same file of the same file system.
bool isSameFile(const struct stat& left, const struct stat& right);

} // namespace QvVisa
