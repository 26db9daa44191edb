// SPDX-License-Identifier: MIT
#pragma once

#include "lint/LineFindings.h"

#include <cstddef>
#include <string_view>

namespace lint {

/// Judges a resource string: of an alias, or of a line of its own without the white space at its
/// end. The offset is that of the text in its line. Time is linear in the text.
void judgeResource(std::string_view text, std::size_t offset, LineFindings& findings);

/// Whether the text is a resource string, or is like one: it begins with an interface and has a
/// "::", or names a serial port.
bool looksLikeResource(std::string_view text);

} // namespace lint
