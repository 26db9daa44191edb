// SPDX-License-Identifier: MIT
#include "tests/config/store/StoreTest.h"

#include <iterator>
#include <limits>

namespace {

using QvVisa::SGpibProperties;
using QvVisa::SSerialProperties;

static_assert(QvVisa::ConfigurationFile::BUFLEN == 256);

class StoreQueries : public StoreTest
{
protected:
    /// The name after replaceAlias(), or empty if that returned false. Then the name is unchanged.
    static std::string replaced(const std::string& name)
    {
        std::string text = name;
        if (store().replaceAlias(text)) {
            return text;
        }
        EXPECT_EQ(text, name);
        return {};
    }
};

TEST_F(StoreQueries, LookupAliasIgnoresTheCaseOfTheResource)
{
    m_configuration.write("DMM=TCPIP0::10.0.0.5::inst0::INSTR\nscope = GPIB0::7::INSTR\n"
                          "GPIB0::8::INSTR\n");
    EXPECT_EQ(store().lookupAlias("tcpip0::10.0.0.5::INST0::instr"), "DMM");
    EXPECT_EQ(store().lookupAlias("gpib0::7::instr"), "SCOPE");
    for (const char* resource :
         {"GPIB0::7::INST", "GPIB0::7::INSTR ", "DMM", "", "GPIB0::8::INSTR"}) {
        EXPECT_EQ(store().lookupAlias(resource), "") << resource;
    }
    store().setData({{"", "NONE"}});
    EXPECT_EQ(store().lookupAlias(""), "NONE");
}

TEST_F(StoreQueries, LookupAliasReturnsTheFirstInTheTablesOrder)
{
    std::string lines;
    for (int i = 0; i < 50; ++i) {
        lines +=
            "A" + std::to_string(i) + (i % 2 == 0 ? "=gpib0::1::instr\n" : "=GPIB0::1::INSTR\n");
    }
    m_configuration.write(lines);
    ASSERT_EQ(store().m_aliases.size(), 50U);
    EXPECT_EQ(store().lookupAlias("Gpib0::1::Instr"), store().m_aliases.begin()->first);
}

TEST_F(StoreQueries, ReplaceAliasTakesTheNameInAnyCase)
{
    m_configuration.write("Dmm = tcpip0::10.0.0.5::INSTR\nGPIB0::2::INSTR\n");
    for (const char* name : {"dmm", "DMM", "dMm"}) {
        EXPECT_EQ(replaced(name), "tcpip0::10.0.0.5::INSTR") << name;
    }
    for (const char* name : {"dmm ", "dm", "", "tcpip0::10.0.0.5::instr", "gpib0::2::instr"}) {
        EXPECT_EQ(replaced(name), "") << name;
    }
}

TEST_F(StoreQueries, ReplaceAliasFindsALowerCaseAliasOnlyAfterSaveAndReload)
{
    store().setData({{"GPIB0::1::INSTR", "dmm"}});
    EXPECT_EQ(replaced("dmm"), "");
    store().save();
    store().load();
    EXPECT_EQ(replaced("dmm"), "GPIB0::1::INSTR");
}

TEST_F(StoreQueries, GetAllResourcesReturnsEachOnceInByteOrder)
{
    m_configuration.write("b\nGPIB0::2::INSTR\nB\nGPIB0::2::INSTR\n\xe4\n~\nGPIB0::10::INSTR\n"
                          "ONE=GPIB0::2::INSTR\nTWO=A\nTHREE=A\nFOUR=gpib0::2::instr\n");
    EXPECT_EQ(store().getAllResources(), (Resources{"A", "B", "GPIB0::10::INSTR", "GPIB0::2::INSTR",
                                                    "b", "gpib0::2::instr", "~", "\xe4"}));
}

TEST_F(StoreQueries, GetResourceNumbersTheResourcesAndThenTheAliases)
{
    m_configuration.write("SECOND\nA=1\nFIRST\nB=2\nC=3\n");
    std::vector<std::pair<std::string, std::string>> expected{{"SECOND", ""}, {"FIRST", ""}};
    for (const auto& [alias, resource] : store().m_aliases) {
        expected.emplace_back(resource, alias);
    }
    const auto entry = [](std::size_t index) {
        std::string alias = "from the call before";
        const std::string resource = store().getResource(index, alias);
        return std::pair(resource, alias);
    };
    ASSERT_EQ(expected.size(), 5U);
    // Backwards too: a call does not depend on the one before.
    for (const std::size_t index : {0U, 1U, 2U, 3U, 4U, 3U, 2U, 1U, 0U}) {
        EXPECT_EQ(entry(index), expected[index]) << index;
    }
    const std::pair<std::string, std::string> none;
    for (const std::size_t index : {std::size_t{5}, std::numeric_limits<std::size_t>::max()}) {
        EXPECT_EQ(entry(index), none) << index;
    }
    store().m_resources.clear();
    EXPECT_EQ(entry(0), expected[2]);
    EXPECT_EQ(entry(3), none);
}

TEST_F(StoreQueries, RecordsAreThoseOfTheFileOrDefaults)
{
    std::filesystem::remove(file());
    SGpibProperties board{1, 2, 3};
    SSerialProperties port{4, 5, 6, 7, 8};
    EXPECT_FALSE(store().getGpibProperties(0, board)) << "no file has been read";
    EXPECT_FALSE(store().getSerialProperties(1, port)) << "no file has been read";
    EXPECT_EQ(board, (SGpibProperties{1, 2, 3}));
    EXPECT_EQ(port, (SSerialProperties{4, 5, 6, 7, 8}));

    m_configuration.write(":GPIBProperty[DeviceNo=65535].SecondaryAddress=96\n"
                          ":SerialProperty[DeviceNo=3].FlowControl=6\n");
    store().load();
    // Not those of the public table.
    store().m_serialProperties = {{3, {1200, 7, 1, 1, 1}}, {4, {1200, 7, 1, 1, 1}}};
    EXPECT_TRUE(store().getGpibProperties(65535, board));
    EXPECT_EQ(board, (SGpibProperties{0, 96, 1}));
    EXPECT_TRUE(store().getGpibProperties(0, board));
    EXPECT_EQ(board, SGpibProperties());
    EXPECT_TRUE(store().getSerialProperties(3, port));
    EXPECT_EQ(port, (SSerialProperties{9600, 8, 0, 0, 6}));
    EXPECT_TRUE(store().getSerialProperties(4, port));
    EXPECT_EQ(port, SSerialProperties());
}

} // namespace
