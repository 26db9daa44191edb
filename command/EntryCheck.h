// SPDX-License-Identifier: MIT
#pragma once

#include "command/CommandLine.h"
#include "document/Document.h"

#include <string>

namespace QvVisa {

/// Refuses, with ExitCode::WrongUsage, a name that no alias can have.
void checkAliasName(Output& output, const std::string& name, bool isForced);

/// Refuses, with ExitCode::WrongUsage, an alias that the reader would not read back whole, and one
/// that lint calls an error unless isForced; prints lint's warnings. Texts are the file's bytes.
void checkAlias(Output& output, const std::string& name, const std::string& resource,
                bool isForced);

/// The same for a resource without an alias.
void checkResource(Output& output, const std::string& resource, bool isForced);

/// The same for lines that the apply command is given; the messages name their line.
void checkLines(Output& output, const Document& lines, const std::string& name, bool isForced);

} // namespace QvVisa
