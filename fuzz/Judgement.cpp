// SPDX-License-Identifier: MIT
#include "fuzz/Judgement.h"

#include "tests/support/OracleReader.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <vector>

namespace {

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> sorted(std::vector<std::string> lines)
{
    std::sort(lines.begin(), lines.end());
    return lines;
}

} // namespace

void reportFinding(const char* finding, const std::string& details)
{
    std::cerr << "FINDING: " << finding << '\n' << details << std::endl;
    std::abort();
}

bool hasOnlyShortLines(std::string_view bytes)
{
    constexpr std::size_t longest = 200;
    const std::vector<std::string> lines = linesOf(std::string(bytes));
    return std::all_of(lines.begin(), lines.end(),
                       [](const std::string& line) { return line.size() <= longest; });
}

void requireSame(const FileContents& actual, const FileContents& expected, const char* finding)
{
    if (!(actual == expected)) {
        std::ostringstream details;
        details << "got\n" << actual << "expected\n" << expected;
        reportFinding(finding, details.str());
    }
}

void requireSaved(const std::string& bytes, const FileContents& contents, const char* finding)
{
    const std::string start = expectedStart(contents);
    const std::string aliases = expectedAliases(contents);
    if (bytes.compare(0, start.size(), start) != 0 ||
        sorted(linesOf(bytes.substr(start.size()))) != sorted(linesOf(aliases))) {
        reportFinding(finding, "got\n" + bytes + "expected\n" + start + aliases);
    }
}
