// SPDX-License-Identifier: MIT
// docs/file-format.md: its examples and its traps are read and written as it says.
#include "config/ModernConfigurationFile.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

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

/// What a file of these bytes holds, and how it looks after a save.
class Reading
{
public:
    explicit Reading(const std::string& bytes)
    {
        const std::string path = m_folder.path() / "visa.conf";
        support::writeFile(path, bytes);
        isAccepted = QvVisa::ModernConfigurationFile::isParseAble(path);
        QvVisa::ModernConfigurationFile file(path);
        file.parse(aliases, resources, provider);
        ports = file.getSerialPropertiesMap();
        boards = file.getGpibPropertiesMap();
        file.save();
        saved = support::readFile(path);
    }

    bool isAccepted = false;
    std::unordered_map<std::string, std::string> aliases;
    std::vector<std::string> resources;
    unsigned short provider = 0;
    QvVisa::SerialPropertiesMap ports;
    QvVisa::GpibPropertiesMap boards;
    std::string saved;

private:
    support::TemporaryFolder m_folder;
};

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

/// The one thing that a line is read as, in the page's words.
std::string told(const Reading& reading)
{
    std::string text;
    for (const std::string& resource : reading.resources) {
        text += "the resource `" + resource + '`';
    }
    for (const auto& [alias, resource] : reading.aliases) {
        text.append("the alias `").append(alias).append("` for `").append(resource) += '`';
    }
    if (reading.provider != QvVisa::defaultProvider) {
        text += "the provider " + std::to_string(reading.provider);
    }
    const QvVisa::SSerialProperties defaults;
    for (const auto& [port, properties] : reading.ports) {
        text += "port " + std::to_string(port) + " with ";
        if (properties.dataBits != defaults.dataBits) {
            text += std::to_string(properties.dataBits) + " data bits";
        }
        if (properties.stopBits != defaults.stopBits) {
            text += "stop bits " + std::to_string(properties.stopBits);
        }
    }
    return text.empty() ? "nothing" : text;
}

} // namespace

TEST(FileFormatPage, ItsFirstExampleIsWhatASaveWrites)
{
    const auto texts = examples();
    ASSERT_EQ(texts.size(), 4U);
    EXPECT_EQ(Reading(texts[0]).saved, texts[0]);
}

TEST(FileFormatPage, ItsSecondExampleMeansTheSameAndABoard)
{
    const auto texts = examples();
    ASSERT_EQ(texts.size(), 4U);
    const Reading written(texts[0]);
    const Reading byHand(texts[1]);
    EXPECT_TRUE(byHand.isAccepted);
    EXPECT_EQ(byHand.saved, written.saved);
    EXPECT_TRUE(written.boards.empty());
    EXPECT_EQ(byHand.boards.size(), 1U);
}

TEST(FileFormatPage, ItsExampleOfASaveIsOne)
{
    const auto texts = examples();
    ASSERT_EQ(texts.size(), 4U);
    EXPECT_TRUE(Reading(texts[2]).isAccepted);
    EXPECT_EQ(Reading(texts[2]).saved, texts[3]);
}

TEST(FileFormatPage, EachTrapIsOne)
{
    std::istringstream lines(page().substr(page().find("\n## Traps")));
    int traps = 0;
    for (std::string row; std::getline(lines, row);) {
        if (row.compare(0, 3, "| `") != 0) {
            continue;
        }
        SCOPED_TRACE(row);
        ++traps;
        row = replaced(replaced(row, "␣", " "), "␍", "\r");
        const auto end = row.find("` | ");
        const auto last = row.find(" | ", end + 4);
        ASSERT_NE(last, std::string::npos);
        const std::string line = row.substr(3, end - 3);
        const std::string header = QvVisa::ModernConfigurationFile::GetVersionString() + '\n';
        EXPECT_EQ(told(Reading(header + line + '\n')), row.substr(end + 4, last - end - 4));
    }
    EXPECT_EQ(traps, 22);
}

TEST(FileFormatPage, TrapsOfTheWholeFile)
{
    const std::string header = QvVisa::ModernConfigurationFile::GetVersionString();
    EXPECT_FALSE(Reading("\xEF\xBB\xBF" + header + "\nASRL1::INSTR\n").isAccepted);
    EXPECT_FALSE(Reading('\n' + header + "\nASRL1::INSTR\n").isAccepted);
    EXPECT_EQ(told(Reading(header + "\rASRL1::INSTR\rDMM=ASRL2::INSTR\r")), "nothing");
    EXPECT_EQ(told(Reading(header + "\n\xC3\xA4\n")), "the resource `\xC3\xA4`");
}
