// SPDX-License-Identifier: MIT
#pragma once

#include "document/Document.h"

#include <functional>
#include <optional>
#include <string>

namespace QvVisa {

/// Makes the new text of the old one; none to leave the file alone. It is called again with a newer
/// text when others have changed the file meanwhile. What it throws ends the update.
using TextUpdate = std::function<std::optional<std::string>(const Document& old)>;

/// Replaces the contents of an existing file by what update makes of them, without losing what
/// other programs write to it at the same time. The old contents are kept beside it under the
/// file's name followed by backupSuffix, if there is one; an older backup is replaced.
///
/// Returns the backup's path, or none. Throws CommandError: NoFile when the file cannot be read,
/// NotWritten when it cannot be written (it is whole then), Conflict when others changed it ten
/// times in a row or held its lock for 5 seconds.
std::optional<std::string> updateFile(const std::string& path, const TextUpdate& update,
                                      const std::optional<std::string>& backupSuffix);

} // namespace QvVisa
