// SPDX-License-Identifier: MIT
// The page of the serial ports: what it shows of a record, and what it stores of the fields.
#include "tests/gui/property_dialog/PropertyDialogTest.h"

#include <QPushButton>

Q_DECLARE_METATYPE(QvVisa::SSerialProperties)

using guitest::text;

class TestSerial : public guitest::PropertyDialogTest
{
    Q_OBJECT

private slots:
    void libraryDecidesWhichPortsAreListed_data()
    {
        columns<QByteArray, QString>("bench", "listed");
        QTest::newRow("none") << QByteArray("resource GPIB0::1::INSTR\n") << "";
        QTest::newRow("order of the library, duplicates kept")
            << QByteArray("resource ASRL12\nresource ASRL3\nresource ASRL1\nresource ASRL3\n")
            << "ASRL12=12 ASRL3=3 ASRL1=1 ASRL3=3";
        QTest::newRow("number of 16 bits and markup")
            << QByteArray("resource \"ASRL\\x01<b>x</b>&\" interface=ASRL,65535\n")
            << QStringLiteral("ASRL\u0001<b>x</b>&=65535");
    }

    void libraryDecidesWhichPortsAreListed()
    {
        QFETCH(const QByteArray, bench);
        QFETCH(const QString, listed);
        open(bench.toStdString());
        QStringList items;
        const QComboBox& list = combo("comboBoxSerialInterface");
        for (int index = 0; index < list.count(); ++index) {
            items.append(QStringLiteral("%1=%2")
                             .arg(list.itemText(index))
                             .arg(list.itemData(index).toUInt()));
        }
        QCOMPARE(items.join(QLatin1Char(' ')), listed);
        // Without a port, the page is disabled.
        QCOMPARE(widget<QWidget>("tabAsrlProperties").isEnabled(), !items.isEmpty());
        QVERIFY(widget<QWidget>("providerEdit").isEnabled());
        // The first one is shown.
        clickOk();
        QCOMPARE(ports().section(QLatin1Char('='), 0, 0),
                 items.value(0).section(QLatin1Char('='), -1));
    }

    void firstListedPortIsShown()
    {
        setPorts({{1, {300, 5, 0, 0, 0}}, {3, {115200, 7, 2, 4, 1}}});
        construct("resource ASRL3::INSTR\nresource ASRL1::INSTR\n");
        QCOMPARE(combo("comboBoxSerialInterface").currentIndex(), 0);
        QCOMPARE(shown(), QStringLiteral("115200 7 2 Space XON/XOFF"));
    }

    void recordIsShownAndReadBack_data()
    {
        columns<QvVisa::SSerialProperties, QString, QString>("stored", "fields", "readBack");
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
        // Every other flow control shows the last item, which is stored as 6.
        for (const int code : {3, 4, 5, 7, 255}) {
            row({9600, 8, 0, 0, static_cast<std::uint8_t>(code)}, "9600 8 1 None RTS/CTS + DTR/DSR",
                "1=9600,8,0,0,6");
        }
        // Codes without an item select none, which is stored as 255.
        row({9600, 8, 3, 5, 0}, "9600 8   None", "1=9600,8,255,255,0");
        row({9600, 8, 255, 255, 0}, "9600 8   None", "1=9600,8,255,255,0");
        // Numbers without an item are inserted.
        row({250000, 8, 0, 0, 0}, "250000 8 1 None None", "1=250000,8,0,0,0");
        row({0, 0, 0, 0, 0}, "0 0 1 None None", "1=0,0,0,0,0");
        row({9601, 9, 0, 0, 0}, "9601 9 1 None None", "1=9601,9,0,0,0");
        row({1, 255, 0, 0, 0}, "1 255 1 None None", "1=1,255,0,0,0");
        row({2147483647, 8, 0, 0, 0}, "2147483647 8 1 None None", "1=2147483647,8,0,0,0");
        // A rate above 31 bits does not convert back.
        row({2147483648, 8, 0, 0, 0}, "2147483648 8 1 None None", "1=0,8,0,0,0");
        row({4294967295, 8, 0, 0, 0}, "4294967295 8 1 None None", "1=0,8,0,0,0");
    }

    void recordIsShownAndReadBack()
    {
        QFETCH(const QvVisa::SSerialProperties, stored);
        QFETCH(const QString, readBack);
        setPorts({{1, stored}});
        const QString before = ports();
        open(s_onePort);
        QTEST(shown(), "fields");
        clickOk();
        QCOMPARE(ports(), readBack);
        QCOMPARE(model().isDirty(), before != readBack);
    }

    void unlistedNumberIsInsertedAtTheTop()
    {
        setPorts({{1, {250000, 9, 0, 0, 0}}, {3, {12345, 8, 0, 0, 0}}});
        open(s_twoPorts);
        const QComboBox& rates = combo("comboBoxQvBaudrate");
        const QComboBox& dataBits = combo("comboBoxQvDatabits");
        QCOMPARE(rates.count(), 17);
        QCOMPARE(rates.currentIndex(), 0);
        QCOMPARE(rates.itemText(0), QStringLiteral("250000"));
        QCOMPARE(rates.itemData(0), QVariant(250000U));
        QCOMPARE(rates.itemText(1), QStringLiteral("300"));
        QCOMPARE(dataBits.count(), 5);
        QCOMPARE(dataBits.currentIndex(), 0);
        QCOMPARE(dataBits.itemData(0), QVariant(9U));
        // It stays below the next one, and is not inserted twice.
        choosePort("ASRL3::INSTR");
        choosePort("ASRL1::INSTR");
        QCOMPARE(rates.count(), 18);
        QCOMPARE(rates.itemText(0), QStringLiteral("12345"));
        QCOMPARE(rates.currentIndex(), 1);
        QCOMPARE(combo("comboBoxOsBaudrate").count(), 16);
    }

    void okStoresTheChosenItems()
    {
        open(s_onePort);
        choose("comboBoxQvBaudrate", "921600");
        choose("comboBoxQvDatabits", "5");
        choose("comboBoxQvStopbits", "1,5");
        choose("comboBoxQvParity", "Mark");
        choose("comboBoxQvFlowControl", "RTS/CTS + DTR/DSR");
        QCOMPARE(ports(), QString());
        clickOk();
        QCOMPARE(ports(), QStringLiteral("1=921600,5,1,3,6"));
    }

    void noFlowControlSelectedIsNone()
    {
        setPorts({{1, {9600, 8, 0, 0, 2}}});
        open(s_onePort);
        combo("comboBoxQvFlowControl").setCurrentIndex(-1);
        clickOk();
        QCOMPARE(ports(), QStringLiteral("1=9600,8,0,0,0"));
    }

    void editsAreKeptWhenThePortChanges()
    {
        open(s_twoPorts);
        choose("comboBoxQvBaudrate", "1200");
        choosePort("ASRL3::INSTR");
        QCOMPARE(shown(), QStringLiteral("9600 8 1 None None"));
        choose("comboBoxQvParity", "Even");
        choosePort("ASRL1::INSTR");
        QCOMPARE(shown(), QStringLiteral("1200 8 1 None None"));
        choosePort("ASRL3::INSTR");
        QCOMPARE(shown(), QStringLiteral("9600 8 1 Even None"));
        clickOk();
        QCOMPARE(ports(), QStringLiteral("1=1200,8,0,0,0 3=9600,8,0,2,0"));
    }

    void everyPortThatWasShownGetsAnEntry()
    {
        setPorts({{7, {300, 7, 2, 1, 6}}});
        open("resource ASRL1::INSTR\nresource ASRL2::INSTR\nresource ASRL3::INSTR\n");
        choosePort("ASRL2::INSTR");
        clickOk();
        QCOMPARE(ports(), QStringLiteral("1=9600,8,0,0,0 2=9600,8,0,0,0 7=300,7,2,1,6"));
        QVERIFY(model().isDirty());
    }

    void portsWithOneNumberShareAnEntry()
    {
        open("resource ASRL4::INSTR\nresource ASRL/dev/tty interface=ASRL,4\n");
        choose("comboBoxQvBaudrate", "600");
        choosePort("ASRL/dev/tty");
        QCOMPARE(shown(), QStringLiteral("600 8 1 None None"));
    }

    void setDefaultIsKeptWhenThePortChangesAndStoredOnOk()
    {
        setPorts({{1, {250000, 9, 2, 4, 6}}, {7, {300, 7, 2, 1, 6}}});
        open(s_twoPorts);
        QTest::mouseClick(&widget<QPushButton>("btnDefaultQv"), Qt::LeftButton);
        QCOMPARE(shown(), QStringLiteral("9600 8 1 None None"));
        choosePort("ASRL3::INSTR");
        choosePort("ASRL1::INSTR");
        QCOMPARE(shown(), QStringLiteral("9600 8 1 None None"));
        clickOk();
        QCOMPARE(ports(), QStringLiteral("1=9600,8,0,0,0 3=9600,8,0,0,0 7=300,7,2,1,6"));
    }

    void secondOkStoresNoPort()
    {
        open(s_onePort).accept();
        choose("comboBoxQvBaudrate", "1200");
        dialog().accept();
        QCOMPARE(ports(), QStringLiteral("1=9600,8,0,0,0"));
    }

    void systemGroupIsHiddenAndInert()
    {
        setPorts({{1, {300, 7, 2, 1, 6}}});
        open(s_onePort);
        QVERIFY(widget<QWidget>("groupBoxQvVisa").isVisible());
        QVERIFY(!widget<QWidget>("groupBoxOs").isVisible());
        QCOMPARE(shown("Os"), QStringLiteral("300 5 1 None None"));
        combo("comboBoxOsBaudrate").setCurrentIndex(5);
        combo("comboBoxOsParity").setCurrentIndex(3);
        widget<QPushButton>("btnDefaultOs").click();
        QCOMPARE(shown("Os"), QStringLiteral("4800 5 1 Mark None"));
        QCOMPARE(shown(), QStringLiteral("300 7 2 Odd RTS/CTS + DTR/DSR"));
        clickOk();
        QCOMPARE(ports(), QStringLiteral("1=300,7,2,1,6"));
        QVERIFY(!model().isDirty());
    }

private:
    /// "9600 8 1 None None": the current items of a group, "Qv" or "Os".
    QString shown(const char* group = "Qv")
    {
        QStringList items;
        for (const char* field : {"Baudrate", "Databits", "Stopbits", "Parity", "FlowControl"}) {
            const QByteArray name = QByteArray("comboBox") + group + field;
            items.append(combo(name.constData()).currentText());
        }
        return items.join(QLatin1Char(' '));
    }

    /// Chooses an item by keys.
    void choose(const char* name, const char* item)
    {
        QComboBox& list = combo(name);
        const int index = list.findText(QString::fromLatin1(item));
        QVERIFY2(index >= 0, item);
        list.setFocus();
        QTest::keyClick(&list, Qt::Key_Home);
        for (int step = 0; step < index; ++step) {
            QTest::keyClick(&list, Qt::Key_Down);
        }
        QCOMPARE(list.currentText(), QString::fromLatin1(item));
    }
    void choosePort(const char* item) { choose("comboBoxSerialInterface", item); }
};

static const guitest::Registration<TestSerial> s_registerSerial;
#include "TestSerial.moc"
