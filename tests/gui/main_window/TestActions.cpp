// SPDX-License-Identifier: MIT
// The main window's table, the actions that open no dialog, and the context menu.
#include "tests/gui/main_window/MainWindowTest.h"

#include "Version.h"

class TestActions : public guitest::MainWindowTest
{
    Q_OBJECT

private slots:
    void tableShowsTheEntriesOfTheFile()
    {
        QCOMPARE(rows(), QStringLiteral("GPIB0::1::INSTR> | GPIB0::2::INSTR> | ASRL1::INSTR>DMM"));
        QVERIFY(!model().isDirty());
        QVERIFY(!table().selectionModel()->hasSelection());
    }

    void removeRemovesTheSelectedRowAlone()
    {
        click("actionRemove_resource");
        QCOMPARE(model().rowCount(), 3);
        QVERIFY(!isEnabled("actionSave"));
        clickCell(1, 0);
        click("actionRemove_resource");
        QCOMPARE(rows(), QStringLiteral("GPIB0::1::INSTR> | ASRL1::INSTR>DMM"));
        QVERIFY(isEnabled("actionSave"));
    }

    void saveWritesTheFileOnce()
    {
        start("b\nA=ASRL1::INSTR\n");
        typeIntoCell(1, 0, "other");
        endCellEdit(Qt::Key_Escape);
        editCell(0, 0, "c");
        click("actionSave");
        QCOMPARE(configuration().read(), file(":Provider=3674\nc\nA=ASRL1::INSTR\n"));
        QVERIFY(!model().isDirty());
        // The button is disabled now.
        configuration().write("d\n");
        click("actionSave");
        QCOMPARE(configuration().read(), file("d\n"));
    }

    void saveIsEnabledWhileTheModelIsDirty()
    {
        QVERIFY(!isEnabled("actionSave"));
        editCell(0, 1, "x");
        QVERIFY(isEnabled("actionSave"));
        click("actionSave");
        QVERIFY(!isEnabled("actionSave"));
        // The same text again is no change.
        editCell(0, 1, "x");
        QVERIFY(!isEnabled("actionSave"));
        click("actionRemove_resource");
        QVERIFY(isEnabled("actionSave"));
        QCOMPARE(window().windowTitle(),
                 QLatin1String("QvVisaConfigure - ") + QLatin1String(qvvisa::versionText));
        model().setDirty(false);
        QVERIFY(!isEnabled("actionSave"));
    }

    void findAndEditAreEnabledWithASelection()
    {
        QVERIFY(findAndEditAre(false));
        clickCell(1, 0);
        QVERIFY(findAndEditAre(true));
        clickCell(2, 1);
        QVERIFY(findAndEditAre(true));
        table().clearSelection();
        QVERIFY(findAndEditAre(false));
        QTest::keyClick(table().viewport(), Qt::Key_Up);
        QVERIFY(findAndEditAre(true));
        const QModelIndex current = table().currentIndex();
        clickCell(current.row(), current.column(), Qt::ControlModifier);
        QVERIFY(!table().selectionModel()->hasSelection());
        QVERIFY(findAndEditAre(false));
    }

    void findAndEditAfterARemoval_data()
    {
        columns<int, int, bool>("rows", "row", "enabled");
        QTest::newRow("last of three") << 3 << 2 << true;
        QTest::newRow("first of two") << 2 << 0 << false;
        QTest::newRow("only row") << 1 << 0 << false;
    }

    void findAndEditAfterARemoval()
    {
        QFETCH(int, rows);
        QFETCH(int, row);
        QFETCH(bool, enabled);
        start(std::string_view("a\nb\nc\n").substr(0, std::size_t(rows) * 2));
        clickCell(row, 0);
        click("actionRemove_resource");
        QCOMPARE(model().rowCount(), rows - 1);
        QCOMPARE(table().selectionModel()->hasSelection(), enabled);
        QVERIFY(findAndEditAre(enabled));
    }

    /// The slot has no connection.
    void refreshButtonStatusFollowsTheSelection()
    {
        for (const bool selected : {false, true}) {
            if (selected) {
                clickCell(0, 0);
            }
            action("actionFind").setEnabled(!selected);
            action("actionEdit").setEnabled(!selected);
            QVERIFY(QMetaObject::invokeMethod(&window(), "refreshButtonStatus"));
            QVERIFY(findAndEditAre(selected));
        }
    }

    /// QItemSelection is a registered meta type.
    void selectionChangesCanBeQueued()
    {
        action("actionFind").setEnabled(true);
        QVERIFY(QMetaObject::invokeMethod(&window(), "selectionChanged", Qt::QueuedConnection,
                                          Q_ARG(QItemSelection, QItemSelection()),
                                          Q_ARG(QItemSelection, QItemSelection())));
        QVERIFY(isEnabled("actionFind"));
        QTRY_VERIFY(!isEnabled("actionFind"));
    }

    void menuBelowTheRowsHoldsAddAlone()
    {
        clickCell(0, 0);
        const QPointer<QMenu> menu = openMenu(belowTheRows());
        QVERIFY(menu != nullptr);
        QCOMPARE(menu->actions(), QList<QAction*>{&action("actionAdd_Resource")});
        start("");
        const QPointer<QMenu> menuWithoutRows = openMenu(QPoint(5, 5));
        QVERIFY(menuWithoutRows != nullptr);
        QCOMPARE(menuWithoutRows->actions(), QList<QAction*>{&action("actionAdd_Resource")});
    }

    void menuOnARowHoldsAllRowActions()
    {
        for (const int row : {0, 1, 2}) {
            const QRect cell = table().visualRect(model().index(row, row % 2));
            // At the left, where the screen has room for the menu.
            const QPoint point(cell.left() + 5, cell.center().y());
            const QPointer<QMenu> menu = openMenu(point);
            // The slot has returned while the menu is open.
            QVERIFY(menu != nullptr && menu->isVisible());
            QCOMPARE(menu->pos(), table().viewport()->mapToGlobal(point));
            QCOMPARE(menu->parent(), &window());
            QList<QAction*> actions = menu->actions();
            QCOMPARE(actions.size(), 5);
            QVERIFY(actions.takeAt(3)->isSeparator());
            QCOMPARE(actions, (QList<QAction*>{&action("actionAdd_Resource"),
                                               &action("actionRemove_resource"),
                                               &action("actionEdit"), &action("actionFind")}));
        }
    }

    void newMenuReplacesTheFormer()
    {
        const QPointer<QMenu> first = openMenu(cellCentre(0, 0));
        QVERIFY(first != nullptr);
        const QPointer<QMenu> second = openMenu(belowTheRows());
        QVERIFY(first == nullptr);
        QVERIFY(second != nullptr);
        destroy();
        QVERIFY(second == nullptr);
    }

    void rightClickSelectsTheRowOfTheMenu()
    {
        // Without a selection: another program may ask for the menu too.
        QVERIFY(openMenu(cellCentre(0, 0)) != nullptr);
        QVERIFY(findAndEditAre(false));
        QApplication::activePopupWidget()->close();
        QTest::mouseClick(table().viewport(), Qt::RightButton, Qt::NoModifier, cellCentre(1, 1));
        QCOMPARE(table().currentIndex().row(), 1);
        QVERIFY(findAndEditAre(true));
    }

private:
    void setUp() override { start(s_threeRows); }
    bool findAndEditAre(bool enabled) const
    {
        return isEnabled("actionFind") == enabled && isEnabled("actionEdit") == enabled;
    }

    static constexpr const char* s_threeRows =
        "GPIB0::1::INSTR\nGPIB0::2::INSTR\nDMM=ASRL1::INSTR\n";
};

static const guitest::Registration<TestActions> s_registerActions;
#include "TestActions.moc"
