// SPDX-License-Identifier: MIT
#include "document/Difference.h"

#include "config/ModernConfigurationFile.h"
#include "document/LineMatches.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <ostream>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

using QvVisa::Document;
using QvVisa::Meaning;

namespace {

const std::string s_header = ":QvVisaConfigurationFileVersion01\n";

struct Case
{
    const char* name;
    const char* before;
    const char* after;
    const char* lines;

    friend void PrintTo(const Case& difference, std::ostream* out) { *out << difference.name; }
};

class Differences : public testing::TestWithParam<Case>
{};

TEST_P(Differences, AreThoseOfTheMeaning)
{
    std::string lines;
    for (const QvVisa::Difference& difference :
         QvVisa::differences(Meaning(Document(s_header + GetParam().before)),
                             Meaning(Document(s_header + GetParam().after)))) {
        lines += QvVisa::differenceLines(difference);
    }
    EXPECT_EQ(lines, GetParam().lines);
}

const Case s_cases[] = {
    {"NoneForCommentsOrderAndSpacing", "# x\nA=1\nR\nS\n", "S\nR\n a=9\na = 1\r\n", ""},
    {"AliasChanged", "A=1\n", "A=2\n", "-A=1\n+A=2\n"},
    {"AliasAddedAndRemoved", "A=1\n", "B=1\n", "-A=1\n+B=1\n"},
    {"LastLineOfANameCounts", "A=1\nA=2\n", "A=2\n", ""},
    {"ResourceListedTwice", "R\nR\nS\n", "R\nT\n", "-R\n-S\n+T\n"},
    {"ResourceWithWhiteSpace", "R\n", "R \n", "-R\n+R \n"},
    {"DefaultProviderIsWritten", "", ":Provider=3674\n", ""},
    {"Provider", "", ":Provider=1\n", "-:Provider=3674\n+:Provider=1\n"},
    {"SettingChanged", ":SerialProperty[DeviceNo=1].Parity=1\n",
     ":SerialProperty[DeviceNo=1].Parity=2\n",
     "-:SerialProperty[DeviceNo=1].Parity=1\n+:SerialProperty[DeviceNo=1].Parity=2\n"},
    {"DeviceWithDefaultsAdded", "", ":GPIBProperty[DeviceNo=2].PrimaryAddress=0\n",
     "+:GPIBProperty[DeviceNo=2].PrimaryAddress=0\n"
     "+:GPIBProperty[DeviceNo=2].SecondaryAddress=65535\n"
     "+:GPIBProperty[DeviceNo=2].SystemController=1\n"},
    {"CutNumbersAreEqual", ":SerialProperty[DeviceNo=65537].DataBits=263\n",
     ":SerialProperty[DeviceNo=1].DataBits=7\n", ""},
};

std::string caseName(const testing::TestParamInfo<Case>& row)
{
    return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(Document, Differences, testing::ValuesIn(s_cases), caseName);

TEST(WindowSave, LosesWhatTheSavedFileDoesNotHave)
{
    const Document document(s_header + "# x\n:SerialProperty[DeviceNo=1].Parity=2\n\nb = 1\nA=1\n"
                                       ":GPIBProperty[DeviceNo=1].PrimaryAddress=2\nR\nA=1\n");
    const QvVisa::WindowSave save(document);
    EXPECT_EQ(save.lost, (std::vector<std::size_t>{1, 3, 4, 6, 8}));
    EXPECT_EQ(save.added, (std::vector<std::string>{
                              ":Provider=3674", ":SerialProperty[DeviceNo=1].Baudrate=9600",
                              ":SerialProperty[DeviceNo=1].DataBits=8",
                              ":SerialProperty[DeviceNo=1].StopBits=0",
                              ":SerialProperty[DeviceNo=1].FlowControl=0", "B=1"}));
}

// The store's own save is the judge.
TEST(WindowSave, LeavesTheLinesOfAFileThatTheStoreSaves)
{
    const std::string text = s_header + "b = 1\r\nA=1\nR\nR\nS\r\n;x\n#x\na=2\n"
                                        ":GPIBProperty[DeviceNo=1].PrimaryAddress=2\n"
                                        ":SerialProperty[DeviceNo=1].Parity=2\n:Provider=7\n";
    const support::TemporaryFolder folder;
    const std::string path = (folder.path() / "visa.conf").string();
    support::writeFile(path, text);
    QvVisa::ModernConfigurationFile file(path);
    std::unordered_map<std::string, std::string> aliases;
    std::vector<std::string> resources;
    unsigned short provider = 0;
    file.parse(aliases, resources, provider);
    file.save();
    const Document saved(support::readFile(path));
    const Document document(text);
    const QvVisa::WindowSave save(document);

    std::vector<std::string> expected;
    for (std::size_t index = 0; index < saved.size(); ++index) {
        expected.emplace_back(saved.line(index).text);
    }
    std::vector<std::string> lines = save.added;
    for (std::size_t index = 0; index < document.size(); ++index) {
        if (!std::binary_search(save.lost.begin(), save.lost.end(), index)) {
            lines.emplace_back(document.line(index).text);
        }
    }
    std::sort(expected.begin(), expected.end());
    std::sort(lines.begin(), lines.end());
    EXPECT_EQ(lines, expected);
    const QvVisa::WindowSave again(saved);
    EXPECT_TRUE(again.lost.empty());
    EXPECT_TRUE(again.added.empty());
}

/// The length of a longest common sequence, by the textbook's table.
std::size_t longestCommon(const std::vector<std::string_view>& left,
                          const std::vector<std::string_view>& right)
{
    std::vector<std::vector<std::size_t>> lengths(left.size() + 1,
                                                  std::vector<std::size_t>(right.size() + 1));
    for (std::size_t i = 0; i < left.size(); ++i) {
        for (std::size_t j = 0; j < right.size(); ++j) {
            lengths[i + 1][j + 1] = left[i] == right[j]
                                        ? lengths[i][j] + 1
                                        : std::max(lengths[i][j + 1], lengths[i + 1][j]);
        }
    }
    return lengths.back().back();
}

TEST(LineMatches, AreALongestCommonSequence)
{
    std::mt19937 random(1);
    const auto text = [&random] {
        std::vector<std::string_view> lines(random() % 12);
        for (std::string_view& line : lines) {
            line = std::string_view("abcd").substr(random() % 4, 1);
        }
        return lines;
    };
    for (int i = 0; i < 20000; ++i) {
        const std::vector<std::string_view> left = text();
        const std::vector<std::string_view> right = text();
        const std::vector<std::size_t> matches = QvVisa::matchLines(left, right);
        ASSERT_EQ(matches.size(), left.size());
        std::size_t count = 0;
        std::size_t next = 0;
        for (std::size_t line = 0; line < left.size(); ++line) {
            if (matches[line] != QvVisa::noMatch) {
                ASSERT_GE(matches[line], next);
                ASSERT_LT(matches[line], right.size());
                ASSERT_EQ(left[line], right[matches[line]]);
                next = matches[line] + 1;
                ++count;
            }
        }
        ASSERT_EQ(count, longestCommon(left, right));
    }
}

TEST(LineMatches, OfTextsWithoutACommonLineEndsSoon)
{
    const std::vector<std::string_view> left(100000, "a");
    const std::vector<std::string_view> right(100000, "b");
    const std::vector<std::size_t> matches = QvVisa::matchLines(left, right);
    EXPECT_EQ(std::count(matches.begin(), matches.end(), QvVisa::noMatch), 100000);
}

} // namespace
