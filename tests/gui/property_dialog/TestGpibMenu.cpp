// SPDX-License-Identifier: MIT
#include "tests/gui/property_dialog/BoardsCase.h"
#include "tests/gui/shared/WindowTest.h"

#include <QMenu>
#include <QPointer>

using guitest::BoardsCase;
using Boards = QvVisa::GpibPropertiesMap;

namespace {

/// Right-clicks a point of the tree as the window system reports it, which makes Qt ask for the
/// menu.
void rightClick(BoardsCase& test, const QPoint& point)
{
    const QPoint inWindow = test.tree().viewport()->mapTo(&test.dialog(), point);
    QTest::mouseClick(test.dialog().windowHandle(), Qt::RightButton, Qt::NoModifier, inWindow);
}

QMenu* openMenu()
{
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

QStringList entries(const QMenu& menu)
{
    QStringList texts;
    for (const QAction* action : menu.actions()) {
        texts.append(action->text());
    }
    return texts;
}

QPoint rowCentre(BoardsCase& test, const QTreeWidgetItem* item)
{
    return test.tree().visualItemRect(item).center();
}

QPoint emptySpace(BoardsCase& test)
{
    return test.tree().viewport()->rect().bottomRight() - QPoint(5, 5);
}

} // namespace

/// The menu of the GPIB tree.
class TestGpibMenu : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void offersWhatThePointAllows_data();
    void offersWhatThePointAllows();
    void opensAtThePoint();
    void adds();
    void removes();
    void isGoneAfterUse();
};

void TestGpibMenu::offersWhatThePointAllows_data()
{
    QTest::addColumn<QByteArray>("point");
    QTest::addColumn<QStringList>("texts");
    const QString add = QStringLiteral("Add Device");
    const QString remove = QStringLiteral("Remove Device");
    QTest::newRow("empty space") << QByteArray("empty") << QStringList(add);
    QTest::newRow("a board") << QByteArray("board") << QStringList({add, remove});
    QTest::newRow("a board's fields") << QByteArray("fields") << QStringList({add, remove});
}

void TestGpibMenu::offersWhatThePointAllows()
{
    QFETCH(const QByteArray, point);
    QFETCH(const QStringList, texts);
    BoardsCase test(Boards{{1, {}}});
    if (point == "empty") {
        rightClick(test, emptySpace(test));
    } else {
        rightClick(test, rowCentre(test, point == "board" ? test.board(0) : test.fields(0)));
    }
    const QMenu* menu = openMenu();
    QVERIFY(menu != nullptr);
    QCOMPARE(entries(*menu), texts);
    QCOMPARE(menu->parent(), &test.dialog());
    QCOMPARE(menu->actions().first(), &test.widget<QAction>("actionAdd_Device"));
}

void TestGpibMenu::opensAtThePoint()
{
    BoardsCase test(Boards{});
    const QPoint point(20, 10);
    test.dialog().treePopupMenu(point);
    const QMenu* menu = openMenu();
    QVERIFY(menu != nullptr);
    QCOMPARE(menu->pos(), test.tree().viewport()->mapToGlobal(point));
}

void TestGpibMenu::adds()
{
    BoardsCase test(Boards{{1, {}}});
    rightClick(test, emptySpace(test));
    QVERIFY(openMenu() != nullptr);
    QTest::keyClick(openMenu(), Qt::Key_Down);
    QTest::keyClick(openMenu(), Qt::Key_Return);
    QCOMPARE(test.boards(), QStringLiteral("1=0,65535,1 2=0,65535,1"));
}

void TestGpibMenu::removes()
{
    BoardsCase test(Boards{{1, {}}, {2, {}}});
    rightClick(test, rowCentre(test, test.fields(1)));
    QMenu* menu = openMenu();
    QVERIFY(menu != nullptr);
    QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                      menu->actionGeometry(menu->actions().last()).center());
    QCOMPARE(test.boards(), QStringLiteral("1=0,65535,1"));
}

void TestGpibMenu::isGoneAfterUse()
{
    BoardsCase test(Boards{{1, {}}});
    rightClick(test, emptySpace(test));
    const QPointer<QMenu> menu = openMenu();
    QVERIFY(menu);
    QTest::keyClick(menu.data(), Qt::Key_Escape);
    QTRY_VERIFY(!menu);
    QVERIFY(test.dialog().isVisible());
    QCOMPARE(test.boards(), QStringLiteral("1=0,65535,1"));
}

static const guitest::Registration<TestGpibMenu> s_registration;

#include "TestGpibMenu.moc"
