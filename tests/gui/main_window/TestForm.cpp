// SPDX-License-Identifier: MIT
// What the main window is made of.
#include "tests/gui/main_window/MainWindowCase.h"
#include "tests/gui/shared/WindowTest.h"

#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIcon>
#include <QMetaMethod>

#include <optional>

class TestForm : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void isNamedAndTitled();
    void hasTheTableAlone();
    void theTableSelectsOneRowAndScrollsByPixel();
    void theLastColumnStretches();
    void columnsFitTheirContents();
    void hasTheseActionsAlone();
    void actions_data();
    void actions();
    void theToolBarHoldsThemInOrder();
    void theToolBarHasNoMenuOfItsOwn();
    void nothingHasAShortcut();
    void hasTheseSlots();
    void selectionsCanBeQueued();
    void icons_data();
    void icons();
    void tenIconsAreCompiledIn();

private:
    void setUp() override;
    void tearDown() override;
    std::optional<guitest::MainWindowCase> m_case;
};

void TestForm::setUp()
{
    m_case.emplace(configuration(), "GPIB0::1::INSTR\nA=ASRL1::INSTR\n");
    m_case->show();
}

void TestForm::tearDown()
{
    m_case.reset();
}

void TestForm::isNamedAndTitled()
{
    QCOMPARE(m_case->window().objectName(), QStringLiteral("MainWindow"));
    QCOMPARE(m_case->window().windowTitle(), QStringLiteral("QvVisaConfigure - 5.12.1"));
    QCOMPARE(m_case->window().size(), QSize(600, 400));
    QVERIFY(m_case->window().isWindow());
    QCOMPARE(m_case->window().parent(), nullptr);
}

void TestForm::hasTheTableAlone()
{
    const QWidget* central = m_case->window().centralWidget();
    QVERIFY(central != nullptr);
    QCOMPARE(central->objectName(), QStringLiteral("centralwidget"));
    const auto* layout = qobject_cast<QHBoxLayout*>(central->layout());
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->objectName(), QStringLiteral("horizontalLayout"));
    QCOMPARE(layout->count(), 1);
    QCOMPARE(layout->itemAt(0)->widget(), &m_case->table());
    QCOMPARE(layout->stretch(0), 0);
    QCOMPARE(layout->itemAt(0)->alignment(), Qt::Alignment());
    QCOMPARE(m_case->window().menuWidget(), nullptr);
    QCOMPARE(m_case->window().findChild<QWidget*>(QStringLiteral("statusbar")), nullptr);
}

void TestForm::theTableSelectsOneRowAndScrollsByPixel()
{
    const QTableView& table = m_case->table();
    QCOMPARE(table.selectionMode(), QAbstractItemView::SingleSelection);
    QCOMPARE(table.selectionBehavior(), QAbstractItemView::SelectRows);
    QCOMPARE(table.verticalScrollMode(), QAbstractItemView::ScrollPerPixel);
    QCOMPARE(table.horizontalScrollMode(), QAbstractItemView::ScrollPerPixel);
    QCOMPARE(table.contextMenuPolicy(), Qt::CustomContextMenu);
    QVERIFY(table.isEnabled());
    QCOMPARE(m_case->model().parent(), &m_case->window());
    QCOMPARE(m_case->model().m_selectionModel, table.selectionModel());
}

void TestForm::theLastColumnStretches()
{
    const QHeaderView& header = *m_case->table().horizontalHeader();
    QVERIFY(header.stretchLastSection());
    QCOMPARE(header.length(), m_case->table().viewport()->width());
    // No mode is set: the first column can be drawn wider.
    QCOMPARE(header.sectionResizeMode(0), QHeaderView::Interactive);
    QCOMPARE(header.sectionResizeMode(1), QHeaderView::Interactive);
    m_case->window().resize(700, 400);
    QTRY_COMPARE(header.length(), m_case->table().viewport()->width());
}

void TestForm::columnsFitTheirContents()
{
    configuration().write("A=TCPIP0::a-very-long-host-name.example.org::inst0::INSTR\n");
    m_case->show();
    const QTableView& table = m_case->table();
    const QFontMetrics metrics(table.font());
    QVERIFY(table.columnWidth(0) > metrics.horizontalAdvance(m_case->text(0, 0)));
    const int fitting = table.columnWidth(0);
    m_case->table().resizeColumnsToContents();
    QCOMPARE(table.columnWidth(0), fitting);
}

void TestForm::hasTheseActionsAlone()
{
    QStringList names;
    for (const QAction* action :
         m_case->window().findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly)) {
        names.append(action->objectName());
    }
    QCOMPARE(names, (QStringList{
                        QStringLiteral("actionAdd_Resource"),
                        QStringLiteral("actionRemove_resource"),
                        QStringLiteral("actionFind"),
                        QStringLiteral("actionEdit_properties"),
                        QStringLiteral("actionClose"),
                        QStringLiteral("actionSave"),
                        QStringLiteral("actionEdit"),
                    }));
}

void TestForm::actions_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<bool>("enabled");
    const auto row = [](const char* name, const char* text, const char* icon, bool enabled) {
        QTest::newRow(name) << QString::fromLatin1(text) << QString::fromLatin1(icon) << enabled;
    };
    row("actionAdd_Resource", "Add Resource", "Neu_transp4d09c92bc222a.ico", true);
    row("actionRemove_resource", "Remove resource", "Minus.ico", true);
    row("actionFind", "Find Resource", "Suchen_tra4d09cbe82cb7b.ico", false);
    row("actionEdit_properties", "Edit properties", "Einstellun4d09c60e647ef.ico", true);
    row("actionClose", "Close", "Power_Off4e1edc2c60f47.ico", true);
    row("actionSave", "Save", "Speichern_4d09cb08d5fcd.ico", false);
    row("actionEdit", "Edit", "Edit_trans4d09c5d42eda5.ico", false);
}

void TestForm::actions()
{
    QFETCH(QString, text);
    QFETCH(QString, icon);
    QFETCH(bool, enabled);
    const QByteArray name = QTest::currentDataTag();
    const QAction& action = m_case->action(name.constData());
    QCOMPARE(action.text(), text);
    // Without a tool tip of its own an action shows its text.
    QCOMPARE(action.toolTip(), text);
    QCOMPARE(action.isEnabled(), enabled);
    QVERIFY(action.isVisible());
    QVERIFY(!action.isCheckable());
    QCOMPARE(action.statusTip(), QString());
    QCOMPARE(action.parent(), &m_case->window());
    QCOMPARE(action.menuRole(),
             name == "actionClose" ? QAction::QuitRole : QAction::TextHeuristicRole);
    QVERIFY(!action.icon().isNull());
    const QSize size(24, 24);
    QCOMPARE(action.icon().pixmap(size).toImage(),
             QIcon(QStringLiteral(":/icons/") + icon).pixmap(size).toImage());
}

void TestForm::theToolBarHoldsThemInOrder()
{
    const auto& bar = support::child<QToolBar>(m_case->window(), "toolBar");
    QStringList names;
    for (const QAction* action : bar.actions()) {
        names.append(action->isSeparator() ? QStringLiteral("|") : action->objectName());
    }
    QCOMPARE(names,
             (QStringList{QStringLiteral("actionAdd_Resource"),
                          QStringLiteral("actionRemove_resource"), QStringLiteral("actionEdit"),
                          QStringLiteral("actionFind"), QStringLiteral("|"),
                          QStringLiteral("actionEdit_properties"), QStringLiteral("|"),
                          QStringLiteral("actionSave"), QStringLiteral("actionClose")}));
    QCOMPARE(m_case->window().toolBarArea(&support::child<QToolBar>(m_case->window(), "toolBar")),
             Qt::TopToolBarArea);
    QCOMPARE(bar.windowTitle(), QStringLiteral("toolBar"));
    QCOMPARE(m_case->window().findChildren<QToolBar*>().size(), 1);
    for (QAction* action : bar.actions()) {
        QVERIFY2(bar.widgetForAction(action)->isVisible(), qPrintable(action->text()));
    }
}

void TestForm::theToolBarHasNoMenuOfItsOwn()
{
    auto& bar = support::child<QToolBar>(m_case->window(), "toolBar");
    QCOMPARE(bar.contextMenuPolicy(), Qt::PreventContextMenu);
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(2, 2), bar.mapToGlobal(QPoint(2, 2)));
    QCoreApplication::sendEvent(&bar, &event);
    QCOMPARE(QApplication::activePopupWidget(), nullptr);
}

void TestForm::nothingHasAShortcut()
{
    for (const QAction* action : m_case->window().findChildren<QAction*>()) {
        QVERIFY2(action->shortcuts().isEmpty(), qPrintable(action->text()));
        QVERIFY2(!action->text().contains(QLatin1Char('&')), qPrintable(action->text()));
    }
}

void TestForm::hasTheseSlots()
{
    const QMetaObject& meta = gui::MainWindow::staticMetaObject;
    QCOMPARE(QByteArray(meta.className()), QByteArray("gui::MainWindow"));
    QList<QByteArray> slotNames;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        slotNames.append(meta.method(i).methodSignature());
    }
    QCOMPARE(slotNames, (QList<QByteArray>{"findResource()", "setProperties()",
                                           "refreshButtonStatus()", "rsrcStringEditor()",
                                           "selectionChanged(QItemSelection,QItemSelection)",
                                           "tablePopupMenu(QPoint)", "rsrcStringEditorEdit()",
                                           "modelDirtyFlagChanged(bool)"}));
}

void TestForm::selectionsCanBeQueued()
{
    const QMetaObject& meta = gui::MainWindow::staticMetaObject;
    const int index = meta.indexOfMethod("selectionChanged(QItemSelection,QItemSelection)");
    QCOMPARE(QByteArray(QMetaType::typeName(meta.method(index).parameterType(0))),
             QByteArray("QItemSelection"));
    QAction& find = m_case->action("actionFind");
    find.setEnabled(true);
    QVERIFY(QMetaObject::invokeMethod(&m_case->window(), "selectionChanged", Qt::QueuedConnection,
                                      Q_ARG(QItemSelection, QItemSelection()),
                                      Q_ARG(QItemSelection, QItemSelection())));
    QVERIFY(find.isEnabled());
    QTRY_VERIFY(!find.isEnabled());
}

namespace {

QStringList iconNames()
{
    return {
        QStringLiteral("ConfigureItem.ico"),
        QStringLiteral("Edit_trans4d09c5d42eda5.ico"),
        QStringLiteral("Einstellun4d09c60e647ef.ico"),
        QStringLiteral("Minus.ico"),
        QStringLiteral("Neu_transp4d09c92bc222a.ico"),
        QStringLiteral("Power_Off4e1edc2c60f47.ico"),
        QStringLiteral("Raute_farb4d09ca48d1602.ico"),
        QStringLiteral("Repeat4dfa017b54ff3.ico"),
        QStringLiteral("Speichern_4d09cb08d5fcd.ico"),
        QStringLiteral("Suchen_tra4d09cbe82cb7b.ico"),
    };
}

} // namespace

void TestForm::icons_data()
{
    QTest::addColumn<QString>("name");
    for (const QString& name : iconNames()) {
        QTest::newRow(qPrintable(name)) << name;
    }
}

void TestForm::icons()
{
    QFETCH(QString, name);
    const QIcon icon(QStringLiteral(":/icons/") + name);
    for (const int side : {16, 24, 32, 48}) {
        const QImage image = icon.pixmap(side, side).toImage();
        QCOMPARE(image.size(), QSize(side, side));
        // Neither blank nor all one colour.
        QVERIFY(image.convertToFormat(QImage::Format_Indexed8).colorCount() > 1);
    }
}

void TestForm::tenIconsAreCompiledIn()
{
    const QDir icons(QStringLiteral(":/icons"));
    QCOMPARE(icons.entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name), iconNames());
    const QSize size(32, 32);
    QCOMPARE(m_case->window().windowIcon().pixmap(size).toImage(),
             QIcon(QStringLiteral(":/icons/ConfigureItem.ico")).pixmap(size).toImage());
}

static const guitest::Registration<TestForm> s_registration;

#include "TestForm.moc"
