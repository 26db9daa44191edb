// SPDX-License-Identifier: MIT
// Loading from the store and saving to it.

#include "tests/model/ModelTest.h"
#include "tests/support/FailingAllocation.h"
#include "tests/support/TestHome.h"

#include <algorithm>
#include <filesystem>

using QvVisa::ConfigurationFile;

namespace {

QString latin1(const std::string& bytes)
{
    return QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
}

class ModelStore : public ModelTest
{
protected:
    static std::string start() { return support::ConfigurationFixture::header(); }
};

TEST_F(ModelStore, LoadsPortsAndProviderWithAnEmptyTable)
{
    load("");
    EXPECT_EQ(m_model->rowCount(), 0);
    EXPECT_EQ(m_model->getProvider(), 3674);
    EXPECT_TRUE(m_model->getSerialProperties().empty());
    EXPECT_EQ(m_model->m_selectionModel, nullptr);
    load(":Provider=42\n:SerialProperty[DeviceNo=3].Parity=2\n");
    EXPECT_EQ(m_model->rowCount(), 0);
    EXPECT_FALSE(m_model->isDirty());
    EXPECT_EQ(m_model->getProvider(), 42);
    EXPECT_TRUE(m_model->getSerialProperties() ==
                (QvVisa::SerialPropertiesMap{{3, {9600, 8, 0, 2, 0}}}));
}

TEST_F(ModelStore, LoadsTheEntriesInTheOrderOfGetResource)
{
    std::string lines = "second\nfirst\nsecond\n";
    for (int i = 0; i < 100; ++i) {
        lines += "A" + std::to_string(i) + "=x" + std::to_string(i) + '\n';
    }
    load(lines);
    Rows expected;
    for (std::size_t index = 0; index < 103; ++index) {
        std::string alias;
        const std::string resource = ConfigurationFile::getInstance()->getResource(index, alias);
        expected.emplace_back(latin1(resource), latin1(alias));
    }
    EXPECT_EQ(rows(), expected);
    EXPECT_EQ(rows()[1], (std::pair(text("first"), QString())));
}

TEST_F(ModelStore, LoadsAgainOnlyByLoaddata)
{
    load("one\n");
    m_configuration.write("two\nthree\n:Provider=5\n:SerialProperty[DeviceNo=1].StopBits=2\n");
    ConfigurationFile::getInstance();
    EXPECT_EQ(rows(), (Rows{{text("one"), {}}}));
    EXPECT_EQ(m_model->getProvider(), 3674);

    m_model->setGpibProperties({{4, {}}});
    EXPECT_TRUE(m_model->isDirty());
    m_model->loaddata();
    EXPECT_EQ(rows(), (Rows{{text("two"), {}}, {text("three"), {}}}));
    EXPECT_EQ(m_model->getProvider(), 5);
    EXPECT_EQ(m_model->getSerialProperties().at(1).stopBits, 2);
    EXPECT_FALSE(m_model->isDirty());
    EXPECT_EQ(m_model->getGpibProperties().count(4), 1U) << "boards are not loaded";
}

TEST_F(ModelStore, EveryByteIsLatin1InBothDirections)
{
    std::string bytes(256, '\0');
    QString characters(256, QChar(0));
    for (int value = 0; value < 256; ++value) {
        bytes[static_cast<std::size_t>(value)] = static_cast<char>(value);
        characters[value] = QChar(value);
    }
    ConfigurationFile& store = *ConfigurationFile::getInstance();
    store.setData({{bytes, bytes}, {bytes, ""}});
    m_model->loaddata();
    EXPECT_EQ(rows(), (Rows{{characters, {}}, {characters, characters}}));
    store.setData({});
    m_model->save();
    EXPECT_EQ(store.m_resources, std::vector<std::string>{bytes});
    EXPECT_EQ(store.m_aliases, (std::unordered_map<std::string, std::string>{{bytes, bytes}}));
}

TEST_F(ModelStore, CharactersOutsideLatin1AreSavedAsQuestionMarks)
{
    load("");
    m_model->add(QStringLiteral("\u00E9\u00FF"), QString());
    // A surrogate pair counts as two characters.
    m_model->add(QStringLiteral("a\u20ACb\U0001F600\u0100"), QString());
    m_model->add(text("x"), QStringLiteral("\u00B5V\u20AC"));
    m_model->save();
    EXPECT_EQ(m_configuration.read(), start() + ":Provider=3674\n\xE9\xFF\na?b???\n\xB5V?=x\n");
}

TEST_F(ModelStore, SaveGivesTheStoreTheRowsInTheirOrder)
{
    load("");
    for (const auto& [resource, alias] :
         {std::pair("r1", ""), std::pair("a1", "same"), std::pair("r2", ""),
          std::pair("a2", "Same"), std::pair("r1", ""), std::pair("a3", "same")}) {
        m_model->add(text(resource), text(alias));
    }
    ConfigurationFile& store = *ConfigurationFile::getInstance();
    m_model->save();
    EXPECT_EQ(store.m_resources, (std::vector<std::string>{"r1", "r2", "r1"}));
    EXPECT_EQ(store.m_aliases,
              (std::unordered_map<std::string, std::string>{{"same", "a3"}, {"Same", "a2"}}));
}

TEST_F(ModelStore, SaveReplacesTheWholeFileAndDropsBoards)
{
    load("old\nOLD=old\n:Provider=1\n:SerialProperty[DeviceNo=7].Parity=1\n"
         ":GPIBProperty[DeviceNo=2].PrimaryAddress=9\n# remark\n");
    EXPECT_TRUE(m_model->getGpibProperties().empty()) << "boards are not loaded";
    m_model->removeRows(0, 2);
    m_model->add(text("new"), QString());
    m_model->setProvider(65535);
    m_model->setSerialProperties({{1, {4294967295U, 5, 1, 3, 6}}});
    m_model->setGpibProperties({{0, {6, 65535, 1}}});
    // A change by another program is read and then overwritten.
    m_configuration.write("theirs\n:Provider=9\n:GPIBProperty[DeviceNo=0].PrimaryAddress=5\n");
    m_model->save();
    EXPECT_FALSE(m_model->isDirty());
    EXPECT_EQ(m_configuration.read(), start() + ":Provider=65535\n"
                                                ":SerialProperty[DeviceNo=1].Baudrate=4294967295\n"
                                                ":SerialProperty[DeviceNo=1].DataBits=5\n"
                                                ":SerialProperty[DeviceNo=1].StopBits=1\n"
                                                ":SerialProperty[DeviceNo=1].Parity=3\n"
                                                ":SerialProperty[DeviceNo=1].FlowControl=6\n"
                                                "new\n");
    EXPECT_EQ(m_model->getGpibProperties().at(0).primaryAddress, 6);
}

TEST_F(ModelStore, ASaveThatCannotWriteLeavesTheModelClean)
{
    // Even root cannot replace a folder by a file.
    std::filesystem::remove(m_configuration.path());
    std::filesystem::create_directory(m_configuration.path());
    m_model->addEntry();
    m_model->save();
    EXPECT_FALSE(m_model->isDirty());
    EXPECT_EQ(m_model->rowCount(), 4);
    EXPECT_TRUE(std::filesystem::is_directory(m_configuration.path()));
}

TEST_F(ModelStore, ASaveThatRunsOutOfMemoryThrowsNothingAndLosesNothing)
{
    m_model->add(QString(100, QChar(u'r')), QString(100, QChar(u'a')));
    const Rows entries = rows();
    const std::string before = m_configuration.read();
    m_model->save();
    const std::string after = m_configuration.read();
    const int failed = support::failEachAllocation(
        [&] {
            m_configuration.write(std::string_view(before).substr(start().size()));
            ConfigurationFile::getInstance();
            m_model->setDirty(true);
        },
        [&] { EXPECT_NO_THROW(m_model->save()); },
        [&](int number) {
            const std::string file = m_configuration.read();
            EXPECT_TRUE(file == before || file == after) << "allocation " << number;
            const bool isInStore = ConfigurationFile::getInstance()->m_resources.size() == 2 &&
                                   ConfigurationFile::getInstance()->m_aliases.size() == 2;
            EXPECT_TRUE(isInStore || m_model->isDirty()) << "allocation " << number;
            EXPECT_EQ(rows(), entries) << "allocation " << number;
        });
    EXPECT_EQ(m_configuration.read(), after);
    EXPECT_FALSE(m_model->isDirty());
    EXPECT_GE(failed, 10);
}

TEST(ModelWithoutFile, IsEmptyAndSavesNothing)
{
    const support::TestHome home;
    ConfigurationModel model(nullptr);
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.getProvider(), 3674);
    model.addEntry();
    model.save();
    EXPECT_FALSE(model.isDirty());
    EXPECT_EQ(model.rowCount(), 1);
    const std::filesystem::recursive_directory_iterator files(home.root());
    EXPECT_TRUE(std::all_of(begin(files), end(files),
                            [](const auto& entry) { return entry.is_directory(); }));
}

} // namespace
