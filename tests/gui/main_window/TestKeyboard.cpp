// SPDX-License-Identifier: MIT
// The main window without a mouse.
#include "gui/PropertyDialog.h"
#include "tests/gui/main_window/MainWindowTest.h"

#include <QToolButton>

class TestKeyboard : public guitest::MainWindowTest
{
    Q_OBJECT

private slots:
    void arrowKeysAndF2EditACell()
    {
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right}) {
            QTest::keyClick(&table(), key);
        }
        QCOMPARE(table().currentIndex(), model().index(1, 1));
        QVERIFY(table().selectionModel()->isRowSelected(1, QModelIndex()));
        QTest::keyClick(&table(), Qt::Key_F2);
        QVERIFY(cellEditor() != nullptr);
        QTest::keyClicks(cellEditor(), QStringLiteral("new"));
        QTest::keyClick(cellEditor(), Qt::Key_Tab);
        QTRY_COMPARE(text(1, 1), QStringLiteral("new"));
    }

    void tabVisitsTheTableAndTheEnabledActions()
    {
        QCOMPARE(
            walk(Qt::Key_Tab),
            QStringLiteral("resourceView, Add Resource, Remove resource, Edit properties, Close"));
        clickCell(0, 0);
        model().setDirty(true);
        QCOMPARE(walk(Qt::Key_Tab),
                 QStringLiteral("resourceView, Add Resource, Remove resource, Edit, "
                                "Find Resource, Edit properties, Save, Close"));
        QCOMPARE(walk(Qt::Key_Backtab),
                 QStringLiteral("resourceView, Close, Save, Edit properties, "
                                "Find Resource, Edit, Remove resource, Add Resource"));
    }

    void spaceTriggersTheFocusedAction()
    {
        const support::ModalAnswer<gui::PropertyDialog> modal(
            [](gui::PropertyDialog& dialog) { dialog.reject(); });
        tabTo("Edit properties");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QVERIFY(modal.wasShown());
        QApplication::setActiveWindow(&window());

        editCell(0, ConfigurationModel::AliasColumn, "A");
        tabTo("Save");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QVERIFY(!model().isDirty());
        // The button, disabled now, passes the focus on.
        QCOMPARE(QApplication::focusWidget(), &table());
    }

    void clickOnAnActionLeavesTheFocusInTheTable()
    {
        clickCell(0, 0);
        click("actionRemove_resource");
        QCOMPARE(model().rowCount(), 1);
        QCOMPARE(QApplication::focusWidget(), &table());
    }

private:
    void setUp() override
    {
        start("ASRL1::INSTR\nASRL2::INSTR\n");
        QTRY_COMPARE(QApplication::focusWidget(), &table());
    }

    static QString focused()
    {
        const auto* button = qobject_cast<QToolButton*>(QApplication::focusWidget());
        return button != nullptr ? button->text() : QApplication::focusWidget()->objectName();
    }
    /// Presses the key until the first widget is reached again; what had the focus.
    static QString walk(Qt::Key key)
    {
        const QString start = focused();
        QStringList names;
        do {
            names.append(focused());
            QTest::keyClick(QApplication::focusWidget(), key);
        } while (focused() != start && names.size() < 20);
        return names.join(QLatin1String(", "));
    }
    static void tabTo(const char* name)
    {
        for (int i = 0; i < 20 && focused() != QLatin1String(name); ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(focused(), QString::fromLatin1(name));
    }
};

static const guitest::Registration<TestKeyboard> s_registerKeyboard;
#include "TestKeyboard.moc"
