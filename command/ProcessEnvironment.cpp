// SPDX-License-Identifier: MIT
#include "command/ProcessEnvironment.h"

#include "command/ExitCode.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

namespace QvVisa {

namespace {

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

} // namespace

SearchEnvironment searchEnvironmentOf(const std::string& pid)
{
    const bool isNumber = !pid.empty() && pid.find_first_not_of("0123456789") == std::string::npos;
    const std::filesystem::path folder = std::filesystem::path("/proc") / pid;
    std::error_code error;
    if (!isNumber || !std::filesystem::is_directory(folder, error)) {
        throw CommandError(ExitCode::WrongUsage, "there is no process " + pid);
    }
    std::ifstream file(folder / "environ", std::ios::binary);
    const std::string environment{std::istreambuf_iterator<char>(file),
                                  std::istreambuf_iterator<char>()};
    if (!file) {
        throw CommandError(ExitCode::WrongUsage,
                           "the environment of process " + pid + " cannot be read");
    }
    SearchEnvironment found;
    found.configurationFile = valueOf(environment, "QVVISACONFFILE");
    found.home = valueOf(environment, "HOME");
    const std::filesystem::path workingFolder =
        std::filesystem::read_symlink(folder / "cwd", error);
    if (!error) {
        found.workingFolder = workingFolder.string();
    }
    return found;
}

} // namespace QvVisa
