// SPDX-License-Identifier: MIT
#pragma once

#include "document/Document.h"
#include "lint/FindingCode.h"

#include <set>
#include <string>

namespace lint {

/// The document's text with every fixable finding repaired, but for those of the ignored codes; all
/// other bytes are unchanged. The result has no such finding, so repairing it again changes
/// nothing. Time is linear in the text.
std::string repaired(const QvVisa::Document& document, const std::set<FindingCode>& ignored = {});

} // namespace lint
