// SPDX-License-Identifier: MIT
#include "tests/gui/property_dialog/PropertyDialogCase.h"
#include "tests/gui/shared/WindowTest.h"

#include <QAction>
#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QToolButton>
#include <QTranslator>
#include <QTreeWidget>

using guitest::PropertyDialogCase;

namespace {

constexpr const char* s_twoPorts = "resource ASRL1::INSTR\nresource ASRL3::INSTR\n";

/// Object name or class of what stands in a layout, in order.
QStringList contents(const QLayout& layout)
{
    QStringList names;
    for (int index = 0; index < layout.count(); ++index) {
        QLayoutItem* item = layout.itemAt(index);
        if (item->widget() != nullptr) {
            names.append(item->widget()->objectName());
        } else if (item->layout() != nullptr) {
            names.append(item->layout()->objectName());
        } else {
            names.append(QStringLiteral("spacer"));
        }
    }
    return names;
}

QImage picture(const QIcon& icon)
{
    return icon.pixmap(16).toImage().convertToFormat(QImage::Format_ARGB32);
}

/// Of one of the program's icon files; a null image for a name that is none.
QImage picture(const char* file)
{
    return picture(QIcon(QStringLiteral(":/icons/") + QString::fromLatin1(file)));
}

/// Marks every text of the dialog's own context, and notes that it was asked for.
class Marking : public QTranslator
{
public:
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        if (qstrcmp(context, "PropertyDialog") != 0) {
            return QString();
        }
        m_sources.append(QString::fromUtf8(source));
        return QLatin1Char('~') + m_sources.last();
    }
    bool isEmpty() const override { return false; }
    const QStringList& sources() const { return m_sources; }

private:
    mutable QStringList m_sources;
};

QString helpText()
{
    const QString indent(22, QLatin1Char(' '));
    return QLatin1Char('\n') + indent +
           QStringLiteral("The VISA provider ID is by default the Qv VISA ID and should only be "
                          "changed under special circumstances (e.g. if a third-party software "
                          "like MatLab requires a certain VISA provider ID). The value is returned "
                          "by the attribute VI_ATTR_RSRC_MANF_ID. For a change of this property to "
                          "become effective a restart of the applications using the VISA is "
                          "required.\n\n") +
           indent + QStringLiteral("Available IDs are:\n") + indent +
           QStringLiteral("Quorvane VISA: 0xE5A(3674)\n") + indent +
           QStringLiteral("NI-VISA:0xFF6(4086)\n") + indent +
           QStringLiteral("Keysight VISA:0xFFF(4095)\n") + QString(20, QLatin1Char(' '));
}

} // namespace

/// The form: what stands where, under which name, with which text.
class TestForm : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void hasATitleAndAnIcon();
    void showsTwoTabs();
    void laysOut_data();
    void laysOut();
    void pairsLabelsAndFields_data();
    void pairsLabelsAndFields();
    void saysWhatIsSaid_data();
    void saysWhatIsSaid();
    void helpsWithTheProvider();
    void buildsTheConflictManager();
    void conflictManagerDoesNothing();
    void buildsTheBoardsButtons();
    void namesItsFieldsForScreenReaders();
    void tabKeyFollowsTheEye_data();
    void tabKeyFollowsTheEye();
    void passesTextsThroughTranslation();
};

void TestForm::hasATitleAndAnIcon()
{
    PropertyDialogCase test(s_twoPorts);
    const gui::PropertyDialog& dialog = test.open();
    QCOMPARE(dialog.objectName(), QStringLiteral("PropertyDialog"));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("QvVisa Properties"));
    QVERIFY(!dialog.windowIcon().isNull());
    QCOMPARE(picture(dialog.windowIcon()), picture("Einstellun4d09c60e647ef.ico"));
    QVERIFY(dialog.isModal());
    QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    auto& buttons = test.widget<QDialogButtonBox>("buttonBox");
    QCOMPARE(buttons.orientation(), Qt::Horizontal);
    QCOMPARE(int(buttons.standardButtons()), int(QDialogButtonBox::Ok | QDialogButtonBox::Cancel));
}

void TestForm::showsTwoTabs()
{
    PropertyDialogCase test(s_twoPorts);
    test.open();
    const auto& tabs = test.widget<QTabWidget>("tabWidget");
    QCOMPARE(tabs.count(), 2);
    QCOMPARE(tabs.tabText(0), QStringLiteral("ASRL Properties"));
    QCOMPARE(tabs.tabText(1), QStringLiteral("Special Properties"));
    QCOMPARE(tabs.widget(0)->objectName(), QStringLiteral("tabAsrlProperties"));
    QCOMPARE(tabs.widget(1)->objectName(), QStringLiteral("tabSpecialProperties"));
    QVERIFY(!test.widget<QWidget>("tabConfMang").isVisible());
    QVERIFY(!test.widget<QWidget>("tabGpibProperties").isVisible());
}

void TestForm::laysOut_data()
{
    QTest::addColumn<QByteArray>("layout");
    QTest::addColumn<QString>("items");
    const auto row = [](const char* layout, const char* items) {
        QTest::newRow(layout) << QByteArray(layout) << QString::fromLatin1(items);
    };
    row("verticalLayout_2", "tabWidget buttonBox");
    row("horizontalLayout_5", "rsrcTable verticalLayout_5");
    row("verticalLayout_5",
        "label_2 comboBoxVisaSelector checkBoxVisaEnabled checkBoxPreferred spacer");
    row("horizontalLayout_2", "verticalGroupBox groupBoxOs groupBoxQvVisa");
    row("verticalLayout", "comboBoxSerialInterface spacer");
    row("formLayout", "lblBuadrate comboBoxOsBaudrate lblDatabits comboBoxOsDatabits lblStopbits "
                      "comboBoxOsStopbits lblParity comboBoxOsParity lblFlow comboBoxOsFlowControl "
                      "btnDefaultOs label_6 label_7");
    row("formLayout_2",
        "lblBuadrateQv comboBoxQvBaudrate lblDatabitsQv comboBoxQvDatabits lblStopbitsQv "
        "comboBoxQvStopbits lblParityQv comboBoxQvParity lblFlowQv comboBoxQvFlowControl "
        "btnDefaultQv label_4 label_5");
    row("verticalLayout_6", "verticalLayout_4");
    row("verticalLayout_4", "horizontalLayout PropertyTree");
    row("horizontalLayout", "addButton removeButton spacer");
    row("verticalLayout_7", "label providerEdit label_3");
}

void TestForm::laysOut()
{
    QFETCH(const QByteArray, layout);
    QFETCH(const QString, items);
    PropertyDialogCase test(s_twoPorts);
    test.construct();
    const auto& found = test.widget<QLayout>(layout.constData());
    QCOMPARE(contents(found).join(QLatin1Char(' ')), items);
    if (const auto* form = qobject_cast<const QFormLayout*>(&found)) {
        QCOMPARE(form->fieldGrowthPolicy(), QFormLayout::AllNonFixedFieldsGrow);
    }
}

void TestForm::pairsLabelsAndFields_data()
{
    QTest::addColumn<QByteArray>("label");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("field");
    const auto row = [](const QByteArray& label, const char* text, const QByteArray& field) {
        QTest::newRow(label.constData()) << label << QString::fromLatin1(text) << field;
    };
    for (const QByteArray group : {"", "Qv"}) {
        const QByteArray combo = "comboBox" + (group.isEmpty() ? QByteArray("Os") : group);
        row("lblBuadrate" + group, "Baud Rate:", combo + "Baudrate");
        row("lblDatabits" + group, "Data Bits:", combo + "Databits");
        row("lblStopbits" + group, "Stop Bits:", combo + "Stopbits");
        row("lblParity" + group, "Parity:", combo + "Parity");
        row("lblFlow" + group, "Flow Control:", combo + "FlowControl");
    }
    row("label", "VISA Provider ID", "providerEdit");
    row("label_2", "VISA implementation", "comboBoxVisaSelector");
}

void TestForm::pairsLabelsAndFields()
{
    QFETCH(const QByteArray, label);
    QFETCH(const QString, text);
    QFETCH(const QByteArray, field);
    PropertyDialogCase test(s_twoPorts);
    test.construct();
    const auto& found = test.widget<QLabel>(label.constData());
    QCOMPARE(found.text(), text);
    QCOMPARE(found.buddy(), &test.widget<QWidget>(field.constData()));
}

void TestForm::saysWhatIsSaid_data()
{
    QTest::addColumn<QByteArray>("object");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* object, const char* property, const char* text) {
        QTest::addRow("%s %s", object, property)
            << QByteArray(object) << QByteArray(property) << QString::fromLatin1(text);
    };
    row("verticalGroupBox", "title", "Serial Interface");
    row("groupBoxOs", "title", "System Configuration");
    row("groupBoxQvVisa", "title", "Qv VISA Configuration");
    row("btnDefaultOs", "text", "Set Default");
    row("btnDefaultQv", "text", "Set Default");
    row("label_4", "text", "\nNote:");
    row("label_5", "text", "\nUsed by sessions opened with\nviOpen(..., VI_LOAD_CONFIG)");
    row("label_6", "text", "\nNote:");
    row("label_7", "text", "\nCurrent Windows default settings");
    row("checkBoxVisaEnabled", "text", "VISA enabled");
    row("checkBoxPreferred", "text", "Preferred");
    row("actionAdd_Device", "text", "Add Device");
    row("actionRemove_Device", "text", "Remove Device");
    row("addButton", "text", "...");
    row("addButton", "toolTip", "New entry");
    row("removeButton", "text", "...");
    row("removeButton", "toolTip", "Remove Entry");
}

void TestForm::saysWhatIsSaid()
{
    QFETCH(const QByteArray, object);
    QFETCH(const QByteArray, property);
    QFETCH(const QString, text);
    PropertyDialogCase test(s_twoPorts);
    test.construct();
    const auto& found = test.widget<QObject>(object.constData());
    QCOMPARE(found.property(property.constData()).toString(), text);
}

void TestForm::helpsWithTheProvider()
{
    PropertyDialogCase test(s_twoPorts);
    test.construct();
    const auto& help = test.widget<QLabel>("label_3");
    QCOMPARE(help.text(), helpText());
    QCOMPARE(help.textFormat(), Qt::PlainText);
    QVERIFY(help.wordWrap());
}

void TestForm::buildsTheConflictManager()
{
    PropertyDialogCase test(s_twoPorts);
    test.construct();
    const auto& table = test.widget<QTableWidget>("rsrcTable");
    QCOMPARE(table.columnCount(), 2);
    QCOMPARE(table.rowCount(), 0);
    QCOMPARE(int(table.editTriggers()), int(QAbstractItemView::NoEditTriggers));
    QVERIFY(!table.showGrid());
    // The tabulator leads on to the fields beside it, whatever the table holds.
    QVERIFY(!table.tabKeyNavigation());
    QCOMPARE(test.combo("comboBoxVisaSelector").count(), 0);
    QVERIFY(!test.widget<QCheckBox>("checkBoxVisaEnabled").isChecked());
    QVERIFY(!test.widget<QCheckBox>("checkBoxPreferred").isChecked());
}

void TestForm::conflictManagerDoesNothing()
{
    PropertyDialogCase test;
    test.open();
    test.showTab("tabConfMang");
    test.combo("comboBoxVisaSelector").addItem(QStringLiteral("one"));
    test.combo("comboBoxVisaSelector").addItem(QStringLiteral("two"));
    QTest::keyClick(&test.combo("comboBoxVisaSelector"), Qt::Key_Down);
    QCOMPARE(test.combo("comboBoxVisaSelector").currentIndex(), 1);
    for (const char* name : {"checkBoxVisaEnabled", "checkBoxPreferred"}) {
        auto& box = test.widget<QCheckBox>(name);
        QTest::keyClick(&box, Qt::Key_Space);
        QVERIFY(box.isChecked());
    }
    QCOMPARE(test.widget<QTableWidget>("rsrcTable").rowCount(), 0);
    test.clickOk();
    QVERIFY(!test.model().isDirty());
}

void TestForm::buildsTheBoardsButtons()
{
    PropertyDialogCase test(s_twoPorts);
    test.construct();
    const QImage add = picture("Neu_transp4d09c92bc222a.ico");
    const QImage remove = picture("Minus.ico");
    QVERIFY(!add.isNull() && !remove.isNull() && add != remove);
    QCOMPARE(picture(test.widget<QToolButton>("addButton").icon()), add);
    QCOMPARE(picture(test.widget<QAction>("actionAdd_Device").icon()), add);
    QCOMPARE(picture(test.widget<QToolButton>("removeButton").icon()), remove);
    QCOMPARE(picture(test.widget<QAction>("actionRemove_Device").icon()), remove);
}

void TestForm::namesItsFieldsForScreenReaders()
{
    PropertyDialogCase test(s_twoPorts);
    test.construct();
    const QStringList fields =
        QStringLiteral("rsrcTable comboBoxVisaSelector checkBoxVisaEnabled checkBoxPreferred "
                       "comboBoxSerialInterface comboBoxOsBaudrate comboBoxOsDatabits "
                       "comboBoxOsStopbits comboBoxOsParity comboBoxOsFlowControl btnDefaultOs "
                       "comboBoxQvBaudrate comboBoxQvDatabits comboBoxQvStopbits comboBoxQvParity "
                       "comboBoxQvFlowControl btnDefaultQv addButton removeButton PropertyTree "
                       "providerEdit")
            .split(QLatin1Char(' '));
    QStringList names;
    for (const QString& field : fields) {
        names.append(test.widget<QWidget>(field.toLatin1().constData()).accessibleName());
        QVERIFY2(!names.last().isEmpty(), qPrintable(field));
    }
    QCOMPARE(names.removeDuplicates(), 0);
}

void TestForm::tabKeyFollowsTheEye_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QString>("order");
    const auto row = [](const char* page, const char* order) {
        QTest::newRow(page) << QByteArray(page) << QString::fromLatin1(order);
    };
    row("tabConfMang", "rsrcTable comboBoxVisaSelector checkBoxVisaEnabled checkBoxPreferred OK");
    row("tabAsrlProperties",
        "comboBoxSerialInterface comboBoxQvBaudrate comboBoxQvDatabits comboBoxQvStopbits "
        "comboBoxQvParity comboBoxQvFlowControl btnDefaultQv OK");
    row("tabGpibProperties", "addButton removeButton PropertyTree OK");
    row("tabSpecialProperties", "providerEdit OK");
}

void TestForm::tabKeyFollowsTheEye()
{
    QFETCH(const QByteArray, page);
    QFETCH(const QString, order);
    PropertyDialogCase test(s_twoPorts);
    test.open();
    if (page == "tabConfMang" || page == "tabGpibProperties") {
        test.showTab(page.constData());
    }
    auto& tabs = test.widget<QTabWidget>("tabWidget");
    tabs.setCurrentWidget(&test.widget<QWidget>(page.constData()));
    tabs.setFocus();
    const QAbstractButton* ok =
        test.widget<QDialogButtonBox>("buttonBox").button(QDialogButtonBox::Ok);
    QStringList visited;
    while (QApplication::focusWidget() != ok && visited.size() < 20) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        visited.append(QApplication::focusWidget() == ok
                           ? QStringLiteral("OK")
                           : QApplication::focusWidget()->objectName());
    }
    QCOMPARE(visited.join(QLatin1Char(' ')), order);
}

void TestForm::passesTextsThroughTranslation()
{
    Marking marking;
    QVERIFY(QCoreApplication::installTranslator(&marking));
    PropertyDialogCase test(s_twoPorts);
    test.haveBoards({{0, {}}});
    const gui::PropertyDialog& dialog = test.construct();
    QVERIFY(dialog.windowTitle().startsWith(QLatin1Char('~')));
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
        QVERIFY2(label->text().startsWith(QLatin1Char('~')), qPrintable(label->text()));
    }
    for (const QGroupBox* box : dialog.findChildren<QGroupBox*>()) {
        QVERIFY2(box->title().startsWith(QLatin1Char('~')), qPrintable(box->title()));
    }
    QCOMPARE(test.widget<QTabWidget>("tabWidget").tabText(1),
             QStringLiteral("~Special Properties"));
    QCOMPARE(test.combo("comboBoxQvStopbits").itemText(1), QStringLiteral("~1,5"));
    // The titles of the tabs that are taken away.
    QVERIFY(marking.sources().contains(QStringLiteral("Conflict Manager")));
    QVERIFY(marking.sources().contains(QStringLiteral("Gpib Properties")));
    const auto& tree = test.widget<QTreeWidget>("PropertyTree");
    QCOMPARE(tree.headerItem()->text(0), QStringLiteral("~Device No"));
    QCOMPARE(tree.topLevelItem(0)->text(0), QStringLiteral("~Device 0"));
}

static const guitest::Registration<TestForm> s_registration;

#include "TestForm.moc"
