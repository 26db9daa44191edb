// SPDX-License-Identifier: MIT
#include "model/ConfigurationModel.h"
#include "tests/model/ModelFixture.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/QtWarnings.h"

#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QStringListModel>
#include <QTest>

#include <limits>
#include <memory>
#include <optional>

using support::Rows;
using support::rowsOf;
using support::textAt;

/// Rows that come and go, and what the selection has to do with it.
class TestConfigurationModelRows : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void appendsEntriesAsTheyAre();
    void removesABlockOfRows_data();
    void removesABlockOfRows();
    void refusesABlockThatIsNotThere_data();
    void refusesABlockThatIsNotThere();

    void removesTheCurrentRow();
    void removesNothingWithoutSelection();
    void removesNothingBeyondTheEnd();
    void replacesTheSelectedRowsResource();
    void replacesNoResourceWithoutSelection();
    void replacesNoResourceBeyondTheEnd();
    void takesTheSelectionInTheFirstColumn();

private:
    support::ConfigurationFixture m_configuration;
    std::optional<support::QtWarnings> m_warnings;
    std::unique_ptr<ConfigurationModel> m_model;
};

void TestConfigurationModelRows::init()
{
    m_warnings.emplace();
    m_configuration.write("GPIB0::1::INSTR\n"
                          "GPIB0::2::INSTR\n"
                          "DMM=TCPIP0::10.0.0.5::INSTR\n");
    m_model = std::make_unique<ConfigurationModel>(nullptr);
    QCOMPARE(m_model->rowCount(), 3);
}

void TestConfigurationModelRows::cleanup()
{
    m_model.reset();
    QCOMPARE(m_warnings->all(), QStringList());
    m_warnings.reset();
}

void TestConfigurationModelRows::appendsEntriesAsTheyAre()
{
    Rows expected = rowsOf(*m_model);
    m_model->add(QStringLiteral(" a =#;: b "), QStringLiteral(" c =#;: d "));
    m_model->add(QStringLiteral(" a =#;: b "), QStringLiteral(" c =#;: d "));
    m_model->addEntry();
    expected.emplace_back(QStringLiteral(" a =#;: b "), QStringLiteral(" c =#;: d "));
    expected.emplace_back(QStringLiteral(" a =#;: b "), QStringLiteral(" c =#;: d "));
    expected.emplace_back(QString(), QString());
    QCOMPARE(rowsOf(*m_model), expected);
    QVERIFY(m_model->isDirty());
}

void TestConfigurationModelRows::removesABlockOfRows_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::newRow("first") << 0 << 1;
    QTest::newRow("middle") << 1 << 1;
    QTest::newRow("last") << 2 << 1;
    QTest::newRow("first two") << 0 << 2;
    QTest::newRow("last two") << 1 << 2;
    QTest::newRow("all") << 0 << 3;
    QTest::newRow("none at the start") << 0 << 0;
    QTest::newRow("none at the end") << 3 << 0;
}

void TestConfigurationModelRows::removesABlockOfRows()
{
    QFETCH(int, row);
    QFETCH(int, count);
    Rows expected = rowsOf(*m_model);
    expected.erase(expected.begin() + row, expected.begin() + row + count);
    QVERIFY(m_model->removeRows(row, count));
    QCOMPARE(rowsOf(*m_model), expected);
    QVERIFY(m_model->isDirty());
}

void TestConfigurationModelRows::refusesABlockThatIsNotThere_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    const int most = std::numeric_limits<int>::max();
    const int least = std::numeric_limits<int>::min();
    QTest::newRow("one past") << 3 << 1;
    QTest::newRow("one too many") << 0 << 4;
    QTest::newRow("one over the end") << 2 << 2;
    QTest::newRow("none, past the end") << 4 << 0;
    QTest::newRow("row below") << -1 << 1;
    QTest::newRow("row below, within") << -1 << 2;
    QTest::newRow("less than none") << 2 << -1;
    QTest::newRow("both below") << -1 << -1;
    QTest::newRow("sum overflows") << 1 << most;
    QTest::newRow("both most") << most << most;
    QTest::newRow("both least") << least << least;
    QTest::newRow("least rows") << 0 << least;
    QTest::newRow("sum of opposites") << most << least;
    QTest::newRow("opposites") << least << most;
}

void TestConfigurationModelRows::refusesABlockThatIsNotThere()
{
    QFETCH(int, row);
    QFETCH(int, count);
    const Rows before = rowsOf(*m_model);
    QSignalSpy removal(m_model.get(), SIGNAL(rowsAboutToBeRemoved(QModelIndex, int, int)));
    QSignalSpy change(m_model.get(), SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));
    QVERIFY(!m_model->removeRows(row, count));
    QCOMPARE(rowsOf(*m_model), before);
    QVERIFY(!m_model->isDirty());
    QCOMPARE(removal.count() + change.count(), 0);
}

void TestConfigurationModelRows::removesTheCurrentRow()
{
    QItemSelectionModel selection(m_model.get());
    m_model->m_selectionModel = &selection;
    selection.setCurrentIndex(m_model->index(1, 1), QItemSelectionModel::ClearAndSelect);
    // What is removed is the current row, whichever is selected.
    selection.select(m_model->index(0, 0), QItemSelectionModel::ClearAndSelect);
    Rows expected = rowsOf(*m_model);
    expected.erase(expected.begin() + 1);
    m_model->removeSelectedEntry();
    QCOMPARE(rowsOf(*m_model), expected);
    QVERIFY(m_model->isDirty());
}

void TestConfigurationModelRows::removesNothingWithoutSelection()
{
    const Rows before = rowsOf(*m_model);
    m_model->removeSelectedEntry();
    QItemSelectionModel selection(m_model.get());
    m_model->m_selectionModel = &selection;
    m_model->removeSelectedEntry();
    selection.setCurrentIndex(m_model->index(1, 0), QItemSelectionModel::NoUpdate);
    m_model->removeSelectedEntry();
    // A selection without a current row.
    selection.clearCurrentIndex();
    selection.select(m_model->index(1, 0), QItemSelectionModel::ClearAndSelect);
    m_model->removeSelectedEntry();
    QCOMPARE(rowsOf(*m_model), before);
    QVERIFY(!m_model->isDirty());
}

void TestConfigurationModelRows::removesNothingBeyondTheEnd()
{
    // Another table's selection stands for one that knows rows which are gone.
    QStringListModel longer(QStringList{{}, {}, {}, {}, {}});
    QItemSelectionModel selection(&longer);
    m_model->m_selectionModel = &selection;
    const Rows before = rowsOf(*m_model);
    for (const int row : {3, 4}) {
        selection.setCurrentIndex(longer.index(row), QItemSelectionModel::ClearAndSelect);
        QVERIFY(selection.hasSelection());
        m_model->removeSelectedEntry();
        QCOMPARE(rowsOf(*m_model), before);
        QVERIFY(!m_model->isDirty());
    }
    selection.setCurrentIndex(longer.index(2), QItemSelectionModel::ClearAndSelect);
    m_model->removeSelectedEntry();
    QCOMPARE(rowsOf(*m_model), (Rows{before[0], before[1]}));
}

void TestConfigurationModelRows::replacesTheSelectedRowsResource()
{
    QItemSelectionModel selection(m_model.get());
    m_model->m_selectionModel = &selection;
    const auto select = [&](int row) {
        selection.select(m_model->index(row, 0),
                         QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    };
    // What counts is the selected row, whichever is current.
    selection.setCurrentIndex(m_model->index(0, 0), QItemSelectionModel::NoUpdate);
    select(2);
    m_model->setResource(QStringLiteral("TCPIP0::10.0.0.5::INSTR"));
    QVERIFY(!m_model->isDirty());
    m_model->setResource(QStringLiteral(" new = #;: one "));
    QVERIFY(m_model->isDirty());
    QCOMPARE(textAt(*m_model, 2, 0), QStringLiteral(" new = #;: one "));
    QCOMPARE(textAt(*m_model, 2, 1), QStringLiteral("DMM"));
    // Once dirty, dirty: the former text does not clean it.
    m_model->setResource(QStringLiteral("TCPIP0::10.0.0.5::INSTR"));
    QVERIFY(m_model->isDirty());
    m_model->setResource(QStringLiteral("TCPIP0::10.0.0.5::INSTR"));
    QVERIFY(m_model->isDirty());
    m_model->setResource(QString());
    QCOMPARE(textAt(*m_model, 2, 0), QString());
    QCOMPARE(textAt(*m_model, 0, 0), QStringLiteral("GPIB0::1::INSTR"));
}

void TestConfigurationModelRows::replacesNoResourceWithoutSelection()
{
    const Rows before = rowsOf(*m_model);
    m_model->setResource(QStringLiteral("x"));
    QItemSelectionModel selection(m_model.get());
    m_model->m_selectionModel = &selection;
    selection.setCurrentIndex(m_model->index(1, 0), QItemSelectionModel::NoUpdate);
    m_model->setResource(QStringLiteral("x"));
    QCOMPARE(rowsOf(*m_model), before);
    QVERIFY(!m_model->isDirty());
}

void TestConfigurationModelRows::replacesNoResourceBeyondTheEnd()
{
    QStringListModel longer(QStringList{{}, {}, {}, {}, {}});
    QItemSelectionModel selection(&longer);
    m_model->m_selectionModel = &selection;
    const Rows before = rowsOf(*m_model);
    for (const int row : {3, 4}) {
        selection.select(longer.index(row), QItemSelectionModel::ClearAndSelect);
        QCOMPARE(selection.selectedRows().size(), 1);
        m_model->setResource(QStringLiteral("x"));
        QCOMPARE(rowsOf(*m_model), before);
        QVERIFY(!m_model->isDirty());
    }
    selection.select(longer.index(2), QItemSelectionModel::ClearAndSelect);
    m_model->setResource(QStringLiteral("x"));
    QCOMPARE(textAt(*m_model, 2, 0), QStringLiteral("x"));
}

void TestConfigurationModelRows::takesTheSelectionInTheFirstColumn()
{
    const Rows before = rowsOf(*m_model);
    QItemSelectionModel selection(m_model.get());
    m_model->m_selectionModel = &selection;
    // A lone cell is no selected row.
    selection.select(m_model->index(1, 1), QItemSelectionModel::ClearAndSelect);
    QVERIFY(selection.hasSelection());
    m_model->setResource(QStringLiteral("x"));
    QCOMPARE(rowsOf(*m_model), before);
    QVERIFY(!m_model->isDirty());
}

QTEST_GUILESS_MAIN(TestConfigurationModelRows)
#include "TestConfigurationModelRows.moc"
