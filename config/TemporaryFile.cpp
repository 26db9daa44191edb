// SPDX-License-Identifier: MIT
#include "config/TemporaryFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace QvVisa {

TemporaryFile::TemporaryFile(int folder, mode_t mode) : m_folder(folder)
{
    constexpr int mostAttempts = 1000;
    const std::string prefix = ".qvvisa-" + std::to_string(::getpid()) + "-";
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const std::string name = prefix + std::to_string(attempt) + ".tmp";
        m_file = FileDescriptor(uninterrupted([&] {
            return ::openat(m_folder, name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        }));
        if (m_file.isOpen()) {
            m_name = name;
            return;
        }
        // A killed save may have left a file of that name: take the next.
        if (errno != EEXIST) {
            return;
        }
    }
}

TemporaryFile::~TemporaryFile()
{
    if (!m_name.empty()) {
        // Callers examine errno after this object is gone.
        const int error = errno;
        ::unlinkat(m_folder, m_name.c_str(), 0);
        errno = error;
    }
}

bool TemporaryFile::renameTo(const std::string& name)
{
    if (::renameat(m_folder, m_name.c_str(), m_folder, name.c_str()) != 0) {
        return false;
    }
    m_name.clear();
    return true;
}

bool TemporaryFile::exchangeWith(const std::string& name)
{
#if defined(RENAME_EXCHANGE)
    return ::renameat2(m_folder, m_name.c_str(), m_folder, name.c_str(), RENAME_EXCHANGE) == 0;
#elif defined(RENAME_SWAP)
    return ::renameatx_np(m_folder, m_name.c_str(), m_folder, name.c_str(), RENAME_SWAP) == 0;
#else
    static_cast<void>(name);
    errno = ENOTSUP;
    return false;
#endif
}

} // namespace QvVisa
