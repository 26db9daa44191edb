// SPDX-License-Identifier: MIT
#include "config/FileAttributes.h"

#include <copyfile.h>
#include <sys/acl.h>

#include <cerrno>

namespace QvVisa {

namespace {

/// An empty list in place of the one inherited from the folder.
bool removeAccessList(int file)
{
    const acl_t empty = ::acl_init(1);
    const bool isRemoved =
        empty != nullptr &&
        (::acl_set_fd_np(file, empty, ACL_TYPE_EXTENDED) == 0 || errno == ENOTSUP);
    ::acl_free(empty);
    return isRemoved;
}

} // namespace

bool copyExtendedAttributes(int from, int to)
{
    return removeAccessList(to) &&
           ::fcopyfile(from, to, nullptr, COPYFILE_ACL | COPYFILE_XATTR) == 0;
}

bool isAppendOnly(int folder)
{
    struct stat status = {};
    return ::fstat(folder, &status) == 0 && (status.st_flags & (UF_APPEND | SF_APPEND)) != 0;
}

} // namespace QvVisa
