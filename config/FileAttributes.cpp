// SPDX-License-Identifier: MIT
#include "config/FileAttributes.h"

#include <unistd.h>

#include <cerrno>

namespace QvVisa {

namespace {

bool changeOwner(int descriptor, uid_t user, gid_t group)
{
    return uninterrupted([=] { return ::fchown(descriptor, user, group); }) == 0;
}

} // namespace

bool carryOverAttributes(const TargetFile& target, int descriptor)
{
    const struct stat& old = target.status();
    struct stat own = {};
    if (::fstat(descriptor, &own) != 0) {
        return false;
    }
    if (own.st_uid != old.st_uid) {
        if (changeOwner(descriptor, old.st_uid, old.st_gid)) {
            own.st_gid = old.st_gid;
        } else if (errno != EPERM) {
            return false;
        }
    }
    // Only root may give files away, but an owner may choose among their groups. A file whose
    // group cannot be kept must not open itself to the members of another one.
    mode_t mode = old.st_mode & 07777;
    if (own.st_gid != old.st_gid && !changeOwner(descriptor, static_cast<uid_t>(-1), old.st_gid)) {
        if (errno != EPERM) {
            return false;
        }
        mode &= ~static_cast<mode_t>(S_IRWXG | S_ISGID);
    }
    return uninterrupted([=] { return ::fchmod(descriptor, mode); }) == 0;
}

} // namespace QvVisa
