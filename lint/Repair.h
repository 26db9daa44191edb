// SPDX-License-Identifier: MIT
#pragma once

#include "document/Document.h"

#include <string>

namespace lint {

/// The document's text with every fixable finding repaired; all other bytes are unchanged. The
/// result has no fixable finding, so repairing it again changes nothing. Time is linear in the
/// text.
std::string repaired(const QvVisa::Document& document);

} // namespace lint
