// SPDX-License-Identifier: MIT
#include "config/ModernConfigurationFile.h"

#include "tests/support/FileContents.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

using QvVisa::ModernConfigurationFile;

namespace {

const std::filesystem::path s_folder = QVVISA_SPECIMENS;

/// A file in specimens/. One that is not accepted has no contents.
struct Specimen
{
    std::string name;
    bool isParseAble = false;
    FileContents contents{};
};

FileContents contents(const std::unordered_map<std::string, std::string>& aliases,
                      const std::vector<std::string>& resources = {},
                      unsigned short provider = 3674, const QvVisa::GpibPropertiesMap& gpib = {},
                      const QvVisa::SerialPropertiesMap& serial = {})
{
    return {aliases, resources, gpib, serial, provider};
}

std::vector<Specimen> specimens()
{
    return {
        {"alias-twice.conf", true, contents({{"DMM", "GPIB0::3::INSTR"}})},
        {"alias-with-blank-in-value.conf", true, contents({{"SCOPE", "USB0::1::2::3::INSTR"}})},
        {"alias-with-equals-sign-in-value.conf", true,
         contents({{"A", "=B"}, {"C", "=D"}, {"E", "F=G"}})},
        {"alias-without-name.conf", true, contents({{"DMM", "GPIB0::3::INSTR"}})},
        {"alias-without-value.conf", true, contents({}, {"SCOPE"})},
        {"byte-order-mark.conf"},
        // One line, which begins with the header.
        {"carriage-returns-only.conf", true, contents({})},
        {"crlf.conf", true,
         contents({{"DMM", "ASRL1::INSTR"}}, {"GPIB0::12::INSTR\r"}, 42, {},
                  {{1, {9600, 8, 0, 2, 0}}})},
        {"cut-in-a-line.conf", true, contents({}, {}, 42, {}, {{1, {}}})},
        {"empty.conf"},
        {"first-line-empty.conf"},
        {"hand-written.conf", true,
         contents({{"DMM", "TCPIP0::10.0.0.5::INSTR"}}, {"GPIB0::12::INSTR"}, 3674, {{0, {}}},
                  {{1, {}}})},
        {"header-cut-short.conf"},
        {"header-in-lower-case.conf"},
        {"header-missing.conf"},
        {"header-on-second-line.conf"},
        {"header-only.conf", true, contents({})},
        {"header-without-line-feed.conf", true, contents({})},
        {"high-bytes.conf", true,
         contents({{"Z\xE4HLER\xDF", "TCPIP0::z\xE4hler::INSTR"}, {"\xA0:PROVIDER", "1"}},
                  {"GPIB0::\x80\x85\xA0\xFF::INSTR"})},
        {"indented.conf", true, contents({})},
        {"no-last-line-feed.conf", true, contents({{"DMM", "ASRL1::INSTR"}}, {"GPIB0::12::INSTR"})},
        {"nul-bytes.conf", true,
         contents({{std::string("A\0B", 3), std::string("C\0D", 3)}},
                  {std::string(1, '\0'), std::string("GPIB0\0::12", 10)})},
        {"number-beyond-its-field.conf", true,
         contents({}, {}, 3674, {{1, {5, 65535, 1}}}, {{2, {}}})},
        {"number-too-large.conf", true,
         contents({}, {}, 3674, {}, {{2, {2147483647, 8, 0, 0, 0}}})},
        {"number-with-sign.conf", true, contents({})},
        {"property-half-there.conf", true, contents({})},
        {"property-in-wrong-case.conf", true, contents({}, {}, 42)},
        {"property-spaced-out.conf", true, contents({}, {}, 3674, {}, {{1, {9600, 8, 0, 1, 0}}})},
        {"provider-twice.conf", true, contents({}, {}, 2)},
        {"resource-twice.conf", true,
         contents({}, {"GPIB0::12::INSTR", "ASRL1::INSTR", "GPIB0::12::INSTR"})},
        {"semicolon-for-comment.conf", true, contents({{";DMM", "ASRL1::INSTR"}}, {"; spare"})},
        {"trailing-blanks.conf", true,
         contents({{"DMM", "ASRL1::INSTR"}}, {"GPIB0::12::INSTR  ", "ASRL1::INSTR\t"}, 42)},
        {"utf-16.conf"},
        {"vertical-white-space.conf", true, contents({{"DMM", "ASRL1::INSTR"}}, {"A\vB"}, 42)},
    };
}

} // namespace

TEST(Specimens, AreReadAsExpected)
{
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(s_folder)) {
        files.insert(entry.path().filename());
    }
    for (const Specimen& specimen : specimens()) {
        EXPECT_EQ(files.erase(specimen.name), 1U) << specimen.name << " is missing";
        const std::filesystem::path path = s_folder / specimen.name;
        EXPECT_EQ(ModernConfigurationFile::isParseAble(path), specimen.isParseAble)
            << specimen.name;
        if (specimen.isParseAble) {
            EXPECT_EQ(readWithModernConfigurationFile(path), specimen.contents) << specimen.name;
        }
    }
    EXPECT_TRUE(files.empty()) << *files.begin() << " is not listed";
}
