// SPDX-License-Identifier: MIT
#include "gui/DeviceItem.h"
#include "tests/gui/property_dialog/BoardsCase.h"
#include "tests/gui/shared/RecordTexts.h"
#include "tests/gui/shared/WindowTest.h"

#include <QAction>
#include <QHeaderView>

Q_DECLARE_METATYPE(QvVisa::GpibPropertiesMap)

using guitest::BoardsCase;
using guitest::PropertyDialogCase;
using guitest::text;
using Boards = QvVisa::GpibPropertiesMap;

namespace {

QString rowTexts(const QTreeWidgetItem* item)
{
    const QVariant check = item->data(DeviceItem::SystemControllerColumn, Qt::CheckStateRole);
    return QStringLiteral("%1,%2,%3 %4")
        .arg(item->text(0), item->text(1), item->text(2),
             check.isValid() ? QString::number(check.toInt()) : QStringLiteral("-"));
}

} // namespace

/// The tree of GPIB boards. The dialog takes its tab away; here it is put back.
class TestGpib : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void itemShowsABoard_data();
    void itemShowsABoard();
    void treeShowsTheBoards();
    void isDrawnWhileHidden();
    void adds_data();
    void adds();
    void addsByTheAction();
    void removes_data();
    void removes();
    void removesByTheAction();
    void takesTypedTexts_data();
    void takesTypedTexts();
    void renumbersTheBoardOfTheRow();
    void takesADoubleClickedCell();
    void escapeKeepsTheText();
    void enterInACellKeepsTheDialog();
    void takesTheCheckBox();
    void takesTheCheckBoxFromTheKeyboard();
    void throwsAwayAnEditOfTheTopRow();
    void holdsMoreBoardsThanAnyoneHas();
    void cancelKeepsTheModel();
};

void TestGpib::itemShowsABoard_data()
{
    QTest::addColumn<int>("board");
    QTest::addColumn<int>("primary");
    QTest::addColumn<int>("secondary");
    QTest::addColumn<int>("controller");
    QTest::addColumn<QString>("top");
    QTest::addColumn<QString>("child");
    QTest::newRow("defaults") << 0 << 0 << 65535 << 1 << "Device 0,, -"
                              << "0,0, 2";
    QTest::newRow("no controller") << 5 << 21 << 65535 << 0 << "Device 5,, -"
                                   << "5,21, 0";
    QTest::newRow("controller neither 0 nor 1") << 6 << 1 << 7 << 2 << "Device 6,, -"
                                                << "6,1, 0";
    QTest::newRow("greatest") << 65535 << 65535 << 0 << 1 << "Device 65535,, -"
                              << "65535,65535, 2";
}

void TestGpib::itemShowsABoard()
{
    QFETCH(const int, board);
    QFETCH(const int, primary);
    QFETCH(const int, secondary);
    QFETCH(const int, controller);
    QFETCH(const QString, top);
    QFETCH(const QString, child);
    const QvVisa::SGpibProperties properties{static_cast<std::uint16_t>(primary),
                                             static_cast<std::uint16_t>(secondary),
                                             static_cast<std::uint16_t>(controller)};
    const DeviceItem item({static_cast<unsigned short>(board), properties}, 0);
    QCOMPARE(item.type(), 0);
    QCOMPARE(rowTexts(&item), top);
    QCOMPARE(item.flags(), QTreeWidgetItem().flags());
    QCOMPARE(item.childCount(), 1);
    QCOMPARE(rowTexts(item.child(0)), child);
    QCOMPARE(item.child(0)->flags(),
             QTreeWidgetItem().flags() | Qt::ItemIsEditable | Qt::ItemIsUserCheckable);
    QCOMPARE(item.child(0)->childCount(), 0);
}

void TestGpib::treeShowsTheBoards()
{
    BoardsCase test(Boards{{300, {}}, {2, {9, 96, 0}}, {65535, {}}});
    const QTreeWidgetItem* header = test.tree().headerItem();
    QCOMPARE(test.tree().columnCount(), 3);
    QCOMPARE(header->text(0), QStringLiteral("Device No"));
    QCOMPARE(header->text(1), QStringLiteral("Primary Address"));
    QCOMPARE(header->text(2), QStringLiteral("System Controller"));
    QVERIFY(test.tree().header()->isVisible());
    QCOMPARE(test.tree().topLevelItemCount(), 3);
    QCOMPARE(test.board(0)->text(0), QStringLiteral("Device 2"));
    QCOMPARE(test.board(1)->text(0), QStringLiteral("Device 300"));
    QCOMPARE(test.board(2)->text(0), QStringLiteral("Device 65535"));
    QCOMPARE(rowTexts(test.fields(0)), QStringLiteral("2,9, 0"));
    test.tree().header()->hide();
    test.dialog().redrawtree();
    QVERIFY(test.tree().header()->isVisible());
    // An untouched board keeps its secondary address.
    QCOMPARE(test.boards(), QStringLiteral("2=9,96,0 300=0,65535,1 65535=0,65535,1"));
}

void TestGpib::isDrawnWhileHidden()
{
    PropertyDialogCase test;
    test.haveBoards({{4, {}}});
    test.open();
    auto& tree = test.widget<QTreeWidget>("PropertyTree");
    QVERIFY(!tree.isVisible());
    QCOMPARE(tree.topLevelItemCount(), 1);
    test.dialog().addDevice();
    QCOMPARE(tree.topLevelItemCount(), 2);
    test.clickOk();
    QCOMPARE(text(test.model().getGpibProperties()), QStringLiteral("4=0,65535,1 5=0,65535,1"));
    QVERIFY(test.model().isDirty());
}

void TestGpib::adds_data()
{
    QTest::addColumn<QvVisa::GpibPropertiesMap>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("to none") << Boards() << "0=0,65535,1";
    QTest::newRow("behind the last")
        << Boards{{0, {1, 2, 0}}, {5, {6, 7, 0}}} << "0=1,2,0 5=6,7,0 6=0,65535,1";
    QTest::newRow("the greatest number")
        << Boards{{65534, {}}} << "65534=0,65535,1 65535=0,65535,1";
    QTest::newRow("wraps and replaces")
        << Boards{{0, {1, 2, 0}}, {65535, {3, 4, 0}}} << "0=0,65535,1 65535=3,4,0";
    QTest::newRow("wraps") << Boards{{65535, {3, 4, 0}}} << "0=0,65535,1 65535=3,4,0";
}

void TestGpib::adds()
{
    QFETCH(const QvVisa::GpibPropertiesMap, before);
    QFETCH(const QString, after);
    BoardsCase test(before);
    test.clickButton("addButton");
    QCOMPARE(test.tree().topLevelItemCount(), after.count(QLatin1Char('=')));
    for (int row = 0; row < test.tree().topLevelItemCount(); ++row) {
        const QString number =
            after.section(QLatin1Char(' '), row, row).section(QLatin1Char('='), 0, 0);
        QCOMPARE(test.board(row)->text(0), QStringLiteral("Device ") + number);
    }
    QCOMPARE(test.boards(), after);
}

void TestGpib::addsByTheAction()
{
    BoardsCase test(Boards{});
    test.widget<QAction>("actionAdd_Device").trigger();
    QCOMPARE(test.tree().topLevelItemCount(), 1);
    QCOMPARE(rowTexts(test.board(0)), QStringLiteral("Device 0,, -"));
    QCOMPARE(rowTexts(test.fields(0)), QStringLiteral("0,0, 2"));
}

void TestGpib::removes_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("isChild");
    QTest::addColumn<QString>("after");
    QTest::newRow("nothing selected") << -1 << false << "1=0,65535,1 4=0,65535,1 9=0,65535,1";
    QTest::newRow("first") << 0 << false << "4=0,65535,1 9=0,65535,1";
    QTest::newRow("middle, by its fields") << 1 << true << "1=0,65535,1 9=0,65535,1";
    QTest::newRow("last") << 2 << false << "1=0,65535,1 4=0,65535,1";
    QTest::newRow("last, by its fields") << 2 << true << "1=0,65535,1 4=0,65535,1";
}

void TestGpib::removes()
{
    QFETCH(const int, row);
    QFETCH(const bool, isChild);
    QFETCH(const QString, after);
    BoardsCase test(Boards{{1, {}}, {4, {}}, {9, {}}});
    test.tree().setCurrentItem(nullptr);
    if (row >= 0) {
        QTreeWidgetItem* item = isChild ? test.fields(row) : test.board(row);
        QTest::mouseClick(test.tree().viewport(), Qt::LeftButton, Qt::NoModifier,
                          test.tree().visualItemRect(item).center());
        QCOMPARE(test.tree().selectedItems(), QList<QTreeWidgetItem*>{item});
    }
    test.clickButton("removeButton");
    QCOMPARE(test.tree().topLevelItemCount(), after.count(QLatin1Char('=')));
    QCOMPARE(test.boards(), after);
}

void TestGpib::removesByTheAction()
{
    BoardsCase test(Boards{{1, {}}});
    test.tree().setCurrentItem(test.board(0));
    test.widget<QAction>("actionRemove_Device").trigger();
    QCOMPARE(test.tree().topLevelItemCount(), 0);
    QCOMPARE(test.boards(), QString());
}

void TestGpib::takesTypedTexts_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("boards");
    QTest::addColumn<QString>("fields");
    QTest::addColumn<bool>("isDrawnAnew");
    const int board = DeviceItem::BoardNumberColumn;
    const int address = DeviceItem::PrimaryAddressColumn;
    const auto row = [](const char* name, int column, const char* typed, const char* boards,
                        const char* fields, bool isDrawnAnew) {
        QTest::newRow(name) << column << QString::fromUtf8(typed) << QString::fromLatin1(boards)
                            << QString::fromLatin1(fields) << isDrawnAnew;
    };

    // The secondary address 96 is gone with every edit that counts; retyping a text is none.
    row("an address", address, "7", "1=7,65535,0 4=0,65535,1", "1,7, 0", false);
    row("the same address", address, "9", "1=9,96,0 4=0,65535,1", "1,9, 0", false);
    row("blanks around", address, " 7 ", "1=7,65535,0 4=0,65535,1", "1, 7 , 0", false);
    row("an address below zero", address, "-1", "1=65535,65535,0 4=0,65535,1", "1,-1, 0", false);
    row("an address beyond 16 bits", address, "65536", "1=0,65535,0 4=0,65535,1", "1,65536, 0",
        false);
    row("leading zeros", address, "0012", "1=12,65535,0 4=0,65535,1", "1,0012, 0", false);
    row("no base but ten", address, "0x10", "1=9,96,0 4=0,65535,1", "1,9, 0", true);
    row("letters for an address", address, "abc", "1=9,96,0 4=0,65535,1", "1,9, 0", true);
    row("no address", address, "", "1=9,96,0 4=0,65535,1", "1,9, 0", true);
    row("an address of 33 bits", address, "4294967296", "1=9,96,0 4=0,65535,1", "1,9, 0", true);
    row("a number, no base but ten", board, "0x3", "1=9,96,0 4=0,65535,1", "1,9, 0", true);
    row("a number, leading zeros", board, "0010", "4=0,65535,1 10=9,65535,0", "4,0, 2", true);
    row("a number", board, "3", "3=9,65535,0 4=0,65535,1", "3,9, 0", true);
    row("the same number", board, "1", "1=9,96,0 4=0,65535,1", "1,9, 0", false);
    row("the same number otherwise", board, "01", "1=9,65535,0 4=0,65535,1", "1,9, 0", true);
    row("another board's number", board, "4", "4=9,65535,0", "4,9, 0", true);
    row("a number behind the others", board, "8", "4=0,65535,1 8=9,65535,0", "4,0, 2", true);
    row("a number below zero", board, "-1", "4=0,65535,1 65535=9,65535,0", "4,0, 2", true);
    row("a number beyond 16 bits", board, "65540", "4=9,65535,0", "4,9, 0", true);
    row("letters for a number", board, "one", "1=9,96,0 4=0,65535,1", "1,9, 0", true);
    row("no number", board, "", "1=9,96,0 4=0,65535,1", "1,9, 0", true);
    row("a fraction", board, "1.5", "1=9,96,0 4=0,65535,1", "1,9, 0", true);
}

void TestGpib::takesTypedTexts()
{
    QFETCH(const int, column);
    QFETCH(const QString, typed);
    QFETCH(const QString, boards);
    QFETCH(const QString, fields);
    QFETCH(const bool, isDrawnAnew);
    BoardsCase test(Boards{{1, {9, 96, 0}}, {4, {}}});
    test.type(0, column, typed);
    QCOMPARE(test.isDrawnAnew(), isDrawnAnew);
    QCOMPARE(rowTexts(test.fields(0)), fields);
    QCOMPARE(test.boards(), boards);
}

void TestGpib::renumbersTheBoardOfTheRow()
{
    BoardsCase test(Boards{{1, {9, 96, 0}}, {4, {8, 97, 0}}, {5, {}}});
    test.type(1, DeviceItem::BoardNumberColumn, QStringLiteral("7"));
    QCOMPARE(test.boards(), QStringLiteral("1=9,96,0 5=0,65535,1 7=8,65535,0"));
}

void TestGpib::takesADoubleClickedCell()
{
    BoardsCase test(Boards{{1, {}}});
    const QModelIndex cell = test.tree().model()->index(0, DeviceItem::PrimaryAddressColumn,
                                                        test.tree().model()->index(0, 0));
    const QPoint point = test.tree().visualRect(cell).center();
    QTest::mouseClick(test.tree().viewport(), Qt::LeftButton, Qt::NoModifier, point);
    QTest::mouseDClick(test.tree().viewport(), Qt::LeftButton, Qt::NoModifier, point);
    auto* editor = test.tree().viewport()->findChild<QLineEdit*>();
    QVERIFY(editor != nullptr);
    QTest::keyClicks(editor, QStringLiteral("30"));
    QTest::keyClick(editor, Qt::Key_Tab);
    QCOMPARE(test.boards(), QStringLiteral("1=30,65535,1"));
}

void TestGpib::escapeKeepsTheText()
{
    BoardsCase test(Boards{{1, {9, 96, 0}}});
    test.type(0, DeviceItem::PrimaryAddressColumn, QStringLiteral("7"), Qt::Key_Escape);
    QVERIFY(test.dialog().isVisible());
    QCOMPARE(test.boards(), QStringLiteral("1=9,96,0"));
}

void TestGpib::enterInACellKeepsTheDialog()
{
    BoardsCase test(Boards{{1, {}}});
    test.type(0, DeviceItem::PrimaryAddressColumn, QStringLiteral("7"), Qt::Key_Enter);
    QVERIFY(test.dialog().isVisible());
    QCOMPARE(text(test.model().getGpibProperties()), QStringLiteral("1=0,65535,1"));
    QCOMPARE(test.boards(), QStringLiteral("1=7,65535,1"));
}

void TestGpib::takesTheCheckBox()
{
    BoardsCase test(Boards{{1, {9, 96, 1}}, {4, {8, 97, 0}}, {5, {7, 98, 3}}});
    test.check(0);
    test.check(1);
    QVERIFY(!test.isDrawnAnew());
    QCOMPARE(rowTexts(test.fields(0)), QStringLiteral("1,9, 0"));
    QCOMPARE(rowTexts(test.fields(1)), QStringLiteral("4,8, 2"));
    QCOMPARE(test.boards(), QStringLiteral("1=9,65535,0 4=8,65535,1 5=7,98,3"));
}

void TestGpib::takesTheCheckBoxFromTheKeyboard()
{
    BoardsCase test(Boards{{1, {}}});
    test.tree().setFocus();
    test.tree().setCurrentItem(test.fields(0), DeviceItem::SystemControllerColumn);
    QTest::keyClick(&test.tree(), Qt::Key_Space);
    QCOMPARE(test.boards(), QStringLiteral("1=0,65535,0"));
}

void TestGpib::throwsAwayAnEditOfTheTopRow()
{
    BoardsCase test(Boards{{1, {9, 96, 0}}});
    test.board(0)->setText(1, QStringLiteral("kept in the tree alone"));
    QVERIFY(!test.isDrawnAnew());
    QCOMPARE(test.board(0)->text(1), QStringLiteral("kept in the tree alone"));
    test.board(0)->setText(0, QStringLiteral("Device 2"));
    QVERIFY(test.isDrawnAnew());
    QCOMPARE(rowTexts(test.board(0)), QStringLiteral("Device 1,, -"));
    QCOMPARE(test.boards(), QStringLiteral("1=9,96,0"));
}

void TestGpib::holdsMoreBoardsThanAnyoneHas()
{
    QvVisa::GpibPropertiesMap boards;
    for (int number = 0; number < 65535; ++number) {
        boards[static_cast<unsigned short>(number)].primaryAddress = 3;
    }
    PropertyDialogCase test;
    test.haveBoards(boards);
    test.open();
    auto& tree = test.widget<QTreeWidget>("PropertyTree");
    QCOMPARE(tree.topLevelItemCount(), 65535);
    test.dialog().addDevice();
    QCOMPARE(tree.topLevelItemCount(), 65536);
    QCOMPARE(tree.topLevelItem(65535)->text(0), QStringLiteral("Device 65535"));
    test.dialog().addDevice();
    QCOMPARE(tree.topLevelItemCount(), 65536);
    QCOMPARE(tree.topLevelItem(0)->child(0)->text(1), QStringLiteral("0"));
    tree.setCurrentItem(tree.topLevelItem(65534)->child(0));
    test.dialog().removeDevice();
    test.clickOk();
    boards[0] = {};
    boards.erase(65534);
    boards[65535] = {};
    QVERIFY(test.model().getGpibProperties() == boards);
}

void TestGpib::cancelKeepsTheModel()
{
    BoardsCase test(Boards{{1, {9, 96, 0}}});
    test.type(0, DeviceItem::BoardNumberColumn, QStringLiteral("3"));
    test.clickButton("addButton");
    test.clickCancel();
    QCOMPARE(text(test.model().getGpibProperties()), QStringLiteral("1=9,96,0"));
    QVERIFY(!test.model().isDirty());
}

static const guitest::Registration<TestGpib> s_registration;

#include "TestGpib.moc"
