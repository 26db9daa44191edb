// SPDX-License-Identifier: MIT
#pragma once

namespace QvVisa {

class CommandLine;

/// Each adds one command, or a family of commands, to the command line.
void addWhereCommand(CommandLine& line);
void addInitCommand(CommandLine& line);
void addListCommand(CommandLine& line);
void addGetCommand(CommandLine& line);
void addAliasCommands(CommandLine& line);
void addResourceCommands(CommandLine& line);
void addDeviceCommands(CommandLine& line);
void addProviderCommand(CommandLine& line);
void addApplyCommand(CommandLine& line);
void addLintCommand(CommandLine& line);
void addDiffCommand(CommandLine& line);
void addMergeCommand(CommandLine& line);
void addFindCommand(CommandLine& line);
void addDoctorCommand(CommandLine& line);

} // namespace QvVisa
