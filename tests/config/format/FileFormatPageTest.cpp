// SPDX-License-Identifier: MIT
// The examples and the table of traps in docs/file-format.md are true.

#include "config/ModernConfigurationFile.h"
#include "tests/support/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::string page()
{
    return support::readFile(std::string(QVVISA_SOURCE_FOLDER) + "/docs/file-format.md");
}

/// The texts between ```conf and ```.
std::vector<std::string> examples()
{
    std::vector<std::string> found;
    std::istringstream lines(page());
    bool isInside = false;
    for (std::string line; std::getline(lines, line);) {
        if (line == "```conf") {
            found.emplace_back();
            isInside = true;
        } else if (line == "```") {
            isInside = false;
        } else if (isInside) {
            found.back() += line + '\n';
        }
    }
    return found;
}

/// A file of these bytes: whether it is accepted, its contents, and its bytes after a save.
struct Reading
{
    explicit Reading(const std::string& bytes)
    {
        const support::TemporaryFolder folder;
        const std::string path = folder.path() / "visa.conf";
        support::writeFile(path, bytes);
        isAccepted = QvVisa::ModernConfigurationFile::isParseAble(path);
        contents = readWithModernConfigurationFile(path);
        QvVisa::ModernConfigurationFile::write(path, contents.aliases, contents.resources,
                                               contents.serial, contents.provider);
        saved = support::readFile(path);
    }

    bool isAccepted = false;
    FileContents contents;
    std::string saved;
};

/// What a line is read as, in the words of the table.
std::string described(const FileContents& contents)
{
    std::string text;
    for (const std::string& resource : contents.resources) {
        text += "the resource `" + resource + '`';
    }
    for (const auto& [alias, resource] : contents.aliases) {
        text.append("the alias `").append(alias).append("` for `").append(resource) += '`';
    }
    if (contents.provider != QvVisa::defaultProvider) {
        text += "the provider " + std::to_string(contents.provider);
    }
    for (const auto& [port, properties] : contents.serial) {
        text += "port " + std::to_string(port) + " with ";
        text += properties.dataBits != 8 ? std::to_string(properties.dataBits) + " data bits"
                                         : "stop bits " + std::to_string(properties.stopBits);
    }
    return text.empty() ? "nothing" : text;
}

} // namespace

TEST(FileFormatPage, ExamplesAreReadAndSavedAsDescribed)
{
    const std::vector<std::string> texts = examples();
    ASSERT_EQ(texts.size(), 4U);
    const Reading written(texts[0]);
    EXPECT_EQ(written.saved, texts[0]);
    EXPECT_TRUE(written.contents.gpib.empty());
    const Reading byHand(texts[1]);
    EXPECT_TRUE(byHand.isAccepted);
    EXPECT_EQ(byHand.saved, written.saved);
    EXPECT_EQ(byHand.contents.gpib.size(), 1U);
    EXPECT_TRUE(Reading(texts[2]).isAccepted);
    EXPECT_EQ(Reading(texts[2]).saved, texts[3]);
}

TEST(FileFormatPage, LinesAreReadAsTheTableOfTrapsSays)
{
    const std::string header = QvVisa::ModernConfigurationFile::GetVersionString() + '\n';
    const std::regex row("\\| `(.*?)` \\| (.*) \\| .* \\|");
    std::istringstream lines(page().substr(page().find("\n## Traps")));
    int traps = 0;
    for (std::string text; std::getline(lines, text);) {
        text = std::regex_replace(text, std::regex("␣"), " ");
        text = std::regex_replace(text, std::regex("␍"), "\r");
        std::smatch match;
        if (std::regex_match(text, match, row)) {
            ++traps;
            EXPECT_EQ(described(Reading(header + match.str(1) + '\n').contents), match.str(2))
                << text;
        }
    }
    EXPECT_GE(traps, 20);
}
