// SPDX-License-Identifier: MIT
#include "config/ConfigurationFile.h"
#include "model/ConfigurationModel.h"
#include "tests/model/ModelFixture.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <QItemSelectionModel>

#include <algorithm>

using QvVisa::ConfigurationFile;
using support::Rows;
using support::rowsOf;
using support::textAt;

namespace {

QString latin1(const std::string& bytes)
{
    return QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
}

std::string everyByte()
{
    std::string bytes(256, '\0');
    for (std::size_t value = 0; value < bytes.size(); ++value) {
        bytes[value] = static_cast<char>(value);
    }
    return bytes;
}

void setResource(ConfigurationModel& model, int row, const QString& text)
{
    QItemSelectionModel selection(&model);
    selection.select(model.index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    model.m_selectionModel = &selection;
    model.setResource(text);
    model.m_selectionModel = nullptr;
}

/// Each case has a process, and with it a store, of its own.
class ConfigurationModelStore : public testing::Test
{
protected:
    support::ConfigurationFixture m_configuration;
};

TEST_F(ConfigurationModelStore, LoadsAnEmptyStore)
{
    const ConfigurationModel model(nullptr);
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_FALSE(model.isDirty());
    EXPECT_EQ(model.getProvider(), 3674);
    EXPECT_TRUE(model.getSerialProperties().empty());
    EXPECT_TRUE(model.getGpibProperties().empty());
    EXPECT_EQ(model.m_selectionModel, nullptr);
}

TEST_F(ConfigurationModelStore, LoadsProviderAndPortsBesideAnEmptyTable)
{
    m_configuration.write(":Provider=42\n:SerialProperty[DeviceNo=3].Parity=2\n");
    const ConfigurationModel model(nullptr);
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_FALSE(model.isDirty());
    EXPECT_EQ(model.getProvider(), 42);
    QvVisa::SerialPropertiesMap expected;
    expected[3].parity = 2;
    EXPECT_EQ(model.getSerialProperties(), expected);
}

TEST_F(ConfigurationModelStore, ShowsTheStoresEntriesInItsOrder)
{
    m_configuration.write("second\nA=x\nfirst\nB=y\nsecond\nC=z\n");
    const ConfigurationModel model(nullptr);
    ConfigurationFile* store = ConfigurationFile::getInstance();
    Rows expected;
    std::string alias;
    for (std::size_t index = 0; index < 6; ++index) {
        const std::string resource = store->getResource(index, alias);
        expected.emplace_back(latin1(resource), latin1(alias));
    }
    EXPECT_EQ(rowsOf(model), expected);
    EXPECT_EQ(textAt(model, 0, 0), QStringLiteral("second"));
    EXPECT_EQ(textAt(model, 1, 0), QStringLiteral("first"));
    EXPECT_EQ(textAt(model, 2, 0), QStringLiteral("second"));
    EXPECT_EQ(textAt(model, 2, 1), QString());
}

TEST_F(ConfigurationModelStore, LoadsOnceAndAgainOnlyWhenAsked)
{
    m_configuration.write("one\n");
    ConfigurationModel model(nullptr);
    m_configuration.write("two\nthree\n:Provider=5\n:SerialProperty[DeviceNo=1].StopBits=2\n");
    ConfigurationFile::getInstance();
    EXPECT_EQ(rowsOf(model), (Rows{{QStringLiteral("one"), {}}}));
    EXPECT_EQ(model.getProvider(), 3674);

    model.setDirty(true);
    model.setGpibProperties({{4, {}}});
    model.loaddata();
    EXPECT_EQ(rowsOf(model), (Rows{{QStringLiteral("two"), {}}, {QStringLiteral("three"), {}}}));
    EXPECT_EQ(model.getProvider(), 5);
    EXPECT_EQ(model.getSerialProperties().at(1).stopBits, 2);
    EXPECT_FALSE(model.isDirty());
    // What the user did with the boards is not the store's to replace.
    EXPECT_EQ(model.getGpibProperties().count(4), 1U);
}

TEST_F(ConfigurationModelStore, ReadsEveryByteAsLatin1)
{
    ConfigurationFile* store = ConfigurationFile::getInstance();
    store->setData({{everyByte(), everyByte()}, {everyByte(), ""}});
    const ConfigurationModel model(nullptr);
    ASSERT_EQ(model.rowCount(), 2);
    for (const auto& [row, column] : {std::pair(0, 0), std::pair(1, 0), std::pair(1, 1)}) {
        const QString text = textAt(model, row, column);
        ASSERT_EQ(text.size(), 256);
        for (int value = 0; value < 256; ++value) {
            EXPECT_EQ(text.at(value).unicode(), value);
        }
    }
}

TEST_F(ConfigurationModelStore, WritesEveryByteAsLatin1)
{
    ConfigurationFile* store = ConfigurationFile::getInstance();
    ConfigurationModel model(nullptr);
    model.add(latin1(everyByte()), QString());
    model.add(latin1(everyByte()), latin1(everyByte()));
    model.save();
    EXPECT_EQ(store->m_resources, std::vector<std::string>{everyByte()});
    ASSERT_EQ(store->m_aliases.size(), 1U);
    EXPECT_EQ(store->m_aliases.begin()->first, everyByte());
    EXPECT_EQ(store->m_aliases.begin()->second, everyByte());
}

TEST_F(ConfigurationModelStore, TextsSurviveTheFileAsFarAsLatin1Goes)
{
    ConfigurationModel model(nullptr);
    model.add(QStringLiteral("\u00E9\u00FF"), QString());
    model.add(QStringLiteral("a\u20ACb\U0001F600\u0100"), QString());
    model.add(QStringLiteral("x"), QStringLiteral("\u00B5V\u20AC"));
    model.save();
    EXPECT_EQ(m_configuration.read(), support::ConfigurationFixture::header() +
                                          ":Provider=3674\n"
                                          "\xE9\xFF\n"
                                          // A pair of surrogates is two characters to Qt.
                                          "a?b???\n"
                                          "\xB5V?=x\n");
    const ConfigurationModel again(nullptr);
    EXPECT_EQ(rowsOf(again), (Rows{{QStringLiteral("\u00E9\u00FF"), {}},
                                   {QStringLiteral("a?b???"), {}},
                                   {QStringLiteral("x"), QStringLiteral("\u00B5V?")}}));
}

TEST_F(ConfigurationModelStore, GivesTheStoreTheRowsInTheirOrder)
{
    ConfigurationFile* store = ConfigurationFile::getInstance();
    ConfigurationModel model(nullptr);
    model.add(QStringLiteral("r1"), QString());
    model.add(QStringLiteral("a1"), QStringLiteral("same"));
    model.add(QStringLiteral("r2"), QString());
    model.add(QStringLiteral("a2"), QStringLiteral("Same"));
    model.add(QStringLiteral("r1"), QString());
    model.add(QStringLiteral("a3"), QStringLiteral("same"));
    model.save();
    EXPECT_EQ(store->m_resources, (std::vector<std::string>{"r1", "r2", "r1"}));
    ASSERT_EQ(store->m_aliases.size(), 2U);
    // The later row of an alias wins, and names keep their case.
    EXPECT_EQ(store->m_aliases.at("same"), "a3");
    EXPECT_EQ(store->m_aliases.at("Same"), "a2");
}

TEST_F(ConfigurationModelStore, SaveReplacesEverythingThatTheModelHolds)
{
    m_configuration.write("old\nOLD=old\n:Provider=1\n:SerialProperty[DeviceNo=7].Parity=1\n"
                          ":GPIBProperty[DeviceNo=2].PrimaryAddress=9\n# remark\n");
    ConfigurationModel model(nullptr);
    model.removeRows(0, 2);
    model.add(QStringLiteral("new"), QString());
    model.setProvider(65535);
    QvVisa::SerialPropertiesMap ports;
    ports[1] = {4294967295U, 5, 1, 3, 6};
    model.setSerialProperties(ports);
    model.save();
    EXPECT_FALSE(model.isDirty());
    EXPECT_EQ(m_configuration.read(), support::ConfigurationFixture::header() +
                                          ":Provider=65535\n"
                                          ":SerialProperty[DeviceNo=1].Baudrate=4294967295\n"
                                          ":SerialProperty[DeviceNo=1].DataBits=5\n"
                                          ":SerialProperty[DeviceNo=1].StopBits=1\n"
                                          ":SerialProperty[DeviceNo=1].Parity=3\n"
                                          ":SerialProperty[DeviceNo=1].FlowControl=6\n"
                                          "new\n");
}

TEST_F(ConfigurationModelStore, KnowsNoBoardsOfTheStoreAndSavesNone)
{
    m_configuration.write(":GPIBProperty[DeviceNo=0].PrimaryAddress=5\n");
    ConfigurationModel model(nullptr);
    EXPECT_TRUE(model.getGpibProperties().empty());
    QvVisa::SGpibProperties inStore;
    ASSERT_TRUE(ConfigurationFile::getInstance()->getGpibProperties(0, inStore));
    EXPECT_EQ(inStore.primaryAddress, 5);

    model.setGpibProperties({});
    EXPECT_FALSE(model.isDirty());
    QvVisa::GpibPropertiesMap boards;
    boards[0].primaryAddress = 6;
    model.setGpibProperties(boards);
    EXPECT_TRUE(model.isDirty());
    EXPECT_EQ(model.getGpibProperties(), boards);
    model.setDirty(false);
    model.setGpibProperties(boards);
    EXPECT_FALSE(model.isDirty());
    model.save();
    EXPECT_EQ(m_configuration.read(), support::ConfigurationFixture::header() + ":Provider=3674\n");
    EXPECT_EQ(model.getGpibProperties(), boards);
}

TEST_F(ConfigurationModelStore, EachFieldOfARecordCounts)
{
    ConfigurationModel model(nullptr);
    using Board = QvVisa::SGpibProperties;
    using Port = QvVisa::SSerialProperties;
    const auto dirtyAfter = [&](auto change) {
        model.setDirty(false);
        change();
        return model.isDirty();
    };
    for (const Board board : {Board{}, Board{1, 0xFFFF, 1}, Board{0, 1, 1}, Board{0, 0xFFFF, 0}}) {
        const auto set = [&] { model.setGpibProperties({{1, board}}); };
        EXPECT_TRUE(dirtyAfter(set));
        EXPECT_FALSE(dirtyAfter(set));
    }
    EXPECT_TRUE(dirtyAfter([&] { model.setGpibProperties({{2, Board{0, 0xFFFF, 0}}}); }));
    for (const Port port :
         {Port{}, Port{300, 8, 0, 0, 0}, Port{9600, 7, 0, 0, 0}, Port{9600, 8, 1, 0, 0},
          Port{9600, 8, 0, 1, 0}, Port{9600, 8, 0, 0, 1}}) {
        const auto set = [&] { model.setSerialProperties({{1, port}}); };
        EXPECT_TRUE(dirtyAfter(set));
        EXPECT_FALSE(dirtyAfter(set));
        EXPECT_EQ(model.getSerialProperties().at(1), port);
    }
    EXPECT_TRUE(dirtyAfter([&] { model.setProvider(0); }));
    EXPECT_FALSE(dirtyAfter([&] { model.setProvider(0); }));
    EXPECT_EQ(model.getProvider(), 0);
}

TEST_F(ConfigurationModelStore, UndoingByHandDoesNotClean)
{
    m_configuration.write("one\n");
    ConfigurationModel model(nullptr);
    model.setData(model.index(0, 0), QStringLiteral("two"));
    model.setData(model.index(0, 0), QStringLiteral("one"));
    EXPECT_TRUE(model.isDirty());
    model.save();
    setResource(model, 0, QStringLiteral("two"));
    setResource(model, 0, QStringLiteral("one"));
    EXPECT_TRUE(model.isDirty());
    model.save();
    model.addEntry();
    model.removeRows(1, 1);
    EXPECT_TRUE(model.isDirty());
    model.save();
    model.setProvider(1);
    model.setProvider(3674);
    EXPECT_TRUE(model.isDirty());
}

TEST_F(ConfigurationModelStore, SaveThatFailsCleansAllTheSame)
{
    ConfigurationModel model(nullptr);
    // A folder in the file's place: nobody can write it, not even root.
    std::filesystem::remove(m_configuration.path());
    std::filesystem::create_directory(m_configuration.path());
    model.add(QStringLiteral("x"), QString());
    model.save();
    EXPECT_FALSE(model.isDirty());
    EXPECT_EQ(rowsOf(model), (Rows{{QStringLiteral("x"), {}}}));
    EXPECT_TRUE(std::filesystem::is_directory(m_configuration.path()));
}

TEST_F(ConfigurationModelStore, SaveGoesThroughTheStoresChangeCheck)
{
    m_configuration.write("one\n");
    ConfigurationModel model(nullptr);
    ConfigurationFile* store = ConfigurationFile::getInstance();
    // Another program's file is read and then overwritten: the model is the user's latest word.
    m_configuration.write("two\n:Provider=9\n:GPIBProperty[DeviceNo=0].PrimaryAddress=5\n");
    model.save();
    QvVisa::SGpibProperties board;
    ASSERT_TRUE(store->getGpibProperties(0, board));
    EXPECT_EQ(board.primaryAddress, 5);
    EXPECT_EQ(m_configuration.read(),
              support::ConfigurationFixture::header() + ":Provider=3674\none\n");
}

TEST(ConfigurationModelWithoutFile, IsEmptyAndSavesNothing)
{
    const support::TestHome home;
    ConfigurationModel model(nullptr);
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_FALSE(model.isDirty());
    EXPECT_EQ(model.getProvider(), 3674);
    model.add(QStringLiteral("x"), QString());
    model.save();
    EXPECT_FALSE(model.isDirty());
    EXPECT_EQ(model.rowCount(), 1);
    const std::filesystem::recursive_directory_iterator files(home.root());
    EXPECT_EQ(std::count_if(begin(files), end(files),
                            [](const auto& entry) { return entry.is_regular_file(); }),
              0);
}

} // namespace
