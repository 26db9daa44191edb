// SPDX-License-Identifier: MIT
#pragma once

#include "document/Document.h"
#include "lint/FindingCode.h"

#include <string_view>
#include <vector>

namespace lint {

/// All findings about a document, sorted by line and column, the more severe first. A document that
/// the reader does not read at all gets one finding. Any bytes are valid; time is linear in the
/// number of lines and in each line's length. Any thread.
std::vector<Finding> findingsIn(const QvVisa::Document& document);

/// The findings about one line (without its line feed) of a file that holds nothing else but the
/// version header. The line number of each is 1.
std::vector<Finding> findingsInLine(std::string_view line);

} // namespace lint
