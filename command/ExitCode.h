// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace QvVisa {

/// What the program's exit status says.
enum class ExitCode
{
    Done = 0,         ///< Also: already so, yes, clean.
    No = 1,           ///< No such alias, findings, differences, would change, changed, problems.
    WrongUsage = 2,   ///< Or a name or value that the format cannot hold.
    NoFile = 3,       ///< No file, unreadable, or without the version header.
    NotWritten = 4,   ///< The old file is whole.
    Conflict = 5,     ///< Changed by others again and again, no lock in time, merge conflict.
    LibraryFailed = 6 ///< No VISA library, or it failed, crashed or did not answer in time.
};

/// Ends a command. The text, in UTF-8, is printed as the error message.
class CommandError : public std::runtime_error
{
public:
    CommandError(ExitCode code, const std::string& message)
        : std::runtime_error(message),
          m_code(code)
    {}

    ExitCode code() const { return m_code; }

private:
    ExitCode m_code;
};

} // namespace QvVisa
