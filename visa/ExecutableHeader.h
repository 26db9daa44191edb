// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace visa {

/// What kind of file has a library's name, judged by its first bytes.
struct ExecutableHeader
{
    enum class Kind : std::uint8_t
    {
        Missing,
        DanglingLink, ///< A link to a file that does not exist.
        Denied,       ///< Not readable for this user, or in a folder that is not.
        Unreadable,   ///< Any other failure.
        NoFile,       ///< A folder, a pipe, a device or a socket.
        Empty,
        LinkerScript, ///< A text for the linker that builds programs; the loader cannot use it.
        Text,
        CutOff, ///< Begins like a library and ends before its header does.
        Unknown,
        Library,
        OtherExecutable, ///< A program or an object file.
    };
    Kind kind = Kind::Missing;
    /// For a library or other executable, the machines that it is made for, such as "x86-64". Only
    /// a Mach-O file has several.
    std::vector<std::string> machines;

    /// Reads a file; never blocks.
    static ExecutableHeader read(const std::string& path);

    /// Of a regular file's first bytes; 4096 are enough. Any bytes may be in them.
    static ExecutableHeader parse(std::string_view bytes);
};

/// The machine of the running program, in the words of ExecutableHeader; empty when unknown.
std::string machineOfThisProgram();

/// The first bytes of a regular file, at most the given number. Nothing for any other file, with
/// *error set to 0, and on failure, with *error set to an errno value; error may be null. Never
/// blocks.
std::optional<std::string> readFileBeginning(const std::string& path, std::size_t most,
                                             int* error = nullptr);

} // namespace visa
