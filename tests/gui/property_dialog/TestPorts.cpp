// SPDX-License-Identifier: MIT
// The calls that the dialog makes to list the serial ports, and what it lists.
#include "tests/gui/common/NamedCalls.h"
#include "tests/gui/property_dialog/PropertyDialogTest.h"

class TestPorts : public guitest::PropertyDialogTest
{
    Q_OBJECT

private slots:
    void callsAndPortsFollowTheAnswers_data()
    {
        columns<QByteArray, QString, QString>("setting", "calls", "ports");
        const auto row = [](const char* name, const char* setting, const QString& calls,
                            const char* ports) {
            QTest::newRow(name) << QByteArray(setting) << calls << QString::fromLatin1(ports);
        };
        const auto answering = [](QString call, const char* status) {
            return call.replace(QLatin1String("VI_SUCCESS"), QLatin1String(status));
        };
        const auto counting = [](const char* count) {
            return QString(s_find).replace(QLatin1String("count=2"), QLatin1String(count));
        };
        const QString walk = s_parse1 + s_next3 + s_parse3 + s_noNext;
        const char* both = "ASRL1::INSTR=1 ASRL3::INSTR=3";
        const char* first = "ASRL1::INSTR=1";

        row("success", "", s_open + s_find + walk + s_end, both);
        row("no session", "status viOpenDefaultRM VI_ERROR_SYSTEM_ERROR",
            QStringLiteral("viOpenDefaultRM() -> VI_ERROR_SYSTEM_ERROR\n"
                           "viSetAttribute(0, 0x0E5A0002, 0) -> VI_ERROR_INV_OBJECT\n"
                           "viFindRsrc(0, \"ASRL?*\") -> VI_ERROR_INV_OBJECT\n"
                           "viClose(0) -> VI_WARN_NULL_OBJECT"),
            "");
        row("attribute refused", "status viSetAttribute VI_ERROR_NSUP_ATTR",
            s_open.section(QLatin1Char('\n'), 0, 0) +
                QStringLiteral("\nviSetAttribute(RM, 0x0E5A0002, 0) -> VI_ERROR_NSUP_ATTR\n") +
                s_find + walk + s_end,
            both);
        row("search fails", "status viFindRsrc VI_ERROR_SYSTEM_ERROR",
            s_open + QStringLiteral("viFindRsrc(RM, \"ASRL?*\") -> VI_ERROR_SYSTEM_ERROR\n"
                                    "viClose(RM) -> VI_SUCCESS"),
            "");
        row("search warns", "status viFindRsrc 0x3FFF0085",
            s_open + answering(s_find, "VI_WARN_UNKNOWN_STATUS") + walk + s_end, both);
        row("count 0", "count 0", s_open + counting("count=0") + s_end, "");
        row("count 1 of 2", "count 1", s_open + counting("count=1") + s_parse1 + s_next3 + s_end,
            first);
        row("count 4294967295 of 2", "count 0xFFFFFFFF",
            s_open + counting("count=4294967295") + walk + s_end, both);
        row("next fails", "status viFindNext VI_ERROR_IO at=1",
            s_open + s_find + s_parse1 + QStringLiteral("viFindNext(LIST) -> VI_ERROR_IO\n") +
                s_end,
            first);
        row("next warns", "status viFindNext 0x3FFF0085 at=1",
            s_open + s_find + s_parse1 + answering(s_next3, "VI_WARN_UNKNOWN_STATUS") + s_end,
            first);
        row("first parse fails", "status viParseRsrc VI_ERROR_IO at=1",
            s_open + s_find + QStringLiteral("viParseRsrc(RM, \"ASRL1::INSTR\") -> VI_ERROR_IO\n") +
                s_next3 + s_parse3 + s_noNext + s_end,
            "ASRL1::INSTR=0 ASRL3::INSTR=3");
        // Not the number of the port before.
        row("second parse fails", "status viParseRsrc VI_ERROR_IO at=2",
            s_open + s_find + s_parse1 + s_next3 +
                QStringLiteral("viParseRsrc(RM, \"ASRL3::INSTR\") -> VI_ERROR_IO\n") + s_noNext +
                s_end,
            "ASRL1::INSTR=1 ASRL3::INSTR=0");
        row("closing fails", "status viClose VI_ERROR_CLOSING_FAILED at=1",
            s_open + s_find + walk +
                QStringLiteral(
                    "viClose(LIST) -> VI_ERROR_CLOSING_FAILED\nviClose(RM) -> VI_SUCCESS"),
            both);
    }

    void callsAndPortsFollowTheAnswers()
    {
        QFETCH(const QByteArray, setting);
        QFETCH(const QString, ports);
        construct(s_twoPorts + setting.toStdString() + "\n");
        QTEST(guitest::namedCalls(bench()).join(QLatin1Char('\n')), "calls");
        QCOMPARE(listedPorts(), ports);
        QCOMPARE(widget<QWidget>("tabAsrlProperties").isEnabled(), !ports.isEmpty());
        QCOMPARE(combo("comboBoxSerialInterface").currentIndex(), ports.isEmpty() ? -1 : 0);
    }

    void okAndDestructionMakeNoCalls()
    {
        open(s_onePort);
        bench().clearCalls();
        clickOk();
        destroy();
        QVERIFY(bench().calls().empty());
    }

    void listsPortsWithTheirNumbers_data()
    {
        columns<QByteArray, QString>("bench", "ports");
        QTest::newRow("order of the library, duplicates kept")
            << QByteArray("resource ASRL12\nresource ASRL3\nresource GPIB0::1::INSTR\n"
                          "resource ASRL1\nresource ASRL3\n")
            << "ASRL12=12 ASRL3=3 ASRL1=1 ASRL3=3";
        for (const int number : {0, 1, 255, 256, 32768, 65535}) {
            const QByteArray text = QByteArray::number(number);
            QTest::addRow("interface number %d", number)
                << "resource ASRL/dev/ttyUSB0 interface=ASRL," + text + '\n'
                << QLatin1String("ASRL/dev/ttyUSB0=") + QString::fromLatin1(text);
        }
        QTest::newRow("UTF-8") << QByteArray("resource \"ASRL\\xC3\\xBC\" interface=ASRL,4\n")
                               << QStringLiteral("ASRL\u00FC=4");
        QTest::newRow("not UTF-8") << QByteArray("resource \"ASRL\\xFC!\" interface=ASRL,4\n")
                                   << QStringLiteral("ASRL\uFFFD!=4");
        QTest::newRow("control character and markup")
            << QByteArray("resource \"ASRL\\x01<b>x</b>&\" interface=ASRL,4\n")
            << QStringLiteral("ASRL\u0001<b>x</b>&=4");
    }

    void listsPortsWithTheirNumbers()
    {
        QFETCH(const QByteArray, bench);
        QFETCH(const QString, ports);
        construct(bench.toStdString());
        QCOMPARE(listedPorts(), ports);
        dialog().accept();
        const auto& stored = model().getSerialProperties();
        QCOMPARE(stored.size(), std::size_t{1});
        QCOMPARE(QString::number(stored.begin()->first),
                 ports.section(QLatin1Char('='), 1).section(QLatin1Char(' '), 0, 0));
    }

    void descriptionWithoutEndIsCutAtTheBuffer()
    {
        construct("resource ASRL2::INSTR no-end\nresource ASRL5::INSTR\n");
        const QString cut = QStringLiteral("ASRL2::INSTR").leftJustified(256, QLatin1Char('x'));
        QVERIFY(guitest::namedCalls(bench()).value(3).startsWith(
            QStringLiteral("viParseRsrc(RM, \"%1\") -> ").arg(cut)));
        QCOMPARE(combo("comboBoxSerialInterface").itemText(0), cut);
        QCOMPARE(combo("comboBoxSerialInterface").itemText(1), QStringLiteral("ASRL5::INSTR"));
    }

    void twoThousandPortsAreListed()
    {
        construct("resource ASRL{n}::INSTR repeat=2000\n");
        const QComboBox& list = combo("comboBoxSerialInterface");
        QCOMPARE(list.count(), 2000);
        QCOMPARE(list.itemText(1999), QStringLiteral("ASRL2000::INSTR"));
        QCOMPARE(list.itemData(1999).toUInt(), 2000U);
    }

    void pageIsDisabledWithoutPorts_data()
    {
        columns<QByteArray, bool>("bench", "isEnabled");
        QTest::newRow("no instruments") << QByteArray() << false;
        QTest::newRow("no serial port") << QByteArray("resource GPIB0::1::INSTR\n") << false;
        QTest::newRow("serial port") << QByteArray(s_onePort) << true;
    }

    void pageIsDisabledWithoutPorts()
    {
        QFETCH(const QByteArray, bench);
        QFETCH(const bool, isEnabled);
        open(bench.toStdString());
        for (const char* name : {"tabAsrlProperties", "comboBoxSerialInterface",
                                 "comboBoxQvBaudrate", "btnDefaultQv"}) {
            QCOMPARE(widget<QWidget>(name).isEnabled(), isEnabled);
        }
        QVERIFY(widget<QWidget>("providerEdit").isEnabled());
        clickOk();
        QCOMPARE(dialog().result(), int(QDialog::Accepted));
    }

private:
    /// The search of a bench with the ports 1 and 3.
    static const QString s_open;
    static const QString s_find;
    static const QString s_parse1;
    static const QString s_next3;
    static const QString s_parse3;
    static const QString s_noNext;
    static const QString s_end;
};

const QString TestPorts::s_open =
    QStringLiteral("viOpenDefaultRM() -> VI_SUCCESS, session=RM\n"
                   "viSetAttribute(RM, 0x0E5A0002, 0) -> VI_SUCCESS\n");
const QString TestPorts::s_find =
    QStringLiteral("viFindRsrc(RM, \"ASRL?*\") -> VI_SUCCESS, list=LIST, count=2, "
                   "description=\"ASRL1::INSTR\"\n");
const QString TestPorts::s_parse1 =
    QStringLiteral("viParseRsrc(RM, \"ASRL1::INSTR\") -> VI_SUCCESS, type=4, number=1\n");
const QString TestPorts::s_next3 =
    QStringLiteral("viFindNext(LIST) -> VI_SUCCESS, description=\"ASRL3::INSTR\"\n");
const QString TestPorts::s_parse3 =
    QStringLiteral("viParseRsrc(RM, \"ASRL3::INSTR\") -> VI_SUCCESS, type=4, number=3\n");
const QString TestPorts::s_noNext = QStringLiteral("viFindNext(LIST) -> VI_ERROR_RSRC_NFOUND\n");
const QString TestPorts::s_end =
    QStringLiteral("viClose(LIST) -> VI_SUCCESS\nviClose(RM) -> VI_SUCCESS");

static const guitest::Registration<TestPorts> s_registerPorts;
#include "TestPorts.moc"
