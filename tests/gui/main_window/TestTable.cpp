// SPDX-License-Identifier: MIT
// How the table looks, and what happens to it when the user saves, adds a row or asks for the menu.
#include "gui/RsrcStringEditor.h"
#include "tests/gui/main_window/MainWindowTest.h"
#include "tests/support/Files.h"

#include <QHeaderView>
#include <QScrollBar>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>

namespace {

/// More rows than the window has room for.
std::string manyRows()
{
    std::string lines;
    for (int row = 0; row < 100; ++row) {
        lines += "TCPIP0::host" + std::to_string(row) + "::inst0::INSTR\n";
    }
    return lines;
}

/// The horizontal extent of the text in a picture of one line: all that differs from the colour in
/// its upper left corner, apart from the lines along the edges.
std::pair<int, int> textExtent(const QImage& picture)
{
    const QRect inside = picture.rect().adjusted(0, 3, -3, -3);
    const QRgb background = picture.pixel(inside.topLeft() + QPoint(1, picture.height() / 2));
    int first = inside.right() + 1;
    int last = inside.left() - 1;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            if (std::abs(qGray(picture.pixel(x, y)) - qGray(background)) > 100) {
                first = std::min(first, x);
                last = std::max(last, x);
            }
        }
    }
    return {first, last};
}

} // namespace

class TestTable : public guitest::MainWindowTest
{
    Q_OBJECT

private slots:
    void saveCommitsAnOpenEditor()
    {
        start("ASRL1::INSTR\n");
        model().setDirty(true);
        typeIntoCell(0, ConfigurationModel::AliasColumn, "PSU");
        click("actionSave");
        QVERIFY(!model().isDirty());
        QCOMPARE(text(0, ConfigurationModel::AliasColumn), QStringLiteral("PSU"));
        const std::string file = support::readFile(configuration().path());
        QVERIFY2(file.find("PSU=ASRL1::INSTR\n") != std::string::npos, file.c_str());
    }

    void addedRowIsScrolledIntoView()
    {
        start(manyRows());
        clickAndAnswer<gui::RsrcStringEditor>(
            "actionAdd_Resource", [](gui::RsrcStringEditor& editor) { editor.accept(); });
        QCOMPARE(model().rowCount(), 101);
        QVERIFY(table().viewport()->rect().contains(
            table().visualRect(model().index(100, ConfigurationModel::ResourceColumn))));
    }

    void lastColumnStretchesWithTheWindow()
    {
        start("ASRL1::INSTR\n");
        const QHeaderView& header = *table().horizontalHeader();
        QVERIFY(header.stretchLastSection());
        // No resize mode is set: the user can widen the first column.
        QCOMPARE(header.sectionResizeMode(0), QHeaderView::Interactive);
        QCOMPARE(header.sectionResizeMode(1), QHeaderView::Interactive);
        window().resize(700, 400);
        QTRY_COMPARE(header.length(), table().viewport()->width());
    }

    void columnsFitTheirContents()
    {
        start("A=TCPIP0::a-very-long-host-name.example.org::inst0::INSTR\n");
        const int width = table().columnWidth(0);
        QVERIFY(width > QFontMetrics(table().font()).horizontalAdvance(text(0, 0)));
        table().resizeColumnsToContents();
        QCOMPARE(table().columnWidth(0), width);
    }

    void emptyTableHasRoomForAResourceString()
    {
        start("");
        const QString resource = QStringLiteral("TCPIP0::192.168.100.100::inst0::INSTR");
        model().add(resource, QStringLiteral("X"));
        QVERIFY(table().columnWidth(ConfigurationModel::ResourceColumn) >=
                table().sizeHintForIndex(model().index(0, 0)).width());
        // Not at the cost of the other column.
        QVERIFY(table().columnWidth(ConfigurationModel::AliasColumn) >= 100);
    }

    void rowsHaveNoHeader()
    {
        start("ASRL1::INSTR\n");
        QCOMPARE(table().viewport()->x(), table().frameWidth());
    }

    void titlesStartWhereTextsStart()
    {
        // The first letters of the titles.
        start("A=R\n");
        const QHeaderView& header = *table().horizontalHeader();
        for (int column : {ConfigurationModel::ResourceColumn, ConfigurationModel::AliasColumn}) {
            const QRect title(header.sectionViewportPosition(column), 0, header.sectionSize(column),
                              header.height());
            const int titleStart = textExtent(header.viewport()->grab(title).toImage()).first;
            const int textStart = textExtent(pictureOfCell(0, column)).first;
            QVERIFY2(std::abs(titleStart - textStart) <= 1,
                     qPrintable(QStringLiteral("column %1: %2, %3")
                                    .arg(column)
                                    .arg(titleStart)
                                    .arg(textStart)));
        }
    }

    void titlesStayTheSameForASelectedRow()
    {
        start("A=ASRL1::INSTR\n");
        QTest::mouseMove(&table(), QPoint(1, 1));
        const QImage before = table().horizontalHeader()->grab().toImage();
        table().selectRow(0);
        QCOMPARE(table().horizontalHeader()->grab().toImage(), before);
    }

    void textsOfColumnsHaveSpaceBetweenThem()
    {
        start("HHHH=TCPIP0::HHHHHHHHHHHHHHHHHHHHHHHHHHH::inst0::INSTR\n");
        table().resizeColumnToContents(ConfigurationModel::ResourceColumn);
        const QImage resource = pictureOfCell(0, ConfigurationModel::ResourceColumn);
        const int space = resource.width() - 1 - textExtent(resource).second +
                          textExtent(pictureOfCell(0, ConfigurationModel::AliasColumn)).first;
        QVERIFY2(space >= 14, qPrintable(QString::number(space)));
    }

    void editedTextStaysInItsPlace()
    {
        start("H=ASRL1::INSTR\n");
        const int before = textExtent(pictureOfCell(0, ConfigurationModel::AliasColumn)).first;
        clickCell(0, ConfigurationModel::AliasColumn);
        QTest::keyClick(&table(), Qt::Key_F2);
        QVERIFY(cellEditor() != nullptr);
        // For screen readers.
        QCOMPARE(cellEditor()->accessibleName(), QStringLiteral("Alias"));
        cellEditor()->deselect();
        cellEditor()->end(false);
        const QRect text = cellEditor()->rect().adjusted(4, 4, -4, -4);
        const int after = cellEditor()->x() + text.x() +
                          textExtent(cellEditor()->grab(text).toImage()).first -
                          table().columnViewportPosition(ConfigurationModel::AliasColumn);
        QVERIFY2(std::abs(after - before) <= 1,
                 qPrintable(QStringLiteral("%1, %2").arg(before).arg(after)));
    }

    void editorGrowsToShowALongTextWhole()
    {
        start("ASRL1::INSTR\n");
        const QString text = QStringLiteral("TCPIP0::192.168.100.100::inst0::INSTR+12345678");
        typeIntoCell(0, ConfigurationModel::ResourceColumn, qPrintable(text));
        QTRY_COMPARE(cellEditor()->text(), text);
        QVERIFY(cellEditor()->width() < table().viewport()->width());
        const QMargins margins = cellEditor()->textMargins();
        QVERIFY(cellEditor()->width() >= cellEditor()->fontMetrics().horizontalAdvance(text) +
                                             margins.left() + margins.right());
    }

    void menuKeyOpensTheMenuInsideTheTable_data()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("row below the visible part") << 99;
        QTest::newRow("row above the visible part") << 0;
    }

    void menuKeyOpensTheMenuInsideTheTable()
    {
        QFETCH(const int, row);
        start(manyRows());
        table().selectRow(row);
        table().verticalScrollBar()->setValue(row == 0 ? table().verticalScrollBar()->maximum()
                                                       : 0);
        // As Qt makes it for the menu key.
        const QPoint place = table().inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
        QVERIFY(!table().viewport()->rect().contains(place));
        QContextMenuEvent event(QContextMenuEvent::Keyboard, place,
                                table().viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(table().viewport(), &event);
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu != nullptr);
        const QRect visible(table().viewport()->mapToGlobal(QPoint()), table().viewport()->size());
        QVERIFY(visible.contains(menu->pos()));
        // The menu is that of the selected row, which is visible now.
        QVERIFY(menu->actions().contains(&action("actionRemove_resource")));
        QVERIFY(table().viewport()->rect().contains(
            table().visualRect(table().currentIndex()).center()));
        menu->close();
    }

private:
    QImage pictureOfCell(int row, int column) const
    {
        return table().viewport()->grab(table().visualRect(model().index(row, column))).toImage();
    }
};

static const guitest::Registration<TestTable> s_registerTable;
#include "TestTable.moc"
