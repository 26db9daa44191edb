// SPDX-License-Identifier: MIT
#pragma once

#include "lint/LineFindings.h"

#include <string_view>

namespace lint {

/// Says why the reader ignores a line that looks like an entry; nothing for a comment or a blank
/// line. The line is one for which the matcher answers None.
void judgeIgnoredLine(std::string_view line, LineFindings& findings);

/// Whether a line without its ':' is a setting: "Provider=3674".
bool lacksColon(std::string_view line);

} // namespace lint
