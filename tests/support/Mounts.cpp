// SPDX-License-Identifier: MIT
#include "tests/support/Mounts.h"

#include "tests/support/Files.h"

#ifdef __linux__
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>
#endif

#include <string>

namespace support {

#ifdef __linux__
namespace {

/// Only root may mount: anyone else becomes root in a user namespace of their own.
bool enterOwnNamespace()
{
    const std::string user = std::to_string(::geteuid());
    const std::string group = std::to_string(::getegid());
    if (user == "0") {
        return ::unshare(CLONE_NEWNS) == 0;
    }
    if (::unshare(CLONE_NEWNS | CLONE_NEWUSER) != 0) {
        return false;
    }
    writeFile("/proc/self/setgroups", "deny");
    writeFile("/proc/self/uid_map", "0 " + user + " 1");
    writeFile("/proc/self/gid_map", "0 " + group + " 1");
    return true;
}

bool enterOwnMounts()
{
    return enterOwnNamespace() && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace

bool mountSmallFileSystem(const std::filesystem::path& folder)
{
    return enterOwnMounts() && ::mount("small", folder.c_str(), "tmpfs", 0, "size=128k") == 0;
}

bool mountOverItself(const std::filesystem::path& file)
{
    return enterOwnMounts() && ::mount(file.c_str(), file.c_str(), nullptr, MS_BIND, nullptr) == 0;
}
#else
bool mountSmallFileSystem(const std::filesystem::path& /*folder*/)
{
    return false;
}

bool mountOverItself(const std::filesystem::path& /*file*/)
{
    return false;
}
#endif

} // namespace support
