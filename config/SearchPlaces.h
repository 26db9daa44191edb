// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace QvVisa {

/// What of a process decides where the configuration file is searched for.
struct SearchEnvironment
{
    std::optional<std::string> configurationFile; ///< QVVISACONFFILE
    std::optional<std::string> workingFolder;
    std::optional<std::string> home; ///< HOME
};

/// This process's environment and working folder.
SearchEnvironment searchEnvironment();

/// A path of the search order, whatever is there.
struct SearchPath
{
    const char* place; ///< "QVVISACONFFILE", "working folder", "HOME" or "system-wide".
    std::optional<std::string> path; ///< None when the place is unset.
    /// If stat() fails on this path in a search for writing, the last successful stat() decides
    /// whether it is taken.
    bool isForWriting = false;
};

/// The order of the search: the one source for the store's search and for searchPlaces().
std::array<SearchPath, 4> searchOrder(const SearchEnvironment& environment);

/// What the search makes of a place.
enum class PlaceVerdict
{
    Unset,      ///< The variable is not set, or there is no working folder.
    Missing,    ///< No such file.
    NotRegular, ///< A folder, device, pipe or socket.
    Denied,     ///< A folder on the way may not be searched; taken for missing.
    Used,
    Shadowed, ///< Would be used if an earlier place were not.
};

/// A place of the search order.
struct SearchPlace
{
    std::string place; ///< As in SearchPath.
    std::string path;  ///< Empty when the place is unset.
    PlaceVerdict verdict = PlaceVerdict::Unset;
};

/// All places in the order of the search. A relative path is looked up from the environment's
/// working folder.
std::vector<SearchPlace> searchPlaces(const SearchEnvironment& environment);

} // namespace QvVisa
