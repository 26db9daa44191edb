// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace QvVisa {

/// All bytes of an open file, which may grow meanwhile. Nothing, with errno set, when a read fails.
/// Does not move the file offset.
std::optional<std::string> readWholeFile(int descriptor);

} // namespace QvVisa
