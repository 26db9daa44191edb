// SPDX-License-Identifier: MIT
// What the main window does: its buttons, its table, its context menu.
#include "gui/PropertyDialog.h"
#include "gui/ResourceDialog.h"
#include "gui/RsrcStringEditor.h"
#include "tests/gui/main_window/MainWindowCase.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/ModalWindows.h"

#include <QContextMenuEvent>
#include <QListWidget>
#include <QMenu>
#include <QPointer>

#include <functional>
#include <optional>

using support::ConfigurationFixture;
using support::ModalAnswer;

class TestActions : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void showsTheFilesEntries();
    void editsCellsInPlace();
    void addOpensTheComposer();
    void editOpensTheComposerOnTheRow();
    void findOpensTheListOfResources();
    void editPropertiesOpensTheProperties();
    void removeRemovesTheSelectedRow();
    void removeDoesNothingWithoutSelection();
    void saveWritesTheFileOnce();
    void closeCloses();
    void saveIsEnabledWhileThereIsSomethingToSave();

    void dialogsEndAnEdit_data();
    void dialogsEndAnEdit();
    void findAndEditFollowTheSelection();
    void findAndEditFollowRemovals_data();
    void findAndEditFollowRemovals();
    void buttonsCanBeRefreshedByHand();

    void aClickBesideTheRowsOffersToAdd();
    void aClickOnARowOffersAll();
    void theMenuOpensWhereItWasAskedFor();
    void theMenuDoesWhatItSays();
    void aNewMenuReplacesTheFormer();
    void theMenuKnowsWhatIsPossible();

private:
    void tearDown() override;
    void start(const char* lines);
    /// Asks for a context menu as a right click does; the menu that came up.
    QPointer<QMenu> askForMenu(const QPoint& position) const;
    static QStringList texts(const QMenu& menu);
    QPoint besideTheRows() const;

    std::optional<guitest::MainWindowCase> m_case;
};

namespace {

constexpr const char* s_threeRows = "GPIB0::1::INSTR\nGPIB0::2::INSTR\nDMM=ASRL1::INSTR\n";

} // namespace

void TestActions::tearDown()
{
    m_case.reset();
}

void TestActions::start(const char* lines)
{
    m_case.emplace(configuration(), lines);
    m_case->show();
}

void TestActions::showsTheFilesEntries()
{
    start(s_threeRows);
    QCOMPARE(m_case->model().rowCount(), 3);
    QCOMPARE(m_case->text(0, 0), QStringLiteral("GPIB0::1::INSTR"));
    QCOMPARE(m_case->text(0, 1), QString());
    QCOMPARE(m_case->text(2, 0), QStringLiteral("ASRL1::INSTR"));
    QCOMPARE(m_case->text(2, 1), QStringLiteral("DMM"));
    QVERIFY(!m_case->model().isDirty());
    QVERIFY(!m_case->table().selectionModel()->hasSelection());
}

void TestActions::editsCellsInPlace()
{
    start(s_threeRows);
    m_case->editCell(1, 1, " my dev:1 #x ");
    QCOMPARE(m_case->text(1, 1), QStringLiteral("my_dev1_x"));
    m_case->editCell(1, 0, " my dev:1 #x ");
    QCOMPARE(m_case->text(1, 0), QStringLiteral("my_dev:1_x"));

    // Escape takes the typed text back.
    m_case->typeIntoCell(0, 0, "other");
    QTest::keyClick(m_case->cellEditor(), Qt::Key_Escape);
    QTRY_VERIFY(m_case->cellEditor() == nullptr);
    QCOMPARE(m_case->text(0, 0), QStringLiteral("GPIB0::1::INSTR"));

    // Typing on a selected cell opens its editor; another cell's click ends the edit.
    m_case->clickCell(2, 1);
    QTest::keyClick(m_case->table().viewport(), Qt::Key_F2);
    QVERIFY(m_case->cellEditor() != nullptr);
    m_case->cellEditor()->selectAll();
    QTest::keyClicks(m_case->cellEditor(), QStringLiteral("new"));
    QTest::keyClick(m_case->cellEditor(), Qt::Key_Tab);
    QTRY_COMPARE(m_case->text(2, 1), QStringLiteral("new"));
}

void TestActions::addOpensTheComposer()
{
    start(s_threeRows);
    const ModalAnswer<gui::RsrcStringEditor> answer([this](gui::RsrcStringEditor& composer) {
        QCOMPARE(composer.parent(), &m_case->window());
        composer.setRsrcString(QStringLiteral(" USB0::1::2::a b=::INSTR "));
        composer.setAlias(QStringLiteral("new one"));
        composer.accept();
    });
    m_case->click("actionAdd_Resource");
    QVERIFY(answer.wasShown());
    QCOMPARE(m_case->model().rowCount(), 4);
    QCOMPARE(m_case->text(3, 0), QStringLiteral("USB0::1::2::a b=::INSTR"));
    QCOMPARE(m_case->text(3, 1), QStringLiteral("new one"));
}

void TestActions::editOpensTheComposerOnTheRow()
{
    start(s_threeRows);
    m_case->clickCell(2, 0);
    const ModalAnswer<gui::RsrcStringEditor> answer([this](gui::RsrcStringEditor& composer) {
        QCOMPARE(composer.parent(), &m_case->window());
        QCOMPARE(composer.getRsrcString(), QStringLiteral("ASRL1::INSTR"));
        QCOMPARE(composer.getAlias(), QStringLiteral("DMM"));
        composer.setAlias(QStringLiteral("volts"));
        composer.accept();
    });
    m_case->click("actionEdit");
    QVERIFY(answer.wasShown());
    QCOMPARE(m_case->model().rowCount(), 3);
    QCOMPARE(m_case->text(2, 0), QStringLiteral("ASRL1::INSTR"));
    QCOMPARE(m_case->text(2, 1), QStringLiteral("volts"));
}

void TestActions::findOpensTheListOfResources()
{
    m_case.emplace(configuration(), s_threeRows, "resource USB0::1::2::3::INSTR\n");
    m_case->show();
    m_case->clickCell(2, 1);
    const ModalAnswer<gui::ResourceDialog> answer([this](gui::ResourceDialog& dialog) {
        QCOMPARE(dialog.parent(), &m_case->window());
        auto& list = support::child<QListWidget>(dialog, "rsrcList");
        QTRY_COMPARE(list.count(), 1);
        list.setCurrentRow(0);
        dialog.accept();
    });
    m_case->click("actionFind");
    QVERIFY(answer.wasShown());
    QCOMPARE(m_case->text(2, 0), QStringLiteral("USB0::1::2::3::INSTR"));
    QCOMPARE(m_case->text(2, 1), QStringLiteral("DMM"));
    QVERIFY(m_case->model().isDirty());
}

void TestActions::editPropertiesOpensTheProperties()
{
    start(s_threeRows);
    const ModalAnswer<gui::PropertyDialog> answer([this](gui::PropertyDialog& dialog) {
        QCOMPARE(dialog.parent(), &m_case->window());
        support::child<QLineEdit>(dialog, "providerEdit").setText(QStringLiteral("42"));
        dialog.accept();
    });
    m_case->click("actionEdit_properties");
    QVERIFY(answer.wasShown());
    QCOMPARE(m_case->model().getProvider(), static_cast<unsigned short>(42));
    QVERIFY(m_case->action("actionSave").isEnabled());
}

void TestActions::removeRemovesTheSelectedRow()
{
    start(s_threeRows);
    m_case->clickCell(1, 0);
    m_case->click("actionRemove_resource");
    QCOMPARE(m_case->model().rowCount(), 2);
    QCOMPARE(m_case->text(0, 0), QStringLiteral("GPIB0::1::INSTR"));
    QCOMPARE(m_case->text(1, 0), QStringLiteral("ASRL1::INSTR"));
    QVERIFY(m_case->action("actionSave").isEnabled());
}

void TestActions::removeDoesNothingWithoutSelection()
{
    start(s_threeRows);
    QVERIFY(m_case->action("actionRemove_resource").isEnabled());
    m_case->click("actionRemove_resource");
    QCOMPARE(m_case->model().rowCount(), 3);
    QVERIFY(!m_case->action("actionSave").isEnabled());
}

void TestActions::saveWritesTheFileOnce()
{
    start("b\nA=ASRL1::INSTR\n");
    m_case->editCell(0, 0, "c");
    m_case->click("actionSave");
    QCOMPARE(configuration().read(),
             ConfigurationFixture::header() + ":Provider=3674\nc\nA=ASRL1::INSTR\n");
    QVERIFY(!m_case->model().isDirty());
    // A disabled button saves no more.
    configuration().write("d\n");
    m_case->click("actionSave");
    QCOMPARE(configuration().read(), ConfigurationFixture::header() + "d\n");
}

void TestActions::closeCloses()
{
    start(s_threeRows);
    m_case->click("actionClose");
    QVERIFY(!m_case->window().isVisible());
    QCOMPARE(configuration().read(), ConfigurationFixture::header() + s_threeRows);
}

void TestActions::saveIsEnabledWhileThereIsSomethingToSave()
{
    start(s_threeRows);
    const QAction& save = m_case->action("actionSave");
    QVERIFY(!save.isEnabled());
    m_case->editCell(0, 1, "x");
    QVERIFY(save.isEnabled());
    m_case->click("actionSave");
    QVERIFY(!save.isEnabled());
    // An edit to what is there already is none.
    m_case->editCell(0, 1, "x");
    QVERIFY(!save.isEnabled());
    m_case->click("actionRemove_resource");
    QVERIFY(save.isEnabled());
    QCOMPARE(m_case->window().windowTitle(), QStringLiteral("QvVisaConfigure - 5.12.1"));
    // The flag alone counts, whoever sets it.
    m_case->model().setDirty(false);
    QVERIFY(!save.isEnabled());
}

void TestActions::dialogsEndAnEdit_data()
{
    QTest::addColumn<QString>("action");
    QTest::newRow("add") << QStringLiteral("actionAdd_Resource");
    QTest::newRow("edit") << QStringLiteral("actionEdit");
    QTest::newRow("find") << QStringLiteral("actionFind");
    QTest::newRow("properties") << QStringLiteral("actionEdit_properties");
}

void TestActions::dialogsEndAnEdit()
{
    QFETCH(QString, action);
    start(s_threeRows);
    m_case->typeIntoCell(2, 1, "typed");
    QVERIFY(!m_case->model().isDirty());
    const ModalAnswer<QDialog> answer([this](QDialog& dialog) {
        QTRY_VERIFY(m_case->cellEditor() == nullptr);
        QCOMPARE(m_case->text(2, 1), QStringLiteral("typed"));
        dialog.accept();
    });
    m_case->click(qPrintable(action));
    QVERIFY(answer.wasShown());
    QCOMPARE(m_case->text(2, 1), QStringLiteral("typed"));
    QVERIFY(m_case->model().isDirty());
}

void TestActions::findAndEditFollowTheSelection()
{
    start(s_threeRows);
    const QAction& find = m_case->action("actionFind");
    const QAction& edit = m_case->action("actionEdit");
    QVERIFY(!find.isEnabled() && !edit.isEnabled());
    m_case->clickCell(1, 0);
    QVERIFY(find.isEnabled() && edit.isEnabled());
    m_case->clickCell(2, 1);
    QVERIFY(find.isEnabled() && edit.isEnabled());
    m_case->table().clearSelection();
    QVERIFY(!find.isEnabled() && !edit.isEnabled());
    QTest::keyClick(m_case->table().viewport(), Qt::Key_Up);
    QVERIFY(find.isEnabled() && edit.isEnabled());
    // Control and a click take the selection away again.
    const QModelIndex current = m_case->table().currentIndex();
    QTest::mouseClick(m_case->table().viewport(), Qt::LeftButton, Qt::ControlModifier,
                      m_case->cellCentre(current.row(), current.column()));
    QVERIFY(!m_case->table().selectionModel()->hasSelection());
    QVERIFY(!find.isEnabled() && !edit.isEnabled());
}

void TestActions::findAndEditFollowRemovals_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("first of three") << 3 << 0 << true;
    QTest::newRow("second of three") << 3 << 1 << true;
    QTest::newRow("last of three") << 3 << 2 << true;
    QTest::newRow("first of two") << 2 << 0 << false;
    QTest::newRow("last of two") << 2 << 1 << false;
    QTest::newRow("only row") << 1 << 0 << false;
}

void TestActions::findAndEditFollowRemovals()
{
    QFETCH(int, rows);
    QFETCH(int, row);
    QFETCH(bool, enabled);
    start("a\nb\nc\n");
    for (int last = 2; last >= rows; --last) {
        m_case->clickCell(last, 0);
        m_case->click("actionRemove_resource");
    }
    QCOMPARE(m_case->model().rowCount(), rows);
    m_case->clickCell(row, 0);
    QVERIFY(m_case->action("actionFind").isEnabled());
    m_case->click("actionRemove_resource");
    QCOMPARE(m_case->model().rowCount(), rows - 1);
    QCOMPARE(m_case->table().selectionModel()->hasSelection(), enabled);
    QCOMPARE(m_case->action("actionFind").isEnabled(), enabled);
    QCOMPARE(m_case->action("actionEdit").isEnabled(), enabled);
}

void TestActions::buttonsCanBeRefreshedByHand()
{
    start(s_threeRows);
    const auto refresh = [this] {
        return QMetaObject::invokeMethod(&m_case->window(), "refreshButtonStatus");
    };
    QAction& find = m_case->action("actionFind");
    QAction& edit = m_case->action("actionEdit");
    find.setEnabled(true);
    edit.setEnabled(true);
    QVERIFY(refresh());
    QVERIFY(!find.isEnabled() && !edit.isEnabled());
    m_case->clickCell(0, 0);
    find.setEnabled(false);
    edit.setEnabled(false);
    QVERIFY(refresh());
    QVERIFY(find.isEnabled() && edit.isEnabled());
}

QPointer<QMenu> TestActions::askForMenu(const QPoint& position) const
{
    QWidget& viewport = *m_case->table().viewport();
    QContextMenuEvent event(QContextMenuEvent::Mouse, position, viewport.mapToGlobal(position));
    QCoreApplication::sendEvent(&viewport, &event);
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

QStringList TestActions::texts(const QMenu& menu)
{
    QStringList result;
    for (const QAction* action : menu.actions()) {
        result.append(action->isSeparator() ? QStringLiteral("|") : action->text());
    }
    return result;
}

QPoint TestActions::besideTheRows() const
{
    const QRect area = m_case->table().viewport()->rect();
    return {area.center().x(), area.bottom() - 5};
}

void TestActions::aClickBesideTheRowsOffersToAdd()
{
    start(s_threeRows);
    m_case->clickCell(0, 0);
    const QPointer<QMenu> menu = askForMenu(besideTheRows());
    QVERIFY(menu != nullptr);
    QCOMPARE(menu->actions(), QList<QAction*>{&m_case->action("actionAdd_Resource")});
    menu->close();

    start("");
    const QPointer<QMenu> menuOfNone = askForMenu(QPoint(5, 5));
    QVERIFY(menuOfNone != nullptr);
    QCOMPARE(texts(*menuOfNone), QStringList(QStringLiteral("Add Resource")));
}

void TestActions::aClickOnARowOffersAll()
{
    start(s_threeRows);
    for (const int row : {0, 1, 2}) {
        const QPointer<QMenu> menu = askForMenu(m_case->cellCentre(row, row % 2));
        QVERIFY(menu != nullptr);
        QCOMPARE(texts(*menu),
                 (QStringList{QStringLiteral("Add Resource"), QStringLiteral("Remove resource"),
                              QStringLiteral("Edit"), QStringLiteral("|"),
                              QStringLiteral("Find Resource")}));
        QCOMPARE(menu->actions().first(), &m_case->action("actionAdd_Resource"));
        QCOMPARE(menu->actions().at(1), &m_case->action("actionRemove_resource"));
        QCOMPARE(menu->actions().at(2), &m_case->action("actionEdit"));
        QCOMPARE(menu->actions().last(), &m_case->action("actionFind"));
    }
}

void TestActions::theMenuOpensWhereItWasAskedFor()
{
    start(s_threeRows);
    const QPoint position = m_case->cellCentre(1, 0);
    const QPointer<QMenu> menu = askForMenu(position);
    // The slot is back already and the menu still up.
    QVERIFY(menu != nullptr && menu->isVisible());
    QCOMPARE(menu->pos(), m_case->table().viewport()->mapToGlobal(position));
    QCOMPARE(menu->parent(), &m_case->window());
}

void TestActions::theMenuDoesWhatItSays()
{
    start(s_threeRows);
    m_case->clickCell(1, 0);
    const QPointer<QMenu> menu = askForMenu(m_case->cellCentre(1, 0));
    QVERIFY(menu != nullptr);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Down);
    QCOMPARE(menu->activeAction(), &m_case->action("actionRemove_resource"));
    QTest::keyClick(menu, Qt::Key_Return);
    QCOMPARE(m_case->model().rowCount(), 2);
    QVERIFY(!menu->isVisible());
}

void TestActions::aNewMenuReplacesTheFormer()
{
    start(s_threeRows);
    const QPointer<QMenu> first = askForMenu(m_case->cellCentre(0, 0));
    QVERIFY(first != nullptr);
    const QPointer<QMenu> second = askForMenu(besideTheRows());
    QVERIFY(first == nullptr);
    QVERIFY(second != nullptr);
    QCOMPARE(texts(*second), QStringList(QStringLiteral("Add Resource")));
    // It goes with the window at the latest.
    m_case->destroy();
    QVERIFY(second == nullptr);
}

void TestActions::theMenuKnowsWhatIsPossible()
{
    start(s_threeRows);
    // Asked for on a row without a selection, as another program may do.
    QPointer<QMenu> menu = askForMenu(m_case->cellCentre(0, 0));
    QVERIFY(menu != nullptr);
    QVERIFY(!menu->actions().at(2)->isEnabled());
    QVERIFY(!menu->actions().at(4)->isEnabled());
    menu->close();
    // A right click selects the row before it asks for the menu.
    QTest::mouseClick(m_case->table().viewport(), Qt::RightButton, Qt::NoModifier,
                      m_case->cellCentre(1, 1));
    QCOMPARE(m_case->table().currentIndex().row(), 1);
    menu = askForMenu(m_case->cellCentre(1, 1));
    QVERIFY(menu != nullptr);
    QVERIFY(menu->actions().at(2)->isEnabled());
    QVERIFY(menu->actions().at(4)->isEnabled());
}

static const guitest::Registration<TestActions> s_registration;
#include "TestActions.moc"
