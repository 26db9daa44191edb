// SPDX-License-Identifier: MIT
// docs/lint.md against the table of codes and the linter.

#include "lint/Linter.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Row
{
    std::string code;
    std::string severity;
    std::string example;
    std::string remedy;
};

std::vector<std::string> cellsOf(const std::string& line)
{
    std::vector<std::string> cells;
    std::size_t begin = 2;
    for (std::size_t end = line.find(" | ", begin); end != std::string::npos;
         end = line.find(" | ", begin)) {
        cells.push_back(line.substr(begin, end - begin));
        begin = end + 3;
    }
    cells.push_back(line.substr(begin, line.size() - 2 - begin));
    return cells;
}

std::vector<Row> rowsOfPage()
{
    std::istringstream page(
        support::readFile(std::filesystem::path(QVVISA_SOURCE_FOLDER) / "docs" / "lint.md"));
    std::vector<Row> rows;
    for (std::string line; std::getline(page, line);) {
        if (line.rfind("| V", 0) == 0) {
            const std::vector<std::string> cells = cellsOf(line);
            if (cells.size() == 5) {
                rows.push_back({cells[0], cells[1], cells[2], cells[4]});
            } else {
                ADD_FAILURE() << line << " does not have five cells";
            }
        }
    }
    return rows;
}

void replaceAll(std::string& text, const std::string& what, const std::string& with)
{
    for (std::size_t at = text.find(what); at != std::string::npos;
         at = text.find(what, at + with.size())) {
        text.replace(at, what.size(), with);
    }
}

/// The file that an example means, in Latin-1.
std::string fileOf(const Row& row)
{
    std::string text = row.example.substr(1, row.example.size() - 2) + '\n';
    replaceAll(text, "␣", " ");
    replaceAll(text, "␍", "\r");
    replaceAll(text, "␀", std::string(1, '\0'));
    replaceAll(text, "⏎", "\n");
    replaceAll(text, "Ä", "\xC4");
    replaceAll(text, "ü", "\xFC");
    replaceAll(text, "<no line feed>\n", "");
    replaceAll(text, "<byte-order mark>", "\xEF\xBB\xBF");
    replaceAll(text, "<UTF-16 mark>", "\xFF\xFE");
    replaceAll(text, "<230 letters>", std::string(230, 'h'));
    return row.code < "V008" ? text : ":QvVisaConfigurationFileVersion01\n" + text;
}

TEST(LintPage, ListsEachCodeWithItsSeverityAndRemedy)
{
    const std::vector<Row> rows = rowsOfPage();
    const std::vector<lint::FindingKind>& kinds = lint::findingKinds();
    ASSERT_EQ(rows.size(), kinds.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(rows[i].code);
        EXPECT_EQ(rows[i].code, lint::codeName(kinds[i].code));
        EXPECT_EQ(rows[i].severity, std::string(lint::severityName(kinds[i].severity)) +
                                        (kinds[i].isFixable ? " F" : ""));
        EXPECT_EQ(rows[i].remedy, kinds[i].remedy);
    }
}

TEST(LintPage, EachExampleGivesItsCode)
{
    for (const Row& row : rowsOfPage()) {
        std::set<std::string> codes;
        for (const lint::Finding& finding : lint::findingsIn(QvVisa::Document(fileOf(row)))) {
            codes.insert(lint::codeName(finding.code));
        }
        EXPECT_EQ(codes.count(row.code), 1U) << row.code << ' ' << row.example;
    }
}

/// The blocks of file contents on the page about the format.
std::vector<std::string> examplesOfFormat()
{
    const std::string page =
        support::readFile(std::filesystem::path(QVVISA_SOURCE_FOLDER) / "docs" / "file-format.md");
    const std::string begin = "```conf\n";
    std::vector<std::string> examples;
    for (std::size_t at = page.find(begin); at != std::string::npos; at = page.find(begin, at)) {
        at += begin.size();
        examples.push_back(page.substr(at, page.find("```", at) - at));
    }
    return examples;
}

TEST(FormatPage, HasNoErrorAndNoWarningInItsWellFormedExamples)
{
    std::size_t judged = 0;
    for (const std::string& example : examplesOfFormat()) {
        // One file is there to show what goes wrong, with what a save makes of it.
        if (example.find("; what is on the bench") != std::string::npos) {
            continue;
        }
        ++judged;
        for (const lint::Finding& finding : lint::findingsIn(QvVisa::Document(example))) {
            EXPECT_EQ(finding.severity, lint::Severity::Note) << example << finding.message;
        }
    }
    EXPECT_GE(judged, 2U);
}

class WellFormedFile : public testing::TestWithParam<const char*>
{};

TEST_P(WellFormedFile, HasNoErrorAndNoWarning)
{
    const std::filesystem::path path = std::filesystem::path(QVVISA_SOURCE_FOLDER) / GetParam();
    for (const lint::Finding& finding :
         lint::findingsIn(QvVisa::Document(support::readFile(path)))) {
        EXPECT_EQ(finding.severity, lint::Severity::Note)
            << path << ':' << finding.line << ": " << finding.message;
    }
}

std::string caseName(const testing::TestParamInfo<const char*>& row)
{
    std::string name = row.param;
    std::replace_if(
        name.begin(), name.end(),
        [](char c) { return (c < 'a' || c > 'z') && (c < 'A' || c > 'Z'); }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(
    Lint, WellFormedFile,
    testing::Values("tools/demo/visa.conf", "tests/config/format/specimens/hand-written.conf",
                    "tests/config/format/specimens/header-only.conf",
                    "tests/config/format/specimens/header-without-line-feed.conf",
                    "tests/config/format/specimens/no-last-line-feed.conf"),
    caseName);

} // namespace
