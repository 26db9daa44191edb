// SPDX-License-Identifier: MIT
#pragma once

#include "config/FileDescriptor.h"

#include <sys/types.h>

#include <string>

namespace QvVisa {

/// A new file that takes another file's name once it is complete. Until then its name, if it has
/// one, is a temporary one, .qvvisa-PID-NUMBER.tmp. The destructor removes whatever file bears the
/// temporary name.
class TemporaryFile
{
public:
    /// Creates the file in the folder, a descriptor that must stay open as long as this object; its
    /// permissions are what open() makes of mode. With isOpen() false afterwards, errno says why.
    TemporaryFile(int folder, mode_t mode);
    ~TemporaryFile();

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool isOpen() const { return m_file.isOpen(); }
    int descriptor() const { return m_file.get(); }

    /// The temporary name in the folder; empty when the file has none.
    const std::string& name() const { return m_name; }

    /// Renames the file to a name in the folder, replacing any file of that name. False, with errno
    /// set, when that failed.
    bool renameTo(const std::string& name);

    /// Exchanges the two names in one step: the other file then bears the temporary name, and is
    /// removed by the destructor unless exchanged back or renamed. False, with errno set (EINVAL or
    /// ENOTSUP where the system cannot do it), when nothing was exchanged.
    bool exchangeWith(const std::string& name);

private:
    int m_folder;
    FileDescriptor m_file;
    std::string m_name;
};

} // namespace QvVisa
