// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace QvVisa {

/// Makes bytes, a text of lines, the whole contents of the file at path, creating it if it does not
/// exist. Whatever happens meanwhile (a kill, a full disk, a write error), the file afterwards
/// holds either all of its old bytes or all of the new ones, and the new ones have reached the
/// disk.
///
/// An existing file must allow writing, else nothing happens. It keeps its mode, and its owner
/// where the system allows; a symbolic link stays one and the file it names is replaced.
///
/// Where the file cannot be replaced as a whole (it has further hard links, or its folder takes no
/// new file), it is overwritten in place, if it can be read and has at most 256 MiB: a failing
/// write is then taken back. A kill behind the write leaves the new bytes and empty lines; a kill
/// in its middle, or a power cut, can tear the file.
///
/// Returns true when the file holds the new bytes. Never throws on account of the file system.
bool replaceFileContents(const std::string& path, std::string_view bytes);

} // namespace QvVisa
