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

std::vector<SearchPlace> searchPlaces(const SearchEnvironment& environment)
{
    std::vector<SearchPlace> places;
    bool isFound = false;
    const auto add = [&](const char* place, const std::optional<std::string>& path,
                         const std::string& seenFromHere) {
        SearchPlace added{place, path.value_or(std::string()), PlaceVerdict::Unset};
        if (path) {
            added.verdict = verdictOf(seenFromHere);
            if (added.verdict == PlaceVerdict::Used && std::exchange(isFound, true)) {
                added.verdict = PlaceVerdict::Shadowed;
            }
        }
        places.push_back(std::move(added));
    };
    const auto append = [](const std::optional<std::string>& folder, const char* name) {
        return folder ? std::optional<std::string>(*folder + name) : std::nullopt;
    };
    const std::string file = environment.configurationFile.value_or(std::string());
    const bool isRelative = !file.empty() && file.front() != '/' && environment.workingFolder;
    add("QVVISACONFFILE", environment.configurationFile,
        isRelative ? *environment.workingFolder + '/' + file : file);
    const auto inFolder = append(environment.workingFolder, "/visa.conf");
    add("working folder", inFolder, inFolder.value_or(std::string()));
    const auto inHome = append(environment.home, "/.quorvane/visa.conf");
    add("HOME", inHome, inHome.value_or(std::string()));
    const std::string systemWide = "/Library/Preferences/com.quorvane.visa.conf";
    add("system-wide", systemWide, systemWide);
    return places;
}

} // namespace QvVisa
