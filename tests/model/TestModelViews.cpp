// SPDX-License-Identifier: MIT
#include "model/ConfigurationModel.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/QtWarnings.h"

#include <QHeaderView>
#include <QImage>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>
#include <QTableView>
#include <QTest>

#include <memory>
#include <optional>
#include <random>
#include <tuple>
#include <vector>

namespace {

/// A view like the main window's table, of a fixed size and without focus, which would be painted.
std::unique_ptr<QTableView> shownView(ConfigurationModel& model)
{
    auto view = std::make_unique<QTableView>();
    view->setModel(&model);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view->horizontalHeader()->setStretchLastSection(true);
    view->setColumnWidth(0, 150);
    view->setFocusPolicy(Qt::NoFocus);
    view->resize(400, 300);
    view->show();
    return view;
}

/// Lets the views process the model's notifications.
void finishLayout()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

QImage picture(QTableView& view)
{
    finishLayout();
    return view.grab().toImage();
}

QString resource(int number)
{
    return QStringLiteral("GPIB0::%1::INSTR").arg(number);
}

void addRows(ConfigurationModel& model, int count, int first)
{
    for (int number = first; number < first + count; ++number) {
        model.add(resource(number), QStringLiteral("dev%1").arg(number));
    }
}

} // namespace

/// A view shows the right rows, and keeps its selection, indexes and editors with their entries,
/// although the model's notifications end one past the last row and announce no insertions.
class TestModelViews : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_warnings.emplace();
        m_configuration.write("");
        m_model = std::make_unique<ConfigurationModel>(nullptr);
        m_view = shownView(*m_model);
        m_model->m_selectionModel = m_view->selectionModel();
        QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    }

    void cleanup()
    {
        m_view.reset();
        m_model.reset();
        QCOMPARE(m_warnings->all(), QStringList());
        m_warnings.reset();
    }

    void addedRowsAreShown()
    {
        QImage before = picture(*m_view);
        for (int row = 0; row < 12; ++row) {
            addRows(*m_model, 1, row);
            compareWithNewView(*m_view);
            const QImage after = picture(*m_view);
            // The view has place for nine rows.
            QVERIFY(row > 8 || after != before);
            before = after;
        }
        addRows(*m_model, 400, 12);
        compareWithNewView(*m_view);
        m_view->scrollToBottom();
        compareWithNewView(*m_view);
        QCOMPARE(m_view->rowAt(m_view->viewport()->height() - 1), 411);
    }

    void anyMixOfAddingAndRemovingIsShown()
    {
        std::mt19937 random(1);
        const auto below = [&](int limit) { return static_cast<int>(random() % unsigned(limit)); };
        int next = 0;
        for (int step = 0; step < 400; ++step) {
            const int rows = m_model->rowCount();
            // Now and then more rows than the view has place for.
            const int most = below(20) == 0 ? 60 : 4;
            if (rows == 0 || below(5) < 3) {
                const int count = 1 + below(most);
                addRows(*m_model, count, next);
                next += count;
            } else {
                const int row = below(2) == 0 ? below(rows) : std::max(0, rows - most);
                QVERIFY(m_model->removeRows(row, 1 + below(std::min(most, rows - row))));
            }
            if (below(3) == 0) {
                compareWithNewView(*m_view);
            }
            if (below(10) == 0) {
                m_view->scrollToBottom();
            }
        }
        for (int rows = m_model->rowCount(); rows > 0; rows = m_model->rowCount()) {
            QVERIFY(m_model->removeRows(rows / 2, rows - rows / 2));
            compareWithNewView(*m_view);
        }
    }

    void aNewResourceIsShownByTheNextPaint()
    {
        fill(3);
        m_view->selectRow(1);
        m_model->setResource(QStringLiteral("USB0::1::2::3::INSTR"));
        // setResource() emits no dataChanged; closing the dialog that found the resource repaints.
        m_view->viewport()->update();
        compareWithNewView(*m_view);
    }

    void aRemovalSelectsAnAdjacentRow()
    {
        constexpr int none = -1;
        // Rows, the one that is removed, and the one that is selected then.
        for (const auto& [rows, row, expected] :
             {std::tuple(5, 0, 0), std::tuple(5, 2, 2),
              // The announced range ends at the last row, so the row above is selected.
              std::tuple(5, 3, 2), std::tuple(5, 4, 3), std::tuple(3, 2, 1),
              // The announced range contains all rows, so none is selected.
              std::tuple(2, 0, none), std::tuple(2, 1, none), std::tuple(1, 0, none)}) {
            fill(rows);
            m_view->selectRow(row);
            m_model->removeSelectedEntry();
            finishLayout();
            const QModelIndexList selection = m_view->selectionModel()->selectedRows();
            const int selected = selection.isEmpty() ? none : selection.first().row();
            QVERIFY2(
                selected == expected,
                qPrintable(QStringLiteral("row %1 of %2: %3").arg(row).arg(rows).arg(selected)));
            QCOMPARE(m_view->selectionModel()->hasSelection(), expected != none);
            QVERIFY(expected == none || m_view->currentIndex().row() == expected);
        }
    }

    void scrollPositionStays()
    {
        fill(100);
        m_view->selectRow(40);
        m_view->scrollTo(m_model->index(40, 0), QAbstractItemView::PositionAtCenter);
        finishLayout();
        const int position = m_view->verticalScrollBar()->value();
        QVERIFY(position > 0);
        m_model->addEntry();
        finishLayout();
        QCOMPARE(m_view->verticalScrollBar()->value(), position);
        m_model->removeSelectedEntry();
        finishLayout();
        QCOMPARE(m_view->verticalScrollBar()->value(), position);
        m_view->scrollToBottom();
        QVERIFY(m_model->removeRows(98, 1));
        finishLayout();
        QCOMPARE(m_view->verticalScrollBar()->value(), m_view->verticalScrollBar()->maximum());
    }

    /// Those of the selection and the current entry too.
    void persistentIndexesStayWithTheirEntries()
    {
        for (const auto& [row, count] :
             {std::pair(0, 1), std::pair(4, 1), std::pair(3, 4), std::pair(8, 1), std::pair(9, 1),
              std::pair(0, 10), std::pair(5, 0), std::pair(10, 0)}) {
            fill(10);
            std::vector<QPersistentModelIndex> indexes;
            indexes.reserve(10);
            for (int number = 0; number < 10; ++number) {
                indexes.emplace_back(m_model->index(number, number % 2));
            }
            QVERIFY(m_model->removeRows(row, count));
            for (int number = 0; number < 10; ++number) {
                const QPersistentModelIndex& index = indexes[static_cast<std::size_t>(number)];
                const bool isRemoved = number >= row && number < row + count;
                QCOMPARE(index.isValid(), !isRemoved);
                if (!isRemoved) {
                    QCOMPARE(index.row(), number < row ? number : number - count);
                    QCOMPARE(index.column(), number % 2);
                }
            }
        }
    }

    void anEditorStaysWithItsEntry()
    {
        for (const auto& [row, count] : {std::pair(3, 1), std::pair(0, 1), std::pair(1, 3),
                                         std::pair(5, 1), std::pair(9, 1)}) {
            fill(10);
            QStringList expected = resources();
            expected[4] = QStringLiteral("typed");
            expected.erase(expected.begin() + row, expected.begin() + row + count);
            const QPointer<QLineEdit> editor = openEditor(4);
            QVERIFY(m_model->removeRows(row, count));
            finishLayout();
            QVERIFY(editor != nullptr);
            editor->setText(QStringLiteral("typed"));
            QTest::keyClick(editor, Qt::Key_Return);
            QTRY_COMPARE(resources(), expected);
            QTRY_VERIFY(editor == nullptr);
        }
    }

    void anEditorOfARemovedEntryIsClosed()
    {
        fill(10);
        QStringList expected = resources();
        expected.removeAt(4);
        const QPointer<QLineEdit> editor = openEditor(4);
        QVERIFY(editor != nullptr);
        editor->setText(QStringLiteral("typed"));
        m_model->removeSelectedEntry();
        QTRY_VERIFY(editor == nullptr);
        QCOMPARE(resources(), expected);
    }

private:
    /// Replaces all rows.
    void fill(int count)
    {
        m_model->removeRows(0, m_model->rowCount());
        addRows(*m_model, count, 0);
        finishLayout();
        QCOMPARE(m_model->rowCount(), count);
    }

    QLineEdit* openEditor(int row)
    {
        m_view->setCurrentIndex(m_model->index(row, 0));
        m_view->edit(m_model->index(row, 0));
        return m_view->viewport()->findChild<QLineEdit*>();
    }

    QStringList resources() const
    {
        QStringList resources;
        for (int row = 0; row < m_model->rowCount(); ++row) {
            resources += m_model->data(m_model->index(row, 0)).toString();
        }
        return resources;
    }

    /// Fails unless the view looks like a new view of a new model with the same rows.
    void compareWithNewView(QTableView& view) const
    {
        ConfigurationModel model(nullptr);
        for (int row = 0; row < m_model->rowCount(); ++row) {
            model.add(m_model->data(m_model->index(row, 0)).toString(),
                      m_model->data(m_model->index(row, 1)).toString());
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
        const QImage actual = picture(view);
        QVERIFY2(actual == picture(*expected),
                 qPrintable(QStringLiteral("%1 rows look different from those of a new view")
                                .arg(m_model->rowCount())));
    }

    support::ConfigurationFixture m_configuration;
    std::optional<support::QtWarnings> m_warnings;
    std::unique_ptr<ConfigurationModel> m_model;
    std::unique_ptr<QTableView> m_view;
};

QTEST_MAIN(TestModelViews)
#include "TestModelViews.moc"
