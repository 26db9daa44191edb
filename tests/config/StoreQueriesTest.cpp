// SPDX-License-Identifier: MIT
#include "tests/config/StoreFixture.h"

#include <limits>

namespace {

using QvVisa::SGpibProperties;
using QvVisa::SSerialProperties;

class StoreQueries : public StoreTest
{};

TEST_F(StoreQueries, FindsAnAliasByItsResourceInAnyCase)
{
    m_configuration.write("DMM=TCPIP0::10.0.0.5::inst0::INSTR\nscope = GPIB0::7::INSTR\n");
    EXPECT_EQ(store().lookupAlias("tcpip0::10.0.0.5::INST0::instr"), "DMM");
    EXPECT_EQ(store().lookupAlias("gpib0::7::instr"), "SCOPE");
    EXPECT_EQ(store().lookupAlias("GPIB0::7::INST"), "");
    EXPECT_EQ(store().lookupAlias("GPIB0::7::INSTR "), "");
    EXPECT_EQ(store().lookupAlias("DMM"), "") << "an alias is no resource";
    EXPECT_EQ(store().lookupAlias(""), "");
}

TEST_F(StoreQueries, FindsTheFirstAliasInTheTablesOrder)
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

TEST_F(StoreQueries, FindsAnAliasWithAnEmptyResource)
{
    store().setData({{"", "NONE"}});
    EXPECT_EQ(store().lookupAlias(""), "NONE");
}

TEST_F(StoreQueries, DoesNotLookThroughTheListForAliases)
{
    m_configuration.write("GPIB0::7::INSTR\n");
    EXPECT_EQ(store().lookupAlias("GPIB0::7::INSTR"), "");
}

TEST_F(StoreQueries, ReplacesAnAliasInAnyCase)
{
    m_configuration.write("Dmm = tcpip0::10.0.0.5::INSTR\n");
    for (const char* name : {"dmm", "DMM", "dMm"}) {
        std::string text = name;
        EXPECT_TRUE(store().replaceAlias(text)) << name;
        EXPECT_EQ(text, "tcpip0::10.0.0.5::INSTR");
    }
}

TEST_F(StoreQueries, LeavesAnUnknownNameAlone)
{
    m_configuration.write("DMM=GPIB0::1::INSTR\nGPIB0::2::INSTR\n");
    for (const char* name : {"dmm ", "dm", "", "gpib0::1::instr", "gpib0::2::instr"}) {
        std::string text = name;
        EXPECT_FALSE(store().replaceAlias(text)) << name;
        EXPECT_EQ(text, name);
    }
}

TEST_F(StoreQueries, FindsNoLowerCaseAliasUntilItWasSavedAndRead)
{
    store().setData({{"GPIB0::1::INSTR", "dmm"}});
    std::string text = "dmm";
    EXPECT_FALSE(store().replaceAlias(text));
    EXPECT_EQ(text, "dmm");

    store().save();
    store().load();
    EXPECT_TRUE(store().replaceAlias(text));
    EXPECT_EQ(text, "GPIB0::1::INSTR");
}

TEST_F(StoreQueries, ListsAllResourcesOnceInByteOrder)
{
    m_configuration.write("b\nGPIB0::2::INSTR\nB\nGPIB0::2::INSTR\n\xe4\n~\nGPIB0::10::INSTR\n"
                          "ONE=GPIB0::2::INSTR\nTWO=A\nTHREE=A\nFOUR=gpib0::2::instr\n");
    EXPECT_EQ(store().getAllResources(),
              (std::vector<std::string>{"A", "B", "GPIB0::10::INSTR", "GPIB0::2::INSTR", "b",
                                        "gpib0::2::instr", "~", "\xe4"}));
}

TEST_F(StoreQueries, NumbersTheListFirstAndThenTheAliases)
{
    m_configuration.write("SECOND\nDMM=THIRD\nFIRST\n");
    std::string alias = "left over";
    EXPECT_EQ(store().getResource(0, alias), "SECOND") << "the file's order";
    EXPECT_EQ(alias, "");
    alias = "left over";
    EXPECT_EQ(store().getResource(1, alias), "FIRST");
    EXPECT_EQ(alias, "");
    EXPECT_EQ(store().getResource(2, alias), "THIRD");
    EXPECT_EQ(alias, "DMM");
    for (const std::size_t past :
         {std::size_t{3}, std::size_t{4}, std::numeric_limits<std::size_t>::max()}) {
        alias = "left over";
        EXPECT_EQ(store().getResource(past, alias), "") << past;
        EXPECT_EQ(alias, "") << past;
    }
}

TEST_F(StoreQueries, NumbersAliasesFromZeroWithoutAList)
{
    m_configuration.write("DMM=THIRD\n");
    std::string alias;
    EXPECT_EQ(store().getResource(0, alias), "THIRD");
    EXPECT_EQ(alias, "DMM");
    EXPECT_EQ(store().getResource(1, alias), "");
    EXPECT_EQ(alias, "");
}

TEST_F(StoreQueries, HasNoRecordsBeforeAFileWasRead)
{
    std::filesystem::remove(file());
    SGpibProperties board{1, 2, 3};
    SSerialProperties port{4, 5, 6, 7, 8};
    EXPECT_FALSE(store().getGpibProperties(0, board));
    EXPECT_FALSE(store().getSerialProperties(1, port));
    EXPECT_EQ(board, (SGpibProperties{1, 2, 3}));
    EXPECT_EQ(port, (SSerialProperties{4, 5, 6, 7, 8}));
}

TEST_F(StoreQueries, AnswersTheFilesRecordsAndDefaultsForOthers)
{
    m_configuration.write(":GPIBProperty[DeviceNo=65535].SecondaryAddress=96\n"
                          ":SerialProperty[DeviceNo=3].FlowControl=6\n");
    SGpibProperties board{1, 2, 3};
    EXPECT_TRUE(store().getGpibProperties(65535, board));
    EXPECT_EQ(board, (SGpibProperties{0, 96, 1}));
    EXPECT_TRUE(store().getGpibProperties(0, board));
    EXPECT_EQ(board, (SGpibProperties{0, 65535, 1}));

    SSerialProperties port{4, 5, 6, 7, 8};
    EXPECT_TRUE(store().getSerialProperties(3, port));
    EXPECT_EQ(port, (SSerialProperties{9600, 8, 0, 0, 6}));
    EXPECT_TRUE(store().getSerialProperties(4, port));
    EXPECT_EQ(port, (SSerialProperties{9600, 8, 0, 0, 0}));
}

TEST_F(StoreQueries, AnswersTheFilesRecordsWhateverTheMapWasSetTo)
{
    m_configuration.write(":SerialProperty[DeviceNo=3].Baudrate=300\n");
    store().m_serialProperties = {{3, {1200, 7, 1, 1, 1}}, {4, {1200, 7, 1, 1, 1}}};
    SSerialProperties port;
    EXPECT_TRUE(store().getSerialProperties(3, port));
    EXPECT_EQ(port.baudrate, 300U);
    EXPECT_TRUE(store().getSerialProperties(4, port));
    EXPECT_EQ(port, SSerialProperties());
}

TEST_F(StoreQueries, NamesTheBufferSizeThatCallersReserve)
{
    static_assert(QvVisa::ConfigurationFile::BUFLEN == 256);
    // A caller may also take its address or bind a reference to it.
    const std::size_t& reference = QvVisa::ConfigurationFile::BUFLEN;
    EXPECT_EQ(reference, 256U);
}

} // namespace
