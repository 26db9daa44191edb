// SPDX-License-Identifier: MIT
#include "document/EntryEdits.h"

#include "config/ConfigurationLine.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

using QvVisa::Document;
using QvVisa::EditResult;
using QvVisa::EntryOutcome;
using QvVisa::LineKind;
using QvVisa::OtherEntries;
using QvVisa::UnwantedEntries;
using QvVisa::WantedEntries;

namespace {

const std::string H = ":QvVisaConfigurationFileVersion01\n";
const std::string HCrLf = ":QvVisaConfigurationFileVersion01\r\n";
const std::string HOpen = ":QvVisaConfigurationFileVersion01";
const std::string S1 = ":SerialProperty[DeviceNo=1].";
const std::string S2 = ":SerialProperty[DeviceNo=2].";
const std::string G0 = ":GPIBProperty[DeviceNo=0].";

using Edit = std::function<EditResult(const Document&)>;

struct EditRow
{
    const char* name;
    Edit edit;
    std::string before;
    std::string after;
};

Edit set(std::vector<std::pair<std::string, std::string>> aliases)
{
    return [aliases](const Document& document) {
        WantedEntries wanted;
        wanted.aliases = aliases;
        return setEntries(document, wanted);
    };
}

Edit add(std::vector<std::string> resources)
{
    return [resources](const Document& document) {
        WantedEntries wanted;
        wanted.resources = resources;
        return setEntries(document, wanted);
    };
}

Edit serial(std::uint16_t port, QvVisa::PropertyValues values)
{
    return [port, values](const Document& document) {
        WantedEntries wanted;
        wanted.serial[port] = values;
        return setEntries(document, wanted);
    };
}

Edit gpib(std::uint16_t board, QvVisa::PropertyValues values)
{
    return [board, values](const Document& document) {
        WantedEntries wanted;
        wanted.gpib[board] = values;
        return setEntries(document, wanted);
    };
}

Edit provider(std::uint16_t id)
{
    return [id](const Document& document) {
        WantedEntries wanted;
        wanted.provider = id;
        return setEntries(document, wanted);
    };
}

Edit remove(UnwantedEntries unwanted)
{
    return [unwanted](const Document& document) { return removeEntries(document, unwanted); };
}

Edit rename(std::string oldName, std::string newName)
{
    return [oldName, newName](const Document& document) {
        EditResult result;
        EXPECT_EQ(renameAlias(document, oldName, newName, result), QvVisa::Renaming::Done);
        return result;
    };
}

Edit apply(WantedEntries wanted, OtherEntries others)
{
    return
        [wanted, others](const Document& document) { return setEntries(document, wanted, others); };
}

const LineKind Baudrate = LineKind::SerialBaudrate;
const LineKind DataBits = LineKind::SerialDataBits;
const LineKind Parity = LineKind::SerialParity;

const std::vector<EditRow>& rows()
{
    static const std::vector<EditRow> s_rows = {
        {"SetReplacesTheValueInTheLastLineOfTheName", set({{"dmm", "NEW"}}),
         H + "DMM=A\nDmm \t= B  # \nDMM2=C\n dmm =D\ndMm\t =\tOLD \r\nDMM =\n",
         H + "DMM=A\nDmm \t= B  # \nDMM2=C\n dmm =D\ndMm\t =\tNEW \r\nDMM =\n"},
        {"SetToAnEqualValueChangesNothing", set({{"dmm", "A"}}), H + "DMM = A", H + "DMM = A"},
        {"SetToTheValueInAnotherCaseChanges", set({{"dmm", "a"}}), H + "DMM = A", H + "DMM = a"},
        {"SetOfANewNameGoesAfterTheLastAlias", set({{"new", "X"}}), H + "A=1\n# c\nB=2\nGPIB\n",
         H + "A=1\n# c\nB=2\nNEW=X\nGPIB\n"},
        {"SetOfANewNameGoesToTheEndWithoutAnAlias", set({{"new", "X"}}), H + "GPIB\n# c\n\n",
         H + "GPIB\n# c\n\nNEW=X\n"},
        {"SetTwiceLastValueCounts", set({{"a", "1"}, {"b", "2"}, {"A", "3"}}), H, H + "B=2\nA=3\n"},
        {"SetTakesTheEndingOfTheLineBefore", set({{"new", "X"}}), HCrLf + "A=1\r\nGPIB\n",
         HCrLf + "A=1\r\nNEW=X\r\nGPIB\n"},
        {"SetAfterAnUnterminatedLineEndsBoth", set({{"new", "X"}}), H + "A=1", H + "A=1\nNEW=X\n"},
        {"SetAfterAnUnterminatedLineTakesTheEndingBefore", set({{"new", "X"}}), HCrLf + "A=1",
         HCrLf + "A=1\r\nNEW=X\r\n"},
        {"SetAfterAnUnterminatedHeader", set({{"new", "X"}}), HOpen, H + "NEW=X\n"},
        {"SetAfterAnUnterminatedResourceGivesItALineFeedAlone", set({{"new", "X"}}), HCrLf + "GPIB",
         HCrLf + "GPIB\nNEW=X\r\n"},
        {"SetAfterALoneCarriageReturnCompletesIt", set({{"new", "X"}}), HCrLf + "A=1\r",
         HCrLf + "A=1\r\nNEW=X\r\n"},
        {"SetInAnUnterminatedLineLeavesItSo", set({{"a", "2"}}), H + "A=1", H + "A=2"},

        {"AddGoesAfterTheLastPlainResource", add({"R2"}), H + "R1\nA=1\nR0\n# c\n",
         H + "R1\nA=1\nR0\nR2\n# c\n"},
        {"AddGoesToTheEndWithoutAResource", add({"R2"}), H + "A=1\n# c\n", H + "A=1\n# c\nR2\n"},
        {"AddOfAListedResourceInAnotherCaseChangesNothing", add({"gpib0::1::instr"}),
         H + "GPIB0::1::INSTR\n", H + "GPIB0::1::INSTR\n"},
        {"AddCountsWhiteSpace", add({"R"}), H + "R \n", H + "R \nR\n"},
        {"AddDoesNotCountAliases", add({"R"}), H + "A=R\n", H + "A=R\nR\n"},
        {"AddNeverWritesACarriageReturn", add({"R"}), HCrLf + "Q\r\n", HCrLf + "Q\r\nR\n"},
        {"AddTwiceWritesOnce", add({"R", "r", "Q"}), H, H + "R\nQ\n"},

        {"UnsetRemovesAllLinesOfTheName", remove({{"dmm"}, {}, {}, {}}),
         H + "DMM=1\n# c\ndmm = 2\r\nDMM2=3\nDMM=4", H + "# c\nDMM2=3\n"},
        {"UnsetOfAnAbsentNameChangesNothing", remove({{"X"}, {}, {}, {}}), H + "XX=1\n:X=2\n",
         H + "XX=1\n:X=2\n"},
        {"RemoveTakesAllEqualResourcesInAnyCase", remove({{}, {"Gpib1"}, {}, {}}),
         H + "GPIB1\nA=GPIB1\ngpib1\nGPIB1 \nGPIB1\r\n", H + "A=GPIB1\nGPIB1 \nGPIB1\r\n"},

        {"RenameChangesTheNameInAllLines", rename("dmm", "new"), H + "Dmm = 1\nDMM2=DMM\nDMM=2\r\n",
         H + "NEW = 1\nDMM2=DMM\nNEW=2\r\n"},
        {"RenameToTheSameNameChangesNothing", rename("dmm", "DMM"), H + "Dmm=1\n", H + "Dmm=1\n"},
        {"RenameThatWasDoneChangesNothing", rename("dmm", "new"), H + "New=1\n", H + "New=1\n"},

        {"PropertyReplacesTheDigitsInTheLastLineOfTheKey", serial(1, {{Baudrate, 19200}}),
         H + S1 + "Baudrate=1\n:SerialProperty[DeviceNo= 65537 ].Baudrate= 9600 \n" + S2 +
             "Baudrate=5\n",
         H + S1 + "Baudrate=1\n:SerialProperty[DeviceNo= 65537 ].Baudrate= 19200 \n" + S2 +
             "Baudrate=5\n"},
        {"PropertyIgnoresLinesWithNumbersThatOverflow", serial(1, {{Baudrate, 300}}),
         H + S1 + "Baudrate=1\n" + S1 +
             "Baudrate=2147483648\n:SerialProperty[DeviceNo=4294967297]"
             ".Baudrate=7\n",
         H + S1 + "Baudrate=300\n" + S1 +
             "Baudrate=2147483648\n:SerialProperty[DeviceNo=4294967297].Baudrate=7\n"},
        {"PropertyComparesTheValueAsItIsHeld", serial(1, {{DataBits, 7}}),
         H + S1 + "DataBits=263\n", H + S1 + "DataBits=263\n"},
        {"NewPropertyGoesAfterTheLastLineOfItsDevice", serial(1, {{Parity, 2}}),
         H + S1 + "Baudrate=1\nA=1\n" + S1 + "DataBits=7\n" + S2 + "DataBits=7\n",
         H + S1 + "Baudrate=1\nA=1\n" + S1 + "DataBits=7\n" + S1 + "Parity=2\n" + S2 +
             "DataBits=7\n"},
        {"NewDeviceGoesAfterTheLastLineOfItsFamily", serial(1, {{Parity, 2}}),
         H + S2 + "DataBits=7\n" + G0 + "PrimaryAddress=1\n# c\n",
         H + S2 + "DataBits=7\n" + S1 + "Parity=2\n" + G0 + "PrimaryAddress=1\n# c\n"},
        {"NewFamilyGoesAfterTheProvider", gpib(0, {{LineKind::GpibPrimaryAddress, 4}}),
         H + "A=1\n:Provider=7\nB=2\n", H + "A=1\n:Provider=7\n" + G0 + "PrimaryAddress=4\nB=2\n"},
        {"NewFamilyGoesAfterTheHeaderWithoutAProvider",
         gpib(0, {{LineKind::GpibSystemController, 0}}), HCrLf + "A=1\n",
         HCrLf + G0 + "SystemController=0\r\nA=1\n"},
        {"DefaultOfANamedDeviceChangesNothing", serial(1, {{Baudrate, 9600}}),
         H + S1 + "Parity=2\n", H + S1 + "Parity=2\n"},
        {"DefaultsOfANewDeviceAreWrittenInTheUsualOrder",
         serial(1, {{Parity, 0}, {Baudrate, 9600}}), H,
         H + S1 + "Baudrate=9600\n" + S1 + "Parity=0\n"},
        {"UnsetDeviceRemovesAllItsLines", remove({{}, {}, {1}, {}}),
         H + S1 + "Parity=2\n:SerialProperty[DeviceNo=65537].DataBits=7\n" + S2 + "Parity=2\n" +
             S1 + "Parity=2147483648\n:GPIBProperty[DeviceNo=1].PrimaryAddress=1\n",
         H + S2 + "Parity=2\n" + S1 +
             "Parity=2147483648\n:GPIBProperty[DeviceNo=1].PrimaryAddress=1\n"},

        {"ProviderReplacesTheLastValidLine", provider(7),
         H + ":Provider=1\n:PROVIDER = 2 \r\n:Provider=2147483648\n:Provider=0x3\n",
         H + ":Provider=1\n:PROVIDER = 7 \r\n:Provider=2147483648\n:Provider=0x3\n"},
        {"ProviderFollowsTheHeader", provider(7), HCrLf + "A=1\n", HCrLf + ":Provider=7\r\nA=1\n"},
        {"DefaultProviderWithoutALineChangesNothing", provider(3674), H + "A=1\n", H + "A=1\n"},
        {"DefaultProviderReplacesAnother", provider(3674), H + ":Provider=1\n",
         H + ":Provider=3674\n"},
        {"ProviderComparesTheIdAsItIsHeld", provider(1), H + ":Provider=65537\n",
         H + ":Provider=65537\n"},

        {"ApplyWritesEveryKindAtItsPlace",
         apply({{{"a", "2"}, {"n", "3"}},
                {"R"},
                {{1, {{Parity, 1}}}, {2, {{Parity, 1}}}},
                {{0, {{LineKind::GpibPrimaryAddress, 0}}}},
                5},
               OtherEntries::Keep),
         H + S2 + "DataBits=7\n# c\nA=1\n",
         H + ":Provider=5\n" + G0 + "PrimaryAddress=0\n" + S2 + "DataBits=7\n" + S2 + "Parity=1\n" +
             S1 + "Parity=1\n# c\nA=2\nN=3\nR\n"},
        {"PruneRemovesWhatIsNotNamed",
         apply({{{"a", "1"}}, {"r"}, {{2, {{Parity, 1}}}}, {}, {}}, OtherEntries::Remove),
         H + ":Provider=7\n" + S1 + "Parity=1\n" + S2 + "DataBits=7\n" + S2 + "Parity=1\n" + G0 +
             "PrimaryAddress=0\n# c\nB=1\nA=0\na=1\nR\nQ\n:what=1\n",
         H + S2 + "Parity=1\n# c\nA=0\na=1\nR\n:what=1\n"},
        {"PruneKeepsADeviceNamedWhoseOtherKeysGo",
         apply({{}, {}, {{1, {{Baudrate, 9600}}}}, {}, {}}, OtherEntries::Remove),
         H + S1 + "Parity=1\n", H + S1 + "Baudrate=9600\n"},
    };
    return s_rows;
}

class EntryEdits : public testing::TestWithParam<EditRow>
{};

} // namespace

TEST_P(EntryEdits, GiveTheExpectedTextOnceAndThenChangeNothing)
{
    const EditRow& row = GetParam();
    const EditResult result = row.edit(Document(row.before));
    EXPECT_EQ(result.edited.text, row.after);
    EXPECT_EQ(result.isChanged(), row.before != row.after);
    EXPECT_EQ(result.edited.changes.empty(), row.before == row.after);
    const EditResult again = row.edit(Document(row.after));
    EXPECT_EQ(again.edited.text, row.after);
    EXPECT_FALSE(again.isChanged());
}

INSTANTIATE_TEST_SUITE_P(Rows, EntryEdits, testing::ValuesIn(rows()),
                         [](const auto& row) { return row.param.name; });

TEST(EntryEditsOutcomes, NameTheLinesOfTheNewText)
{
    const Document document(H + "A=1\nR\nB=2\n");
    const EditResult result =
        setEntries(document, {{{"b", "3"}, {"a", "1"}, {"c", "4"}}, {"q", "r"}, {}, {}, 7});
    ASSERT_EQ(result.edited.text, H + ":Provider=7\nA=1\nR\nq\nB=3\nC=4\n");
    using Action = EntryOutcome::Action;
    const std::vector<std::tuple<LineKind, std::string, Action, std::size_t>> expected = {
        {LineKind::Provider, "", Action::Written, 2},
        {LineKind::Alias, "3", Action::Written, 6},
        {LineKind::Alias, "1", Action::Unchanged, 3},
        {LineKind::Alias, "4", Action::Written, 7},
        {LineKind::Resource, "q", Action::Written, 5},
        {LineKind::Resource, "r", Action::Unchanged, 4},
    };
    ASSERT_EQ(result.entries.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const EntryOutcome& entry = result.entries[i];
        EXPECT_EQ(std::tuple(entry.kind, entry.value, entry.action, entry.line.value_or(0)),
                  expected[i])
            << i;
    }
}

TEST(EntryEditsOutcomes, NameTheOldLinesOfWhatIsRemovedOnceForAnEntry)
{
    const Document document(H + "A=1\na=2\nR\n" + S1 + "Parity=1\n" + S1 + "Parity=2\n");
    const EditResult result = removeEntries(document, {{"B", "A"}, {"Q", "r"}, {1}, {}});
    ASSERT_EQ(result.edited.text, H);
    ASSERT_EQ(result.entries.size(), 5U);
    EXPECT_EQ(result.entries[0].line, std::nullopt);
    EXPECT_EQ(result.entries[0].name, "B");
    EXPECT_EQ(result.entries[1].line, 3U);
    EXPECT_EQ(result.entries[2].value, "Q");
    EXPECT_EQ(result.entries[3].line, 4U);
    EXPECT_EQ(result.entries[4].line, 6U);
    EXPECT_EQ(result.entries[4].number, 2U);
}

TEST(EntryEditsRename, RefusesATakenNameAndReportsAnAbsentOne)
{
    const Document document(H + "A=1\nB=2\n");
    EditResult result;
    EXPECT_EQ(renameAlias(document, "a", "b", result), QvVisa::Renaming::NewNameTaken);
    EXPECT_EQ(renameAlias(document, "x", "y", result), QvVisa::Renaming::NoSuchName);
    EXPECT_FALSE(result.isChanged());
}

TEST(EntryEditsArguments, AreAcceptedOnlyIfTheReaderReadsThemBackWhole)
{
    using QvVisa::isAlias;
    using QvVisa::isPlainResource;
    EXPECT_TRUE(isAlias("DMM", "GPIB0::1::INSTR"));
    EXPECT_TRUE(isAlias("D:M", "A=B"));
    for (const char* name : {"", "A B", "A=B", "#A", ":A", " A", "A ", "A\n", "A\r"}) {
        EXPECT_FALSE(isAlias(name, "GPIB0::1::INSTR")) << name;
    }
    for (const char* resource : {"", " ", "A B", "A ", "A\n", "A\r"}) {
        EXPECT_FALSE(isAlias("DMM", resource)) << resource;
    }
    EXPECT_TRUE(isPlainResource("GPIB0::1::INSTR"));
    EXPECT_TRUE(isPlainResource("A B "));
    for (const char* resource : {"", " A", "#A", ":A", "A=B", "A\nB", "A\n"}) {
        EXPECT_FALSE(isPlainResource(resource)) << resource;
    }
}
