// SPDX-License-Identifier: MIT
#include "command/EntryCheck.h"

#include "config/Encoding.h"
#include "config/ModernConfigurationFile.h"
#include "document/EntryEdits.h"
#include "lint/Linter.h"

#include <string_view>

namespace QvVisa {

namespace {

[[noreturn]] void refuse(const std::string& text, const std::string& reason)
{
    throw CommandError(ExitCode::WrongUsage, '"' + latin1ToUtf8(text) + "\" " + reason);
}

/// Throws for the first error unless isForced, prints warnings. The prefix names the place.
void judge(Output& output, std::string_view line, const std::string& prefix, bool isForced)
{
    for (const lint::Finding& finding : lint::findingsInLine(line)) {
        const std::string text =
            prefix + latin1ToUtf8(finding.message) + " [" + lint::codeName(finding.code) + ']';
        if (finding.severity == lint::Severity::Error && !isForced) {
            throw CommandError(ExitCode::WrongUsage, text + " (--force accepts it)");
        }
        if (finding.severity != lint::Severity::Note) {
            output.message(Severity::Warning, text);
        }
    }
}

void requireAliasName(const std::string& name)
{
    if (!isAlias(name, "X")) {
        refuse(name, "cannot be an alias: a name is not empty, has no white space and no =, and "
                     "does not begin with # or :");
    }
}

} // namespace

void checkAliasName(Output& output, const std::string& name, bool isForced)
{
    requireAliasName(name);
    // With a resource string that nothing can be said against.
    judge(output, name + "=GPIB0::1::INSTR", {}, isForced);
}

void checkAlias(Output& output, const std::string& name, const std::string& resource, bool isForced)
{
    requireAliasName(name);
    if (!isAlias(name, resource)) {
        refuse(resource, "cannot be an alias's resource string: it must not be empty or have "
                         "white space");
    }
    judge(output, std::string(name).append("=").append(resource), {}, isForced);
}

void checkResource(Output& output, const std::string& resource, bool isForced)
{
    if (!isPlainResource(resource)) {
        refuse(resource, "cannot be a resource: it is not empty, has no = and no line feed, and "
                         "does not begin with #, : or white space");
    }
    judge(output, resource, {}, isForced);
}

void checkLines(Output& output, const Document& lines, const std::string& name, bool isForced)
{
    const std::string header = ModernConfigurationFile::GetVersionString();
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const std::string_view text = lines.line(index).text;
        if (text.substr(0, header.size()) != header) {
            judge(output, text, name + ':' + std::to_string(index + 1) + ": ", isForced);
        }
    }
}

} // namespace QvVisa
