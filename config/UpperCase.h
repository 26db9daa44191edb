// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace QvVisa {

/// Each byte through the C library's toupper(), which follows the process's C locale.
std::string toUpperCase(std::string_view text);

/// True when both texts are the same once upper-cased.
bool equalsIgnoringCase(std::string_view left, std::string_view right);

} // namespace QvVisa
