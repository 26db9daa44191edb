// SPDX-License-Identifier: MIT
#include "document/DocumentEditor.h"

#include "document/UnifiedDiff.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

using QvVisa::Document;
using QvVisa::DocumentEditor;
using QvVisa::EditedText;
using QvVisa::LineChange;

namespace {

using Change = std::tuple<std::size_t, std::optional<std::string>, std::optional<std::string>>;

std::vector<Change> changesOf(const EditedText& edited)
{
    std::vector<Change> changes;
    for (const LineChange& change : edited.changes) {
        changes.emplace_back(change.line, change.before, change.after);
    }
    return changes;
}

/// Twelve lines, edited at both ends and in the middle.
struct EditedTwelveLines
{
    Document document{"0\n1\n2\n3\n4\n5\n6\n7\n8\n9\r\nten=10\r\n11"};
    DocumentEditor editor{document};
    QvVisa::LinePlace inserted = editor.insertAfter(0, "a");
    QvVisa::LinePlace secondInserted = editor.insertAfter(0, "b=c");
    QvVisa::LinePlace removed = editor.remove(9);
    QvVisa::LinePlace replaced = editor.replace(10, document.line(10).match.second, "x");
    QvVisa::LinePlace appended = editor.insertAfter(11, "d=e");
    EditedText edited = editor.edit();
};

} // namespace

TEST(DocumentEditor, ChangesOnlyTheLinesItIsToldTo)
{
    const EditedTwelveLines lines;
    EXPECT_EQ(lines.edited.text, "0\na\nb=c\n1\n2\n3\n4\n5\n6\n7\n8\nten=x\r\n11\nd=e\r\n");
}

TEST(DocumentEditor, ListsChangesWithoutLineEndings)
{
    const EditedTwelveLines lines;
    const std::vector<Change> expected = {
        {2, std::nullopt, "a"},  {3, std::nullopt, "b=c"},  {10, "9\r", std::nullopt},
        {12, "ten=10", "ten=x"}, {14, std::nullopt, "d=e"},
    };
    EXPECT_EQ(changesOf(lines.edited), expected);
}

TEST(DocumentEditor, NumbersPlacesOfTheNewText)
{
    const EditedTwelveLines lines;
    EXPECT_EQ(lines.edited.lineNumber({0, 0}), 1U);
    EXPECT_EQ(lines.edited.lineNumber(lines.inserted), 2U);
    EXPECT_EQ(lines.edited.lineNumber(lines.secondInserted), 3U);
    EXPECT_EQ(lines.edited.lineNumber({1, 0}), 4U);
    EXPECT_EQ(lines.edited.lineNumber({8, 0}), 11U);
    EXPECT_EQ(lines.edited.lineNumber(lines.removed), 10U);
    EXPECT_EQ(lines.edited.lineNumber(lines.replaced), 12U);
    EXPECT_EQ(lines.edited.lineNumber(lines.appended), 14U);
    const Document document("a\n");
    EXPECT_EQ(DocumentEditor(document).edit().lineNumber({0, 0}), 1U);
}

TEST(DocumentEditor, WithoutChangesCopiesTheText)
{
    const Document document("a\nb");
    const EditedText edited = DocumentEditor(document).edit();
    EXPECT_EQ(edited.text, "a\nb");
    EXPECT_TRUE(edited.hunks.empty());
}

TEST(UnifiedDiff, PatchMakesTheNewTextOfTheOldOne)
{
    const EditedTwelveLines lines;
    const std::string diff =
        unifiedDiff(lines.document, Document(lines.edited.text), lines.edited.hunks, "old", "new");
    EXPECT_EQ(diff.substr(0, 38), "--- old\n+++ new\n@@ -1,4 +1,6 @@\n 0\n+a\n");
    const support::TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "old";
    support::writeFile(file, lines.document.text());
    support::writeFile(folder.path() / "diff", diff);
    const std::string command =
        "patch --binary -s '" + file.string() + "' '" + (folder.path() / "diff").string() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0) << diff; // NOLINT(concurrency-mt-unsafe)
    EXPECT_EQ(support::readFile(file), lines.edited.text);
}

TEST(UnifiedDiff, IsEmptyWithoutChanges)
{
    const Document document("a\n");
    EXPECT_EQ(unifiedDiff(document, document, {}, "a", "b"), "");
}
