// SPDX-License-Identifier: MIT
#pragma once

#include "document/Document.h"
#include "lint/LineFindings.h"

namespace lint {

/// Says why the reader reads nothing of a document that has no version header at its front.
void judgeUnreadFile(const QvVisa::Document& document, LineFindings& findings);

/// Judges the first line of a document that has the version header.
void judgeHeader(std::string_view line, LineFindings& findings);

/// Where the carriage return is that the first line goes on after; npos if there is none.
std::size_t findLoneCarriageReturn(std::string_view line);

} // namespace lint
