// SPDX-License-Identifier: MIT
#pragma once

#include "config/TargetFile.h"
#include "config/WriteOptions.h"

#include <string_view>

namespace QvVisa {

enum class InPlaceOutcome
{
    Written,
    Unchanged, ///< The target holds its old bytes: it cannot be read, or a failed write was undone.
    Torn,      ///< A write failed, and so did undoing it.
};

/// Overwrites an existing target's bytes, a text of lines, and waits until they have reached the
/// disk. A target that cannot be read, or is larger than 256 MiB, is left unchanged: a failed write
/// could not be undone.
///
/// A process killed in the middle of the write, or a power cut, can tear the file: keep a complete
/// copy of the bytes on the disk until this returns Written. Killed after the write, it leaves the
/// new text followed by empty lines.
InPlaceOutcome writeInPlace(const TargetFile& target, std::string_view bytes,
                            const WriteOptions& options);

} // namespace QvVisa
