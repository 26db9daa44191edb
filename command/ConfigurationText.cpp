// SPDX-License-Identifier: MIT
#include "command/ConfigurationText.h"

#include "config/ConfigurationFile.h"
#include "config/Encoding.h"
#include "config/FileDescriptor.h"
#include "config/WholeFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <istream>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

namespace QvVisa {

namespace {

CommandError readError(const std::string& path, const std::string& reason)
{
    return {ExitCode::NoFile, pathToUtf8(path) + ": " + reason};
}

std::string reasonOf(int error)
{
    return std::generic_category().message(error);
}

} // namespace

std::string configurationPath(const CommandContext& context)
{
    if (context.file) {
        return *context.file;
    }
    std::string path = ConfigurationFile::searchConfigFile(false);
    if (path.empty()) {
        throw CommandError(ExitCode::NoFile, "no configuration file was found (qvvisa where lists "
                                             "the places, qvvisa init creates a file)");
    }
    return path;
}

std::string readWholeFile(const std::string& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
        throw readError(path, reasonOf(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        throw readError(path, "not a regular file");
    }
    const FileDescriptor file = FileDescriptor::openForReading(path);
    std::optional<std::string> text = file.isOpen() ? readWholeFile(file.get()) : std::nullopt;
    if (!text) {
        throw readError(path, reasonOf(errno));
    }
    return *std::move(text);
}

std::string readStandardInput(CommandContext& context)
{
    std::string text{std::istreambuf_iterator<char>(context.in), std::istreambuf_iterator<char>()};
    if (context.in.bad()) {
        throw readError("standard input", "cannot be read");
    }
    return text;
}

void requireHeader(const Document& document, const std::string& name)
{
    if (!document.hasHeader()) {
        throw CommandError(ExitCode::NoFile,
                           name + ": the first line is not the version header "
                                  ":QvVisaConfigurationFileVersion01, so nothing in it is read");
    }
}

ConfigurationText readConfiguration(CommandContext& context)
{
    const std::string path = configurationPath(context);
    const bool isStandardInput = path == "-";
    ConfigurationText text{
        isStandardInput ? "standard input" : pathToUtf8(path),
        Document(isStandardInput ? readStandardInput(context) : readWholeFile(path))};
    requireHeader(text.document, text.name);
    return text;
}

std::string argumentToLatin1(const std::string& argument)
{
    std::optional<std::string> bytes = utf8ToLatin1(argument);
    if (!bytes) {
        throw CommandError(ExitCode::WrongUsage,
                           isUtf8(argument)
                               ? "\"" + argument + "\" has a character that Latin-1 lacks"
                               : "an argument is not valid UTF-8");
    }
    return *std::move(bytes);
}

} // namespace QvVisa
