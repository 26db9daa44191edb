// SPDX-License-Identifier: MIT
#include "doctor/MissingInstruments.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

/// "NAME: HINT", or "NAME" without a hint, of each missing instrument of a file with these aliases.
std::vector<std::string> missing(const std::string& aliases, const std::vector<std::string>& found,
                                 std::chrono::milliseconds time = 20s)
{
    const QvVisa::Document document(":QvVisaConfigurationFileVersion01\n" + aliases);
    const QvVisa::Entries entries(document);
    std::vector<std::string> texts;
    for (const QvVisa::MissingInstrument& instrument :
         QvVisa::missingInstruments(entries, found, std::chrono::steady_clock::now() + time)) {
        texts.push_back(instrument.name + (instrument.hint.empty() ? "" : ": " + instrument.hint));
    }
    return texts;
}

using Texts = std::vector<std::string>;

TEST(MissingInstruments, FormOfAResourceStringDoesNotMatter)
{
    const char* const rows[][2] = {
        {"USB0::4660::22136::SN7", "USB0::0x1234::0x5678::SN7::INSTR"},
        {"usb::0x1234::0x5678::SN7::0::INSTR", "USB0::0x1234::0x5678::SN7::INSTR"},
        {"gpib::05", "GPIB0::5::INSTR"},
        {"TCPIP::10.0.0.5", "TCPIP0::10.0.0.5::inst0::INSTR"},
        {"QVIB::10.0.0.5", "QVIB::10.0.0.5"},
        {"no-resource", "No-Resource"},
    };
    for (const auto& [alias, found] : rows) {
        EXPECT_EQ(missing("A=" + std::string(alias) + '\n', {found}), Texts()) << alias;
        EXPECT_EQ(missing("A=" + std::string(alias) + '\n', {}).size(), 1U) << alias;
    }
}

TEST(MissingInstruments, OtherInstrumentIsNoneOfTheFile)
{
    EXPECT_EQ(missing("B=GPIB0::6::INSTR\nA=ASRL2::INSTR\n", {"GPIB0::5::INSTR", "ASRL1::INSTR"}),
              (Texts{"A", "B"}));
}

TEST(MissingInstruments, HostCountsWithAnyOfItsServices)
{
    const Texts found{"TCPIP0::10.0.0.5::inst0::INSTR"};
    EXPECT_EQ(missing("A=TCPIP0::10.0.0.5::5025::SOCKET\nB=TCPIP0::10.0.0.5::hislip0::INSTR\n"
                      "C=QVIB::10.0.0.5\n",
                      found),
              Texts());
    EXPECT_EQ(
        missing("A=TCPIP0::10.0.0.5::gpib0,12::INSTR\nB=TCPIP0::10.0.0.6::5025::SOCKET\n", found),
        (Texts{"A", "B"}));
}

TEST(MissingInstruments, HostNameIsTheAddressesThatItHas)
{
    EXPECT_EQ(missing("A=TCPIP0::localhost::INSTR\n", {"TCPIP0::127.0.0.1::inst0::INSTR"}),
              Texts());
    EXPECT_EQ(missing("A=TCPIP0::127.0.0.1::INSTR\n", {"TCPIP0::LOCALHOST::5025::SOCKET"}),
              Texts());
    EXPECT_EQ(missing("A=TCPIP0::localhost::INSTR\n", {"TCPIP0::127.0.0.2::inst0::INSTR"}),
              Texts{"A"});
}

TEST(MissingInstruments, HostNameThatIsUnknownIsTheSameInstrumentByName)
{
    EXPECT_EQ(
        missing("A=TCPIP0::scope.invalid::5025::SOCKET\n", {"TCPIP0::SCOPE.invalid::inst0::INSTR"}),
        Texts());
}

TEST(MissingInstruments, HostNameThatIsUnknownHasAHint)
{
    const Texts texts = missing("A=TCPIP0::scope.invalid::INSTR\n", {});
    ASSERT_EQ(texts.size(), 1U);
    const std::string begin = "A: its host name cannot be resolved: ";
    EXPECT_EQ(texts.front().substr(0, begin.size()), begin);
    EXPECT_GT(texts.front().size(), begin.size());
}

TEST(MissingInstruments, NoTimeLeftLooksNothingUp)
{
    EXPECT_EQ(missing("A=TCPIP0::scope.invalid::INSTR\n", {}, -1s),
              Texts{"A: its host name cannot be resolved: no answer within the time"});
}

TEST(MissingInstruments, OtherSerialNumberOfTheModelIsOffered)
{
    const std::string alias = "A=USB0::0x1234::0x5678::SN6::INSTR\n";
    const std::string same = "USB0::4660::22136::SN7::INSTR";
    EXPECT_EQ(missing(alias, {same, "USB0::0x1234::0x5679::SN7::INSTR"}),
              Texts{"A: the same model with another serial number was found: " + same});
    EXPECT_EQ(missing(alias, {same, "USB0::4660::22136::SN8::INSTR"}), Texts{"A"}) << "two of them";
    EXPECT_EQ(missing(alias + "B=" + same + '\n', {same}), Texts{"A"}) << "it has an alias";
}

} // namespace
