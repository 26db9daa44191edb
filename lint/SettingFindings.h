// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationLine.h"
#include "lint/EntryTables.h"
#include "lint/LineFindings.h"

#include <string_view>

namespace lint {

/// Judges the numbers of a provider, serial or GPIB line.
void judgeSetting(std::string_view line, const QvVisa::ConfigurationLine& match,
                  EntryTables& tables, LineFindings& findings);

} // namespace lint
