// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationLine.h"
#include "lint/EntryTables.h"
#include "lint/LineFindings.h"

#include <string_view>

namespace lint {

/// Judges a line that the reader takes for an alias.
void judgeAlias(std::string_view line, const QvVisa::ConfigurationLine& match, EntryTables& tables,
                LineFindings& findings);

/// Judges a line that the reader takes for a resource without an alias. Its views have to outlive
/// the tables.
void judgePlainResource(std::string_view line, EntryTables& tables, LineFindings& findings);

/// Where the comment at the end of a resource's line begins; npos if there is none.
std::size_t findTrailingComment(std::string_view line);

} // namespace lint
