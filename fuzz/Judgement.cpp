// SPDX-License-Identifier: MIT
#include "fuzz/Judgement.h"

#include "tests/support/Files.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <locale>
#include <sstream>
#include <vector>

namespace {

constexpr std::string_view s_header = ":QvVisaConfigurationFileVersion01";

/// All that a save writes before the aliases.
std::string textBeforeAliases(const FileContents& contents)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << s_header << "\n:Provider=" << contents.provider << '\n';
    for (const auto& [port, properties] : contents.serial) {
        const auto line = [&text, number = port](const char* key, std::uint32_t value) {
            text << ":SerialProperty[DeviceNo=" << number << "]." << key << '=' << value << '\n';
        };
        line("Baudrate", properties.baudrate);
        line("DataBits", properties.dataBits);
        line("StopBits", properties.stopBits);
        line("Parity", properties.parity);
        line("FlowControl", properties.flowControl);
    }
    for (const std::string& resource : contents.resources) {
        text << resource << '\n';
    }
    return text.str();
}

std::vector<std::string> sortedLines(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1);
        lines.emplace_back(text.substr(0, end + 1));
        text.remove_prefix(end + 1);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

} // namespace

void reportFinding(const char* wrong, const std::string& details)
{
    std::cerr << "FINDING: " << wrong << '\n' << details << std::endl;
    std::abort();
}

bool isShortLine(std::string_view line)
{
    constexpr std::size_t longest = 200;
    return line.size() <= longest;
}

bool hasOnlyShortLines(std::string_view bytes)
{
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        if (!isShortLine(bytes.substr(0, end))) {
            return false;
        }
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    return true;
}

void requireSame(const FileContents& actual, const FileContents& expected, const char* wrong)
{
    if (!(actual == expected)) {
        std::ostringstream details;
        details << "got\n" << actual << "expected\n" << expected;
        reportFinding(wrong, details.str());
    }
}

bool beginsWithHeader(std::string_view bytes)
{
    return bytes.substr(0, bytes.find('\n')).substr(0, s_header.size()) == s_header;
}

void requireSaved(const std::string& bytes, const FileContents& contents, const char* wrong)
{
    const std::string start = textBeforeAliases(contents);
    std::string aliases;
    for (const auto& [alias, resource] : contents.aliases) {
        aliases.append(alias).append("=").append(resource).append("\n");
    }
    if (bytes.compare(0, start.size(), start) != 0 ||
        sortedLines(bytes.substr(start.size())) != sortedLines(aliases)) {
        reportFinding(wrong, "got\n" + bytes + "expected\n" + start + aliases);
    }
}

void FuzzedFile::write(std::string_view bytes) const
{
    support::writeFile(path(), bytes);
}

std::string FuzzedFile::read() const
{
    return support::readFile(path());
}
