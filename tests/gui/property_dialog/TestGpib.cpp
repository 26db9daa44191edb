// SPDX-License-Identifier: MIT
// The tree of GPIB boards and its menu. The dialog removes their page; here it is added again.
#include "tests/gui/property_dialog/PropertyDialogTest.h"

#include <QAction>
#include <QHeaderView>
#include <QMenu>
#include <QPointer>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeWidget>

#include <utility>

Q_DECLARE_METATYPE(QvVisa::GpibPropertiesMap)

using Boards = QvVisa::GpibPropertiesMap;

namespace {

/// "TEXT,TEXT,TEXT CHECKSTATE", "-" without a check box.
QString rowText(const QTreeWidgetItem* item)
{
    const QVariant check = item->data(DeviceItem::SystemControllerColumn, Qt::CheckStateRole);
    return QStringLiteral("%1,%2,%3 %4")
        .arg(item->text(0), item->text(1), item->text(2),
             check.isValid() ? QString::number(check.toInt()) : QStringLiteral("-"));
}

} // namespace

class TestGpib : public guitest::PropertyDialogTest
{
    Q_OBJECT

private slots:
    void itemHasARowAndAnEditableChild_data()
    {
        columns<QvVisa::GpibPropertiesMap, QString, QString>("boards", "row", "child");
        QTest::newRow("defaults") << Boards{{0, {}}} << "Device 0,, -"
                                  << "0,0, 2";
        QTest::newRow("no controller") << Boards{{5, {21, 65535, 0}}} << "Device 5,, -"
                                       << "5,21, 0";
        QTest::newRow("controller neither 0 nor 1") << Boards{{6, {1, 7, 2}}} << "Device 6,, -"
                                                    << "6,1, 0";
        QTest::newRow("greatest numbers") << Boards{{65535, {65535, 0, 1}}} << "Device 65535,, -"
                                          << "65535,65535, 2";
    }

    void itemHasARowAndAnEditableChild()
    {
        QFETCH(const QvVisa::GpibPropertiesMap, boards);
        const DeviceItem item(*boards.begin(), 0);
        QCOMPARE(item.type(), 0);
        QTEST(rowText(&item), "row");
        QCOMPARE(item.flags(), QTreeWidgetItem().flags());
        QCOMPARE(item.childCount(), 1);
        QTEST(rowText(item.child(0)), "child");
        QCOMPARE(item.child(0)->flags(),
                 QTreeWidgetItem().flags() | Qt::ItemIsEditable | Qt::ItemIsUserCheckable);
        QCOMPARE(item.child(0)->childCount(), 0);
    }

    void treeListsTheBoardsByNumber()
    {
        openBoards({{300, {}}, {2, {9, 96, 0}}, {65535, {}}});
        QVERIFY(tree().header()->isVisible());
        QCOMPARE(tree().topLevelItemCount(), 3);
        QCOMPARE(board(0)->text(0), QStringLiteral("Device 2"));
        QCOMPARE(rowText(fields(0)), QStringLiteral("2,9, 0"));
        QCOMPARE(board(1)->text(0), QStringLiteral("Device 300"));
        QCOMPARE(board(2)->text(0), QStringLiteral("Device 65535"));
        tree().header()->hide();
        dialog().redrawtree();
        QVERIFY(tree().header()->isVisible());
        // A board that is not edited keeps its secondary address.
        QCOMPARE(boardsAfterOk(), QStringLiteral("2=9,96,0 300=0,65535,1 65535=0,65535,1"));
    }

    void addAppendsABoard_data()
    {
        columns<QvVisa::GpibPropertiesMap, QString>("before", "after");
        QTest::newRow("first") << Boards() << "0=0,65535,1";
        QTest::newRow("after the last")
            << Boards{{0, {1, 2, 0}}, {5, {6, 7, 0}}} << "0=1,2,0 5=6,7,0 6=0,65535,1";
        QTest::newRow("after the greatest number")
            << Boards{{65535, {3, 4, 0}}} << "0=0,65535,1 65535=3,4,0";
        QTest::newRow("over board 0")
            << Boards{{0, {1, 2, 0}}, {65535, {3, 4, 0}}} << "0=0,65535,1 65535=3,4,0";
    }

    void addAppendsABoard()
    {
        QFETCH(const QvVisa::GpibPropertiesMap, before);
        QFETCH(const QString, after);
        openBoards(before);
        clickButton("addButton");
        QCOMPARE(tree().topLevelItemCount(), after.count(QLatin1Char('=')));
        QCOMPARE(boardsAfterOk(), after);
        for (int row = 0; row < tree().topLevelItemCount(); ++row) {
            QCOMPARE(board(row)->text(0),
                     QStringLiteral("Device ") +
                         after.section(QLatin1Char(' '), row, row).section(QLatin1Char('='), 0, 0));
        }
    }

    void removeRemovesTheSelectedBoard_data()
    {
        columns<int, bool, QString>("row", "isChild", "after");
        QTest::newRow("no selection") << -1 << false << "1=0,65535,1 4=0,65535,1 9=0,65535,1";
        QTest::newRow("first") << 0 << false << "4=0,65535,1 9=0,65535,1";
        QTest::newRow("middle, child row") << 1 << true << "1=0,65535,1 9=0,65535,1";
        QTest::newRow("last") << 2 << false << "1=0,65535,1 4=0,65535,1";
        QTest::newRow("last, child row") << 2 << true << "1=0,65535,1 4=0,65535,1";
    }

    void removeRemovesTheSelectedBoard()
    {
        QFETCH(const int, row);
        QFETCH(const bool, isChild);
        QFETCH(const QString, after);
        openBoards({{1, {}}, {4, {}}, {9, {}}});
        tree().setCurrentItem(nullptr);
        if (row >= 0) {
            QTreeWidgetItem* item = isChild ? fields(row) : board(row);
            QTest::mouseClick(tree().viewport(), Qt::LeftButton, Qt::NoModifier, centreOf(item));
            QCOMPARE(tree().selectedItems(), QList<QTreeWidgetItem*>{item});
        }
        clickButton("removeButton");
        QCOMPARE(tree().topLevelItemCount(), after.count(QLatin1Char('=')));
        QCOMPARE(boardsAfterOk(), after);
    }

    void typedTextIsTakenOrReverted_data()
    {
        columns<int, QString, QString, QString, bool>("column", "typed", "boards", "fields",
                                                      "isRedrawn");
        const int board = DeviceItem::BoardNumberColumn;
        const int address = DeviceItem::PrimaryAddressColumn;
        const auto row = [](const char* name, int column, const char* typed, const char* boards,
                            const char* fields, bool isRedrawn) {
            QTest::newRow(name) << column << QString::fromUtf8(typed) << QString::fromLatin1(boards)
                                << QString::fromLatin1(fields) << isRedrawn;
        };
        const char* unchanged = "1=9,96,0 4=0,65535,1";

        // Every edit resets the secondary address 96; the same text again is no edit.
        row("address", address, "7", "1=7,65535,0 4=0,65535,1", "1,7, 0", false);
        row("same address", address, "9", unchanged, "1,9, 0", false);
        row("address with blanks", address, " 7 ", "1=7,65535,0 4=0,65535,1", "1, 7 , 0", false);
        row("negative address", address, "-1", "1=65535,65535,0 4=0,65535,1", "1,-1, 0", false);
        row("address above 16 bits", address, "65536", "1=0,65535,0 4=0,65535,1", "1,65536, 0",
            false);
        row("hexadecimal address", address, "0x10", unchanged, "1,9, 0", true);
        row("empty address", address, "", unchanged, "1,9, 0", true);
        row("number", board, "3", "3=9,65535,0 4=0,65535,1", "3,9, 0", true);
        row("same number", board, "1", unchanged, "1,9, 0", false);
        row("same number with a zero", board, "01", "1=9,65535,0 4=0,65535,1", "1,9, 0", true);
        row("number of another board", board, "4", "4=9,65535,0", "4,9, 0", true);
        row("greater number", board, "0010", "4=0,65535,1 10=9,65535,0", "4,0, 2", true);
        row("negative number", board, "-1", "4=0,65535,1 65535=9,65535,0", "4,0, 2", true);
        row("number above 16 bits", board, "65540", "4=9,65535,0", "4,9, 0", true);
        row("letters as number", board, "one", unchanged, "1,9, 0", true);
    }

    void typedTextIsTakenOrReverted()
    {
        QFETCH(const int, column);
        QFETCH(const QString, typed);
        openBoards({{1, {9, 96, 0}}, {4, {}}});
        typeIntoCell(0, column, typed);
        QTEST(isRedrawn(), "isRedrawn");
        QTEST(rowText(fields(0)), "fields");
        QTEST(boardsAfterOk(), "boards");
    }

    void renumberingMovesTheBoardOfTheRow()
    {
        openBoards({{1, {9, 96, 0}}, {4, {8, 97, 0}}, {5, {}}});
        typeIntoCell(1, DeviceItem::BoardNumberColumn, QStringLiteral("7"));
        QCOMPARE(boardsAfterOk(), QStringLiteral("1=9,96,0 5=0,65535,1 7=8,65535,0"));
    }

    /// Neither key closes the dialog.
    void escapeDiscardsAnEditAndEnterTakesIt()
    {
        openBoards({{1, {9, 96, 0}}});
        const int column = DeviceItem::PrimaryAddressColumn;
        typeIntoCell(0, column, QStringLiteral("7"), Qt::Key_Escape);
        QCOMPARE(fields(0)->text(column), QStringLiteral("9"));
        typeIntoCell(0, column, QStringLiteral("7"), Qt::Key_Enter);
        QCOMPARE(fields(0)->text(column), QStringLiteral("7"));
        QVERIFY(dialog().isVisible());
    }

    void checkBoxIsTaken()
    {
        openBoards({{1, {9, 96, 1}}, {4, {8, 97, 0}}, {5, {7, 98, 3}}});
        for (const int row : {0, 1}) {
            tree().setFocus();
            tree().setCurrentItem(fields(row), DeviceItem::SystemControllerColumn);
            QTest::keyClick(&tree(), Qt::Key_Space);
        }
        QVERIFY(!isRedrawn());
        QCOMPARE(rowText(fields(0)), QStringLiteral("1,9, 0"));
        QCOMPARE(rowText(fields(1)), QStringLiteral("4,8, 2"));
        QCOMPARE(boardsAfterOk(), QStringLiteral("1=9,65535,0 4=8,65535,1 5=7,98,3"));
    }

    void editOfABoardsRowIsReverted()
    {
        openBoards({{1, {9, 96, 0}}});
        board(0)->setText(1, QStringLiteral("in another column"));
        QVERIFY(!isRedrawn());
        QCOMPARE(board(0)->text(1), QStringLiteral("in another column"));
        board(0)->setText(0, QStringLiteral("Device 2"));
        QVERIFY(isRedrawn());
        QCOMPARE(rowText(board(0)), QStringLiteral("Device 1,, -"));
        QCOMPARE(boardsAfterOk(), QStringLiteral("1=9,96,0"));
    }

    void allBoardNumbersFit()
    {
        Boards expected;
        for (int number = 0; number < 65535; ++number) {
            expected[static_cast<unsigned short>(number)].primaryAddress = 3;
        }
        setBoards(expected);
        open();
        QCOMPARE(tree().topLevelItemCount(), 65535);
        dialog().addDevice();
        QCOMPARE(tree().topLevelItemCount(), 65536);
        QCOMPARE(board(65535)->text(0), QStringLiteral("Device 65535"));
        dialog().addDevice();
        QCOMPARE(tree().topLevelItemCount(), 65536);
        QCOMPARE(fields(0)->text(1), QStringLiteral("0"));
        tree().setCurrentItem(fields(65534));
        dialog().removeDevice();
        clickOk();
        expected[0] = {};
        expected.erase(65534);
        expected[65535] = {};
        QVERIFY(model().getGpibProperties() == expected);
    }

    void menuHoldsTheActionsOfThePoint()
    {
        openBoards({{1, {}}});
        const QList<QAction*> all{&widget<QAction>("actionAdd_Device"),
                                  &widget<QAction>("actionRemove_Device")};
        for (const auto& [place, count] :
             {std::pair(emptySpace(), 1), std::pair(centreOf(board(0)), 2),
              std::pair(centreOf(fields(0)), 2)}) {
            const QPointer<QMenu> menu = openMenu(place);
            QVERIFY(menu != nullptr);
            QCOMPARE(menu->pos(), tree().viewport()->mapToGlobal(place));
            QCOMPARE(menu->parent(), &dialog());
            QCOMPARE(menu->actions(), all.mid(0, count));
            // A closed menu is deleted.
            QTest::keyClick(menu, Qt::Key_Escape);
            QTRY_VERIFY(menu == nullptr);
        }
        QVERIFY(dialog().isVisible());
    }

    void menuAddsABoardAndRemovesThatOfTheRow()
    {
        openBoards({{1, {}}, {2, {}}});
        clickInMenu(emptySpace(), "actionAdd_Device");
        QCOMPARE(tree().topLevelItemCount(), 3);
        clickInMenu(centreOf(board(1)), "actionRemove_Device");
        QCOMPARE(boardsAfterOk(), QStringLiteral("1=0,65535,1 3=0,65535,1"));
    }

private:
    /// Opens the dialog on these boards, with their page shown and all rows expanded.
    void openBoards(const Boards& boards)
    {
        setBoards(boards);
        open();
        auto& tabs = widget<QTabWidget>("tabWidget");
        tabs.setCurrentIndex(tabs.addTab(&widget<QWidget>("tabGpibProperties"), QString()));
        tree().expandAll();
    }
    QTreeWidget& tree() { return widget<QTreeWidget>("PropertyTree"); }
    QTreeWidgetItem* board(int row) { return tree().topLevelItem(row); }
    QTreeWidgetItem* fields(int row) { return board(row)->child(0); }
    QPoint centreOf(const QTreeWidgetItem* item) { return tree().visualItemRect(item).center(); }
    /// The boards of the working copy: those that OK stores in the model.
    QString boardsAfterOk()
    {
        dialog().accept();
        return boards();
    }
    QLineEdit* cellEditor() { return tree().viewport()->findChild<QLineEdit*>(); }

    /// Opens the cell's editor with F2, replaces its text, and ends with the key.
    void typeIntoCell(int row, int column, const QString& typed, Qt::Key end = Qt::Key_Return)
    {
        tree().setFocus();
        tree().setCurrentItem(fields(row), column);
        QTest::keyClick(&tree(), Qt::Key_F2);
        QLineEdit* editor = cellEditor();
        QVERIFY(editor != nullptr);
        editor->selectAll();
        QTest::keyClick(editor, Qt::Key_Delete);
        QTest::keyClicks(editor, typed);
        QTest::keyClick(editor, end);
        QTRY_VERIFY(cellEditor() == nullptr);
    }

    /// A redrawn board is collapsed.
    bool isRedrawn() { return !board(0)->isExpanded(); }

    void clickButton(const char* name)
    {
        QTest::mouseClick(&widget<QToolButton>(name), Qt::LeftButton);
    }

    /// Right-clicks the point; the menu that opens, or null.
    QPointer<QMenu> openMenu(const QPoint& point)
    {
        const QPoint inDialog = tree().viewport()->mapTo(&dialog(), point);
        QTest::mouseClick(dialog().windowHandle(), Qt::RightButton, Qt::NoModifier, inDialog);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
    void clickInMenu(const QPoint& point, const char* action)
    {
        const QPointer<QMenu> menu = openMenu(point);
        QVERIFY(menu != nullptr);
        QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                          menu->actionGeometry(&widget<QAction>(action)).center());
    }
    QPoint emptySpace() { return tree().viewport()->rect().center(); }
};

static const guitest::Registration<TestGpib> s_registerGpib;
#include "TestGpib.moc"
