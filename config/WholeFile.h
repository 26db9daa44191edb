// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace QvVisa {

/// All bytes of an open file, which may grow meanwhile. Nothing, with errno set, when a read fails
/// or the file is larger than maxFileSize. Does not move the file offset.
std::optional<std::string> readWholeFile(int descriptor);

} // namespace QvVisa
