// SPDX-License-Identifier: MIT
// Every code has an example that gives it and a near example that does not.

#include "lint/Linter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace std::string_view_literals;

const std::string s_header = ":QvVisaConfigurationFileVersion01";

/// A text that does not begin with '!' is what follows the header's line; after '!' it is the
/// whole file.
std::string fileOf(std::string_view text)
{
    return text.substr(0, 1) == "!" ? std::string(text.substr(1))
                                    : s_header + '\n' + std::string(text);
}

/// "2:17 V304, 3:1 V312".
std::string findingsOf(std::string_view text)
{
    std::string list;
    for (const lint::Finding& finding : lint::findingsIn(QvVisa::Document(fileOf(text)))) {
        list.append(list.empty() ? "" : ", ");
        list.append(std::to_string(finding.line))
            .append(":")
            .append(std::to_string(finding.column));
        list.append(" ").append(lint::codeName(finding.code));
        if (finding.severity != lint::kindOf(finding.code).severity) {
            list.append(" (").append(lint::severityName(finding.severity)).append(")");
        }
    }
    return list;
}

struct Example
{
    const char* code;
    std::string_view text;
    const char* findings;
    /// Like the example, without a finding of the code.
    std::string_view near;

    friend void PrintTo(const Example& example, std::ostream* out) { *out << example.code; }
};

const std::string s_longHost(63, 'h');
const std::string s_host4 =
    s_longHost + '.' + s_longHost + '.' + s_longHost + '.' + std::string(61, 'h');
const std::string s_tooLong = "TCPIP0::" + s_host4.substr(0, 228) + "::hislip00000::INSTR\n";
const std::string s_longest = "TCPIP0::" + s_host4.substr(0, 227) + "::hislip00000::INSTR\n";

const std::vector<Example>& examples()
{
    static const std::vector<Example> s_examples{
        {"V001", "!:qvvisaconfigurationfileversion01\nDMM=X\n", "1:1 V001",
         "!:QvVisaConfigurationFileVersion01\n"},
        {"V001", "!", "1:1 V001", "!:QvVisaConfigurationFileVersion01"},
        {"V001", "! :QvVisaConfigurationFileVersion01\n", "1:1 V001", ""},
        {"V002", "!\xEF\xBB\xBF:QvVisaConfigurationFileVersion01\nDMM=X\n", "1:1 V002",
         "# \xEF\xBB\xBF\n"},
        {"V003", "!# bench\n:QvVisaConfigurationFileVersion01\nDMM=X\n", "2:1 V003",
         "# bench\n:QvVisaConfigurationFileVersion01\n"},
        {"V004", "!\xFF\xFE:\0Q\0"sv, "1:1 V004", "!\xEF\xBB\xBF:Q\n"},
        {"V004", "!:\0Q\0v\0"sv, "1:1 V004", "!:Qv\0\n"sv},
        {"V004", "!\0:\0Q\0v"sv, "1:1 V004", "!\0:Q\n"sv},
        {"V005", "!:QvVisaConfigurationFileVersion01\rDMM=GPIB0::1::INSTR\r", "1:34 V005",
         "!:QvVisaConfigurationFileVersion01\r\nDMM=GPIB0::1::INSTR\r\n"},
        {"V006", "!:QvVisaConfigurationFileVersion01DMM=X\n", "1:34 V006",
         "!:QvVisaConfigurationFileVersion01 the bench\n"},
        {"V006", "!:QvVisaConfigurationFileVersion01 :Provider=1\n", "1:35 V006",
         "!:QvVisaConfigurationFileVersion01 # Provider=1\n"},
        {"V007", "!:QvVisaConfigurationFileVersion01 the bench\n", "1:35 V007",
         "!:QvVisaConfigurationFileVersion01 \t\r\n"},
        {"V008", ":QvVisaConfigurationFileVersion01\n", "2:1 V008",
         "# :QvVisaConfigurationFileVersion01\n"},
        {"V009", "GPIB0::12::INSTR", "2:17 V009", "GPIB0::12::INSTR\n"},
        {"V011", "GPIB0::12\0::INSTR\n"sv, "2:10 V011", "GPIB0::12::INSTR\n"},
        {"V011", "D\0M=GPIB0::12::INSTR\n"sv, "2:2 V011", "# D\0M\n"sv},
        {"V012", "<<<<<<< HEAD\n=======\n>>>>>>> theirs\n", "2:1 V012, 3:1 V012, 4:1 V012",
         "=======\n# <<<<<<< HEAD\n"},
        {"V012", "<<<<<<< a\n||||||| b\n=======\r\n>>>>>>>\n",
         "2:1 V012, 3:1 V012, 4:1 V012, 5:1 V012", "<<<<<<<<\n"},

        {"V101", "  DMM=GPIB0::9::INSTR\n", "2:1 V101", "DMM=GPIB0::9::INSTR\n"},
        {"V101", "\tGPIB0::9::INSTR\n", "2:1 V101", "\tthe bench in room 3\n"},
        {"V101", " :Provider=1\n", "2:1 V101", " # :Provider=1\n"},
        {"V102", "DMM=GPIB0::9::INSTR # old\n", "2:21 V102", "DMM=GPIB0::9::INSTR \n"},
        {"V102", "DMM = TCPIP0::meter 1::INSTR\n", "2:21 V102", "DMM = TCPIP0::meter::INSTR\n"},
        {"V103", "MY DMM=GPIB0::9::INSTR\n", "2:3 V103", "MY_DMM =GPIB0::9::INSTR\n"},
        {"V104", "DMM=\n", "2:5 V104", "# DMM=\n"},
        {"V104", "DMM = \r\n", "2:6 V104", "DMM=GPIB0::9::INSTR\r\n"},
        {"V105", "=GPIB0::9::INSTR\n", "2:1 V105", "====\n"},
        {"V106", ":serialproperty[DeviceNo=1].Parity=2\n", "2:2 V106", ":PROVIDER=2\n"},
        {"V106", ":GPIBProperty[DeviceNo=1].primaryAddress=2\n", "2:27 V106",
         ":GPIBProperty[DeviceNo=1].PrimaryAddress=2\n"},
        {"V107", ":SerialProperty[DeviceNo=1].Parity = 2\n", "2:35 V107",
         ":SerialProperty[DeviceNo= 1 ].Parity= 2 \n"},
        {"V107", ": Provider=2\n", "2:2 V107", ":Provider = 2\n"},
        {"V108", ":SerialProperty[DeviceNo=1].Speed=9600\n", "2:29 V108",
         ":Serial ports are listed below\n"},
        {"V108", ":Timeout=5\n", "2:2 V108", ":Timeout is 5\n"},
        {"V108", ":Providr=1\n", "2:2 V108", ":Provide a cable\n"},
        {"V108", ":SerialProperty[DeviceNo=1].PrimaryAddress=1\n", "2:29 V108",
         ":GPIBProperty[DeviceNo=1].PrimaryAddress=1\n"},
        {"V108", ":SerialProperty[1].Parity=1\n", "2:17 V108", ":Serial [1]\n"},
        {"V108", ":SerialProperty[DeviceNo=1\n", "2:27 V108", ":[1]\n"},
        {"V109", ":Provider=0xFF6\n", "2:11 V109", ":Provider=4086\n"},
        {"V109", ":Provider=\n", "2:11 V109", "# :Provider=\n"},
        {"V109", ":SerialProperty[DeviceNo=1].Parity=even\n", "2:36 V109",
         ":SerialProperty[DeviceNo=1].Parity=2\n"},
        {"V110", ":Provider=4086 # theirs\n", "2:16 V110", ":Provider=4086 \n"},
        {"V110", ":Provider=4086 # theirs\n", "2:16 V110", ":Provider=4086#\n"},
        {"V111", ":Provider=2147483648\n", "2:11 V111", ":Provider=65535\n"},
        {"V111", ":SerialProperty[DeviceNo=1].Baudrate=2147483648\n", "2:38 V111",
         ":SerialProperty[DeviceNo=1].Baudrate=2147483647\n"},
        {"V111", ":SerialProperty[DeviceNo=2147483648].Parity=2\n", "2:26 V111",
         ":SerialProperty[DeviceNo=1].Parity=2\n"},
        {"V112", ":SerialProperty[DeviceNo=COM1].Parity=2\n", "2:26 V112",
         ":SerialProperty[DeviceNo=1].Parity=2\n"},
        {"V113", ":Provider 3674\n", "2:10 V113", ":Provider of the bench\n"},
        {"V113", ":SerialProperty[DeviceNo=1].Parity 2\n", "2:35 V113",
         ":SerialProperty[DeviceNo=1].Parity=2\n"},

        {"V201", "DMM=GPIB0::1::INSTR\ndmm=GPIB0::2::INSTR\n", "3:1 V201, 3:1 V204",
         "DMM=GPIB0::1::INSTR\nPSU=GPIB0::2::INSTR\n"},
        {"V202", "DMM=GPIB0::1::INSTR\nDMM=gpib0::1::INSTR\n", "3:1 V202, 3:5 V314 (note)",
         "DMM=GPIB0::1::INSTR\n# DMM=GPIB0::1::INSTR\n"},
        {"V204", "DmM=GPIB0::1::INSTR\n", "2:2 V204", "DMM=GPIB0::1::INSTR\n"},
        {"V205", "LAB:DMM=GPIB0::1::INSTR\n", "2:4 V205", "LAB.DMM=GPIB0::1::INSTR\n"},
        {"V205", "A,B=GPIB0::1::INSTR\n", "2:2 V205", "A-B=GPIB0::1::INSTR\n"},
        {"V206", "GPIB0::1::INSTR=GPIB0::2::INSTR\n", "2:1 V206", "GPIB1=GPIB0::2::INSTR\n"},
        {"V206", "ASRL_A=ASRL2::INSTR\n", "2:1 V206 (warning)", "ASR=ASRL2::INSTR\n"},
        {"V207", "Z\xC4HLER=GPIB0::1::INSTR\n", "2:2 V207", "ZAEHLER=GPIB0::1::INSTR\n"},
        {"V207", "A\x01=GPIB0::1::INSTR\n", "2:2 V207", "A~=GPIB0::1::INSTR\n"},
        {"V208", "SCOPE=GPIB0::1::INSTR\nDMM=scope\n", "3:5 V208", "SCOPE=GPIB0::1::INSTR\n"},
        {"V208", "DMM=SCOPE\nSCOPE=GPIB0::1::INSTR\n", "3:1 V208",
         "SCOPE\nSCOPE=GPIB0::1::INSTR\n"},
        {"V208", "DMM=dmm\n", "2:5 V208", "DMM=DMM2\n"},
        {"V210", "DMM=GPIB0::1::INSTR\nMETER=GPIB0::1::INSTR\n", "3:7 V210",
         "DMM=GPIB0::1::INSTR\nMETER=GPIB0::2::INSTR\n"},
        {"V211", "Provider=3674\n", "2:1 V211", "PROVIDER=GPIB0::1::INSTR\n"},
        {"V211", "SerialProperty[DeviceNo=1].Parity = 2 # x\n", "2:1 V211",
         "SERIALPROPERTY=ASRL1::INSTR\n"},

        {"V301", "; spare\n", "2:1 V301", "# spare\n"},
        {"V301", ";DMM=GPIB0::1::INSTR\n", "2:1 V301", "#DMM=GPIB0::1::INSTR\n"},
        {"V301", "// spare\n", "2:1 V301", "/ spare\n"},
        {"V302", "GPIB0::12::INSTR # spare\n", "2:18 V302", "GPIB0::12::INSTR\n# spare\n"},
        {"V302", "GPIB0::12::INSTR // spare\n", "2:18 V302", "GPIB0::12::INSTR#spare\n"},
        {"V303", "GPIB0::12::INSTR  \n", "2:17 V303", "DMM=GPIB0::12::INSTR  \n"},
        {"V303", "GPIB0::12::INSTR \r\n", "2:17 V303, 2:18 V304", "GPIB0::12::INSTR\r\n"},
        {"V304", "GPIB0::12::INSTR\r\n", "2:17 V304", "DMM=GPIB0::12::INSTR\r\n"},
        {"V305", "DMM TCPIP0::10.0.0.5::inst0::INSTR\n", "2:1 V305",
         "DMM=TCPIP0::10.0.0.5::inst0::INSTR\n"},
        {"V305", "DMM=\"GPIB0::1::INSTR\"\n", "2:5 V305", "DMM=GPIB0::1::INSTR\n"},
        {"V305", "GPIB0::1::INSTRUMENT\n", "2:11 V305", "GPIB0::1::INSTR\n"},
        {"V305", "GPIB0::1::2::3::INSTR\n", "2:14 V305", "GPIB0::1::2::INSTR\n"},
        {"V305", "GPIB0::1::2::FOO\n", "2:14 V305", "GPIB0::1::2::INSTR\n"},
        {"V305", "TCPIP0::10.0.0.5::inst::INSTR\n", "2:19 V305",
         "TCPIP0::10.0.0.5::inst0::INSTR\n"},
        {"V305", "TCPIP0::10.0.0.5:80::inst0::INSTR\n", "2:9 V305",
         "TCPIP0::10.0.0.5::80::SOCKET\n"},
        {"V305", "USB0::1::2::A B::INSTR\n", "2:14 V305", "USB0::1::2::A-B::INSTR\n"},
        {"V305", "USB0::1::2::A\x7F::INSTR\n", "2:14 V305", "USB0::1::2::A::INSTR\n"},
        {"V306", "GPIB0::31::INSTR\n", "2:8 V306", "GPIB0::30::INSTR\n"},
        {"V306", "DMM=TCPIP0::10.0.0.5::99999::SOCKET\n", "2:23 V306",
         "DMM=TCPIP0::10.0.0.5::65535::SOCKET\n"},
        {"V306", "TCPIP0::10.0.0.256::inst0::INSTR\n", "2:16 V306",
         "TCPIP0::10.0.0.255::inst0::INSTR\n"},
        {"V306", "TCPIP0::10.0.0::inst0::INSTR\n", "2:9 V306", "TCPIP0::ten::inst0::INSTR\n"},
        {"V307", "TCPIP0::::inst0::INSTR\n", "2:9 V307", "TCPIP0::h::inst0::INSTR\n"},
        {"V307", "DMM=ASRL\n", "2:9 V307", "DMM=ASRL1::INSTR\n"},
        {"V307", "TCPIP0::10.0.0.5::SOCKET\n", "2:19 V307", "TCPIP0::10.0.0.5::1::SOCKET\n"},
        {"V308", "TCPIP0::[fe80::1]::inst0::INSTR\n", "2:1 V308",
         "TCPIP0::10.0.0.1::inst0::INSTR\n"},
        {"V308", "PXI0::1::INSTR\n", "2:1 V308", "PXI0::1::BACKPLANE\n"},
        {"V309", "DMM=QVIB::10.0.0.5\n", "2:5 V309", "DMM=TCPIP0::10.0.0.5::inst0::INSTR\n"},
        {"V310", "TCPIP0::z\xC4hler::inst0::INSTR\n", "2:10 V310",
         "TCPIP0::zaehler::inst0::INSTR\n"},
        {"V311", s_tooLong, "2:256 V311", s_longest},
        {"V312", "GPIB0::1::INSTR\nGPIB0::1::INSTR\n", "3:1 V312",
         "GPIB0::1::INSTR\nGPIB0::2::INSTR\n"},
        {"V313", "GPIB0::1::INSTR\nDMM=GPIB0::1::INSTR\n", "3:5 V313",
         "GPIB0::1::INSTR\n# DMM=GPIB0::1::INSTR\n"},
        {"V313", "DMM=GPIB0::1::INSTR\nGPIB0::1::INSTR\n", "3:1 V313",
         "DMM=GPIB0::1::INSTR\nGPIB1::1::INSTR\n"},
        {"V314", "GPIB0::1::instr\n", "2:11 V314", "GPIB0::1::INSTR\n"},
        {"V314", "asrl1::instr\n", "2:8 V314", "ASRL1::INSTR\n"},
        {"V314", "gpib0::1::INSTR\n", "2:1 V314 (note)", "GPIB0::1::INSTR\n"},
        {"V315", "ASRL/dev/ttyUSB0::INSTR\n", "2:1 V315", "ASRL1::INSTR\n"},
        {"V316", "GPIB::5\n", "2:1 V316", "GPIB0::5::INSTR\n"},
        {"V317", "[aliases]\n", "2:1 V317", "# [aliases]\n"},
        {"V318", "USB0::0x1234::0x5678::A#1::INSTR\n", "2:24 V318",
         "USB0::0x1234::0x5678::A1::INSTR\n"},

        {"V401", ":SerialProperty[DeviceNo=65537].DataBits=7\n", "2:26 V401",
         ":SerialProperty[DeviceNo=65535].DataBits=7\n"},
        {"V402", ":SerialProperty[DeviceNo=1].DataBits=263\n", "2:38 V402",
         ":SerialProperty[DeviceNo=1].Baudrate=263\n"},
        {"V402", ":Provider=65536\n", "2:11 V402", ":Provider=65535\n"},
        {"V403", ":Provider=1\n:Provider=2\n", "3:11 V403", ":Provider=1\n:Provider=1\n"},
        {"V403", ":SerialProperty[DeviceNo=1].Parity=1\n:SerialProperty[DeviceNo=1].Parity=2\n",
         "3:36 V403",
         ":SerialProperty[DeviceNo=1].Parity=1\n:SerialProperty[DeviceNo=2].Parity=2\n"},
        {"V404", ":SerialProperty[DeviceNo=1].Baudrate=0\n", "2:38 V404",
         ":SerialProperty[DeviceNo=1].Baudrate=1\n"},
        {"V405", ":SerialProperty[DeviceNo=1].DataBits=9\n", "2:38 V405",
         ":SerialProperty[DeviceNo=1].DataBits=5\n"},
        {"V406", ":SerialProperty[DeviceNo=1].StopBits=3\n", "2:38 V406",
         ":SerialProperty[DeviceNo=1].StopBits=2\n"},
        {"V406", ":SerialProperty[DeviceNo=1].Parity=9\n", "2:36 V406",
         ":SerialProperty[DeviceNo=1].Parity=4\n"},
        {"V407", ":SerialProperty[DeviceNo=1].FlowControl=4\n", "2:41 V407",
         ":SerialProperty[DeviceNo=1].FlowControl=6\n"},
        {"V408", ":SerialProperty[DeviceNo=1].StopBits=1\n", "2:38 V408",
         ":SerialProperty[DeviceNo=1].StopBits=0\n"},
        {"V409", ":GPIBProperty[DeviceNo=0].PrimaryAddress=31\n", "2:1 V501, 2:42 V409",
         ":GPIBProperty[DeviceNo=0].PrimaryAddress=30\n"},
        {"V409", ":GPIBProperty[DeviceNo=0].SecondaryAddress=40\n", "2:1 V501, 2:44 V409",
         ":GPIBProperty[DeviceNo=0].SecondaryAddress=30\n"},
        {"V409", ":GPIBProperty[DeviceNo=0].SystemController=2\n", "2:1 V501, 2:44 V409",
         ":GPIBProperty[DeviceNo=0].SecondaryAddress=65535\n"},

        {"V501",
         "# a\n:GPIBProperty[DeviceNo=0].PrimaryAddress=1\n"
         ":GPIBProperty[DeviceNo=1].PrimaryAddress=1\n",
         "2:1 V502, 3:1 V501", "# :GPIBProperty[DeviceNo=0].PrimaryAddress=1\n"},
        {"V502", "GPIB0::1::INSTR\n\n# a\n: b\n", "3:1 V502", "GPIB0::1::INSTR\n"},
    };
    return s_examples;
}

class Findings : public testing::TestWithParam<Example>
{};

TEST_P(Findings, AreThoseOfTheExampleAndTheNearOneLacksTheCode)
{
    const Example& example = GetParam();
    EXPECT_EQ(findingsOf(example.text), example.findings);
    const std::string list = findingsOf(example.near);
    EXPECT_EQ(list.find(example.code), std::string::npos) << "the near example gives " << list;
}

std::string caseName(const testing::TestParamInfo<Example>& row)
{
    return row.param.code + ("_" + std::to_string(row.index));
}

INSTANTIATE_TEST_SUITE_P(Lint, Findings, testing::ValuesIn(examples()), caseName);

TEST(FindingsInLine, AreThoseOfTheLineAlone)
{
    EXPECT_TRUE(lint::findingsInLine("DMM=GPIB0::1::INSTR").empty());
    const std::vector<lint::Finding> findings = lint::findingsInLine("dmm=GPIB0::31::INSTR");
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0].code, lint::FindingCode::LowerCaseAlias);
    EXPECT_EQ(findings[1].code, lint::FindingCode::OutOfRange);
    EXPECT_EQ(findings[1].line, 1U);
    EXPECT_EQ(findings[1].column, 12U);
}

// What people write in the place of a resource string is recognised.
TEST(FindingsInLine, SayWhatAWrongResourceStringWasMeantToBe)
{
    const std::pair<const char*, const char*> rows[] = {
        {"DMM TCPIP0::h::inst0::INSTR", "has to be a '='"},
        {"DMM:GPIB0::8::INSTR", "has to be a '='"},
        {"DMM: GPIB0::8::INSTR", "has to be a '='"},
        {"A=\"GPIB0::8::INSTR\"", "quotation marks"},
        {"A=com12", "'ASRL12::INSTR'"},
        {"A=/dev/ttyUSB0", "'ASRL/dev/ttyUSB0::INSTR'"},
        {"A=10.0.0.7", "'TCPIP0::10.0.0.7::inst0::INSTR'"},
        {"A=http://10.0.0.7/", "'TCPIP0::HOST::inst0::INSTR'"},
        {"A=TCPIP0::meter:5025::SOCKET", "'TCPIP0::HOST::PORT::SOCKET'"},
        {"A=COMPUTER", "begins with none of the interfaces"},
        {"A=B:C", "begins with none of the interfaces"},
    };
    for (const auto& [line, hint] : rows) {
        const std::vector<lint::Finding> findings = lint::findingsInLine(line);
        ASSERT_EQ(findings.size(), 1U) << line;
        EXPECT_EQ(findings[0].code, lint::FindingCode::NotAResource) << line;
        EXPECT_NE(findings[0].message.find(hint), std::string::npos) << findings[0].message;
    }
}

TEST(FindingTable, EachCodeHasAnExample)
{
    std::set<std::string> shown;
    for (const Example& example : examples()) {
        shown.insert(example.code);
    }
    for (const lint::FindingKind& kind : lint::findingKinds()) {
        EXPECT_EQ(shown.count(lint::codeName(kind.code)), 1U) << lint::codeName(kind.code);
    }
}

TEST(FindingTable, IsSortedAndEachRemedyIsASentence)
{
    const std::vector<lint::FindingKind>& kinds = lint::findingKinds();
    EXPECT_TRUE(std::is_sorted(kinds.begin(), kinds.end(),
                               [](const lint::FindingKind& left, const lint::FindingKind& right) {
                                   return left.code < right.code;
                               }));
    for (const lint::FindingKind& kind : kinds) {
        EXPECT_EQ(std::string_view(kind.remedy).back(), '.') << lint::codeName(kind.code);
        EXPECT_EQ(lint::codeFromName(lint::codeName(kind.code)), kind.code);
    }
    EXPECT_FALSE(lint::codeFromName("V999"));
    EXPECT_FALSE(lint::codeFromName("v304"));
}

} // namespace
