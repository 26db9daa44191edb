// SPDX-License-Identifier: MIT
#include "config/FileAttributes.h"

#include "config/FileDescriptor.h"

#include <unistd.h>

#include <cerrno>

namespace QvVisa {

namespace {

constexpr mode_t s_rights = 07777;

bool changeOwner(int descriptor, const struct stat& own, const struct stat& wanted)
{
    if (own.st_uid == wanted.st_uid && own.st_gid == wanted.st_gid) {
        return true;
    }
    // An owner may choose among their groups only if they do not ask for another owner.
    const uid_t user = own.st_uid == wanted.st_uid ? static_cast<uid_t>(-1) : wanted.st_uid;
    return uninterrupted([=] { return ::fchown(descriptor, user, wanted.st_gid); }) == 0;
}

} // namespace

bool copyAttributes(int from, const struct stat& status, int to)
{
    struct stat own = {};
    const mode_t rights = status.st_mode & s_rights;
    // The rights come last: a change of owner takes set-ID bits away, and until the inherited
    // access control list is gone they would count as its mask and open the file to those it names.
    if (::fstat(to, &own) != 0 || !changeOwner(to, own, status) ||
        !copyExtendedAttributes(from, to) ||
        uninterrupted([=] { return ::fchmod(to, rights); }) != 0 || ::fstat(to, &own) != 0) {
        return false;
    }
    if ((own.st_mode & s_rights) != rights) {
        // The system silently drops the set-group-ID bit for who is not a member of the group.
        errno = EPERM;
        return false;
    }
    return true;
}

} // namespace QvVisa
