// SPDX-License-Identifier: MIT
#include "config/ProcessEnvironment.h"

#include "config/FileDescriptor.h"
#include "config/WholeFile.h"

#include <fcntl.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace QvVisa {

namespace {

namespace fs = std::filesystem;

/// The program's name as the kernel keeps it: all of its 15 characters.
constexpr std::string_view s_windowProgram = "QvVisaConfigure";

std::optional<std::string> valueOf(std::string_view environment, std::string_view name)
{
    while (!environment.empty()) {
        const std::string_view entry = environment.substr(0, environment.find('\0'));
        if (entry.size() > name.size() && entry.substr(0, name.size()) == name &&
            entry[name.size()] == '=') {
            return std::string(entry.substr(name.size() + 1));
        }
        environment.remove_prefix(std::min(entry.size() + 1, environment.size()));
    }
    return std::nullopt;
}

/// A process may end at any moment: reading its files then fails.
std::optional<std::string> contentsOf(const fs::path& path)
{
    const FileDescriptor file(
        uninterrupted([&path] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC); }));
    return file.isOpen() ? readWholeFile(file.get()) : std::nullopt;
}

bool isNumber(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

bool edits(const std::string& pid, const std::string& path)
{
    const auto environment = searchEnvironmentOf(pid);
    if (!environment) {
        return false;
    }
    for (const SearchPlace& place : searchPlaces(*environment)) {
        if (place.verdict == PlaceVerdict::Used) {
            const bool isRelative = place.path.front() != '/' && environment->workingFolder;
            std::error_code error;
            return fs::equivalent(isRelative ? *environment->workingFolder + '/' + place.path
                                             : place.path,
                                  path, error);
        }
    }
    return false;
}

} // namespace

std::optional<SearchEnvironment> searchEnvironmentOf(const std::string& pid)
{
    const fs::path folder = fs::path("/proc") / pid;
    const auto environment = isNumber(pid) ? contentsOf(folder / "environ") : std::nullopt;
    if (!environment) {
        return std::nullopt;
    }
    SearchEnvironment found;
    found.configurationFile = valueOf(*environment, "QVVISACONFFILE");
    found.home = valueOf(*environment, "HOME");
    std::error_code error;
    const fs::path workingFolder = fs::read_symlink(folder / "cwd", error);
    if (!error) {
        found.workingFolder = workingFolder.string();
    }
    return found;
}

std::vector<std::string> windowsEditing(const std::string& path)
{
    std::vector<std::string> windows;
    std::error_code error;
    for (fs::directory_iterator entry("/proc", error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string pid = entry->path().filename().string();
        if (!isNumber(pid)) {
            continue;
        }
        const auto name = contentsOf(entry->path() / "comm");
        if (name == std::string(s_windowProgram) + '\n' && edits(pid, path)) {
            windows.push_back(pid);
        }
    }
    return windows;
}

} // namespace QvVisa
