// SPDX-License-Identifier: MIT
// What the main window's dialogs bring into the table.
#include "gui/PropertyDialog.h"
#include "gui/ResourceDialog.h"
#include "gui/RsrcStringEditor.h"
#include "tests/gui/main_window/MainWindowCase.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/ModalWindows.h"

#include <QContextMenuEvent>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>

#include <functional>
#include <optional>

using guitest::MainWindowCase;

namespace {

void click(const QDialog& dialog, QDialogButtonBox::StandardButton button)
{
    auto& box = support::child<QDialogButtonBox>(dialog, "buttonBox");
    QTest::mouseClick(box.button(button), Qt::LeftButton);
}

void accept(const QDialog& dialog)
{
    click(dialog, QDialogButtonBox::Ok);
}

void select(const gui::ResourceDialog& dialog, int row)
{
    auto& list = support::child<QListWidget>(dialog, "rsrcList");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier,
                      list.visualItemRect(list.item(row)).center());
}

/// Counts how often the table is painted for its own sake: what the desktop makes the window paint
/// is done and forgotten each time that forget() is called.
class Paintings : public QObject
{
public:
    explicit Paintings(MainWindowCase& window) : m_window(window)
    {
        window.table().viewport()->installEventFilter(this);
    }

    /// So far, with what is due now.
    int count()
    {
        QCoreApplication::sendPostedEvents(&m_window.window(), QEvent::UpdateRequest);
        return m_count;
    }
    void forget()
    {
        count();
        m_count = 0;
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            ++m_count;
        }
        return false;
    }

private:
    MainWindowCase& m_window;
    int m_count = 0;
};

} // namespace

class TestDialogs : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void addAppendsWhatWasComposed_data() { eachWay(); }
    void addAppendsWhatWasComposed();
    void addCleansNothing();
    void addKeepsDuplicates();
    void addTakesEmptyTexts();
    void addStartsAnew();
    void addCancelledChangesNothing_data() { eachWay(); }
    void addCancelledChangesNothing();

    void editShowsTheRow_data() { eachWay(); }
    void editShowsTheRow();
    void editReplacesTheRowAlone();
    void editCleansBothTexts();
    void editWithoutChangeStaysClean();
    void editCancelledChangesNothing();
    void editNeedsASelection();
    void editShowsWhatStandsInAnOpenCell();
    void editIsPaintedAtOnce();

    void findReplacesTheResource_data() { eachWay(); }
    void findReplacesTheResource();
    void findTakesAnEmptyResource();
    void findOfTheSameStaysClean();
    void findCancelledChangesNothing();
    void findIsPaintedAtOnce();

    void propertiesCancelledChangeNothing();

private:
    void tearDown() override;
    /// From where an action is called.
    static void eachWay();

    void start(const char* lines, const char* bench = "");
    /// Calls the action and answers the dialog that it opens.
    template <typename Dialog>
    void call(const char* action, const std::function<void(Dialog&)>& answer);
    void clickInMenu(const char* action);
    /// All rows, "resource>alias", parted by " | ".
    QString rows() const;
    bool isSaveEnabled() const { return m_case->action("actionSave").isEnabled(); }

    std::unique_ptr<MainWindowCase> m_case;
};

void TestDialogs::tearDown()
{
    m_case.reset();
}

void TestDialogs::eachWay()
{
    QTest::addColumn<bool>("isRight");
    QTest::newRow("tool bar") << true;
    QTest::newRow("context menu") << true;
}

void TestDialogs::start(const char* lines, const char* bench)
{
    m_case = std::make_unique<MainWindowCase>(configuration(), lines, bench);
    m_case->show();
}

void TestDialogs::clickInMenu(const char* action)
{
    QWidget& viewport = *m_case->table().viewport();
    const QPoint place = m_case->cellCentre(m_case->table().currentIndex().row(), 0);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, viewport.mapToGlobal(place));
    QCoreApplication::sendEvent(&viewport, &event);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QVERIFY(menu != nullptr);
    QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                      menu->actionGeometry(&m_case->action(action)).center());
}

template <typename Dialog>
void TestDialogs::call(const char* action, const std::function<void(Dialog&)>& answer)
{
    const support::ModalAnswer<Dialog> modal([this, &answer](Dialog& dialog) {
        QCOMPARE(dialog.parentWidget(), static_cast<QWidget*>(&m_case->window()));
        QVERIFY(dialog.isModal());
        answer(dialog);
    });
    if (QByteArray(QTest::currentDataTag()) == QByteArray("context menu")) {
        clickInMenu(action);
    } else {
        m_case->click(action);
    }
    QVERIFY(modal.wasShown());
}

QString TestDialogs::rows() const
{
    QStringList texts;
    for (int row = 0; row < m_case->model().rowCount(); ++row) {
        texts.append(m_case->text(row, 0) + QLatin1Char('>') + m_case->text(row, 1));
    }
    return texts.join(QLatin1String(" | "));
}

namespace {

const char* const s_twoRows = "ASRL1::INSTR\nSCOPE=TCPIP0::10.0.0.5::inst0::INSTR\n";
const QString s_asRead = QStringLiteral("ASRL1::INSTR> | TCPIP0::10.0.0.5::inst0::INSTR>SCOPE");

} // namespace

void TestDialogs::addAppendsWhatWasComposed()
{
    start(s_twoRows);
    QCOMPARE(rows(), s_asRead);
    m_case->clickCell(0, 0);
    call<gui::RsrcStringEditor>("actionAdd_Resource", [](gui::RsrcStringEditor& composer) {
        QTest::keyClicks(&support::child<QLineEdit>(composer, "aliasEdit"), QStringLiteral("dmm"));
        QTest::keyClicks(&support::child<QLineEdit>(composer, "IpEdit"),
                         QStringLiteral("10.0.0.7"));
        accept(composer);
    });
    QCOMPARE(rows(), s_asRead + QStringLiteral(" | TCPIP0::10.0.0.7::inst0::INSTR>dmm"));
    QVERIFY(isSaveEnabled());
    // The table shows the row, below the others.
    QVERIFY(m_case->table().visualRect(m_case->model().index(2, 0)).top() >
            m_case->table().visualRect(m_case->model().index(1, 0)).top());
    QCOMPARE(m_case->table().indexAt(m_case->cellCentre(2, 1)).row(), 2);
}

void TestDialogs::addCleansNothing()
{
    start("");
    call<gui::RsrcStringEditor>("actionAdd_Resource", [](gui::RsrcStringEditor& composer) {
        composer.setRsrcString(QStringLiteral(" a b=c;#d "));
        composer.setAlias(QStringLiteral(" x:y z=1 "));
        accept(composer);
    });
    // Trimmed by the composer, and nothing more.
    QCOMPARE(rows(), QStringLiteral("a b=c;#d>x:y z=1"));
}

void TestDialogs::addKeepsDuplicates()
{
    start(s_twoRows);
    for (int i = 0; i < 2; ++i) {
        call<gui::RsrcStringEditor>("actionAdd_Resource", [](gui::RsrcStringEditor& composer) {
            composer.setRsrcString(QStringLiteral("ASRL1::INSTR"));
            composer.setAlias(QStringLiteral("SCOPE"));
            accept(composer);
        });
    }
    QCOMPARE(rows(), s_asRead + QStringLiteral(" | ASRL1::INSTR>SCOPE | ASRL1::INSTR>SCOPE"));
}

void TestDialogs::addTakesEmptyTexts()
{
    start("");
    call<gui::RsrcStringEditor>("actionAdd_Resource", [](gui::RsrcStringEditor& composer) {
        composer.setRsrcString(QString());
        accept(composer);
    });
    QCOMPARE(rows(), QStringLiteral(">"));
    QVERIFY(isSaveEnabled());
}

/// Neither the selected row nor what was composed before is there.
void TestDialogs::addStartsAnew()
{
    start(s_twoRows);
    m_case->clickCell(1, 0);
    for (int i = 0; i < 2; ++i) {
        call<gui::RsrcStringEditor>("actionAdd_Resource", [](gui::RsrcStringEditor& composer) {
            QCOMPARE(composer.getAlias(), QString());
            QCOMPARE(composer.getRsrcString(), QStringLiteral("TCPIP0::::inst0::INSTR"));
            composer.setAlias(QStringLiteral("other"));
            QTest::keyClicks(&support::child<QLineEdit>(composer, "IpEdit"), QStringLiteral("h"));
            accept(composer);
        });
    }
    QCOMPARE(m_case->model().rowCount(), 4);
}

void TestDialogs::addCancelledChangesNothing()
{
    start(s_twoRows);
    m_case->clickCell(0, 0);
    call<gui::RsrcStringEditor>("actionAdd_Resource", [](gui::RsrcStringEditor& composer) {
        composer.setAlias(QStringLiteral("other"));
        click(composer, QDialogButtonBox::Cancel);
    });
    QCOMPARE(rows(), s_asRead);
    QVERIFY(!isSaveEnabled());
}

void TestDialogs::editShowsTheRow()
{
    start(s_twoRows);
    m_case->clickCell(1, 0);
    call<gui::RsrcStringEditor>("actionEdit", [](gui::RsrcStringEditor& composer) {
        QCOMPARE(composer.getRsrcString(), QStringLiteral("TCPIP0::10.0.0.5::inst0::INSTR"));
        QCOMPARE(composer.getAlias(), QStringLiteral("SCOPE"));
        // The resource is not taken apart.
        QCOMPARE(support::child<QLineEdit>(composer, "IpEdit").text(), QString());
        composer.setAlias(QStringLiteral("changed"));
        accept(composer);
    });
    QCOMPARE(rows(), QStringLiteral("ASRL1::INSTR> | TCPIP0::10.0.0.5::inst0::INSTR>changed"));
}

void TestDialogs::editReplacesTheRowAlone()
{
    start(s_twoRows);
    m_case->clickCell(0, 1);
    call<gui::RsrcStringEditor>("actionEdit", [](gui::RsrcStringEditor& composer) {
        QCOMPARE(composer.getAlias(), QString());
        auto& alias = support::child<QLineEdit>(composer, "aliasEdit");
        QTest::keyClicks(&alias, QStringLiteral("balance"));
        auto& resource = support::child<QLineEdit>(composer, "RsrcEdit");
        resource.selectAll();
        QTest::keyClicks(&resource, QStringLiteral("ASRL3::INSTR"));
        accept(composer);
    });
    QCOMPARE(rows(), QStringLiteral("ASRL3::INSTR>balance | TCPIP0::10.0.0.5::inst0::INSTR>SCOPE"));
    QVERIFY(isSaveEnabled());
}

void TestDialogs::editCleansBothTexts()
{
    start("");
    call<gui::RsrcStringEditor>("actionAdd_Resource", [](gui::RsrcStringEditor& composer) {
        composer.setRsrcString(QStringLiteral("a b::=c;#d"));
        composer.setAlias(QStringLiteral("x:y z=;#1"));
        accept(composer);
    });
    m_case->clickCell(0, 0);
    call<gui::RsrcStringEditor>("actionEdit",
                                [](gui::RsrcStringEditor& composer) { accept(composer); });
    QCOMPARE(rows(), QStringLiteral("a_b::cd>xy_z1"));
}

void TestDialogs::editWithoutChangeStaysClean()
{
    start(s_twoRows);
    m_case->clickCell(1, 0);
    call<gui::RsrcStringEditor>("actionEdit",
                                [](gui::RsrcStringEditor& composer) { accept(composer); });
    QCOMPARE(rows(), s_asRead);
    QVERIFY(!isSaveEnabled());
}

void TestDialogs::editCancelledChangesNothing()
{
    start(s_twoRows);
    m_case->clickCell(1, 0);
    call<gui::RsrcStringEditor>("actionEdit", [](gui::RsrcStringEditor& composer) {
        composer.setRsrcString(QStringLiteral("other"));
        composer.setAlias(QStringLiteral("other"));
        click(composer, QDialogButtonBox::Cancel);
    });
    QCOMPARE(rows(), s_asRead);
    QVERIFY(!isSaveEnabled());
}

void TestDialogs::editNeedsASelection()
{
    start(s_twoRows);
    QVERIFY(!m_case->action("actionEdit").isEnabled());
    m_case->clickCell(1, 0);
    m_case->table().selectionModel()->clearSelection();
    // There is a current cell still.
    QCOMPARE(m_case->table().currentIndex().row(), 1);
    const support::ModalAnswer<gui::RsrcStringEditor> modal(
        [](gui::RsrcStringEditor& composer) { composer.reject(); });
    QVERIFY(QMetaObject::invokeMethod(&m_case->window(), "rsrcStringEditorEdit"));
    QVERIFY(!modal.wasShown());
    QCOMPARE(rows(), s_asRead);
}

void TestDialogs::editShowsWhatStandsInAnOpenCell()
{
    start(s_twoRows);
    m_case->typeIntoCell(1, 1, "typed");
    call<gui::RsrcStringEditor>("actionEdit", [](gui::RsrcStringEditor& composer) {
        QCOMPARE(composer.getAlias(), QStringLiteral("typed"));
        accept(composer);
    });
    QCOMPARE(rows(), QStringLiteral("ASRL1::INSTR> | TCPIP0::10.0.0.5::inst0::INSTR>typed"));
}

/// The model tells no view of an edited cell.
void TestDialogs::editIsPaintedAtOnce()
{
    start(s_twoRows);
    m_case->clickCell(1, 0);
    Paintings paintings(*m_case);
    connect(&m_case->model(), &ConfigurationModel::editCompleted, &paintings,
            [&paintings] { paintings.forget(); });
    const support::ModalAnswer<gui::RsrcStringEditor> modal(
        [this](gui::RsrcStringEditor& composer) {
            composer.setAlias(QStringLiteral("changed"));
            accept(composer);
            // No window is active: none is painted because it becomes so.
            QApplication::setActiveWindow(nullptr);
            QCoreApplication::processEvents();
            QVERIFY(!m_case->window().isActiveWindow());
        });
    QVERIFY(QMetaObject::invokeMethod(&m_case->window(), "rsrcStringEditorEdit"));
    QVERIFY(modal.wasShown());
    QCOMPARE(m_case->text(1, 1), QStringLiteral("changed"));
    QVERIFY(paintings.count() > 0);
}

void TestDialogs::findReplacesTheResource()
{
    start(s_twoRows, "resource \"TCPIP0::a b;=#::INSTR\"\nresource ASRL9::INSTR\n");
    m_case->clickCell(1, 0);
    call<gui::ResourceDialog>("actionFind", [](gui::ResourceDialog& dialog) {
        select(dialog, 1);
        accept(dialog);
    });
    QCOMPARE(rows(), QStringLiteral("ASRL1::INSTR> | TCPIP0::a b;=#::INSTR>SCOPE"));
    QVERIFY(isSaveEnabled());
}

void TestDialogs::findTakesAnEmptyResource()
{
    start(s_twoRows, "resource ASRL9::INSTR\n");
    m_case->clickCell(1, 0);
    call<gui::ResourceDialog>("actionFind", [](gui::ResourceDialog& dialog) { accept(dialog); });
    QCOMPARE(rows(), QStringLiteral("ASRL1::INSTR> | >SCOPE"));
    QVERIFY(isSaveEnabled());
}

void TestDialogs::findOfTheSameStaysClean()
{
    start(s_twoRows, "resource ASRL1::INSTR\n");
    m_case->clickCell(0, 0);
    call<gui::ResourceDialog>("actionFind", [](gui::ResourceDialog& dialog) {
        select(dialog, 0);
        accept(dialog);
    });
    QCOMPARE(rows(), s_asRead);
    QVERIFY(!isSaveEnabled());
}

void TestDialogs::findCancelledChangesNothing()
{
    start(s_twoRows, "resource ASRL9::INSTR\n");
    m_case->clickCell(1, 0);
    call<gui::ResourceDialog>("actionFind", [](gui::ResourceDialog& dialog) {
        select(dialog, 0);
        click(dialog, QDialogButtonBox::Cancel);
    });
    QCOMPARE(rows(), s_asRead);
    QVERIFY(!isSaveEnabled());
}

void TestDialogs::findIsPaintedAtOnce()
{
    start(s_twoRows, "resource ASRL9::INSTR\n");
    m_case->clickCell(1, 0);
    Paintings paintings(*m_case);
    connect(&m_case->model(), &ConfigurationModel::dirtyHasChanged, &paintings,
            [&paintings] { paintings.forget(); });
    const support::ModalAnswer<gui::ResourceDialog> modal([this](gui::ResourceDialog& dialog) {
        select(dialog, 0);
        accept(dialog);
    });
    QVERIFY(QMetaObject::invokeMethod(&m_case->window(), "findResource"));
    QVERIFY(modal.wasShown());
    QCOMPARE(m_case->text(1, 0), QStringLiteral("ASRL9::INSTR"));
    QVERIFY(paintings.count() > 0);
}

void TestDialogs::propertiesCancelledChangeNothing()
{
    start(s_twoRows, "resource ASRL1::INSTR\n");
    call<gui::PropertyDialog>("actionEdit_properties", [](gui::PropertyDialog& dialog) {
        click(dialog, QDialogButtonBox::Cancel);
    });
    QCOMPARE(rows(), s_asRead);
    QVERIFY(!isSaveEnabled());
}

static const guitest::Registration<TestDialogs> s_registration;
#include "TestDialogs.moc"
