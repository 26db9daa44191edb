// SPDX-License-Identifier: MIT
#include "tests/gui/property_dialog/PropertyDialogCase.h"
#include "tests/gui/shared/RecordTexts.h"
#include "tests/gui/shared/WindowTest.h"

#include <QGroupBox>
#include <QLabel>
#include <QSignalSpy>

Q_DECLARE_METATYPE(QvVisa::SSerialProperties)

using guitest::PropertyDialogCase;
using guitest::text;

namespace {

constexpr const char* s_twoPorts = "resource ASRL1::INSTR\nresource ASRL3::INSTR\n";

QStringList texts(const QComboBox& combo)
{
    QStringList result;
    for (int index = 0; index < combo.count(); ++index) {
        result.append(combo.itemText(index));
    }
    return result;
}

/// "9600 8 1 None None": what the five fields of one group show.
QString shown(PropertyDialogCase& test, const QString& group)
{
    QStringList result;
    for (const char* field : {"Baudrate", "Databits", "Stopbits", "Parity", "FlowControl"}) {
        const QString name = QStringLiteral("comboBox") + group + QString::fromLatin1(field);
        result.append(test.combo(name.toLatin1().constData()).currentText());
    }
    return result.join(QLatin1Char(' '));
}

QString shown(PropertyDialogCase& test)
{
    return shown(test, QStringLiteral("Qv"));
}

/// Chooses an item as a user with a keyboard does.
void choose(QComboBox& combo, const QString& item)
{
    const int index = combo.findText(item);
    QVERIFY2(index >= 0, qPrintable(item));
    combo.setFocus();
    QTest::keyClick(&combo, Qt::Key_Home);
    for (int step = 0; step < index; ++step) {
        QTest::keyClick(&combo, Qt::Key_Down);
    }
    QCOMPARE(combo.currentText(), item);
}

void choose(PropertyDialogCase& test, const char* combo, const char* item)
{
    choose(test.combo(combo), QString::fromLatin1(item));
}

} // namespace

/// The tab for the serial ports: what it shows of a record, and what it makes of the fields.
class TestSerial : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void fillsTheLists_data();
    void fillsTheLists();
    void baudRatesAndDataBitsCarryNumbers();
    void dropsThePlaceholder();
    void showsTheFirstPort();
    void showsDefaultsForAPortWithoutEntry();
    void showsAndReads_data();
    void showsAndReads();
    void putsAnUnusualRateOnTop();
    void putsUnusualDataBitsOnTop();
    void takesWhatIsChosen();
    void takesNoFlowControlChosenForNone();
    void keepsEditsWhenThePortIsSwitched();
    void givesAnEntryToEveryPortThatWasShown();
    void portsOfOneNumberShareAnEntry();
    void setsDefaults();
    void defaultsCountWhenThePortIsLeft();
    void cancelKeepsTheModel();
    void forgetsThePortOnOk();
    void hidesTheSystemsSettings();
    void systemsSettingsDoNothing();
};

void TestSerial::fillsTheLists_data()
{
    QTest::addColumn<QByteArray>("combo");
    QTest::addColumn<QString>("items");

    const QString rates = QStringLiteral("300|600|1200|1800|2400|4800|7200|9600|14400|19200|38400|"
                                         "57600|115200|230400|460800|921600");
    const QString parities = QStringLiteral("None|Odd|Even|Mark|Space");
    for (const char* group : {"Os", "Qv"}) {
        const auto name = [group](const char* field) {
            return QByteArray("comboBox") + group + field;
        };
        QTest::addRow("%s baud rate", group) << name("Baudrate") << rates;
        QTest::addRow("%s data bits", group) << name("Databits") << QStringLiteral("5|6|7|8");
        QTest::addRow("%s stop bits", group) << name("Stopbits") << QStringLiteral("1|1,5|2");
        QTest::addRow("%s parity", group) << name("Parity") << parities;
    }
    QTest::newRow("system's flow control")
        << QByteArray("comboBoxOsFlowControl") << QStringLiteral("None|XON/XOFF|RTS/CTS + DTR/DSR");
    QTest::newRow("flow control") << QByteArray("comboBoxQvFlowControl")
                                  << QStringLiteral("None|XON/XOFF|RTS/CTS|RTS/CTS + DTR/DSR");
}

void TestSerial::fillsTheLists()
{
    QFETCH(const QByteArray, combo);
    QFETCH(const QString, items);
    PropertyDialogCase test(s_twoPorts);
    test.construct();
    QCOMPARE(texts(test.combo(combo.constData())).join(QLatin1Char('|')), items);
}

void TestSerial::baudRatesAndDataBitsCarryNumbers()
{
    PropertyDialogCase test(s_twoPorts);
    test.construct();
    for (const char* name :
         {"comboBoxOsBaudrate", "comboBoxQvBaudrate", "comboBoxOsDatabits", "comboBoxQvDatabits"}) {
        const QComboBox& combo = test.combo(name);
        for (int index = 0; index < combo.count(); ++index) {
            QCOMPARE(combo.itemData(index), QVariant(combo.itemText(index).toUInt()));
        }
    }
    for (const char* name : {"comboBoxQvStopbits", "comboBoxQvParity", "comboBoxQvFlowControl"}) {
        QVERIFY(!test.combo(name).itemData(0).isValid());
    }
}

void TestSerial::dropsThePlaceholder()
{
    PropertyDialogCase test(s_twoPorts);
    test.construct();
    QCOMPARE(texts(test.combo("comboBoxSerialInterface")),
             QStringList({QStringLiteral("ASRL1::INSTR"), QStringLiteral("ASRL3::INSTR")}));
    PropertyDialogCase empty;
    empty.construct();
    QCOMPARE(empty.combo("comboBoxSerialInterface").count(), 0);
}

void TestSerial::showsTheFirstPort()
{
    PropertyDialogCase test("resource ASRL3::INSTR\nresource ASRL1::INSTR\n");
    test.havePorts({{1, {300, 5, 0, 0, 0}}, {3, {115200, 7, 2, 4, 1}}});
    test.construct();
    QCOMPARE(test.combo("comboBoxSerialInterface").currentIndex(), 0);
    QCOMPARE(shown(test), QStringLiteral("115200 7 2 Space XON/XOFF"));
}

void TestSerial::showsDefaultsForAPortWithoutEntry()
{
    PropertyDialogCase test(s_twoPorts);
    test.havePorts({{3, {300, 5, 0, 0, 0}}});
    test.construct();
    QCOMPARE(shown(test), QStringLiteral("9600 8 1 None None"));
}

void TestSerial::showsAndReads_data()
{
    QTest::addColumn<QvVisa::SSerialProperties>("stored");
    QTest::addColumn<QString>("fields");
    QTest::addColumn<QString>("readBack");
    const auto row = [](QvVisa::SSerialProperties stored, const char* fields,
                        const char* readBack) {
        QTest::addRow("%s", qPrintable(text(QvVisa::SerialPropertiesMap{{1, stored}})))
            << stored << QString::fromLatin1(fields) << QString::fromLatin1(readBack);
    };

    row({9600, 8, 0, 0, 0}, "9600 8 1 None None", "1=9600,8,0,0,0");
    row({300, 5, 1, 1, 1}, "300 5 1,5 Odd XON/XOFF", "1=300,5,1,1,1");
    row({921600, 7, 2, 2, 2}, "921600 7 2 Even RTS/CTS", "1=921600,7,2,2,2");
    row({19200, 6, 0, 3, 6}, "19200 6 1 Mark RTS/CTS + DTR/DSR", "1=19200,6,0,3,6");
    row({57600, 8, 0, 4, 0}, "57600 8 1 Space None", "1=57600,8,0,4,0");
    // Every other code of the flow control shows the last choice, which is code 6.
    row({9600, 8, 0, 0, 3}, "9600 8 1 None RTS/CTS + DTR/DSR", "1=9600,8,0,0,6");
    row({9600, 8, 0, 0, 4}, "9600 8 1 None RTS/CTS + DTR/DSR", "1=9600,8,0,0,6");
    row({9600, 8, 0, 0, 5}, "9600 8 1 None RTS/CTS + DTR/DSR", "1=9600,8,0,0,6");
    row({9600, 8, 0, 0, 7}, "9600 8 1 None RTS/CTS + DTR/DSR", "1=9600,8,0,0,6");
    row({9600, 8, 0, 0, 255}, "9600 8 1 None RTS/CTS + DTR/DSR", "1=9600,8,0,0,6");
    // Codes outside the lists select nothing, and nothing is 255.
    row({9600, 8, 3, 5, 0}, "9600 8   None", "1=9600,8,255,255,0");
    row({9600, 8, 255, 255, 0}, "9600 8   None", "1=9600,8,255,255,0");
    // Unusual numbers are kept.
    row({250000, 8, 0, 0, 0}, "250000 8 1 None None", "1=250000,8,0,0,0");
    row({0, 0, 0, 0, 0}, "0 0 1 None None", "1=0,0,0,0,0");
    row({9601, 9, 0, 0, 0}, "9601 9 1 None None", "1=9601,9,0,0,0");
    row({1, 255, 0, 0, 0}, "1 255 1 None None", "1=1,255,0,0,0");
    row({2147483647, 8, 0, 0, 0}, "2147483647 8 1 None None", "1=2147483647,8,0,0,0");
    // A rate that no signed number holds is shown, but read back as 0.
    row({2147483648, 8, 0, 0, 0}, "2147483648 8 1 None None", "1=0,8,0,0,0");
    row({4294967295, 8, 0, 0, 0}, "4294967295 8 1 None None", "1=0,8,0,0,0");
}

void TestSerial::showsAndReads()
{
    QFETCH(const QvVisa::SSerialProperties, stored);
    QFETCH(const QString, fields);
    QFETCH(const QString, readBack);
    PropertyDialogCase test("resource ASRL1::INSTR\n");
    test.havePorts({{1, stored}});
    test.open();
    QCOMPARE(shown(test), fields);
    test.clickOk();
    QCOMPARE(text(test.model().getSerialProperties()), readBack);
    const bool changes = text(QvVisa::SerialPropertiesMap{{1, stored}}) != readBack;
    QCOMPARE(test.model().isDirty(), changes);
}

void TestSerial::putsAnUnusualRateOnTop()
{
    PropertyDialogCase test(s_twoPorts);
    test.havePorts({{1, {250000, 8, 0, 0, 0}}, {3, {12345, 8, 0, 0, 0}}});
    test.open();
    const QComboBox& rates = test.combo("comboBoxQvBaudrate");
    QCOMPARE(rates.count(), 17);
    QCOMPARE(rates.currentIndex(), 0);
    QCOMPARE(rates.itemText(0), QStringLiteral("250000"));
    QCOMPARE(rates.itemData(0), QVariant(250000U));
    QCOMPARE(rates.itemText(1), QStringLiteral("300"));
    // It stays when another comes on top of it, and is not added twice.
    choose(test, "comboBoxSerialInterface", "ASRL3::INSTR");
    choose(test, "comboBoxSerialInterface", "ASRL1::INSTR");
    QCOMPARE(rates.count(), 18);
    QCOMPARE(rates.itemText(0), QStringLiteral("12345"));
    QCOMPARE(rates.currentIndex(), 1);
    QCOMPARE(test.combo("comboBoxOsBaudrate").count(), 16);
}

void TestSerial::putsUnusualDataBitsOnTop()
{
    PropertyDialogCase test(s_twoPorts);
    test.havePorts({{1, {9600, 9, 0, 0, 0}}});
    test.open();
    const QComboBox& dataBits = test.combo("comboBoxQvDatabits");
    QCOMPARE(texts(dataBits).join(QLatin1Char('|')), QStringLiteral("9|5|6|7|8"));
    QCOMPARE(dataBits.itemData(0), QVariant(9U));
    QCOMPARE(dataBits.currentIndex(), 0);
}

void TestSerial::takesWhatIsChosen()
{
    PropertyDialogCase test("resource ASRL1::INSTR\n");
    test.open();
    choose(test, "comboBoxQvBaudrate", "921600");
    choose(test, "comboBoxQvDatabits", "5");
    choose(test, "comboBoxQvStopbits", "1,5");
    choose(test, "comboBoxQvParity", "Mark");
    choose(test, "comboBoxQvFlowControl", "RTS/CTS + DTR/DSR");
    QCOMPARE(text(test.model().getSerialProperties()), QString());
    test.clickOk();
    QCOMPARE(text(test.model().getSerialProperties()), QStringLiteral("1=921600,5,1,3,6"));
}

void TestSerial::takesNoFlowControlChosenForNone()
{
    PropertyDialogCase test("resource ASRL1::INSTR\n");
    test.havePorts({{1, {9600, 8, 0, 0, 2}}});
    test.open();
    test.combo("comboBoxQvFlowControl").setCurrentIndex(-1);
    test.clickOk();
    QCOMPARE(text(test.model().getSerialProperties()), QStringLiteral("1=9600,8,0,0,0"));
}

void TestSerial::keepsEditsWhenThePortIsSwitched()
{
    PropertyDialogCase test(s_twoPorts);
    test.open();
    choose(test, "comboBoxQvBaudrate", "1200");
    choose(test, "comboBoxSerialInterface", "ASRL3::INSTR");
    QCOMPARE(shown(test), QStringLiteral("9600 8 1 None None"));
    choose(test, "comboBoxQvParity", "Even");
    choose(test, "comboBoxSerialInterface", "ASRL1::INSTR");
    QCOMPARE(shown(test), QStringLiteral("1200 8 1 None None"));
    choose(test, "comboBoxSerialInterface", "ASRL3::INSTR");
    QCOMPARE(shown(test), QStringLiteral("9600 8 1 Even None"));
    test.clickOk();
    QCOMPARE(text(test.model().getSerialProperties()),
             QStringLiteral("1=1200,8,0,0,0 3=9600,8,0,2,0"));
}

void TestSerial::givesAnEntryToEveryPortThatWasShown()
{
    PropertyDialogCase test("resource ASRL1::INSTR\nresource ASRL2::INSTR\nresource ASRL3::INSTR");
    test.havePorts({{7, {300, 7, 2, 1, 6}}});
    test.open();
    choose(test, "comboBoxSerialInterface", "ASRL2::INSTR");
    test.clickOk();
    // Port 3 was never shown, port 7 is not on the bench.
    QCOMPARE(text(test.model().getSerialProperties()),
             QStringLiteral("1=9600,8,0,0,0 2=9600,8,0,0,0 7=300,7,2,1,6"));
    QVERIFY(test.model().isDirty());
}

void TestSerial::portsOfOneNumberShareAnEntry()
{
    PropertyDialogCase test("resource ASRL4::INSTR\nresource ASRL/dev/tty interface=ASRL,4\n");
    test.open();
    choose(test, "comboBoxQvBaudrate", "600");
    choose(test, "comboBoxSerialInterface", "ASRL/dev/tty");
    QCOMPARE(shown(test), QStringLiteral("600 8 1 None None"));
}

void TestSerial::setsDefaults()
{
    PropertyDialogCase test("resource ASRL1::INSTR\n");
    test.havePorts({{1, {250000, 9, 2, 4, 6}}, {7, {300, 7, 2, 1, 6}}});
    test.open();
    QTest::mouseClick(&test.widget<QPushButton>("btnDefaultQv"), Qt::LeftButton);
    QCOMPARE(shown(test), QStringLiteral("9600 8 1 None None"));
    test.clickCancel();
    QCOMPARE(text(test.model().getSerialProperties()),
             QStringLiteral("1=250000,9,2,4,6 7=300,7,2,1,6"));
    QVERIFY(!test.model().isDirty());
    test.open();
    QTest::mouseClick(&test.widget<QPushButton>("btnDefaultQv"), Qt::LeftButton);
    test.clickOk();
    // The port that is not shown keeps its settings.
    QCOMPARE(text(test.model().getSerialProperties()),
             QStringLiteral("1=9600,8,0,0,0 7=300,7,2,1,6"));
    QVERIFY(test.model().isDirty());
}

void TestSerial::defaultsCountWhenThePortIsLeft()
{
    PropertyDialogCase test(s_twoPorts);
    test.havePorts({{1, {300, 7, 2, 1, 6}}});
    test.open();
    QTest::mouseClick(&test.widget<QPushButton>("btnDefaultQv"), Qt::LeftButton);
    choose(test, "comboBoxSerialInterface", "ASRL3::INSTR");
    choose(test, "comboBoxSerialInterface", "ASRL1::INSTR");
    QCOMPARE(shown(test), QStringLiteral("9600 8 1 None None"));
}

void TestSerial::cancelKeepsTheModel()
{
    PropertyDialogCase test(s_twoPorts);
    test.havePorts({{1, {300, 7, 2, 1, 6}}});
    test.open();
    choose(test, "comboBoxQvBaudrate", "1200");
    choose(test, "comboBoxSerialInterface", "ASRL3::INSTR");
    test.clickCancel();
    QCOMPARE(text(test.model().getSerialProperties()), QStringLiteral("1=300,7,2,1,6"));
    QVERIFY(!test.model().isDirty());
}

void TestSerial::forgetsThePortOnOk()
{
    PropertyDialogCase test("resource ASRL1::INSTR\n");
    test.open().accept();
    choose(test, "comboBoxQvBaudrate", "1200");
    test.dialog().accept();
    QCOMPARE(text(test.model().getSerialProperties()), QStringLiteral("1=9600,8,0,0,0"));
}

void TestSerial::hidesTheSystemsSettings()
{
    PropertyDialogCase test(s_twoPorts);
    test.open();
    QVERIFY(test.widget<QWidget>("tabAsrlProperties").isVisible());
    QVERIFY(test.widget<QGroupBox>("verticalGroupBox").isVisible());
    QVERIFY(test.widget<QGroupBox>("groupBoxQvVisa").isVisible());
    QVERIFY(!test.widget<QGroupBox>("groupBoxOs").isVisible());
    QVERIFY(!test.combo("comboBoxOsBaudrate").isVisible());
}

void TestSerial::systemsSettingsDoNothing()
{
    PropertyDialogCase test("resource ASRL1::INSTR\n");
    test.havePorts({{1, {300, 7, 2, 1, 6}}});
    test.open();
    const QString system = QStringLiteral("Os");
    QCOMPARE(shown(test, system), QStringLiteral("300 5 1 None None"));
    test.combo("comboBoxOsBaudrate").setCurrentIndex(5);
    test.combo("comboBoxOsParity").setCurrentIndex(3);
    const QSignalSpy clicked(&test.widget<QPushButton>("btnDefaultOs"), SIGNAL(clicked()));
    test.widget<QPushButton>("btnDefaultOs").click();
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(shown(test, system), QStringLiteral("4800 5 1 Mark None"));
    QCOMPARE(shown(test), QStringLiteral("300 7 2 Odd RTS/CTS + DTR/DSR"));
    test.clickOk();
    QCOMPARE(text(test.model().getSerialProperties()), QStringLiteral("1=300,7,2,1,6"));
    QVERIFY(!test.model().isDirty());
}

static const guitest::Registration<TestSerial> s_registration;

#include "TestSerial.moc"
