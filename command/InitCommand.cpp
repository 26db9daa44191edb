// SPDX-License-Identifier: MIT
#include "command/Commands.h"

#include "command/CommandLine.h"
#include "config/Encoding.h"
#include "config/FileDescriptor.h"
#include "config/ModernConfigurationFile.h"
#include "config/SearchPlaces.h"

#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <system_error>

namespace QvVisa {

namespace {

std::string pathToCreate(const CommandContext& context, const std::string& argument)
{
    if (context.file && !argument.empty() && *context.file != argument) {
        throw CommandError(ExitCode::WrongUsage, "-f and the argument name different files");
    }
    std::string named = argument.empty() ? context.file.value_or(std::string()) : argument;
    if (named == "-") {
        throw CommandError(ExitCode::WrongUsage, "init creates a file; - is none");
    }
    if (!named.empty()) {
        return named;
    }
    const SearchEnvironment environment = searchEnvironment();
    if (environment.configurationFile && !environment.configurationFile->empty()) {
        return *environment.configurationFile;
    }
    if (environment.home && !environment.home->empty()) {
        return *environment.home + "/.quorvane/visa.conf";
    }
    throw CommandError(ExitCode::WrongUsage, "HOME is not set; name the file to create");
}

[[noreturn]] void fail(const std::string& path, int error)
{
    throw CommandError(error == EEXIST ? ExitCode::WrongUsage : ExitCode::NotWritten,
                       pathToUtf8(path) + ": " + std::generic_category().message(error));
}

/// O_EXCL: an existing file, and a link to nowhere, stay as they are.
void createFile(const std::string& path, const std::string& text)
{
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    std::error_code error;
    if (!folder.empty() && !std::filesystem::is_directory(folder, error) &&
        !std::filesystem::create_directories(folder, error) && error) {
        fail(folder.string(), error.value() == EEXIST ? ENOTDIR : error.value());
    }
    const FileDescriptor file(uninterrupted(
        [&path] { return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666); }));
    if (!file.isOpen()) {
        fail(path, errno);
    }
    if (!writeFully(file.get(), text) || !flushToDisk(file.get())) {
        const int reason = errno;
        ::unlink(path.c_str());
        fail(path, reason);
    }
}

ExitCode runInit(CommandContext& context, const std::string& argument)
{
    const std::string path = pathToCreate(context, argument);
    const std::string header = ModernConfigurationFile::GetVersionString();
    createFile(path, header + '\n');
    const std::string name = pathToUtf8(path);
    if (context.output.isJson()) {
        Json line;
        line["line"] = 1;
        line["before"] = nullptr;
        line["after"] = header;
        Json object;
        object["schema"] = "qvvisa-edit/1";
        object["file"] = name;
        object["changed"] = true;
        object["lines"] = {std::move(line)};
        object["backup"] = nullptr;
        context.output.json(object);
    } else {
        context.output.progress(printable("changed: " + name + ":1: " + header));
    }
    return ExitCode::Done;
}

} // namespace

void addInitCommand(CommandLine& line)
{
    auto file = std::make_shared<std::string>();
    CommandOptions command =
        line.addCommand("init", "Create a file that has the header line and no entries",
                        [file](CommandContext& context) { return runInit(context, *file); });
    command.addOption("FILE", *file, "Default: $QVVISACONFFILE, else ~/.quorvane/visa.conf");
}

} // namespace QvVisa
