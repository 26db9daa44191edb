// SPDX-License-Identifier: MIT
#include "config/NeighbourFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

namespace QvVisa {

NeighbourFile::NeighbourFile(const std::filesystem::path& target, mode_t mode) : m_target(target)
{
    constexpr int mostAttempts = 1000;
    const std::string prefix = ".qvvisa-" + std::to_string(::getpid()) + "-";
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        m_path = target.parent_path() / (prefix + std::to_string(attempt) + ".tmp");
        m_file = FileDescriptor(uninterrupted([this, mode] {
            return ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        }));
        m_exists = m_file.isOpen();
        // A killed save may have left a file of that name behind: take the next.
        if (m_exists || errno != EEXIST) {
            return;
        }
    }
}

NeighbourFile::~NeighbourFile()
{
    if (m_exists) {
        // Callers look at errno after this object is gone.
        const int error = errno;
        ::unlink(m_path.c_str());
        errno = error;
    }
}

bool NeighbourFile::takeTargetsName()
{
    if (!m_file.close() || std::rename(m_path.c_str(), m_target.c_str()) != 0) {
        return false;
    }
    m_exists = false;
    return true;
}

} // namespace QvVisa
