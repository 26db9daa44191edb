// SPDX-License-Identifier: MIT
#pragma once

#include "document/Entries.h"

#include <string>
#include <string_view>

namespace QvVisa {

/// The most similar alias name, in UTF-8, as ", did you mean NAME?"; empty when none is similar.
/// The name is in the file's bytes.
std::string suggestAlias(const Entries& entries, std::string_view name);

} // namespace QvVisa
