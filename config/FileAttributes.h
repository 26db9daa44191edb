// SPDX-License-Identifier: MIT
#pragma once

#include <sys/stat.h>

namespace QvVisa {

/// Gives a file that this process has just created, readable by nobody else, the owner, group,
/// rights, access control list and extended attributes of an existing one. Rights that the new file
/// inherited from its folder and the other does not have are removed.
/// from, to: their descriptors; status: the existing file's.
/// False, with errno set, when something cannot be kept: then the new file must not take the
/// other's name. Set-ID bits are kept only together with owner and group.
bool copyAttributes(int from, const struct stat& status, int to);

// What differs from system to system.

/// The part of copyAttributes() for access control list and extended attributes.
bool copyExtendedAttributes(int from, int to);

/// True for a folder that takes new files but lets none be removed or renamed.
bool isAppendOnly(int folder);

} // namespace QvVisa
