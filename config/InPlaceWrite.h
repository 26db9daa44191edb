// SPDX-License-Identifier: MIT
#pragma once

#include "config/TargetFile.h"

#include <string_view>

namespace QvVisa {

/// Overwrites an existing target's bytes, a text of lines, and waits until they have reached the
/// disk. False, with errno set, when the target cannot be read, is larger than 256 MiB, or a write
/// failed; a failed write is rolled back.
///
/// A process killed in the middle of the write, or a power cut, can tear the file. Killed after the
/// write, it leaves the new text followed by empty lines.
bool writeInPlace(const TargetFile& target, std::string_view bytes);

} // namespace QvVisa
