// SPDX-License-Identifier: MIT
// The main window's dialogs: what they show of the table, and what they change in it.
#include "gui/PropertyDialog.h"
#include "gui/ResourceDialog.h"
#include "gui/RsrcStringEditor.h"
#include "tests/gui/main_window/MainWindowTest.h"

#include <QComboBox>
#include <QTabWidget>

#include <functional>
#include <string>

using gui::PropertyDialog;
using gui::ResourceDialog;
using gui::RsrcStringEditor;
using guitest::clickButton;

namespace {

constexpr const char* s_twoRows = "ASRL1::INSTR\nSCOPE=TCPIP0::10.0.0.5::inst0::INSTR\n";
const QString s_asRead = QStringLiteral("ASRL1::INSTR> | TCPIP0::10.0.0.5::inst0::INSTR>SCOPE");

void accept(const QDialog& dialog)
{
    clickButton(dialog, QDialogButtonBox::Ok);
}

void cancel(const QDialog& dialog)
{
    clickButton(dialog, QDialogButtonBox::Cancel);
}

void fillAndAccept(RsrcStringEditor& composer, const char* resource, const char* alias)
{
    composer.setRsrcString(QString::fromLatin1(resource));
    composer.setAlias(QString::fromLatin1(alias));
    accept(composer);
}

void select(const ResourceDialog& dialog, int row)
{
    support::child<QListWidget>(dialog, "rsrcList").setCurrentRow(row);
}

void typeProvider(const PropertyDialog& dialog, const char* provider)
{
    support::child<QTabWidget>(dialog, "tabWidget").setCurrentIndex(1);
    auto& field = support::child<QLineEdit>(dialog, "providerEdit");
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, QString::fromLatin1(provider));
}

/// Counts the paint events of the table.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(const QTableView& table) : m_window(*table.window())
    {
        table.viewport()->installEventFilter(this);
    }

    /// Since the last reset(), with what is due now.
    int count()
    {
        QCoreApplication::sendPostedEvents(&m_window, QEvent::UpdateRequest);
        return m_count;
    }
    void reset()
    {
        count();
        m_count = 0;
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        m_count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

private:
    QWidget& m_window;
    int m_count = 0;
};

constexpr const char* s_properties = ":Provider=4095\n"
                                     ":SerialProperty[DeviceNo=1].Baudrate=300\n"
                                     ":SerialProperty[DeviceNo=1].DataBits=7\n"
                                     ":SerialProperty[DeviceNo=1].StopBits=2\n"
                                     ":SerialProperty[DeviceNo=1].Parity=1\n"
                                     ":SerialProperty[DeviceNo=1].FlowControl=6\n";

} // namespace

class TestDialogs : public guitest::MainWindowTest
{
    Q_OBJECT

private slots:
    void addAppendsTheComposedRow_data() { toolBarAndMenu(); }
    void addAppendsTheComposedRow()
    {
        QCOMPARE(rows(), s_asRead);
        clickCell(0, 0);
        answer<RsrcStringEditor>("actionAdd_Resource", [](RsrcStringEditor& composer) {
            QTest::keyClicks(&support::child<QLineEdit>(composer, "aliasEdit"),
                             QStringLiteral("dmm"));
            QTest::keyClicks(&support::child<QLineEdit>(composer, "IpEdit"),
                             QStringLiteral("1.2.3.4"));
            accept(composer);
        });
        QCOMPARE(rows(), s_asRead + QStringLiteral(" | TCPIP0::1.2.3.4::inst0::INSTR>dmm"));
        QVERIFY(isEnabled("actionSave"));
        QCOMPARE(table().indexAt(cellCentre(2, 1)).row(), 2);
    }

    /// The model cleans what is edited, not what is added.
    void addKeepsTheTextsThatEditCleans()
    {
        const QString added = QStringLiteral("a b::=c;#d>x:y z=;#1");
        for (int i = 0; i < 2; ++i) {
            answer<RsrcStringEditor>("actionAdd_Resource", [](RsrcStringEditor& composer) {
                // Trimmed by the composer.
                fillAndAccept(composer, " a b::=c;#d ", " x:y z=;#1 ");
            });
        }
        QCOMPARE(rows(), QStringList({s_asRead, added, added}).join(QLatin1String(" | ")));
        clickCell(2, 0);
        answer<RsrcStringEditor>("actionEdit", accept);
        QCOMPARE(rows(), QStringList({s_asRead, QStringLiteral("a_b::cd>xy_z1"), added})
                             .join(QLatin1String(" | ")));
    }

    void editShowsAndReplacesTheRow_data() { toolBarAndMenu(); }
    void editShowsAndReplacesTheRow()
    {
        clickCell(1, 0);
        answer<RsrcStringEditor>("actionEdit", [](RsrcStringEditor& composer) {
            QCOMPARE(composer.getRsrcString(), QStringLiteral("TCPIP0::10.0.0.5::inst0::INSTR"));
            QCOMPARE(composer.getAlias(), QStringLiteral("SCOPE"));
            // The resource string is not split into the fields.
            QCOMPARE(support::child<QLineEdit>(composer, "IpEdit").text(), QString());
            fillAndAccept(composer, "ASRL3::INSTR", "balance");
        });
        QCOMPARE(rows(), QStringLiteral("ASRL1::INSTR> | ASRL3::INSTR>balance"));
        QVERIFY(isEnabled("actionSave"));
    }

    void acceptingADialogUnchangedStaysClean()
    {
        start(s_properties, "resource ASRL1::INSTR\n");
        model().add(QStringLiteral("ASRL1::INSTR"), QStringLiteral("A"));
        click("actionSave");
        const QvVisa::SerialPropertiesMap ports = model().getSerialProperties();
        clickCell(0, 0);
        answer<RsrcStringEditor>("actionEdit", accept);
        answer<PropertyDialog>("actionEdit_properties", accept);
        ResourceDialog::updateResourceList();
        answer<ResourceDialog>("actionFind", [](ResourceDialog& dialog) {
            select(dialog, 0);
            accept(dialog);
        });
        QCOMPARE(rows(), QStringLiteral("ASRL1::INSTR>A"));
        QVERIFY(model().getSerialProperties() == ports);
        QVERIFY(!isEnabled("actionSave"));
    }

    void editWithoutSelectionOpensNothing()
    {
        clickCell(1, 0);
        table().selectionModel()->clearSelection();
        QCOMPARE(table().currentIndex().row(), 1);
        const support::ModalAnswer<RsrcStringEditor> modal(
            [](RsrcStringEditor& composer) { composer.reject(); });
        QVERIFY(QMetaObject::invokeMethod(&window(), "rsrcStringEditorEdit"));
        QVERIFY(!modal.wasShown());
    }

    void editTakesTheTextOfAnOpenCellEditor()
    {
        typeIntoCell(1, 1, "typed");
        answer<RsrcStringEditor>("actionEdit", [](RsrcStringEditor& composer) {
            QCOMPARE(composer.getAlias(), QStringLiteral("typed"));
            accept(composer);
        });
        QCOMPARE(text(1, 1), QStringLiteral("typed"));
    }

    void findReplacesTheResourceAlone_data() { toolBarAndMenu(); }
    void findReplacesTheResourceAlone()
    {
        start(s_twoRows, "resource \"TCPIP0::a b;=#::INSTR\"\nresource ASRL9::INSTR\n");
        // The window's own scan may not have begun yet; the cache is then that of the former bench.
        ResourceDialog::updateResourceList();
        clickCell(1, 0);
        answer<ResourceDialog>("actionFind", [](ResourceDialog& dialog) {
            select(dialog, 1);
            accept(dialog);
        });
        QCOMPARE(rows(), QStringLiteral("ASRL1::INSTR> | TCPIP0::a b;=#::INSTR>SCOPE"));
        QVERIFY(isEnabled("actionSave"));
    }

    void findWithoutSelectionEmptiesTheResource()
    {
        clickCell(1, 0);
        answer<ResourceDialog>("actionFind", [](ResourceDialog& dialog) { accept(dialog); });
        QCOMPARE(rows(), QStringLiteral("ASRL1::INSTR> | >SCOPE"));
        QVERIFY(isEnabled("actionSave"));
    }

    void cancelChangesNothing_data() { eachDialog(); }
    void cancelChangesNothing()
    {
        QFETCH(const QByteArray, action);
        clickCell(1, 0);
        answer<QDialog>(action.constData(), [](QDialog& dialog) {
            if (auto* composer = qobject_cast<RsrcStringEditor*>(&dialog); composer != nullptr) {
                composer->setRsrcString(QStringLiteral("other"));
                composer->setAlias(QStringLiteral("other"));
            } else if (auto* find = qobject_cast<ResourceDialog*>(&dialog); find != nullptr) {
                select(*find, 1);
            } else {
                typeProvider(dynamic_cast<PropertyDialog&>(dialog), "42");
                support::child<QComboBox>(dialog, "comboBoxQvBaudrate").setCurrentIndex(4);
            }
            cancel(dialog);
        });
        QCOMPARE(rows(), s_asRead);
        QCOMPARE(int(model().getProvider()), 3674);
        QVERIFY(model().getSerialProperties().empty());
        QVERIFY(!isEnabled("actionSave"));
    }

    void openCellEditorEndsWhenADialogOpens_data() { eachDialog(); }
    void openCellEditorEndsWhenADialogOpens()
    {
        QFETCH(const QByteArray, action);
        typeIntoCell(1, 1, "typed");
        answer<QDialog>(action.constData(), [this](QDialog& dialog) {
            QTRY_VERIFY(cellEditor() == nullptr);
            QCOMPARE(text(1, 1), QStringLiteral("typed"));
            dialog.reject();
        });
        QCOMPARE(text(1, 1), QStringLiteral("typed"));
        QVERIFY(model().isDirty());
    }

    void tableIsRepaintedAfterADialog_data()
    {
        columns<QByteArray, bool>("slot", "isFind");
        QTest::newRow("Edit") << QByteArray("rsrcStringEditorEdit") << false;
        QTest::newRow("Find Resource") << QByteArray("findResource") << true;
    }

    /// The model announces no changed cell, and not every desktop repaints the window after a
    /// dialog.
    void tableIsRepaintedAfterADialog()
    {
        QFETCH(const QByteArray, slot);
        QFETCH(const bool, isFind);
        clickCell(1, 0);
        PaintCounter paints(table());
        connect(&model(), &ConfigurationModel::editCompleted, &paints,
                [&paints] { paints.reset(); });
        connect(&model(), &ConfigurationModel::dirtyHasChanged, &paints,
                [&paints] { paints.reset(); });
        const support::ModalAnswer<QDialog> modal([this, isFind](QDialog& dialog) {
            if (isFind) {
                select(dynamic_cast<ResourceDialog&>(dialog), 1);
            } else {
                dynamic_cast<RsrcStringEditor&>(dialog).setAlias(QStringLiteral("changed"));
            }
            accept(dialog);
            // Without this, the window would be repainted because it becomes active.
            QApplication::setActiveWindow(nullptr);
            QCoreApplication::processEvents();
            QVERIFY(!window().isActiveWindow());
        });
        QVERIFY(QMetaObject::invokeMethod(&window(), slot.constData()));
        QVERIFY(modal.wasShown());
        QCOMPARE(rows(), isFind ? QStringLiteral("ASRL1::INSTR> | ASRL9::INSTR>SCOPE")
                                : QString(s_asRead).replace(QLatin1String("SCOPE"),
                                                            QLatin1String("changed")));
        QVERIFY(paints.count() > 0);
    }

    void propertiesShowAndChangeTheModel()
    {
        start(s_properties, "resource ASRL1::INSTR\n");
        answer<PropertyDialog>("actionEdit_properties", [](PropertyDialog& dialog) {
            QCOMPARE(QGuiApplication::modalWindow(), dialog.windowHandle());
            auto& rate = support::child<QComboBox>(dialog, "comboBoxQvBaudrate");
            QCOMPARE(int{dialog.getProvider()}, 4095);
            QCOMPARE(rate.currentText(), QStringLiteral("300"));
            typeProvider(dialog, "99999");
            rate.setCurrentIndex(1);
            dialog.addDevice();
            accept(dialog);
        });
        QVERIFY(window().findChildren<PropertyDialog*>().isEmpty());
        QVERIFY(isEnabled("actionSave"));
        answer<PropertyDialog>("actionEdit_properties", [](PropertyDialog& dialog) {
            QCOMPARE(int{dialog.getProvider()}, 34463);
            dialog.reject();
        });
        click("actionSave");
        // Boards are never written.
        const std::string changed =
            std::string(s_properties)
                .replace(0, sizeof ":Provider=4095\n" - 1, ":Provider=34463\n")
                .replace(std::string(s_properties).find("=300") + 2, 3, "600");
        QCOMPARE(configuration().read(), file(changed));
    }

private:
    static void toolBarAndMenu()
    {
        QTest::addColumn<bool>("unused");
        QTest::newRow("tool bar") << true;
        QTest::newRow("context menu") << true;
    }

    static void eachDialog()
    {
        QTest::addColumn<QByteArray>("action");
        for (const char* action :
             {"actionAdd_Resource", "actionEdit", "actionFind", "actionEdit_properties"}) {
            QTest::newRow(action) << QByteArray(action);
        }
    }

    void setUp() override { start(s_twoRows, "resource ASRL1::INSTR\nresource ASRL9::INSTR\n"); }

    /// Triggers the action, in the context menu if the data row says so, and answers the dialog.
    template <typename Dialog>
    void answer(const char* name, const std::function<void(Dialog&)>& answer) const
    {
        const support::ModalAnswer<Dialog> modal([this, &answer](Dialog& dialog) {
            QCOMPARE(dialog.parentWidget(), static_cast<QWidget*>(&window()));
            QVERIFY(dialog.isModal());
            answer(dialog);
        });
        if (QByteArray(QTest::currentDataTag()) == "context menu") {
            const QPointer<QMenu> menu = openMenu(cellCentre(table().currentIndex().row(), 0));
            QVERIFY(menu != nullptr);
            QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                              menu->actionGeometry(&action(name)).center());
        } else {
            click(name);
        }
        QVERIFY(modal.wasShown());
    }
};

static const guitest::Registration<TestDialogs> s_registerDialogs;
#include "TestDialogs.moc"
