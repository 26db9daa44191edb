// SPDX-License-Identifier: MIT
#include "document/Document.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

using QvVisa::Document;
using QvVisa::DocumentLine;
using QvVisa::LineKind;
using namespace std::string_view_literals;

namespace {

struct Row
{
    std::string_view text;
    std::vector<std::string_view> lines;
    bool lastHasLineFeed = true;
};

std::string joined(const Document& document)
{
    std::string text;
    for (std::size_t i = 0; i < document.size(); ++i) {
        const DocumentLine line = document.line(i);
        EXPECT_EQ(document.offset(i), text.size());
        text.append(line.text);
        text.append(line.hasLineFeed ? "\n" : "");
    }
    EXPECT_EQ(document.offset(document.size()), text.size());
    return text;
}

} // namespace

TEST(Document, SplitsAnyBytesIntoLinesAndLosesNone)
{
    const std::vector<Row> rows = {
        {"", {}},
        {"\n", {""}},
        {"\n\n", {"", ""}},
        {"a", {"a"}, false},
        {"a\n", {"a"}},
        {"a\nb", {"a", "b"}, false},
        {"a\r\nb\r\n", {"a\r", "b\r"}},
        {"a\rb\r", {"a\rb\r"}, false},
        {"a\0b\n\xFF\n"sv, {"a\0b"sv, "\xFF"sv}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.text));
        const Document document{std::string(row.text)};
        EXPECT_EQ(joined(document), row.text);
        ASSERT_EQ(document.size(), row.lines.size());
        for (std::size_t i = 0; i < row.lines.size(); ++i) {
            EXPECT_EQ(document.line(i).text, row.lines[i]);
            EXPECT_EQ(document.line(i).hasLineFeed,
                      row.lastHasLineFeed || i + 1 < row.lines.size());
        }
    }
}

TEST(Document, HeaderIsWhatTheFirstLineBeginsWith)
{
    const std::vector<std::pair<std::string_view, bool>> rows = {
        {":QvVisaConfigurationFileVersion01", true},
        {":QvVisaConfigurationFileVersion01\r\n", true},
        {":QvVisaConfigurationFileVersion01DMM=X\n", true},
        {":QvVisaConfigurationFileVersion0", false},
        {":qvvisaconfigurationfileversion01\n", false},
        {"\n:QvVisaConfigurationFileVersion01\n", false},
        {"\xEF\xBB\xBF:QvVisaConfigurationFileVersion01\n", false},
        {"", false},
    };
    for (const auto& [text, hasHeader] : rows) {
        EXPECT_EQ(Document{std::string(text)}.hasHeader(), hasHeader) << text;
    }
}

TEST(Document, LinesAreMatchedAsTheReaderMatchesThem)
{
    const Document document(":Provider=1\nDMM = GPIB0::1::INSTR \r\nGPIB0::2::INSTR\r\n# x");
    EXPECT_EQ(document.line(0).match.kind, LineKind::Provider);
    EXPECT_EQ(document.line(1).match.kind, LineKind::Alias);
    EXPECT_EQ(document.line(1).match.first, "DMM");
    EXPECT_EQ(document.line(1).match.second, "GPIB0::1::INSTR");
    EXPECT_EQ(document.line(2).match.first, "GPIB0::2::INSTR\r");
    EXPECT_EQ(document.line(3).match.kind, LineKind::None);
}

TEST(Document, CarriageReturnIsPartOfAnEndingOnlyBeforeALineFeed)
{
    const Document document("a\r\nb\nc\r");
    EXPECT_EQ(document.line(0).withoutCarriageReturn(), "a");
    EXPECT_EQ(document.line(1).withoutCarriageReturn(), "b");
    EXPECT_EQ(document.line(2).withoutCarriageReturn(), "c\r");
}

TEST(Document, ViewsStayValidWhenTheDocumentIsMoved)
{
    Document document("short");
    const std::string_view text = document.line(0).text;
    const Document moved = std::move(document);
    EXPECT_EQ(text.data(), moved.text().data());
}

TEST(Document, LastLineOfAKindIsFound)
{
    const Document document("A=1\nR\nB=2\nS\n# x\n");
    EXPECT_EQ(document.lastLine(LineKind::Alias), 2U);
    EXPECT_EQ(document.lastLine(LineKind::Resource), 3U);
    EXPECT_EQ(document.lastLine(LineKind::Provider), std::nullopt);
    EXPECT_EQ(document.lineText(4), "# x");
}
