// SPDX-License-Identifier: MIT
// The fields of each interface: which are shown, and what can be typed into them.
#include "tests/gui/common/FontSize.h"
#include "tests/gui/rsrc_string_editor/ComposerTest.h"

#include <QGroupBox>
#include <QLayout>

using guitest::FontSize;

class TestFields : public guitest::ComposerTest
{
    Q_OBJECT

private slots:
    void interfaceDecidesWhichFieldsAreShown_data()
    {
        columns<int, QString>("type", "shown");
        const QString tcpip = QStringLiteral("BoardEdit TcpipGroupBox label_5 IpEdit");
        const QString device = QStringLiteral(" deviceLabel deviceEdit");
        const QString port = QStringLiteral(" portLabel PortEdit");
        QTest::newRow("VXI-11") << int{Vxi11} << tcpip + device;
        QTest::newRow("HiSlip") << int{HiSlip} << tcpip + device + port;
        QTest::newRow("Socket") << int{Socket} << tcpip + port;
        QTest::newRow("QVIB") << int{Qvib} << tcpip;
        QTest::newRow("USB") << int{Usb}
                             << QStringLiteral("BoardEdit UsbGroupBox label_6 vendorEdit label_8 "
                                               "productEdit label_7 serialEdit");
        QTest::newRow("Serial") << int{Serial} << QStringLiteral("BoardEdit");
    }

    void interfaceDecidesWhichFieldsAreShown()
    {
        QFETCH(const int, type);
        for (int former = Vxi11; former <= Serial; ++former) {
            choose(former);
            choose(type);
            QTEST(shownFields(), "shown");
            QCOMPARE(edit("BoardEdit").isEnabled(), type != Qvib);
        }
        expectNoGaps();
    }

    void charactersOutsideThePatternCannotBeTyped_data()
    {
        columns<QByteArray, QString, QString>("field", "typed", "taken");
        const auto row = [](const char* field, const char* typed, const char* taken) {
            QTest::addRow("%s %s", field, typed)
                << QByteArray(field) << QString::fromUtf8(typed) << QString::fromUtf8(taken);
        };
        row("RsrcEdit", "Any: text, \"goes\" *?\\/ \u00fc ", "Any: text, \"goes\" *?\\/ \u00fc ");

        row("aliasEdit", "a:b,c d\u00a0e\u3000f", "abcdef");
        row("aliasEdit", "M\u00fcller=;#.\"*/?\\", "M\u00fcller=;#.\"*/?\\");

        row("serialEdit", "a\"b*c/d:e?f\\g", "abcdefg");
        row("serialEdit", "S N-1,2.3;4#5=6_7", "S N-1,2.3;4#5=6_7");

        row("IpEdit", "192.168.1.10", "192.168.1.10");
        row("IpEdit", "Meter-1.lab.example", "Meter-1.lab.example");
        row("IpEdit", ".-a..b.-c-.d--e", "a.b.c-d--e");
        row("IpEdit", "a_b c\u00fc", "abc");
        row("IpEdit", "fe80::1%eth0", "fe801eth0");
        // Beginnings of a name.
        row("IpEdit", "10.", "10.");
        row("IpEdit", "a-", "a-");

        row("BoardEdit", "-1 a23", "12");

        for (const char* field : {"PortEdit", "deviceEdit"}) {
            row(field, "123456789012345678901234567890", "123456789012345678901234567890");
            row(field, "0x1F-2 3.4,\u0663", "01234");
        }
        for (const char* field : {"vendorEdit", "productEdit"}) {
            row(field, "0x1aG2B3", "0x1a2B");
            row(field, "0X12", "012");
            row(field, "-1x 23456", "12345");
        }
    }

    void charactersOutsideThePatternCannotBeTyped()
    {
        QFETCH(const QByteArray, field);
        QFETCH(const QString, typed);
        const bool isUsb = field == "vendorEdit" || field == "productEdit" || field == "serialEdit";
        choose(isUsb ? Usb : HiSlip);
        QVERIFY(edit(field.constData()).isVisible());
        type(field.constData(), typed);
        QTEST(text(field.constData()), "taken");
    }

    void pastedTextIsTakenWholeOrNotAtAll()
    {
        edit("aliasEdit").insert(QStringLiteral("my dev"));
        QCOMPARE(text("aliasEdit"), QString());
        edit("aliasEdit").insert(QStringLiteral("my_dev"));
        QCOMPARE(text("aliasEdit"), QStringLiteral("my_dev"));
    }

    /// The pattern of a host matches a name in many ways; the matcher must not try them all.
    void longHostIsTakenAtOnce()
    {
        QLineEdit& host = edit("IpEdit");
        for (const QString& name :
             {QString(30000, QLatin1Char('a')), QStringLiteral("a-b.").repeated(7000)}) {
            host.clear();
            host.insert(name);
            QCOMPARE(host.text(), name);
            host.insert(QStringLiteral("_"));
            QCOMPARE(host.text(), name);
        }
    }

    void resourceStringIsShownWhole_data()
    {
        columns<int, QString>("pixels", "resource");
        QTest::newRow("long, usual font size")
            << int{FontSize::usual} << "TCPIP0::scope3.laboratory.lan::hislip0,4881::INSTR";
        QTest::newRow("usual, large font size")
            << int{FontSize::large} << "TCPIP0::192.168.100.100::inst0::INSTR";
    }

    void resourceStringIsShownWhole()
    {
        QFETCH(const int, pixels);
        QFETCH(const QString, resource);
        const FontSize fontSize(pixels);
        open();
        editor().setRsrcString(resource);
        QCoreApplication::processEvents();
        QVERIFY(edit("RsrcEdit").fontMetrics().horizontalAdvance(resource) <
                edit("RsrcEdit").width() - 4);
    }

private:
    QString shownFields() const
    {
        QStringList shown;
        for (const char* name :
             {"BoardEdit", "TcpipGroupBox", "label_5", "IpEdit", "deviceLabel", "deviceEdit",
              "portLabel", "PortEdit", "UsbGroupBox", "label_6", "vendorEdit", "label_8",
              "productEdit", "label_7", "serialEdit", "GpibGroupBox", "label_9", "PrimaryEdit"}) {
            if (widget<QWidget>(name).isVisible()) {
                shown.append(QString::fromLatin1(name));
            }
        }
        return shown.join(QLatin1Char(' '));
    }

    /// What is shown in a group box follows without space for what is hidden.
    void expectNoGaps() const
    {
        QCoreApplication::processEvents();
        for (const char* name : {"groupBox", "groupBox_2", "TcpipGroupBox", "UsbGroupBox"}) {
            const auto& group = widget<QGroupBox>(name);
            const QLayout& layout = *group.layout();
            int bottom =
                group.contentsRect().top() + layout.contentsMargins().top() - layout.spacing() - 1;
            for (int index = 0; group.isVisible() && index < layout.count(); ++index) {
                QLayoutItem& item = *layout.itemAt(index);
                if (item.widget() != nullptr ? item.widget()->isVisible() : !item.isEmpty()) {
                    QCOMPARE(item.geometry().top() - bottom - 1, layout.spacing());
                    bottom = item.geometry().bottom();
                }
            }
        }
    }
};

static const guitest::Registration<TestFields> s_registerFields;
#include "TestFields.moc"
