// SPDX-License-Identifier: MIT
#include "tests/gui/property_dialog/PropertyDialogCase.h"
#include "tests/gui/shared/RecordTexts.h"
#include "tests/gui/shared/WindowTest.h"

#include <QAction>
#include <QLineEdit>
#include <QMetaMethod>
#include <QSignalSpy>

using guitest::PropertyDialogCase;
using guitest::text;

namespace {

constexpr const char* s_onePort = "resource ASRL1::INSTR\n";
/// Port 7 is not on the bench.
const QvVisa::SerialPropertiesMap s_ports{{1, {300, 7, 2, 1, 6}}, {7, {1200, 5, 1, 2, 1}}};
const QvVisa::GpibPropertiesMap s_boards{{0, {}}, {3, {7, 8, 0}}};

/// Empties the provider's field and types into it.
void typeProvider(PropertyDialogCase& test, const QString& typed)
{
    auto& field = test.widget<QLineEdit>("providerEdit");
    field.setFocus();
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClick(&field, Qt::Key_Home);
    QTest::keyClicks(&field, typed);
}

/// Edits everything that the dialog edits.
void editEverything(PropertyDialogCase& test)
{
    typeProvider(test, QStringLiteral("4086"));
    test.combo("comboBoxQvParity").setCurrentIndex(3);
    test.widget<QAction>("actionAdd_Device").trigger();
}

/// How many connections a signal has. QObject tells it to subclasses only.
int connections(const QObject& sender, const QByteArray& signal)
{
    struct Sender : QObject
    {
        using QObject::receivers;
    };
    return (sender.*&Sender::receivers)(signal.constData());
}

} // namespace

/// What the dialog copies, hands back and leaves alone.
class TestFrame : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void showsTheProvider_data();
    void showsTheProvider();
    void takesTheProvider_data();
    void takesTheProvider();
    void refusesWhatIsNoDigit();
    void okHandsEverythingOver();
    void okAsksInOrder_data();
    void okAsksInOrder();
    void okWithoutAnEditChangesNothing();
    void okAddsAnEntryForTheFirstPort();
    void enterIsOk();
    void leavingKeepsTheModel_data();
    void leavingKeepsTheModel();
    void worksOnCopies();
    void makesEachConnection_data();
    void makesEachConnection();
    void declaresItsSlotsInOrder();
    void inertSlotsDoNothing();
};

void TestFrame::showsTheProvider_data()
{
    QTest::addColumn<int>("provider");
    for (const int provider : {0, 1, 42, 3674, 65535}) {
        QTest::addRow("%d", provider) << provider;
    }
}

void TestFrame::showsTheProvider()
{
    QFETCH(const int, provider);
    PropertyDialogCase test;
    test.haveProvider(static_cast<unsigned short>(provider));
    test.open();
    QCOMPARE(test.widget<QLineEdit>("providerEdit").text(), QString::number(provider));
    QCOMPARE(int(test.dialog().getProvider()), provider);
    test.clickOk();
    QCOMPARE(int(test.model().getProvider()), provider);
    QVERIFY(!test.model().isDirty());
}

void TestFrame::takesTheProvider_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("provider");
    QTest::newRow("nothing") << "" << 3674;
    QTest::newRow("a blank") << " " << 3674;
    QTest::newRow("zero") << "0" << 0;
    QTest::newRow("many zeros") << "00000" << 0;
    QTest::newRow("leading zeros") << "00042" << 42;
    QTest::newRow("another maker's") << "4095" << 4095;
    QTest::newRow("no octal") << "010" << 10;
    QTest::newRow("last of 15 bits") << "32767" << 32767;
    QTest::newRow("first of 16 bits") << "32768" << 32768;
    QTest::newRow("last of 16 bits") << "65535" << 65535;
    QTest::newRow("one over") << "65536" << 0;
    QTest::newRow("greatest") << "99999" << 34463;
    QTest::newRow("a sixth digit") << "123456" << 12345;
}

void TestFrame::takesTheProvider()
{
    QFETCH(const QString, typed);
    QFETCH(const int, provider);
    PropertyDialogCase test;
    test.haveProvider(7);
    test.open();
    typeProvider(test, typed);
    QCOMPARE(int(test.dialog().getProvider()), provider);
    QCOMPARE(int(test.model().getProvider()), 7);
    test.clickOk();
    QCOMPARE(int(test.model().getProvider()), provider);
    QVERIFY(test.model().isDirty());
}

void TestFrame::refusesWhatIsNoDigit()
{
    PropertyDialogCase test;
    test.open();
    QCOMPARE(test.widget<QLineEdit>("providerEdit").inputMask(), QStringLiteral("00000"));
    typeProvider(test, QStringLiteral("-1x2,3"));
    QCOMPARE(int(test.dialog().getProvider()), 123);
}

void TestFrame::okHandsEverythingOver()
{
    PropertyDialogCase test(s_onePort);
    test.havePorts(s_ports);
    test.haveBoards(s_boards);
    test.open();
    editEverything(test);
    test.clickOk();
    QCOMPARE(test.dialog().result(), int(QDialog::Accepted));
    QVERIFY(!test.dialog().isVisible());
    QCOMPARE(int(test.model().getProvider()), 4086);
    QCOMPARE(text(test.model().getSerialProperties()),
             QStringLiteral("1=300,7,2,3,6 7=1200,5,1,2,1"));
    QCOMPARE(text(test.model().getGpibProperties()),
             QStringLiteral("0=0,65535,1 3=7,8,0 4=0,65535,1"));
    QVERIFY(test.model().isDirty());
}

void TestFrame::okAsksInOrder_data()
{
    QTest::addColumn<bool>("editsProvider");
    QTest::addColumn<QString>("atFirstChange");
    QTest::newRow("the provider first") << true << "4086 3 boards 300";
    QTest::newRow("then the boards, then the ports") << false << "3674 4 boards 300";
}

void TestFrame::okAsksInOrder()
{
    QFETCH(const bool, editsProvider);
    QFETCH(const QString, atFirstChange);
    PropertyDialogCase test(s_onePort);
    test.havePorts(s_ports);
    test.haveBoards({{0, {}}, {1, {}}, {2, {}}});
    test.open();
    // The model speaks up at the first change alone, and then holds what it was given so far.
    QStringList states;
    connect(&test.model(), &ConfigurationModel::dirtyHasChanged, &test.dialog(), [&] {
        states.append(QStringLiteral("%1 %2 boards %3")
                          .arg(test.model().getProvider())
                          .arg(test.model().getGpibProperties().size())
                          .arg(test.model().getSerialProperties().at(1).baudrate));
    });
    if (editsProvider) {
        typeProvider(test, QStringLiteral("4086"));
    }
    test.combo("comboBoxQvBaudrate").setCurrentIndex(1);
    test.dialog().addDevice();
    test.clickOk();
    QCOMPARE(states, QStringList(atFirstChange));
    QCOMPARE(text(test.model().getSerialProperties()),
             QStringLiteral("1=600,7,2,1,6 7=1200,5,1,2,1"));
}

void TestFrame::okWithoutAnEditChangesNothing()
{
    PropertyDialogCase test(s_onePort);
    test.havePorts(s_ports);
    test.haveBoards(s_boards);
    const QSignalSpy dirty(&test.model(), SIGNAL(dirtyHasChanged(bool)));
    test.open();
    test.clickOk();
    QCOMPARE(dirty.count(), 0);
    QVERIFY(!test.model().isDirty());
    QCOMPARE(text(test.model().getSerialProperties()), text(s_ports));
    QCOMPARE(text(test.model().getGpibProperties()), text(s_boards));
}

void TestFrame::okAddsAnEntryForTheFirstPort()
{
    PropertyDialogCase test("resource ASRL2::INSTR\nresource ASRL1::INSTR\n");
    test.havePorts(s_ports);
    test.open();
    test.clickOk();
    QCOMPARE(text(test.model().getSerialProperties()),
             QStringLiteral("1=300,7,2,1,6 2=9600,8,0,0,0 7=1200,5,1,2,1"));
    QVERIFY(test.model().isDirty());
}

void TestFrame::enterIsOk()
{
    PropertyDialogCase test;
    test.open();
    typeProvider(test, QStringLiteral("5"));
    QTest::keyClick(&test.widget<QLineEdit>("providerEdit"), Qt::Key_Return);
    QCOMPARE(test.dialog().result(), int(QDialog::Accepted));
    QCOMPARE(int(test.model().getProvider()), 5);
}

void TestFrame::leavingKeepsTheModel_data()
{
    QTest::addColumn<QByteArray>("way");
    QTest::newRow("Cancel") << QByteArray("cancel");
    QTest::newRow("Escape") << QByteArray("escape");
    QTest::newRow("the window's close button") << QByteArray("close");
    QTest::newRow("destruction") << QByteArray("destroy");
}

void TestFrame::leavingKeepsTheModel()
{
    QFETCH(const QByteArray, way);
    PropertyDialogCase test(s_onePort);
    test.havePorts(s_ports);
    test.haveBoards(s_boards);
    test.open();
    editEverything(test);
    if (way == "cancel") {
        test.clickCancel();
    } else if (way == "escape") {
        QTest::keyClick(&test.dialog(), Qt::Key_Escape);
    } else if (way == "close") {
        test.dialog().close();
    }
    if (way != "destroy") {
        QVERIFY(!test.dialog().isVisible());
        QCOMPARE(test.dialog().result(), int(QDialog::Rejected));
    }
    test.destroy();
    QCOMPARE(int(test.model().getProvider()), 3674);
    QCOMPARE(text(test.model().getSerialProperties()), text(s_ports));
    QCOMPARE(text(test.model().getGpibProperties()), text(s_boards));
    QVERIFY(!test.model().isDirty());
}

void TestFrame::worksOnCopies()
{
    PropertyDialogCase test(s_onePort);
    test.havePorts(s_ports);
    test.open();
    test.havePorts({{9, {}}});
    test.haveProvider(1);
    test.clickOk();
    QCOMPARE(text(test.model().getSerialProperties()), text(s_ports));
    QCOMPARE(int(test.model().getProvider()), 3674);
}

void TestFrame::makesEachConnection_data()
{
    QTest::addColumn<QByteArray>("sender");
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<QByteArray>("receiver");
    QTest::addColumn<QByteArray>("slot");
    const auto row = [](const char* sender, const char* signal, const char* receiver,
                        const char* slot) {
        QTest::addRow("%s to %s", sender, slot + 1)
            << QByteArray(sender) << QByteArray(signal) << QByteArray(receiver) << QByteArray(slot);
    };

    // clang-format off
    const char* itemChanged = SIGNAL(itemChanged(QTreeWidgetItem*,int));
    // clang-format on
    row("buttonBox", SIGNAL(accepted()), "", SLOT(accept()));
    row("buttonBox", SIGNAL(rejected()), "", SLOT(reject()));
    row("addButton", SIGNAL(clicked()), "actionAdd_Device", SLOT(trigger()));
    row("removeButton", SIGNAL(clicked()), "actionRemove_Device", SLOT(trigger()));
    row("comboBoxSerialInterface", SIGNAL(currentIndexChanged(int)), "",
        SLOT(serialInterfaceChanged(int)));
    row("btnDefaultOs", SIGNAL(clicked()), "", SLOT(setDefaultOs()));
    row("btnDefaultQv", SIGNAL(clicked()), "", SLOT(setDefaultQv()));
    // clang-format off
    row("PropertyTree", itemChanged, "", SLOT(itemChanged(QTreeWidgetItem*,int)));
    // clang-format on
    row("actionAdd_Device", SIGNAL(triggered()), "", SLOT(addDevice()));
    row("actionRemove_Device", SIGNAL(triggered()), "", SLOT(removeDevice()));
    row("PropertyTree", SIGNAL(customContextMenuRequested(QPoint)), "",
        SLOT(treePopupMenu(QPoint)));
}

/// What each connection does when it is used is shown where that behaviour is tested; here it is
/// there, and once only.
void TestFrame::makesEachConnection()
{
    QFETCH(const QByteArray, sender);
    QFETCH(const QByteArray, signal);
    QFETCH(const QByteArray, receiver);
    QFETCH(const QByteArray, slot);
    PropertyDialogCase test;
    gui::PropertyDialog& dialog = test.construct();
    const QObject& from = test.widget<QObject>(sender.constData());
    const QObject& to = receiver.isEmpty() ? dialog : test.widget<QObject>(receiver.constData());
    const int before = connections(from, signal);
    QVERIFY(QObject::disconnect(&from, signal.constData(), &to, slot.constData()));
    QCOMPARE(connections(from, signal), before - 1);
}

void TestFrame::declaresItsSlotsInOrder()
{
    QStringList slotNames;
    const QMetaObject& meta = gui::PropertyDialog::staticMetaObject;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        slotNames.append(QString::fromLatin1(meta.method(index).methodSignature()));
    }
    QCOMPARE(slotNames,
             QStringList({QStringLiteral("redrawtree()"),
                          QStringLiteral("itemChanged(QTreeWidgetItem*,int)"),
                          QStringLiteral("addDevice()"), QStringLiteral("removeDevice()"),
                          QStringLiteral("treePopupMenu(QPoint)"),
                          QStringLiteral("setVisaComboboxIndex(int)"),
                          QStringLiteral("VisaCheckBoxStateChanged(bool)"),
                          QStringLiteral("accept()"), QStringLiteral("serialInterfaceChanged(int)"),
                          QStringLiteral("setDefaultOs()"), QStringLiteral("setDefaultQv()")}));
}

void TestFrame::inertSlotsDoNothing()
{
    PropertyDialogCase test(s_onePort);
    test.havePorts(s_ports);
    test.haveBoards(s_boards);
    test.open();
    test.bench().clearCalls();
    for (const int index : {-1, 0, 1}) {
        test.dialog().setVisaComboboxIndex(index);
    }
    test.dialog().VisaCheckBoxStateChanged(true);
    test.dialog().VisaCheckBoxStateChanged(false);
    test.dialog().setDefaultOs();
    QVERIFY(test.bench().calls().empty());
    QVERIFY(test.dialog().isVisible());
    test.clickOk();
    QVERIFY(!test.model().isDirty());
    QCOMPARE(text(test.model().getSerialProperties()), text(s_ports));
    QCOMPARE(text(test.model().getGpibProperties()), text(s_boards));
}

static const guitest::Registration<TestFrame> s_registration;

#include "TestFrame.moc"
