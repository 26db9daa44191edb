// SPDX-License-Identifier: MIT
#include "doctor/Machine.h"

#include "config/Encoding.h"
#include "config/FileDescriptor.h"
#include "config/WholeFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <string_view>
#include <utility>

namespace QvVisa {

namespace {

/// Fills in what the machine says of its file.
void readFile(Machine& machine)
{
    struct stat status = {};
    if (::stat(machine.file.c_str(), &status) != 0) {
        machine.readError = errno;
        return;
    }
    machine.isRegularFile = S_ISREG(status.st_mode);
    if (!machine.isRegularFile) {
        machine.readError = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        return;
    }
    if (status.st_size > maxFileSize) {
        machine.readError = EFBIG;
        return;
    }
    const FileDescriptor file = FileDescriptor::openForReading(machine.file);
    std::optional<std::string> text = file.isOpen() ? readWholeFile(file.get()) : std::nullopt;
    if (text) {
        machine.document.emplace(*std::move(text));
    } else {
        machine.readError = errno;
    }
}

} // namespace

std::string shellWord(const std::string& path)
{
    constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                       "0123456789/._-+,:@%";
    if (!path.empty() && path.find_first_not_of(plain) == std::string::npos) {
        return path;
    }
    std::string word = "'";
    for (const char c : path) {
        word += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return pathToUtf8(word + '\'');
}

std::string Machine::command(const std::string& arguments) const
{
    return "qvvisa " + (fileOption ? "-f " + shellWord(*fileOption) + ' ' : std::string()) +
           arguments;
}

Machine examineMachine(const std::optional<std::string>& fileOption, const std::string& root)
{
    Machine machine;
    machine.environment = searchEnvironment();
    machine.fileOption = fileOption;
    machine.now = std::time(nullptr);
    machine.files = visa::SystemFiles(root);
    if (fileOption) {
        machine.file = *fileOption;
    } else {
        const std::vector<SearchPlace> places = searchPlaces(machine.environment);
        const auto used = std::find_if(places.begin(), places.end(), [](const auto& place) {
            return place.verdict == PlaceVerdict::Used;
        });
        machine.file = used != places.end() ? used->path : std::string();
    }
    if (!machine.file.empty()) {
        readFile(machine);
    }
    return machine;
}

} // namespace QvVisa
