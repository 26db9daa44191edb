// SPDX-License-Identifier: MIT
#pragma once

#include "config/FileDescriptor.h"

#include <sys/types.h>

#include <string>
#include <vector>

namespace QvVisa {

/// A new file that takes another file's name once it is complete. Until then it has no name, so
/// that nothing is left of it when the process dies, or a temporary one, .qvvisa-PID-NUMBER.tmp.
/// The destructor removes whatever file has the temporary name.
class TemporaryFile
{
public:
    enum class Kind
    {
        Unnamed, ///< Where the system and the file system have such files, else as Named.
        Named,
    };

    /// Creates an empty file in the folder; its permissions are what open() makes of mode. With
    /// isOpen() false afterwards, errno says why. folder: a descriptor, which is duplicated.
    TemporaryFile(int folder, mode_t mode, Kind kind);
    ~TemporaryFile();

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool isOpen() const { return m_file.isOpen(); }
    int descriptor() const { return m_file.get(); }
    int folder() const { return m_folder.get(); }

    /// The temporary name in the folder; empty when the file has none.
    const std::string& name() const { return m_name; }

    /// Makes sure that the file has a temporary name, as all further calls require. False, with
    /// errno set, when an unnamed file cannot get one: start over with Kind::Named.
    bool giveName();

    /// Renames the file to a name in the folder, replacing any file of that name. False, with errno
    /// set, when that failed.
    bool renameTo(const std::string& name);

    /// Exchanges the two names in one step: the other file then has the temporary name, and is
    /// removed by the destructor unless exchanged back, renamed or kept. False, with errno set
    /// (EINVAL or ENOTSUP where the system cannot do it), when nothing was exchanged.
    bool exchangeWith(const std::string& name);

    /// Leaves the file with the temporary name where it is.
    void keep() { m_name.clear(); }

    /// The names of the temporary files in the folder whose processes have died.
    static std::vector<std::string> leftovers(int folder);

    /// Removes the temporary files in the folder that processes of this user left when they died.
    /// Root's may already belong to owner, to whom they were to be given.
    static void removeLeftovers(int folder, uid_t owner);

private:
    bool createUnnamed(mode_t mode);
    bool createNamed(mode_t mode);

    FileDescriptor m_folder;
    FileDescriptor m_file;
    std::string m_name;
};

} // namespace QvVisa
