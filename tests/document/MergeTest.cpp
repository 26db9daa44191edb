// SPDX-License-Identifier: MIT
#include "document/Merge.h"

#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

using QvVisa::Document;
using QvVisa::Meaning;
using QvVisa::MergedMeaning;
using QvVisa::MergedText;

namespace {

const std::string s_headerLine = ":QvVisaConfigurationFileVersion01\n";

struct MergeCase
{
    const char* name;
    /// What follows the header's line in each text.
    const char* base;
    const char* ours;
    const char* theirs;
    const char* merged;

    friend void PrintTo(const MergeCase& merge, std::ostream* out) { *out << merge.name; }
};

class Merge : public testing::TestWithParam<MergeCase>
{};

TEST_P(Merge, GivesTheText)
{
    const MergedText merged = QvVisa::mergeDocuments(Document(s_headerLine + GetParam().base),
                                                     Document(s_headerLine + GetParam().ours),
                                                     Document(s_headerLine + GetParam().theirs));
    EXPECT_EQ(merged.text, s_headerLine + GetParam().merged);
    EXPECT_EQ(merged.hasConflict, merged.text.find("<<<<<<<") != std::string::npos);
}

const MergeCase s_merges[] = {
    {"NoChange", "A=1\n", "A=1\n", "A=1\n", "A=1\n"},
    {"OursAlone", "A=1\n", "A=2\n", "A=1\n", "A=2\n"},
    {"TheirsAlone", "A=1\n", "A=1\n", "A=2\n# x\n", "A=2\n# x\n"},
    {"BothTheSame", "A=1\n", "A=2\n", "A=2\n", "A=2\n"},
    {"DifferentAliasesNextToEachOther", "A=1\nB=1\n", "A=2\nB=1\n", "A=1\nB=2\n", "A=2\nB=2\n"},
    {"BothAppend", "A=1\n", "A=1\n# ours\nB=2\n", "A=1\n# theirs\nC=3\n",
     "A=1\n# ours\nB=2\n# theirs\nC=3\n"},
    {"BothAppendToAnUnfinishedLine", "A=1", "A=1\nB=2", "A=1\nC=3", "A=1\nB=2\nC=3"},
    {"OursRemovesTheirsAddsNearby", "A=1\nB=1\n", "A=1\n", "A=1\nB=1\nC=1\n", "A=1\nC=1\n"},
    {"AliasConflict", "A=1\nB=1\n", "A=2\nB=1\n", "A=3\nB=1\n",
     "<<<<<<< ours\nA=2\n=======\nA=3\n>>>>>>> theirs\nB=1\n"},
    {"AliasConflictWithoutLineFeed", "A=1", "A=2", "A=3",
     "<<<<<<< ours\nA=2\n=======\nA=3\n>>>>>>> theirs\n"},
    {"RemovedAndChanged", "A=1\nB=1\n", "B=1\n", "A=3\nB=1\n",
     "<<<<<<< ours\n=======\nA=3\n>>>>>>> theirs\nB=1\n"},
    {"ConflictFarApart", "A=1\nB=1\n", "X=1\nA=1\nB=1\n", "A=1\nB=1\nX=2\n",
     "<<<<<<< ours\nX=1\nA=1\nB=1\n=======\nA=1\nB=1\nX=2\n>>>>>>> theirs\n"},
    {"SameEntryAddedAtTwoPlaces", "A=1\nB=1\n", "X=1\nA=1\nB=1\n", "A=1\nB=1\nX=1\n",
     "X=1\nA=1\nB=1\nX=1\n"},
    {"CommentConflict", "# a\nA=1\n", "# b\nA=1\n", "# c\nA=1\n",
     "<<<<<<< ours\n# b\n=======\n# c\n>>>>>>> theirs\nA=1\n"},
    {"CommentOfOneSideBesideEntryOfTheOther", "# a\nA=1\n", "# b\nA=1\n", "# a\nA=2\n",
     "# b\nA=2\n"},
    {"SettingsOfOneDevice", ":SerialProperty[DeviceNo=1].Parity=0\n",
     ":SerialProperty[DeviceNo=1].Parity=1\n",
     ":SerialProperty[DeviceNo=1].Parity=0\n:SerialProperty[DeviceNo=1].DataBits=7\n",
     ":SerialProperty[DeviceNo=1].Parity=1\n:SerialProperty[DeviceNo=1].DataBits=7\n"},
    {"DeviceRemovedAndChanged",
     ":SerialProperty[DeviceNo=1].Parity=0\n:SerialProperty[DeviceNo=1].DataBits=7\n", "",
     ":SerialProperty[DeviceNo=1].Parity=2\n:SerialProperty[DeviceNo=1].DataBits=7\n",
     "<<<<<<< ours\n=======\n:SerialProperty[DeviceNo=1].Parity=2\n"
     ":SerialProperty[DeviceNo=1].DataBits=7\n>>>>>>> theirs\n"},
    {"ResourcesOfBothSides", "GPIB0::1::INSTR\n", "GPIB0::1::INSTR\nGPIB0::2::INSTR\n",
     "GPIB0::3::INSTR\n", "GPIB0::2::INSTR\nGPIB0::3::INSTR\n"},
};

std::string mergeName(const testing::TestParamInfo<MergeCase>& row)
{
    return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(Document, Merge, testing::ValuesIn(s_merges), mergeName);

TEST(MergeOfAnEmptyBase, TakesTheEntriesOfBoth)
{
    const MergedText merged = QvVisa::mergeDocuments(Document(""), Document(s_headerLine + "A=1\n"),
                                                     Document(s_headerLine + "B=1\n"));
    EXPECT_FALSE(merged.hasConflict);
    EXPECT_EQ(merged.text, s_headerLine + "A=1\nB=1\n");
}

/// Small texts whose lines collide often.
class RandomTexts
{
public:
    explicit RandomTexts(unsigned seed) : m_random(seed) {}

    std::vector<std::string> base()
    {
        std::vector<std::string> lines;
        const std::size_t count = number(8);
        for (std::size_t i = 0; i < count; ++i) {
            lines.push_back(line());
        }
        return lines;
    }

    std::vector<std::string> changed(std::vector<std::string> lines)
    {
        const std::size_t count = number(4);
        for (std::size_t i = 0; i < count; ++i) {
            const auto place = static_cast<std::ptrdiff_t>(number(lines.size() + 1));
            const bool isAtEnd = static_cast<std::size_t>(place) == lines.size();
            switch (isAtEnd ? 0 : number(3)) {
            case 0:
                lines.insert(lines.begin() + place, line());
                break;
            case 1:
                lines.erase(lines.begin() + place);
                break;
            default:
                lines[static_cast<std::size_t>(place)] = line();
                break;
            }
        }
        return lines;
    }

    std::string text(const std::vector<std::string>& lines)
    {
        std::string text = s_headerLine;
        for (const std::string& line : lines) {
            text += line + '\n';
        }
        if (number(4) == 0) {
            text.pop_back();
        }
        return text;
    }

private:
    std::size_t number(std::size_t limit)
    {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random);
    }

    std::string line()
    {
        const std::string digit = std::to_string(number(3));
        switch (number(9)) {
        case 0:
            return "# " + digit;
        case 1:
            return number(2) == 0 ? "" : "\r";
        case 2:
            return "R" + digit;
        case 3:
            return ":Provider=" + digit;
        case 4:
            return ":GPIBProperty[DeviceNo=" + digit +
                   "].PrimaryAddress=" + std::to_string(number(2));
        case 5:
            return ":SerialProperty[DeviceNo=" + digit + "].Parity=" + std::to_string(number(2));
        case 6:
            return ":SerialProperty[DeviceNo=" + digit +
                   "].DataBits=" + std::to_string(7 + number(2));
        case 7:
            return "a" + digit + " = " + std::to_string(number(3)) + "\r";
        default:
            return "A" + digit + "=" + std::to_string(number(3));
        }
    }

    std::mt19937 m_random;
};

/// One side of each conflict, without the markers.
std::string sideOf(const std::string& text, bool isOurs)
{
    std::string result;
    bool isTaken = true;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size() - 1) + 1;
        const std::string line = text.substr(begin, end - begin);
        begin = end;
        if (line == "<<<<<<< ours\n") {
            isTaken = isOurs;
        } else if (line == "=======\n") {
            isTaken = !isOurs;
        } else if (line == ">>>>>>> theirs\n") {
            isTaken = true;
        } else if (isTaken) {
            result += line;
        }
    }
    return result;
}

// The result means exactly the merge of the entries, or it has the markers of a conflict.
TEST(MergeOfRandomTexts, MeansTheMergeOfTheEntriesOrHasMarkers)
{
    RandomTexts random(1);
    std::size_t clean = 0;
    std::size_t needless = 0;
    constexpr std::size_t count = 30000;
    for (std::size_t i = 0; i < count; ++i) {
        const std::vector<std::string> lines = random.base();
        const Document base(random.text(lines));
        const Document ours(random.text(random.changed(lines)));
        const Document theirs(random.text(random.changed(lines)));
        const MergedMeaning wanted =
            QvVisa::mergeMeanings(Meaning(base), Meaning(ours), Meaning(theirs));
        const MergedText merged = QvVisa::mergeDocuments(base, ours, theirs);
        SCOPED_TRACE("base\n" + base.text() + "\nours\n" + ours.text() + "\ntheirs\n" +
                     theirs.text() + "\nmerged\n" + merged.text);
        if (!merged.hasConflict) {
            ++clean;
            ASSERT_TRUE(wanted.conflicts.empty());
            ASSERT_TRUE(Meaning(Document(merged.text)) == wanted.meaning);
            continue;
        }
        needless += wanted.conflicts.empty() ? 1 : 0;
        // A key in conflict is as in ours with our side of the markers, and as in theirs with
        // theirs.
        const Meaning withOurs(Document(sideOf(merged.text, true)));
        const Meaning withTheirs(Document(sideOf(merged.text, false)));
        for (const QvVisa::EntryKey& key : wanted.conflicts) {
            ASSERT_EQ(withOurs.value(key), Meaning(ours).value(key)) << key.name;
            ASSERT_EQ(withTheirs.value(key), Meaning(theirs).value(key)) << key.name;
        }
    }
    // Both ends have to occur often, or the test says little.
    EXPECT_GT(clean, count / 4);
    EXPECT_GT(count - clean, count / 10);
    RecordProperty("clean", static_cast<int>(clean));
    RecordProperty("conflicts without an entry in conflict", static_cast<int>(needless));
}

} // namespace
