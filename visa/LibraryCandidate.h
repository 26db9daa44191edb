// SPDX-License-Identifier: MIT
#pragma once

#include "visa/ExecutableHeader.h"

#include <cstdint>
#include <string>
#include <vector>

namespace visa {

/// Where the dynamic loader looks for a library that is named without a folder.
struct LibrarySearch
{
    /// LD_LIBRARY_PATH, on macOS DYLD_LIBRARY_PATH: folders separated by colons.
    std::string libraryPath;
    /// The contents of the loader's cache; empty where it has none.
    std::string cache;
    /// Searched last.
    std::vector<std::string> systemFolders;
    /// What $ORIGIN or @executable_path stands for.
    std::string programFolder;

    /// That of the running program.
    static LibrarySearch ofThisProgram();
};

/// A candidate that is a path with $ORIGIN or @executable_path, written out.
std::string expandedCandidate(const std::string& name, const LibrarySearch& search);

/// A file that a candidate's name could mean.
struct CandidateFile
{
    enum class Origin : std::uint8_t
    {
        Path,        ///< The candidate is a path.
        LibraryPath, ///< In a folder of LibrarySearch::libraryPath.
        Cache,
        SystemFolder,
    };
    std::string path;
    Origin origin = Origin::Path;
    ExecutableHeader header;
};

/// Everything that the dynamic loader meets on its search for one name, whether or not it can use
/// it.
struct LibraryCandidate
{
    /// An argument of dlopen(), as in VisaLibrary::candidates().
    std::string name;
    /// In the loader's order. One that is found twice, also by way of links, is listed once; what
    /// does not exist is left out.
    std::vector<CandidateFile> files;

    /// Looks at the files without loading them.
    static LibraryCandidate find(const std::string& name, const LibrarySearch& search);
};

} // namespace visa
