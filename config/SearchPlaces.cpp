// SPDX-License-Identifier: MIT
#include "config/SearchPlaces.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <utility>

namespace QvVisa {

namespace {

std::optional<std::string> environmentVariable(const char* name)
{
    // Nothing in the program changes the environment.
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

PlaceVerdict verdictOf(const std::string& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
        return errno == EACCES ? PlaceVerdict::Denied : PlaceVerdict::Missing;
    }
    return S_ISREG(status.st_mode) ? PlaceVerdict::Used : PlaceVerdict::NotRegular;
}

} // namespace

SearchEnvironment searchEnvironment()
{
    SearchEnvironment environment;
    environment.configurationFile = environmentVariable("QVVISACONFFILE");
    environment.home = environmentVariable("HOME");
    // The store's own limit: it does not search a folder with a longer path.
    std::array<char, 1024> buffer{};
    if (const char* folder = ::getcwd(buffer.data(), buffer.size())) {
        environment.workingFolder = folder;
    }
    return environment;
}

std::array<SearchPath, 4> searchOrder(const SearchEnvironment& environment)
{
    const auto append = [](const std::optional<std::string>& folder, const char* name) {
        return folder ? std::optional<std::string>(*folder + name) : std::nullopt;
    };
    return {{
        {"QVVISACONFFILE", environment.configurationFile, false},
        {"working folder", append(environment.workingFolder, "/visa.conf"), true},
        {"HOME", append(environment.home, "/.quorvane/visa.conf"), false},
        {"system-wide", "/Library/Preferences/com.quorvane.visa.conf", true},
    }};
}

std::vector<SearchPlace> searchPlaces(const SearchEnvironment& environment)
{
    std::vector<SearchPlace> places;
    bool isFound = false;
    for (const SearchPath& path : searchOrder(environment)) {
        SearchPlace place{path.place, path.path.value_or(std::string()), PlaceVerdict::Unset};
        if (path.path) {
            const bool isRelative = !place.path.empty() && place.path.front() != '/';
            place.verdict = verdictOf(isRelative && environment.workingFolder
                                          ? *environment.workingFolder + '/' + place.path
                                          : place.path);
            if (place.verdict == PlaceVerdict::Used && std::exchange(isFound, true)) {
                place.verdict = PlaceVerdict::Shadowed;
            }
        }
        places.push_back(std::move(place));
    }
    return places;
}

} // namespace QvVisa
