// SPDX-License-Identifier: MIT
#include "model/ConfigurationModel.h"
#include "tests/model/ModelFixture.h"
#include "tests/model/ShownView.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/QtWarnings.h"

#include <QHeaderView>
#include <QImage>
#include <QScrollBar>
#include <QTableView>
#include <QTest>

#include <memory>
#include <optional>
#include <random>

using support::addNumberedRows;
using support::finishLayout;
using support::rowsOf;
using support::shownView;

/// The model's notifications name ranges that end one past the last row and announce no new rows:
/// here stands that a view shows the right rows all the same.
class TestConfigurationModelView : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void showsEachAddedRow();
    void showsHundredsOfRowsAddedAtOnce();
    void showsEachRemoval_data();
    void showsEachRemoval();
    void showsRowsRemovedOneByOne_data();
    void showsRowsRemovedOneByOne();
    void showsAnyMixOfAddingAndRemoving_data();
    void showsAnyMixOfAddingAndRemoving();
    void showsWhatChangedWhileHidden();
    void showsTheSameInTwoViews();
    void paintsANewResourceOnTheNextOccasion();

private:
    void fill(int count);
    /// Fails unless a view paints the model as a new view paints a new model of the same rows.
    void compareWithNew(QTableView& view) const;

    support::ConfigurationFixture m_configuration;
    std::optional<support::QtWarnings> m_warnings;
    std::unique_ptr<ConfigurationModel> m_model;
    std::unique_ptr<QTableView> m_view;
};

namespace {

QImage picture(QTableView& view)
{
    finishLayout();
    return view.grab().toImage();
}

} // namespace

void TestConfigurationModelView::init()
{
    m_warnings.emplace();
    m_configuration.write("");
    m_model = std::make_unique<ConfigurationModel>(nullptr);
    m_view = shownView(*m_model);
    m_model->m_selectionModel = m_view->selectionModel();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

void TestConfigurationModelView::cleanup()
{
    m_view.reset();
    m_model.reset();
    QCOMPARE(m_warnings->all(), QStringList());
    m_warnings.reset();
}

void TestConfigurationModelView::fill(int count)
{
    addNumberedRows(*m_model, count);
    finishLayout();
    QCOMPARE(m_model->rowCount(), count);
}

void TestConfigurationModelView::compareWithNew(QTableView& view) const
{
    ConfigurationModel model(nullptr);
    for (const auto& [resource, alias] : rowsOf(*m_model)) {
        model.add(resource, alias);
    }
    const auto expected = shownView(model);
    QVERIFY(QTest::qWaitForWindowExposed(expected.get()));
    finishLayout();
    QCOMPARE(view.verticalHeader()->count(), m_model->rowCount());
    QCOMPARE(view.verticalHeader()->length(), expected->verticalHeader()->length());
    QCOMPARE(view.verticalScrollBar()->maximum(), expected->verticalScrollBar()->maximum());
    if (view.currentIndex().isValid()) {
        expected->setCurrentIndex(model.index(view.currentIndex().row(), 0));
    }
    expected->verticalScrollBar()->setValue(view.verticalScrollBar()->value());
    const QImage pictures[] = {picture(view), picture(*expected)};
    QVERIFY2(pictures[0] == pictures[1],
             qPrintable(QStringLiteral("%1 rows are painted otherwise than in a new view")
                            .arg(m_model->rowCount())));
}

void TestConfigurationModelView::showsEachAddedRow()
{
    compareWithNew(*m_view);
    QImage before = picture(*m_view);
    for (int row = 0; row < 12; ++row) {
        addNumberedRows(*m_model, 1, row);
        compareWithNew(*m_view);
        const QImage after = picture(*m_view);
        // Nine rows and the header fill the view.
        QVERIFY(row > 8 || after != before);
        before = after;
    }
    m_model->addEntry();
    compareWithNew(*m_view);
}

void TestConfigurationModelView::showsHundredsOfRowsAddedAtOnce()
{
    fill(3);
    addNumberedRows(*m_model, 400, 3);
    compareWithNew(*m_view);
    m_view->scrollToBottom();
    QVERIFY(m_view->verticalScrollBar()->value() > 0);
    compareWithNew(*m_view);
    QCOMPARE(m_view->rowAt(m_view->viewport()->height() - 1), 402);
}

void TestConfigurationModelView::showsEachRemoval_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::newRow("only row") << 1 << 0 << 1;
    QTest::newRow("first of two") << 2 << 0 << 1;
    QTest::newRow("last of two") << 2 << 1 << 1;
    QTest::newRow("both of two") << 2 << 0 << 2;
    QTest::newRow("first of many") << 200 << 0 << 1;
    QTest::newRow("second of many") << 200 << 1 << 1;
    QTest::newRow("last but one of many") << 200 << 198 << 1;
    QTest::newRow("last of many") << 200 << 199 << 1;
    QTest::newRow("block at the start") << 200 << 0 << 50;
    QTest::newRow("block in the middle") << 200 << 60 << 50;
    QTest::newRow("block at the end") << 200 << 150 << 50;
    QTest::newRow("all") << 200 << 0 << 200;
    QTest::newRow("none") << 5 << 2 << 0;
}

void TestConfigurationModelView::showsEachRemoval()
{
    QFETCH(int, rows);
    QFETCH(int, row);
    QFETCH(int, count);
    fill(rows);
    QVERIFY(m_model->removeRows(row, count));
    compareWithNew(*m_view);
    m_view->scrollToBottom();
    compareWithNew(*m_view);
}

void TestConfigurationModelView::showsRowsRemovedOneByOne_data()
{
    QTest::addColumn<bool>("fromTheEnd");
    QTest::addColumn<bool>("paintedBetween");
    QTest::newRow("first, painted") << false << true;
    QTest::newRow("last, painted") << true << true;
    QTest::newRow("first, in a row") << false << false;
    QTest::newRow("last, in a row") << true << false;
}

void TestConfigurationModelView::showsRowsRemovedOneByOne()
{
    QFETCH(bool, fromTheEnd);
    QFETCH(bool, paintedBetween);
    const int rows = paintedBetween ? 14 : 400;
    fill(rows);
    for (int left = rows - 1; left >= 0; --left) {
        QVERIFY(m_model->removeRows(fromTheEnd ? left : 0, 1));
        if (paintedBetween || left == rows / 2) {
            compareWithNew(*m_view);
        }
    }
    compareWithNew(*m_view);
    m_model->addEntry();
    compareWithNew(*m_view);
}

void TestConfigurationModelView::showsAnyMixOfAddingAndRemoving_data()
{
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 6; ++seed) {
        QTest::addRow("seed %u", seed) << seed;
    }
}

void TestConfigurationModelView::showsAnyMixOfAddingAndRemoving()
{
    QFETCH(unsigned, seed);
    std::mt19937 random(seed);
    const auto below = [&](int limit) { return static_cast<int>(random() % unsigned(limit)); };
    int next = 0;
    for (int step = 0; step < 120; ++step) {
        const int rows = m_model->rowCount();
        if (rows == 0 || below(5) < 3) {
            const int count = 1 + below(4);
            addNumberedRows(*m_model, count, next);
            next += count;
        } else {
            const int row = below(rows);
            QVERIFY(m_model->removeRows(row, 1 + below(std::min(3, rows - row))));
        }
        if (below(3) == 0) {
            compareWithNew(*m_view);
        }
    }
    compareWithNew(*m_view);
}

void TestConfigurationModelView::showsWhatChangedWhileHidden()
{
    fill(40);
    m_view->hide();
    QVERIFY(m_model->removeRows(0, 10));
    addNumberedRows(*m_model, 3, 100);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    compareWithNew(*m_view);
}

void TestConfigurationModelView::showsTheSameInTwoViews()
{
    const auto second = shownView(*m_model);
    QVERIFY(QTest::qWaitForWindowExposed(second.get()));
    fill(5);
    QVERIFY(m_model->removeRows(4, 1));
    m_model->addEntry();
    QVERIFY(m_model->removeRows(0, 1));
    compareWithNew(*m_view);
    compareWithNew(*second);
}

void TestConfigurationModelView::paintsANewResourceOnTheNextOccasion()
{
    fill(3);
    m_view->selectRow(1);
    m_model->setResource(QStringLiteral("USB0::1::2::3::INSTR"));
    // Without a change notification, the next paint shows it; the window that found the resource
    // lay over the table until now.
    m_view->viewport()->update();
    compareWithNew(*m_view);
}

QTEST_MAIN(TestConfigurationModelView)
#include "TestConfigurationModelView.moc"
