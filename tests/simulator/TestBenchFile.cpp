// SPDX-License-Identifier: MIT
#include "resourcemanager/VisaCalls.h"
#include "simulator/BenchFile.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <sys/stat.h>

using simulator::Bench;
using simulator::BenchFile;
using simulator::BenchResource;
using simulator::Call;

namespace {

/// The bench of a text that must be without fault.
Bench benchOf(const std::string& text)
{
    const BenchFile file = BenchFile::parse(text, "/bench/");
    for (const BenchFile::Message& message : file.messages()) {
        ADD_FAILURE() << "line " << message.line << ": " << message.text;
    }
    return file.bench();
}

std::vector<std::string> descriptions(const Bench& bench)
{
    std::vector<std::string> texts;
    for (const BenchResource& resource : bench.resources()) {
        for (std::uint32_t number = 1; number <= resource.size(); ++number) {
            texts.push_back(resource.numbered(number));
        }
    }
    return texts;
}

using Texts = std::vector<std::string>;

} // namespace

TEST(BenchFile, ReadsResourcesInOrderWithDuplicates)
{
    const Bench bench = benchOf("# a comment\n"
                                "\n"
                                "resource GPIB0::20::INSTR\n"
                                "  \t resource\tASRL1::INSTR   # after it\n"
                                "resource GPIB0::20::INSTR#not-a-comment\r\n"
                                "resource GPIB0::20::INSTR");
    EXPECT_EQ(descriptions(bench), (Texts{"GPIB0::20::INSTR", "ASRL1::INSTR",
                                          "GPIB0::20::INSTR#not-a-comment", "GPIB0::20::INSTR"}));
    EXPECT_TRUE(bench.resources()[0].hasEnd);
    EXPECT_FALSE(bench.resources()[0].interface);
    EXPECT_EQ(bench.resources()[0].identification, "Quorvane,Simulated instrument,0,1.0");
}

TEST(BenchFile, ReadsQuotesAndEscapes)
{
    const Bench bench = benchOf("resource \"\"\n"
                                "resource \"two words # no comment\"\n"
                                "resource half\"quoted \"word\n"
                                "resource caf\\xE9\\x0a\n"
                                "resource \\\\\\\"\\x23 \n"
                                "resource \"\\\"\"\n"
                                "resource a=b\n");
    EXPECT_EQ(descriptions(bench), (Texts{"", "two words # no comment", "halfquoted word",
                                          "caf\xE9\n", "\\\"#", "\"", "a=b"}));
}

TEST(BenchFile, ReadsOptions)
{
    const Bench bench = benchOf("resource one idn=\"A, \\\"B\\\", =C\" interface=ASRL,7 no-end\n"
                                "resource two interface=33024,0xFFFF\n"
                                "resource three \"idn=quoted all over\"\n");
    EXPECT_EQ(bench.resources()[2].identification, "quoted all over");
    const BenchResource& one = bench.resources()[0];
    EXPECT_EQ(one.identification, "A, \"B\", =C");
    ASSERT_TRUE(one.interface);
    EXPECT_EQ(one.interface->type, VI_INTF_ASRL);
    EXPECT_EQ(one.interface->number, 7);
    EXPECT_FALSE(one.hasEnd);
    const BenchResource& two = bench.resources()[1];
    ASSERT_TRUE(two.interface);
    EXPECT_EQ(two.interface->type, 33024);
    EXPECT_EQ(two.interface->number, 65535);
}

TEST(BenchFile, RepeatsResources)
{
    const Bench bench = benchOf("resource ASRL{n}::INSTR repeat=3\n"
                                "resource same repeat=2\n"
                                "resource {n}.{n} repeat=1\n"
                                "resource plain{n}\n");
    EXPECT_EQ(descriptions(bench), (Texts{"ASRL1::INSTR", "ASRL2::INSTR", "ASRL3::INSTR", "same",
                                          "same", "1.1", "plain{n}"}));
}

TEST(BenchFile, FindsByMeaning)
{
    const Bench bench = benchOf("resource GPIB0::20::INSTR idn=first\n"
                                "resource gpib0::20::instr idn=second\n"
                                "resource ASRL{n}::INSTR repeat=1000000 idn=port\n"
                                "resource ASRL7::INSTR idn=late\n"
                                "resource same repeat=2 idn=same\n"
                                "resource gpib::1::{n} repeat=30 idn=bus\n"
                                "resource host9{n}.{n} repeat=30 idn=host\n"
                                "resource USB0::{n}::1::S repeat=300 idn=usb\n"
                                "resource single{n} repeat=1 idn=single\n");
    const auto identification = [&](const char* name) {
        const BenchResource* const resource = bench.find(name);
        return resource != nullptr ? resource->identification : "none";
    };
    EXPECT_EQ(identification("GPIB0::20::INSTR"), "first");
    EXPECT_EQ(identification("GPIB::20"), "first");
    EXPECT_EQ(identification("asrl1::instr"), "port");
    EXPECT_EQ(identification("ASRL1000000::INSTR"), "port");
    EXPECT_EQ(identification("ASRL7::INSTR"), "port");
    EXPECT_EQ(identification("SAME"), "same");
    EXPECT_EQ(identification("GPIB0::1::12::INSTR"), "bus");
    EXPECT_EQ(identification("host912.12"), "host");
    EXPECT_EQ(identification("host912.13"), "none");
    EXPECT_EQ(identification("USB::0x1a::0x1::s::instr"), "usb");
    EXPECT_EQ(identification("USB::0x1ff::1::S"), "none");
    EXPECT_EQ(identification("single1"), "single");
    EXPECT_EQ(identification("single2"), "none");
    EXPECT_EQ(identification("host9"), "none");
    EXPECT_EQ(identification("GPIB0::1::INSTR"), "none");
    EXPECT_EQ(identification("ASRL0::INSTR"), "none");
    EXPECT_EQ(identification("ASRL1000001::INSTR"), "none");
    EXPECT_EQ(identification("ASRL{n}::INSTR"), "none");
    EXPECT_EQ(identification("ASR"), "none");
    EXPECT_EQ(identification(""), "none");
}

TEST(BenchFile, EachRepeatedResourceIsFoundAgain)
{
    for (const char* const description : {"ASRL{n}0::INSTR", "ASRL1{n}::INSTR", "ASRL{n}{n}::INSTR",
                                          "USB0::{n}::0x{n}::S{n}::INSTR", "TCPIP::[fe80::{n}]",
                                          "TCPIP::[::{n}:{n}]", "GPIB0::5::{n}", "meter {n}0{n}"}) {
        const Bench bench =
            benchOf(std::string("resource \"") + description + "\" repeat=300 idn=found\n");
        for (std::uint32_t number = 1; number <= 300; ++number) {
            const std::string text = bench.resources()[0].numbered(number);
            EXPECT_NE(bench.find(text), nullptr) << text;
        }
    }
}

TEST(BenchFile, ReadsStatuses)
{
    const Bench bench = benchOf("status viClose VI_ERROR_CLOSING_FAILED\n"
                                "status viFindNext 0xBFFF003E at=2\n"
                                "status viFindNext VI_SUCCESS at=4\n"
                                "status viFindRsrc VI_ERROR_SYSTEM_ERROR for=?*\n"
                                "status viFindRsrc 0x3FFF0085 at=3 for=ASRL?*\n"
                                "status viOpenDefaultRM VI_ERROR_ALLOC\n");
    EXPECT_EQ(bench.status(Call::Close, 1), visaError(0x16));
    EXPECT_EQ(bench.status(Call::Close, 99), visaError(0x16));
    EXPECT_FALSE(bench.status(Call::FindNext, 1));
    EXPECT_EQ(bench.status(Call::FindNext, 2), visaError(0x3E));
    EXPECT_FALSE(bench.status(Call::FindNext, 3));
    EXPECT_EQ(bench.status(Call::FindNext, 4), VI_SUCCESS);
    EXPECT_EQ(bench.status(Call::FindRsrc, 1, "?*"), VI_ERROR_SYSTEM_ERROR);
    EXPECT_FALSE(bench.status(Call::FindRsrc, 1, "?*::INSTR"));
    EXPECT_FALSE(bench.status(Call::FindRsrc, 1, "ASRL?*"));
    EXPECT_EQ(bench.status(Call::FindRsrc, 3, "ASRL?*"), visaWarning(0x85));
    EXPECT_EQ(bench.status(Call::OpenDefaultRM, 1), VI_ERROR_ALLOC);
    EXPECT_FALSE(bench.status(Call::Open, 1));
}

TEST(BenchFile, KnowsEveryCallByName)
{
    for (const std::string_view name : resourcemanager::callNames) {
        const Bench bench = benchOf("status " + std::string(name) + " VI_ERROR_IO\n");
        EXPECT_EQ(bench.status(*resourcemanager::callFromText(name), 1), visaError(0x3E)) << name;
    }
}

TEST(BenchFile, TheLastSettingThatFitsCounts)
{
    const Bench bench = benchOf("status viClose VI_ERROR_IO at=2\n"
                                "status viClose VI_ERROR_TMO\n"
                                "status viClose VI_SUCCESS at=1\n"
                                "count 7 for=?*\n"
                                "count 8\n"
                                "count 9 for=ASRL?*\n"
                                "scan-time 1\n"
                                "scan-time 0x10 for=?*\n");
    EXPECT_EQ(bench.status(Call::Close, 1), VI_SUCCESS);
    EXPECT_EQ(bench.status(Call::Close, 2), VI_ERROR_TMO);
    EXPECT_EQ(bench.count("?*"), 8U);
    EXPECT_EQ(bench.count("ASRL?*"), 9U);
    EXPECT_EQ(bench.scanTime("x"), std::chrono::milliseconds(1));
    EXPECT_EQ(bench.scanTime("?*"), std::chrono::milliseconds(16));
}

TEST(BenchFile, ReadsTheSettingsOfTheSearch)
{
    const Bench bench = benchOf("count 4294967295\n"
                                "count 0 for=\"a b\"\n"
                                "scan-time 3600000\n"
                                "wait-for-file /tmp/there\n"
                                "wait-for-file \"sub folder/go=1\" for=?*\n");
    EXPECT_EQ(bench.count("?*"), 4294967295U);
    EXPECT_EQ(bench.count("a b"), 0U);
    EXPECT_EQ(bench.scanTime("?*"), std::chrono::hours(1));
    EXPECT_EQ(bench.waitForFile(Call::FindRsrc, 1, "ASRL?*"), "/tmp/there");
    EXPECT_EQ(bench.waitForFile(Call::FindRsrc, 1, "?*"), "/bench/sub folder/go=1");
    EXPECT_EQ(bench.waitForFile(Call::FindNext, 1), "");

    const Bench nothing = benchOf("");
    EXPECT_FALSE(nothing.count("?*"));
    EXPECT_EQ(nothing.scanTime("?*"), std::chrono::milliseconds(0));
    EXPECT_EQ(nothing.waitForFile(Call::FindRsrc, 1, "?*"), "");
}

TEST(BenchFile, ReadsWhichCallsWaitForAFile)
{
    const Bench bench = benchOf("wait-for-file a call=viFindNext\n"
                                "wait-for-file b call=viFindNext at=2\n"
                                "wait-for-file c call=viFindRsrc at=2 for=?*\n"
                                "wait-for-file d call=viOpenDefaultRM\n");
    EXPECT_EQ(bench.waitForFile(Call::FindNext, 1), "/bench/a");
    EXPECT_EQ(bench.waitForFile(Call::FindNext, 2), "/bench/b");
    EXPECT_EQ(bench.waitForFile(Call::FindRsrc, 2, "?*"), "/bench/c");
    EXPECT_EQ(bench.waitForFile(Call::FindRsrc, 1, "?*"), "");
    EXPECT_EQ(bench.waitForFile(Call::FindRsrc, 2, "ASRL?*"), "");
    EXPECT_EQ(bench.waitForFile(Call::OpenDefaultRM, 1), "/bench/d");
    EXPECT_EQ(bench.waitForFile(Call::Close, 1), "");
}

TEST(BenchFile, SaysWhatIsWrongWithALineAndUsesTheRest)
{
    const std::string interface = "resource: interface=TYPE,NUMBER takes a type such as ASRL or 4 "
                                  "and a number from 0 to 65535, not ";
    const std::string escapes = "a \\ must be followed by \\, \" or x and two hexadecimal digits";
    const std::string zero = "a bench cannot contain a NUL byte";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"scantime 5", "unknown setting \"scantime\""},
        {"Resource x", "unknown setting \"Resource\""},
        {"\"\" x", "unknown setting \"\""},
        {"ASRL1::INSTR", "unknown setting \"ASRL1::INSTR\""},
        {"resource", "resource: the description is missing"},
        {"resource x y", "resource: unknown option \"y\""},
        {"resource x IDN=y", "resource: unknown option \"IDN=y\""},
        {"resource x idn", "resource: unknown option \"idn\""},
        {"resource x no-end=1", "resource: unknown option \"no-end=1\""},
        {"resource x interface=ASRL", interface + "\"ASRL\""},
        {"resource x interface=SERIAL,1", interface + "\"SERIAL,1\""},
        {"resource x interface=4,65536", interface + "\"4,65536\""},
        {"resource x interface=4,1,2", interface + "\"4,1,2\""},
        {"resource x repeat=0", "resource: repeat: \"0\" is not a number from 1 to 10000000"},
        {"resource x repeat=10000001",
         "resource: repeat: \"10000001\" is not a number from 1 to 10000000"},
        {"resource x repeat=-1", "resource: repeat: \"-1\" is not a number from 1 to 10000000"},
        {"resource " + std::string(256, 'x'),
         "resource: a description has 255 characters at most, not 256"},
        {"resource " + std::string(257, 'x') + " no-end",
         "resource: a description has 256 characters at most, not 257"},
        {"resource " + std::string(253, 'x') + "{n} repeat=100",
         "resource: a description has 255 characters at most, not 256"},
        {"resource \"x", "a quote is not closed"},
        {"resource x\\", escapes},
        {"resource x\\n", escapes},
        {"resource x\\x4", escapes},
        {"resource x\\xG0", escapes},
        {"resource x\\x00", zero},
        {std::string("resource x\0y", 12), zero},
        {"status", "status: the call is missing"},
        {"status viLock VI_ERROR_IO", "status: there is no call \"viLock\""},
        {"status viclose VI_ERROR_IO", "status: there is no call \"viclose\""},
        {"status viClose", "status: the status is missing"},
        {"status viClose VI_ERROR", "status: \"VI_ERROR\" is neither the name of a status nor a "
                                    "number"},
        {"status viClose VI_ERROR_IO at=0",
         "status: at: \"0\" is not a number from 1 to 4294967295"},
        {"status viClose VI_ERROR_IO at", "status: unknown option \"at\""},
        {"status viClose VI_ERROR_IO for=?*", "status: unknown option \"for=?*\""},
        {"status viOpenDefaultRM VI_ERROR_IO at=1", "status: unknown option \"at=1\""},
        {"count", "count: the number is missing"},
        {"count -1", "count: \"-1\" is not a number from 0 to 4294967295"},
        {"count 4294967296", "count: \"4294967296\" is not a number from 0 to 4294967295"},
        {"count 1 at=2", "count: unknown option \"at=2\""},
        {"count 1 for=a for=b", "count: unknown option \"for=b\""},
        {"scan-time", "scan-time: the number of milliseconds is missing"},
        {"scan-time x", "scan-time: \"x\" is not a number from 0 to 3600000"},
        {"scan-time 1.5", "scan-time: \"1.5\" is not a number from 0 to 3600000"},
        {"scan-time 3600001", "scan-time: \"3600001\" is not a number from 0 to 3600000"},
        {"wait-for-file", "wait-for-file: the path is missing"},
        {"wait-for-file \"\"", "wait-for-file: the path is empty"},
        {"wait-for-file a b", "wait-for-file: unknown option \"b\""},
        {"wait-for-file a call=viLock", "wait-for-file: there is no call \"viLock\""},
        {"wait-for-file a call=viClose for=?*", "wait-for-file: unknown option \"for=?*\""},
        {"wait-for-file a call=viOpenDefaultRM at=1", "wait-for-file: unknown option \"at=1\""},
        {"wait-for-file a call=viFindNext at=0",
         "wait-for-file: at: \"0\" is not a number from 1 to 4294967295"},
        {"wait-for-file a at=1 call=viFindNext", "wait-for-file: unknown option "
                                                 "\"call=viFindNext\""},
    };
    for (const auto& [line, message] : cases) {
        SCOPED_TRACE(line);
        const BenchFile file = BenchFile::parse("resource before\n" + line + "\nresource after\n");
        EXPECT_EQ(descriptions(file.bench()), (Texts{"before", "after"}));
        ASSERT_EQ(file.messages().size(), 1U);
        EXPECT_EQ(file.messages()[0].line, 2U);
        EXPECT_EQ(file.messages()[0].text, message);
    }
}

TEST(BenchFile, ABadLineChangesNothingElse)
{
    const BenchFile file = BenchFile::parse("status viClose VI_ERROR_IO at=x\n"
                                            "count 5 oops\n"
                                            "scan-time 5 oops\n"
                                            "wait-for-file a oops\n");
    EXPECT_EQ(file.messages().size(), 4U);
    EXPECT_FALSE(file.bench().status(Call::Close, 1));
    EXPECT_FALSE(file.bench().count("?*"));
    EXPECT_EQ(file.bench().scanTime("?*").count(), 0);
    EXPECT_EQ(file.bench().waitForFile(Call::FindRsrc, 1, "?*"), "");
}

TEST(BenchFile, TakesAnyBytes)
{
    std::string bytes;
    for (int round = 0; round < 4; ++round) {
        for (int byte = 0; byte < 256; ++byte) {
            bytes += static_cast<char>(byte);
        }
    }
    const BenchFile noise = BenchFile::parse(bytes);
    EXPECT_FALSE(noise.messages().empty());
    EXPECT_TRUE(noise.bench().resources().empty());

    const BenchFile longLine = BenchFile::parse(std::string(1'000'000, 'x') + "\nresource a");
    EXPECT_EQ(longLine.messages().size(), 1U);
    EXPECT_EQ(descriptions(longLine.bench()), Texts{"a"});
}

TEST(BenchFile, AByteOrderMarkIsNoPartOfTheFirstLine)
{
    EXPECT_EQ(descriptions(benchOf("\xEF\xBB\xBFresource a\n")), Texts{"a"});
}

TEST(BenchFile, ReadsAFileAndTakesPathsFromItsFolder)
{
    const support::TemporaryFolder folder;
    const std::string path = (folder.path() / "bench.txt").string();
    support::writeFile(path, "resource a\nwait-for-file go\n");
    const BenchFile file = BenchFile::read(path);
    EXPECT_TRUE(file.messages().empty());
    EXPECT_EQ(descriptions(file.bench()), Texts{"a"});
    EXPECT_EQ(file.bench().waitForFile(Call::FindRsrc, 1, "?*"), (folder.path() / "go").string());
}

TEST(BenchFile, AFileThatCannotBeReadIsAnEmptyBenchWithAMessage)
{
    const support::TemporaryFolder folder;
    const auto path = [&](const char* name) { return (folder.path() / name).string(); };
    ASSERT_EQ(::mkfifo(path("fifo").c_str(), 0600), 0);
    support::writeFile(path("large"), "resource a\n");
    std::filesystem::resize_file(path("large"), (std::uintmax_t{64} << 20U) + 1);
    const std::string notRegular = "it is not a regular file";
    for (const auto& [name, problem] : std::vector<std::pair<std::string, std::string>>{
             {path("missing"), "No such file or directory"},
             {folder.path().string(), notRegular},
             {path("fifo"), notRegular},
             {"/dev/zero", notRegular},
             {path("large"), "it is limited to 64 MiB"}}) {
        const BenchFile file = BenchFile::read(name);
        EXPECT_TRUE(file.bench().resources().empty()) << name;
        ASSERT_EQ(file.messages().size(), 1U) << name;
        EXPECT_EQ(file.messages()[0].line, 0U) << name;
        EXPECT_EQ(file.messages()[0].text,
                  "the bench cannot be read (" + problem + "); it counts as empty");
    }
}
