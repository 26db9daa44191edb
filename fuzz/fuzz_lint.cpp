// SPDX-License-Identifier: MIT
// A whole file: judged and repaired.
//
// No ignored line that looks like an entry goes without a finding. What looks like one is judged
// here by regular expressions that know nothing of the linter: the shapes of the format's lines in
// any case, with white space wherever it separates words, and with or without the ':' of a setting.
// Lines that begin with a comment sign are not meant as entries, nor is what follows an unknown
// word after ':'.

#include "config/ConfigurationLine.h"
#include "fuzz/Judgement.h"
#include "lint/Linter.h"
#include "lint/Repair.h"

#include <algorithm>
#include <regex>
#include <set>

using QvVisa::Document;

namespace {

bool looksLikeEntry(const std::string& line)
{
    constexpr auto flags = std::regex::ECMAScript | std::regex::icase | std::regex::optimize;
    static const std::regex s_setting(
        R"(\s*:?\s*(serial|gpib)property\s*\[\s*deviceno\s*=[^\]]*\]\s*\.\s*\w+\s*=[^]*)", flags);
    static const std::regex s_provider(R"(\s*:?\s*provider\s*=\s*\d[^]*)", flags);
    static const std::regex s_alias(
        R"(\s*[^:#;=/\s][^=]*=\s*(gpib|tcpip|usb|asrl|vxi|pxi|qvib)\d*::[^]*)", flags);
    static const std::regex s_resource(R"(\s*(gpib|tcpip|usb|asrl|vxi|pxi|qvib)\d*::[^\s=]+\s*)",
                                       flags);
    return std::regex_match(line, s_setting) || std::regex_match(line, s_provider) ||
           std::regex_match(line, s_alias) || std::regex_match(line, s_resource);
}

void requireWellFormed(const Document& document, const std::vector<lint::Finding>& findings)
{
    for (const lint::Finding& finding : findings) {
        require(finding.line >= 1 && finding.line <= std::max<std::size_t>(document.size(), 1),
                "a finding about a line that does not exist");
        const std::size_t length =
            document.size() == 0 ? 0 : document.line(finding.line - 1).text.size();
        require(finding.column >= 1 && finding.column <= length + 1,
                "a finding about a column that does not exist");
        require(!finding.message.empty() && finding.message.size() < 1000 &&
                    std::none_of(finding.message.begin(), finding.message.end(),
                                 [](char c) { return static_cast<unsigned char>(c) < ' '; }),
                "a message that no terminal shows");
    }
}

void requireLookAlikesFound(const Document& document, const std::vector<lint::Finding>& findings)
{
    std::set<std::size_t> lines;
    for (const lint::Finding& finding : findings) {
        // These say nothing about why a line is ignored.
        if (finding.code != lint::FindingCode::CommentsDropped &&
            finding.code != lint::FindingCode::NoLastLineFeed) {
            lines.insert(finding.line);
        }
    }
    for (std::size_t index = 1; index < document.size(); ++index) {
        const QvVisa::DocumentLine line = document.line(index);
        if (line.match.kind == QvVisa::LineKind::None && hasOnlyShortLines(line.text) &&
            lines.count(index + 1) == 0 && looksLikeEntry(std::string(line.text))) {
            reportFinding("an ignored line that looks like an entry has no finding",
                          std::string(line.text));
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Document document{std::string(asText(data, size))};
    const std::vector<lint::Finding> findings = lint::findingsIn(document);
    requireWellFormed(document, findings);
    if (!document.hasHeader()) {
        require(findings.size() == 1, "a file that is not read has one finding");
    } else {
        requireLookAlikesFound(document, findings);
    }

    const Document repaired{lint::repaired(document)};
    for (const lint::Finding& finding : lint::findingsIn(repaired)) {
        require(!finding.isFixable(), "a fixable finding is left after the repair");
    }
    require(lint::repaired(repaired) == repaired.text(), "a second repair changes the file");
    const bool isClean =
        std::none_of(findings.begin(), findings.end(),
                     [](const lint::Finding& finding) { return finding.isFixable(); });
    require(!isClean || repaired.text() == document.text(),
            "a file without a fixable finding was changed");
    return 0;
}
