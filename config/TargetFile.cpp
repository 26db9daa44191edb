// SPDX-License-Identifier: MIT
#include "config/TargetFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <deque>
#include <utility>

namespace QvVisa {

namespace {

/// Whether the link may be trusted. In a sticky folder that everyone may write, others can put
/// links of theirs in place, but not exchange or remove the user's or the folder owner's.
bool mayFollow(int folder, const struct stat& link)
{
    struct stat status = {};
    if (::fstat(folder, &status) != 0) {
        return false;
    }
    const bool isShared = (status.st_mode & S_ISVTX) != 0 && (status.st_mode & S_IWOTH) != 0;
    return !isShared || link.st_uid == ::geteuid() || link.st_uid == status.st_uid;
}

/// The text of a symbolic link; nothing, with errno EACCES, when it may not be followed.
std::optional<std::filesystem::path> readLink(int folder, const std::string& name,
                                              const struct stat& link)
{
    if (!mayFollow(folder, link)) {
        errno = EACCES;
        return std::nullopt;
    }
    std::array<char, PATH_MAX> text{};
    const ssize_t length = ::readlinkat(folder, name.c_str(), text.data(), text.size());
    if (length < 0) {
        return std::nullopt;
    }
    return std::filesystem::path(text.data(), text.data() + length);
}

} // namespace

bool isSameFile(const struct stat& left, const struct stat& right)
{
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

std::optional<TargetFile> TargetFile::open(const std::filesystem::path& path)
{
    // Another program may put a new file in place between the steps; then they disagree, and are
    // repeated.
    constexpr int mostAttempts = 16;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        std::optional<TargetFile> target = resolve(path);
        if (!target) {
            return std::nullopt;
        }
        // The system's own resolution of the path. fstatat() rather than stat(): both follow links.
        struct stat followed = {};
        const bool exists = ::fstatat(AT_FDCWD, path.c_str(), &followed, 0) == 0;
        if (!exists && errno != ENOENT) {
            return std::nullopt;
        }
        if (!target->openFile()) {
            if (errno == ENOENT && !exists) {
                return target;
            }
            if (errno != ENOENT && errno != ELOOP) {
                return std::nullopt;
            }
        } else if (exists && isSameFile(target->m_status, followed)) {
            return target;
        }
    }
    errno = ESTALE;
    return std::nullopt;
}

std::optional<TargetFile> TargetFile::resolve(const std::filesystem::path& path)
{
    constexpr int mostLinks = 40;
    int links = 0;
    std::deque<std::string> names(path.begin(), path.end());
    TargetFile target;
    target.m_folder = FileDescriptor::openFolder(AT_FDCWD, ".");
    errno = ENOENT;
    while (target.m_folder.isOpen() && !names.empty()) {
        const std::string name = names.front();
        names.pop_front();
        const bool isLast = names.empty();
        if (name.empty() && !isLast) {
            continue; // The end of a link's text that ends in a slash.
        }
        if (name == "/") {
            target.m_folder = FileDescriptor::openFolder(AT_FDCWD, name);
            target.m_path = name;
            continue;
        }
        struct stat status = {};
        const int folder = target.m_folder.get();
        const bool exists = ::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
        if (exists && S_ISLNK(status.st_mode)) {
            const auto link = readLink(folder, name, status);
            if (!link || ++links > mostLinks) {
                errno = link ? ELOOP : errno;
                return std::nullopt;
            }
            names.insert(names.begin(), link->begin(), link->end());
            continue;
        }
        if (isLast && (exists || errno == ENOENT) && !name.empty()) {
            target.m_name = name;
            target.m_path /= name;
            return target;
        }
        if (isLast || !exists) {
            return std::nullopt;
        }
        target.m_folder = FileDescriptor::openFolder(folder, name);
        target.m_path /= name;
    }
    return std::nullopt;
}

bool TargetFile::openFile()
{
    constexpr int flags = O_NOFOLLOW | O_NOCTTY | O_CLOEXEC;
    struct stat named = {};
    if (::fstatat(m_folder.get(), m_name.c_str(), &named, AT_SYMLINK_NOFOLLOW) != 0) {
        return false;
    }
    if (!S_ISREG(named.st_mode)) {
        errno = S_ISLNK(named.st_mode) ? ELOOP : EINVAL;
        return false;
    }
    const auto openWith = [this](int access) {
        m_file = FileDescriptor::openPatiently(m_folder.get(), m_name, access | flags);
        return m_file.isOpen();
    };
    if (!openWith(O_RDWR) && (errno != EACCES || !openWith(O_WRONLY))) {
        return false;
    }
    if (::fstat(m_file.get(), &m_status) != 0) {
        m_file.close();
        return false;
    }
    if (!S_ISREG(m_status.st_mode) || !isSameFile(m_status, named)) {
        m_file.close();
        errno = ENOENT;
        return false;
    }
    return true;
}

bool TargetFile::isStillNamed() const
{
    struct stat named = {};
    return ::fstatat(m_folder.get(), m_name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           isSameFile(named, m_status);
}

} // namespace QvVisa
