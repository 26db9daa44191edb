// SPDX-License-Identifier: MIT
#pragma once

#include "command/CommandLine.h"
#include "document/EntryEdits.h"

#include <functional>
#include <optional>
#include <string>

namespace QvVisa {

/// The options of every command that edits the file.
struct EditOptions
{
    bool isCheck = false;
    bool isDiff = false;
    bool isExitCode = false;
    bool isForce = false;
    std::optional<std::string> backupSuffix;
};

/// Edits a document that has the version header. May be called again with newer contents of the
/// file. Throws CommandError to end the command.
using Edit = std::function<EditResult(const Document&)>;

/// Adds a command that edits the file, with the options of every such command.
CommandOptions addEditCommand(CommandLine& line, const std::string& name,
                              const std::string& description,
                              std::function<ExitCode(CommandContext&, const EditOptions&)> action);

/// Edits the file in use as the options say, and prints what changed.
ExitCode runEdit(CommandContext& context, const EditOptions& options, const Edit& edit);

/// Prints a warning for each window that is running on the file.
void warnOfWindows(Output& output, const std::string& path);

} // namespace QvVisa
