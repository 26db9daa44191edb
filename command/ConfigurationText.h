// SPDX-License-Identifier: MIT
#pragma once

#include "command/CommandLine.h"
#include "document/Document.h"

#include <string>

namespace QvVisa {

/// The path of the file in use: the argument of -f, else what the search finds. Throws
/// CommandError with ExitCode::NoFile when it finds none.
std::string configurationPath(const CommandContext& context);

/// A configuration file as it is now.
struct ConfigurationText
{
    std::string name; ///< For people and JSON, in UTF-8.
    Document document;
};

/// Reads the file in use, or standard input for "-f -". Throws CommandError with ExitCode::NoFile
/// when it cannot be read or has no version header.
ConfigurationText readConfiguration(CommandContext& context);

/// All bytes of a regular file. Throws CommandError with ExitCode::NoFile.
std::string readWholeFile(const std::string& path);

/// All bytes of standard input. Throws CommandError with ExitCode::NoFile.
std::string readStandardInput(CommandContext& context);

/// Throws CommandError with ExitCode::NoFile unless the document has the version header.
void requireHeader(const Document& document, const std::string& name);

/// An argument as bytes of the file. Throws CommandError with ExitCode::WrongUsage when it is not
/// UTF-8 or has a character that Latin-1 lacks.
std::string argumentToLatin1(const std::string& argument);

} // namespace QvVisa
