// SPDX-License-Identifier: MIT
// Without a mouse: where Tab leads in the main window and the find dialog, and that all that can be
// clicked there can be pressed.
#include "tests/gui/main_window/MainWindowCase.h"
#include "tests/gui/resource_dialog/ResourceDialogCase.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/ModalWindows.h"

#include "gui/PropertyDialog.h"

#include <QToolButton>

using guitest::MainWindowCase;
using guitest::ResourceDialogCase;

namespace {

QString nameOf(const QWidget& widget)
{
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        return button->text();
    }
    return widget.objectName();
}

/// Where Tab leads from the widget that has the keyboard until it is back there.
QString walk(Qt::Key key = Qt::Key_Tab)
{
    const QWidget* start = QApplication::focusWidget();
    QStringList names;
    do {
        names.append(nameOf(*QApplication::focusWidget()));
        QTest::keyClick(QApplication::focusWidget(), key);
    } while (QApplication::focusWidget() != start && names.size() < 20);
    return names.join(QLatin1String(", "));
}

void tabTo(const QString& name)
{
    QVERIFY(QApplication::focusWidget() != nullptr);
    for (int i = 0; i < 20 && nameOf(*QApplication::focusWidget()) != name; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(nameOf(*QApplication::focusWidget()), name);
}

} // namespace

class TestKeyboard : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void mainWindowStartsInTheTable();
    void mainWindowTabOrder();
    void spacePressesATool();
    void clickLeavesTheKeyboardInTheTable();
    void findDialogTabOrder();
};

void TestKeyboard::mainWindowStartsInTheTable()
{
    MainWindowCase test(configuration(), "ASRL1::INSTR\nASRL2::INSTR\n");
    test.show();
    QTRY_COMPARE(QApplication::focusWidget(), &test.table());
    QTest::keyClick(&test.table(), Qt::Key_Down);
    QTest::keyClick(&test.table(), Qt::Key_Down);
    QTest::keyClick(&test.table(), Qt::Key_Right);
    QCOMPARE(test.table().currentIndex(), test.model().index(1, 1));
    QVERIFY(test.table().selectionModel()->isRowSelected(1, QModelIndex()));
    QTest::keyClick(&test.table(), Qt::Key_F2);
    QVERIFY(test.cellEditor() != nullptr);
}

void TestKeyboard::mainWindowTabOrder()
{
    MainWindowCase test(configuration(), "ASRL1::INSTR\nASRL2::INSTR\n");
    test.show();
    QTRY_COMPARE(QApplication::focusWidget(), &test.table());
    QCOMPARE(walk(),
             QStringLiteral("resourceView, Add Resource, Remove resource, Edit properties, Close"));
    test.clickCell(0, 0);
    test.model().setDirty(true);
    QCOMPARE(walk(), QStringLiteral("resourceView, Add Resource, Remove resource, Edit, "
                                    "Find Resource, Edit properties, Save, Close"));
    QCOMPARE(walk(Qt::Key_Backtab),
             QStringLiteral("resourceView, Close, Save, Edit properties, "
                            "Find Resource, Edit, Remove resource, Add Resource"));
}

void TestKeyboard::spacePressesATool()
{
    MainWindowCase test(configuration(), "ASRL1::INSTR\nASRL2::INSTR\n");
    test.show();
    QTRY_COMPARE(QApplication::focusWidget(), &test.table());
    const support::ModalAnswer<gui::PropertyDialog> answer(
        [](gui::PropertyDialog& dialog) { dialog.reject(); });
    tabTo(QStringLiteral("Edit properties"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(answer.wasShown());
    QApplication::setActiveWindow(&test.window());

    test.editCell(0, ConfigurationModel::AliasColumn, "A");
    tabTo(QStringLiteral("Save"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(!test.model().isDirty());
    QVERIFY(QApplication::focusWidget() != nullptr && QApplication::focusWidget()->isEnabled());
}

/// Who works with the mouse goes on typing where the mouse was before.
void TestKeyboard::clickLeavesTheKeyboardInTheTable()
{
    MainWindowCase test(configuration(), "ASRL1::INSTR\nASRL2::INSTR\n");
    test.show();
    test.clickCell(0, 0);
    test.click("actionRemove_resource");
    QCOMPARE(test.model().rowCount(), 1);
    QCOMPARE(QApplication::focusWidget(), &test.table());
}

void TestKeyboard::findDialogTabOrder()
{
    support::BenchFixture bench("resource ASRL1::INSTR\nresource ASRL2::INSTR\n");
    gui::ResourceDialog::updateResourceList();
    ResourceDialogCase test;
    test.show();
    QTRY_COMPARE(QApplication::focusWidget(), &test.list());
    QCOMPARE(walk(), QStringLiteral("rsrcList, Refresh, Select, Cancel"));
    tabTo(QStringLiteral("Refresh"));
    bench.clearCalls();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(!bench.calls().empty());
    tabTo(QStringLiteral("rsrcList"));
    // The first key goes to the first entry, wherever it leads else.
    QTest::keyClick(&test.list(), Qt::Key_Down);
    QTest::keyClick(&test.list(), Qt::Key_Down);
    QTest::keyClick(&test.list(), Qt::Key_Return);
    QCOMPARE(test.dialog().result(), int{QDialog::Accepted});
    QCOMPARE(test.dialog().getResource(), QStringLiteral("ASRL2::INSTR"));
}

static const guitest::Registration<TestKeyboard> s_registration;
#include "TestKeyboard.moc"
