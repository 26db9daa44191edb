// SPDX-License-Identifier: MIT
#include "model/ConfigurationModel.h"
#include "tests/model/ModelFixture.h"
#include "tests/model/ShownView.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/QtWarnings.h"

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>
#include <QTest>

#include <memory>
#include <optional>
#include <vector>

using support::addNumberedRows;
using support::finishLayout;
using support::numberedRow;
using support::Rows;
using support::rowsOf;
using support::shownView;

/// What views hold on to while rows come and go: selection, scroll position, indexes, editors.
class TestConfigurationModelIndexes : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void addingKeepsSelectionAndScrollPosition();
    void removingSelectsANeighbour_data();
    void removingSelectsANeighbour();
    void removingOtherRowsKeepsTheSelectedEntry();
    void removingKeepsTheScrollPosition();
    void heldIndexesStayWithTheirEntries_data();
    void heldIndexesStayWithTheirEntries();
    void anEditorStaysWithItsEntry_data();
    void anEditorStaysWithItsEntry();
    void anEditorOfARemovedEntryGoes();

    void keepsTheRulesOfModels();

private:
    void fill(int count);

    support::ConfigurationFixture m_configuration;
    std::optional<support::QtWarnings> m_warnings;
    std::unique_ptr<ConfigurationModel> m_model;
    std::unique_ptr<QTableView> m_view;
};

void TestConfigurationModelIndexes::init()
{
    m_warnings.emplace();
    m_configuration.write("");
    m_model = std::make_unique<ConfigurationModel>(nullptr);
    m_view = shownView(*m_model);
    m_model->m_selectionModel = m_view->selectionModel();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

void TestConfigurationModelIndexes::cleanup()
{
    m_view.reset();
    m_model.reset();
    QCOMPARE(m_warnings->all(), QStringList());
    m_warnings.reset();
}

void TestConfigurationModelIndexes::fill(int count)
{
    addNumberedRows(*m_model, count);
    finishLayout();
    QCOMPARE(m_model->rowCount(), count);
}

void TestConfigurationModelIndexes::addingKeepsSelectionAndScrollPosition()
{
    fill(100);
    m_view->selectRow(40);
    m_view->scrollTo(m_model->index(40, 0));
    finishLayout();
    const int position = m_view->verticalScrollBar()->value();
    QVERIFY(position > 0);
    m_model->addEntry();
    finishLayout();
    QCOMPARE(m_view->verticalScrollBar()->value(), position);
    QCOMPARE(m_view->currentIndex().row(), 40);
    QCOMPARE(m_view->selectionModel()->selectedRows().size(), 1);
    QCOMPARE(m_view->selectionModel()->selectedRows().first().row(), 40);
}

void TestConfigurationModelIndexes::removingSelectsANeighbour_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("selected");
    QTest::newRow("first") << 5 << 0 << 0;
    QTest::newRow("middle") << 5 << 2 << 2;
    // The range that is announced reaches to the end here, so the row above comes next.
    QTest::newRow("last but one") << 5 << 3 << 2;
    QTest::newRow("last") << 5 << 4 << 3;
    QTest::newRow("last of three") << 3 << 2 << 1;
    // Announced as if nothing were left, and so nothing is selected.
    QTest::newRow("first of two") << 2 << 0 << -1;
    QTest::newRow("last of two") << 2 << 1 << -1;
    QTest::newRow("only") << 1 << 0 << -1;
}

void TestConfigurationModelIndexes::removingSelectsANeighbour()
{
    QFETCH(int, rows);
    QFETCH(int, row);
    QFETCH(int, selected);
    fill(rows);
    m_view->selectRow(row);
    m_model->removeSelectedEntry();
    finishLayout();
    const QModelIndexList selection = m_view->selectionModel()->selectedRows();
    QCOMPARE(selection.isEmpty() ? -1 : selection.first().row(), selected);
    QCOMPARE(m_view->selectionModel()->hasSelection(), selected != -1);
    if (selected != -1) {
        QCOMPARE(m_view->currentIndex().row(), selected);
    }
}

void TestConfigurationModelIndexes::removingOtherRowsKeepsTheSelectedEntry()
{
    fill(30);
    m_view->selectRow(20);
    QVERIFY(m_model->removeRows(19, 1));
    QVERIFY(m_model->removeRows(0, 3));
    QVERIFY(m_model->removeRows(25, 1));
    const QModelIndexList selection = m_view->selectionModel()->selectedRows();
    QCOMPARE(selection.size(), 1);
    QCOMPARE(selection.first().data().toString(), numberedRow(20).first);
    QCOMPARE(m_view->currentIndex().data().toString(), numberedRow(20).first);
    m_model->removeSelectedEntry();
    QVERIFY(!rowsOf(*m_model).empty());
    for (const auto& row : rowsOf(*m_model)) {
        QVERIFY(row != numberedRow(20));
    }
    QCOMPARE(m_model->rowCount(), 24);
}

void TestConfigurationModelIndexes::removingKeepsTheScrollPosition()
{
    fill(100);
    m_view->selectRow(40);
    m_view->scrollTo(m_model->index(40, 0), QAbstractItemView::PositionAtCenter);
    finishLayout();
    const int position = m_view->verticalScrollBar()->value();
    QVERIFY(position > 0);
    m_model->removeSelectedEntry();
    finishLayout();
    QCOMPARE(m_view->verticalScrollBar()->value(), position);

    m_view->scrollToBottom();
    QVERIFY(m_model->removeRows(98, 1));
    finishLayout();
    QCOMPARE(m_view->verticalScrollBar()->value(), m_view->verticalScrollBar()->maximum());
}

void TestConfigurationModelIndexes::heldIndexesStayWithTheirEntries_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::newRow("first") << 0 << 1;
    QTest::newRow("middle") << 4 << 1;
    QTest::newRow("block") << 3 << 4;
    QTest::newRow("last but one") << 8 << 1;
    QTest::newRow("last") << 9 << 1;
    QTest::newRow("all") << 0 << 10;
    QTest::newRow("none") << 5 << 0;
    QTest::newRow("none at the end") << 10 << 0;
}

void TestConfigurationModelIndexes::heldIndexesStayWithTheirEntries()
{
    QFETCH(int, row);
    QFETCH(int, count);
    fill(10);
    std::vector<QPersistentModelIndex> held;
    for (int number = 0; number < 10; ++number) {
        held.emplace_back(m_model->index(number, number % 2));
    }
    QVERIFY(m_model->removeRows(row, count));
    for (int number = 0; number < 10; ++number) {
        const QPersistentModelIndex& index = held[static_cast<std::size_t>(number)];
        const bool removed = number >= row && number < row + count;
        QCOMPARE(index.isValid(), !removed);
        if (!removed) {
            QCOMPARE(index.row(), number < row ? number : number - count);
            QCOMPARE(index.column(), number % 2);
        }
    }
}

void TestConfigurationModelIndexes::anEditorStaysWithItsEntry_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::newRow("row above") << 3 << 1;
    QTest::newRow("first row") << 0 << 1;
    QTest::newRow("rows above") << 1 << 3;
    QTest::newRow("row below") << 5 << 1;
    QTest::newRow("last row") << 9 << 1;
}

void TestConfigurationModelIndexes::anEditorStaysWithItsEntry()
{
    QFETCH(int, row);
    QFETCH(int, count);
    fill(10);
    Rows expected = rowsOf(*m_model);
    expected[4].second = QStringLiteral("typed");
    expected.erase(expected.begin() + row, expected.begin() + row + count);

    m_view->setCurrentIndex(m_model->index(4, 1));
    m_view->edit(m_model->index(4, 1));
    QPointer<QLineEdit> editor = m_view->viewport()->findChild<QLineEdit*>();
    QVERIFY(editor != nullptr);
    QVERIFY(m_model->removeRows(row, count));
    finishLayout();
    QVERIFY(editor != nullptr);
    editor->setText(QStringLiteral("typed"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(rowsOf(*m_model), expected);
    QTRY_VERIFY(editor == nullptr);
}

void TestConfigurationModelIndexes::anEditorOfARemovedEntryGoes()
{
    fill(10);
    Rows expected = rowsOf(*m_model);
    expected.erase(expected.begin() + 4);
    m_view->setCurrentIndex(m_model->index(4, 1));
    m_view->edit(m_model->index(4, 1));
    QPointer<QLineEdit> editor = m_view->viewport()->findChild<QLineEdit*>();
    QVERIFY(editor != nullptr);
    editor->setText(QStringLiteral("typed"));
    m_model->removeSelectedEntry();
    QTRY_VERIFY(editor == nullptr);
    QCOMPARE(rowsOf(*m_model), expected);
}

namespace {

/// The model without what the tester calls faults and what is deliberate: rowCount(),
/// columnCount() and flags() ask nothing of their index.
class Obedient : public ConfigurationModel
{
public:
    using ConfigurationModel::ConfigurationModel;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : ConfigurationModel::rowCount(parent);
    }
    int columnCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : ConfigurationModel::columnCount(parent);
    }
    Qt::ItemFlags flags(const QModelIndex& index) const override
    {
        return index.isValid() ? ConfigurationModel::flags(index) : Qt::ItemFlags();
    }
};

} // namespace

void TestConfigurationModelIndexes::keepsTheRulesOfModels()
{
    // Everything but adding and removing, which end in a refresh() of one row and column too many.
    m_configuration.write("one\ntwo\nA=three\n");
    Obedient model(nullptr);
    QCOMPARE(model.rowCount(), 3);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Warning);
    QVERIFY(model.setData(model.index(0, 0), QStringLiteral("1")));
    QVERIFY(model.setData(model.index(2, 1), QStringLiteral("B")));
    emit model.dataChanged(model.index(0, 0), model.index(2, 1));
    emit model.layoutAboutToBeChanged();
    emit model.layoutChanged();
    QCOMPARE(m_warnings->all(), QStringList());
}

QTEST_MAIN(TestConfigurationModelIndexes)
#include "TestConfigurationModelIndexes.moc"
