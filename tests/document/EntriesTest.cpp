// SPDX-License-Identifier: MIT
#include "document/Entries.h"

#include "tests/support/FileContents.h"
#include "tests/support/OracleReader.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

using QvVisa::Document;
using QvVisa::Entries;

namespace {

constexpr std::string_view s_text = ":QvVisaConfigurationFileVersion01 with text\n"
                                    ":Provider=7\n"
                                    ":Provider=4294967296\n"
                                    "dmm = GPIB0::1::INSTR\n"
                                    "GPIB0::2::INSTR\r\n"
                                    "DMM=GPIB0::3::INSTR\n"
                                    "GPIB0::2::INSTR\r\n"
                                    ":SerialProperty[DeviceNo=65537].DataBits=263\n"
                                    ":SerialProperty[DeviceNo=1].Baudrate=70000\n"
                                    ":SerialProperty[DeviceNo=2].Parity=99999999999\n"
                                    ":GPIBProperty[DeviceNo=0].SecondaryAddress=65536\n"
                                    "# end";

FileContents contentsOf(const Entries& entries)
{
    FileContents contents;
    for (const auto& [name, alias] : entries.aliases) {
        contents.aliases[name] = alias.resource;
    }
    for (const Entries::Resource& resource : entries.resources) {
        contents.resources.emplace_back(resource.resource);
    }
    contents.gpib = entries.gpib;
    contents.serial = entries.serial;
    contents.provider = entries.provider;
    return contents;
}

} // namespace

TEST(Entries, AreWhatTheReaderReads)
{
    const Document document{std::string(s_text)};
    OracleReader oracle;
    oracle.read(s_text);
    EXPECT_EQ(contentsOf(Entries(document)), oracle.contents());
}

TEST(Entries, NameTheLineThatDecides)
{
    const Document document{std::string(s_text)};
    const Entries entries(document);
    EXPECT_EQ(entries.aliases.at("DMM").line, 5U);
    EXPECT_EQ(entries.resources.at(1).line, 6U);
    EXPECT_EQ(entries.providerLine, 1U);
}

TEST(Entries, AreNoneWithoutTheHeader)
{
    const Document document("DMM=GPIB0::1::INSTR\n:Provider=1\n");
    EXPECT_EQ(contentsOf(Entries(document)), FileContents());
}

TEST(Entries, OneAliasIsFoundWithoutTheOthers)
{
    const Document document{std::string(s_text)};
    const auto alias = findAlias(document, "dmm");
    ASSERT_TRUE(alias);
    EXPECT_EQ(alias->line, 5U);
    EXPECT_EQ(alias->resource, "GPIB0::3::INSTR");
    for (const char* other : {"", "D", "DMM=", "GPIB0::2::INSTR\r", ":Provider"}) {
        EXPECT_FALSE(findAlias(document, other)) << other;
    }
}
