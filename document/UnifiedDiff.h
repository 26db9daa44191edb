// SPDX-License-Identifier: MIT
#pragma once

#include "document/Document.h"
#include "document/DocumentEditor.h"

#include <string>
#include <string_view>
#include <vector>

namespace QvVisa {

/// A unified diff with three lines of context, such as `diff -u` prints and `patch` takes; empty
/// when there are no hunks. The names are printed as they are.
std::string unifiedDiff(const Document& before, const Document& after,
                        const std::vector<ChangedLines>& hunks, std::string_view nameBefore,
                        std::string_view nameAfter);

} // namespace QvVisa
