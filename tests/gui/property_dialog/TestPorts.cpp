// SPDX-License-Identifier: MIT
#include "tests/gui/property_dialog/PropertyDialogCase.h"
#include "tests/gui/shared/NamedCalls.h"
#include "tests/gui/shared/RecordTexts.h"
#include "tests/gui/shared/WindowTest.h"

using guitest::namedCalls;
using guitest::PropertyDialogCase;

namespace {

QStringList items(const QComboBox& combo)
{
    QStringList texts;
    for (int index = 0; index < combo.count(); ++index) {
        texts.append(
            QStringLiteral("%1 %2").arg(combo.itemText(index)).arg(combo.itemData(index).toUInt()));
    }
    return texts;
}

QStringList opening()
{
    return {QStringLiteral("viOpenDefaultRM() -> VI_SUCCESS, session=RM"),
            QStringLiteral("viSetAttribute(RM, 0x0E5A0002, 0) -> VI_SUCCESS")};
}

QString found(int count, const char* description)
{
    return QStringLiteral(
               "viFindRsrc(RM, \"ASRL?*\") -> VI_SUCCESS, list=LIST, count=%1, description=\"%2\"")
        .arg(count)
        .arg(QString::fromLatin1(description));
}

QString parsed(int number)
{
    return QStringLiteral("viParseRsrc(RM, \"ASRL%1::INSTR\") -> VI_SUCCESS, type=4, number=%1")
        .arg(number);
}

QString next(int number)
{
    return QStringLiteral("viFindNext(LIST) -> VI_SUCCESS, description=\"ASRL%1::INSTR\"")
        .arg(number);
}

QString noNext()
{
    return QStringLiteral("viFindNext(LIST) -> VI_ERROR_RSRC_NFOUND");
}

QString closed(const char* what)
{
    return QStringLiteral("viClose(%1) -> VI_SUCCESS").arg(QString::fromLatin1(what));
}

} // namespace

/// Which calls the dialog makes to list the serial ports, and what it makes of the answers.
class TestPorts : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void asksTheLibrary_data();
    void asksTheLibrary();
    void asksOnceADialog();
    void keepsTheLibrarysOrder();
    void takesNumbersFromTheLibrary_data();
    void takesNumbersFromTheLibrary();
    void countsAPortItCannotParseAsInterfaceZero();
    void takesTextsAsUtf8_data();
    void takesTextsAsUtf8();
    void readsNoFurtherThanTheBuffer();
    void endsAMillionfoldCount();
    void listsManyPorts();
    void disablesTheTabWithoutPorts_data();
    void disablesTheTabWithoutPorts();
};

void TestPorts::asksTheLibrary_data()
{
    QTest::addColumn<QByteArray>("trouble");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QStringList>("ports");

    const QStringList both{QStringLiteral("ASRL1::INSTR 1"), QStringLiteral("ASRL3::INSTR 3")};
    const QStringList first{QStringLiteral("ASRL1::INSTR 1")};
    const QStringList none;
    const QString two = found(2, "ASRL1::INSTR");
    const QStringList walk{parsed(1), next(3), parsed(3), noNext()};
    const QStringList end{closed("LIST"), closed("RM")};

    QTest::newRow("nothing wrong")
        << QByteArray() << opening() + QStringList(two) + walk + end << both;
    QTest::newRow("no session")
        << QByteArray("status viOpenDefaultRM VI_ERROR_SYSTEM_ERROR")
        << QStringList{QStringLiteral("viOpenDefaultRM() -> VI_ERROR_SYSTEM_ERROR"),
                       QStringLiteral("viSetAttribute(0, 0x0E5A0002, 0) -> VI_ERROR_INV_OBJECT"),
                       QStringLiteral("viFindRsrc(0, \"ASRL?*\") -> VI_ERROR_INV_OBJECT"),
                       QStringLiteral("viClose(0) -> VI_WARN_NULL_OBJECT")}
        << none;
    QTest::newRow("attribute refused")
        << QByteArray("status viSetAttribute VI_ERROR_NSUP_ATTR")
        << QStringList{opening().first(),
                       QStringLiteral("viSetAttribute(RM, 0x0E5A0002, 0) -> VI_ERROR_NSUP_ATTR"),
                       two} +
               walk + end
        << both;
    QTest::newRow("search fails")
        << QByteArray("status viFindRsrc VI_ERROR_SYSTEM_ERROR")
        << opening() +
               QStringList{QStringLiteral("viFindRsrc(RM, \"ASRL?*\") -> VI_ERROR_SYSTEM_ERROR"),
                           closed("RM")}
        << none;
    QTest::newRow("search warns") << QByteArray("status viFindRsrc 0x3FFF0085")
                                  << opening() +
                                         QStringList(QString(two).replace(
                                             QLatin1String("VI_SUCCESS"),
                                             QLatin1String("VI_WARN_UNKNOWN_STATUS"))) +
                                         walk + end
                                  << both;
    QTest::newRow("count of none")
        << QByteArray("count 0") << opening() + QStringList(found(0, "ASRL1::INSTR")) + end << none;
    QTest::newRow("count of one, of two ports")
        << QByteArray("count 1")
        << opening() + QStringList{found(1, "ASRL1::INSTR"), parsed(1), next(3)} + end << first;
    QTest::newRow("count of five, of two ports")
        << QByteArray("count 5") << opening() + QStringList(found(5, "ASRL1::INSTR")) + walk + end
        << both;
    QTest::newRow("next fails")
        << QByteArray("status viFindNext VI_ERROR_IO at=1")
        << opening() +
               QStringList{two, parsed(1), QStringLiteral("viFindNext(LIST) -> VI_ERROR_IO")} + end
        << first;
    QTest::newRow("next warns") << QByteArray("status viFindNext 0x3FFF0085 at=1")
                                << opening() +
                                       QStringList{two, parsed(1),
                                                   next(3).replace(
                                                       QLatin1String("VI_SUCCESS"),
                                                       QLatin1String("VI_WARN_UNKNOWN_STATUS"))} +
                                       end
                                << first;
    QTest::newRow("first parse fails")
        << QByteArray("status viParseRsrc VI_ERROR_IO at=1")
        << opening() +
               QStringList{two,
                           QStringLiteral("viParseRsrc(RM, \"ASRL1::INSTR\") -> VI_ERROR_IO")} +
               walk.mid(1) + end
        << QStringList{QStringLiteral("ASRL1::INSTR 0"), both.last()};
    QTest::newRow("list does not close")
        << QByteArray("status viClose VI_ERROR_CLOSING_FAILED at=1")
        << opening() + QStringList(two) + walk +
               QStringList{QStringLiteral("viClose(LIST) -> VI_ERROR_CLOSING_FAILED"), closed("RM")}
        << both;
}

void TestPorts::asksTheLibrary()
{
    QFETCH(const QByteArray, trouble);
    QFETCH(const QStringList, calls);
    QFETCH(const QStringList, ports);
    PropertyDialogCase test("resource ASRL1::INSTR\nresource ASRL3::INSTR\n" +
                            trouble.toStdString() + "\n");
    test.construct();
    QCOMPARE(namedCalls(test.bench()), calls);
    QCOMPARE(items(test.combo("comboBoxSerialInterface")), ports);
    QCOMPARE(test.widget<QWidget>("tabAsrlProperties").isEnabled(), !ports.isEmpty());
    QCOMPARE(test.combo("comboBoxSerialInterface").currentIndex(), ports.isEmpty() ? -1 : 0);
}

void TestPorts::asksOnceADialog()
{
    PropertyDialogCase test("resource ASRL1::INSTR\n");
    test.open();
    test.bench().clearCalls();
    test.clickOk();
    test.destroy();
    QCOMPARE(namedCalls(test.bench()), QStringList());
}

void TestPorts::keepsTheLibrarysOrder()
{
    PropertyDialogCase test(
        "resource ASRL12::INSTR\nresource ASRL3::INSTR\nresource GPIB0::1::INSTR\n"
        "resource ASRL1::INSTR\nresource ASRL3::INSTR\n");
    test.construct();
    QCOMPARE(items(test.combo("comboBoxSerialInterface")).join(QLatin1Char('|')),
             QStringLiteral("ASRL12::INSTR 12|ASRL3::INSTR 3|ASRL1::INSTR 1|ASRL3::INSTR 3"));
}

void TestPorts::takesNumbersFromTheLibrary_data()
{
    QTest::addColumn<unsigned>("number");
    for (const unsigned number : {0U, 1U, 255U, 256U, 32768U, 65535U}) {
        QTest::addRow("%u", number) << number;
    }
}

void TestPorts::takesNumbersFromTheLibrary()
{
    QFETCH(const unsigned, number);
    PropertyDialogCase test("resource ASRL/dev/ttyUSB0::INSTR interface=ASRL," +
                            std::to_string(number) + "\n");
    test.construct().accept();
    QCOMPARE(items(test.combo("comboBoxSerialInterface")).join(QLatin1Char('|')),
             QStringLiteral("ASRL/dev/ttyUSB0::INSTR %1").arg(number));
    QCOMPARE(guitest::text(test.model().getSerialProperties()),
             QStringLiteral("%1=9600,8,0,0,0").arg(number));
}

void TestPorts::countsAPortItCannotParseAsInterfaceZero()
{
    PropertyDialogCase test("resource ASRL7::INSTR\nresource ASRL8::INSTR\n"
                            "status viParseRsrc VI_ERROR_INV_RSRC_NAME at=2\n");
    test.construct();
    QCOMPARE(items(test.combo("comboBoxSerialInterface")).join(QLatin1Char('|')),
             QStringLiteral("ASRL7::INSTR 7|ASRL8::INSTR 0"));
}

void TestPorts::takesTextsAsUtf8_data()
{
    QTest::addColumn<QByteArray>("description");
    QTest::addColumn<QString>("text");
    QTest::newRow("two bytes") << QByteArray(R"(ASRL\xC3\xBC)") << QStringLiteral("ASRL\u00FC");
    QTest::newRow("no UTF-8") << QByteArray(R"(ASRL\xFC!)") << QStringLiteral("ASRL\uFFFD!");
    QTest::newRow("control characters and markup")
        << QByteArray(R"(ASRL\x01<b>x</b>&)") << QStringLiteral("ASRL\u0001<b>x</b>&");
}

void TestPorts::takesTextsAsUtf8()
{
    QFETCH(const QByteArray, description);
    QFETCH(const QString, text);
    PropertyDialogCase test("resource \"" + description.toStdString() + "\" interface=ASRL,4\n");
    test.construct();
    QCOMPARE(items(test.combo("comboBoxSerialInterface")).join(QLatin1Char('|')),
             text + QStringLiteral(" 4"));
}

void TestPorts::readsNoFurtherThanTheBuffer()
{
    PropertyDialogCase test("resource ASRL2::INSTR no-end\nresource ASRL5::INSTR\n");
    test.construct();
    const QString filled = QStringLiteral("ASRL2::INSTR").leftJustified(256, QLatin1Char('x'));
    const QStringList calls = namedCalls(test.bench());
    QVERIFY(calls.size() > 3);
    QCOMPARE(calls.at(3).section(QLatin1String(" -> "), 0, 0),
             QStringLiteral("viParseRsrc(RM, \"%1\")").arg(filled));
    QCOMPARE(test.combo("comboBoxSerialInterface").itemText(0), filled);
    // A shorter text behind it starts afresh.
    QCOMPARE(test.combo("comboBoxSerialInterface").itemText(1), QStringLiteral("ASRL5::INSTR"));
}

void TestPorts::endsAMillionfoldCount()
{
    PropertyDialogCase test("resource ASRL1::INSTR\ncount 0xFFFFFFFF\n");
    test.construct();
    QCOMPARE(namedCalls(test.bench()).size(), 7);
    QCOMPARE(test.combo("comboBoxSerialInterface").count(), 1);
}

void TestPorts::listsManyPorts()
{
    PropertyDialogCase test("resource ASRL{n}::INSTR repeat=2000\n");
    test.construct();
    const QComboBox& ports = test.combo("comboBoxSerialInterface");
    QCOMPARE(ports.count(), 2000);
    QCOMPARE(ports.itemText(1999), QStringLiteral("ASRL2000::INSTR"));
    QCOMPARE(ports.itemData(1999).toUInt(), 2000U);
}

void TestPorts::disablesTheTabWithoutPorts_data()
{
    QTest::addColumn<QByteArray>("bench");
    QTest::addColumn<bool>("isEnabled");
    QTest::newRow("nothing there") << QByteArray() << false;
    QTest::newRow("no serial port") << QByteArray("resource GPIB0::1::INSTR") << false;
    QTest::newRow("a serial port") << QByteArray("resource ASRL1::INSTR") << true;
}

void TestPorts::disablesTheTabWithoutPorts()
{
    QFETCH(const QByteArray, bench);
    QFETCH(const bool, isEnabled);
    PropertyDialogCase test(bench.toStdString() + "\n");
    test.open();
    QCOMPARE(test.widget<QWidget>("tabAsrlProperties").isEnabled(), isEnabled);
    for (const char* name : {"comboBoxSerialInterface", "comboBoxQvBaudrate", "btnDefaultQv"}) {
        QCOMPARE(test.widget<QWidget>(name).isEnabled(), isEnabled);
    }
    QVERIFY(test.widget<QWidget>("providerEdit").isEnabled());
    QVERIFY(test.widget<QWidget>("buttonBox").isEnabled());
    test.clickOk();
    QCOMPARE(test.dialog().result(), int(QDialog::Accepted));
}

static const guitest::Registration<TestPorts> s_registration;

#include "TestPorts.moc"
