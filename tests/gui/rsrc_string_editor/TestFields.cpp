// SPDX-License-Identifier: MIT
// What can be typed and pasted into the composer's fields.
#include "tests/gui/rsrc_string_editor/ComposerTest.h"

class TestFields : public guitest::ComposerTest
{
    Q_OBJECT

private slots:
    void charactersOutsideThePatternCannotBeTyped_data()
    {
        columns<QByteArray, QString, QString>("field", "typed", "taken");
        const auto row = [](const char* field, const char* typed, const char* taken) {
            QTest::addRow("%s %s", field, typed)
                << QByteArray(field) << QString::fromUtf8(typed) << QString::fromUtf8(taken);
        };
        row("aliasEdit", "scope", "scope");
        row("aliasEdit", "a:b,c d", "abcd");
        row("aliasEdit", "a\u00a0b", "ab");
        row("aliasEdit", "a=b;c#d.\"*/?\\", "a=b;c#d.\"*/?\\");
        row("aliasEdit", "M\u00fcller", "M\u00fcller");

        row("serialEdit", "SN-100.a_1", "SN-100.a_1");
        row("serialEdit", "a\"b*c/d:e?f\\g", "abcdefg");
        row("serialEdit", "S N,1;2#3=4", "S N,1;2#3=4");

        row("IpEdit", "192.168.1.10", "192.168.1.10");
        row("IpEdit", "Meter-1.lab.example", "Meter-1.lab.example");
        row("IpEdit", "-a", "a");
        row("IpEdit", ".a", "a");
        row("IpEdit", "a..b", "a.b");
        row("IpEdit", "a.-b", "a.b");
        row("IpEdit", "a-.b", "a-b");
        row("IpEdit", "a--b", "a--b");
        row("IpEdit", "a_b c", "abc");
        row("IpEdit", "fe80::1%eth0", "fe801eth0");
        row("IpEdit", "\u00fcber", "ber");
        // Beginnings of a name.
        row("IpEdit", "10.", "10.");
        row("IpEdit", "a-", "a-");
        row("IpEdit", "999.1.1.1", "999.1.1.1");

        row("BoardEdit", "12", "12");
        row("BoardEdit", "123", "12");
        row("BoardEdit", "-1 a", "1");

        for (const char* field : {"PortEdit", "deviceEdit"}) {
            row(field, "123456789012345678901234567890", "123456789012345678901234567890");
            row(field, "0x1F", "01");
            row(field, "-1 2.3,4", "1234");
            row(field, "\u0663", "");
        }
        for (const char* field : {"vendorEdit", "productEdit"}) {
            row(field, "0x", "0x");
            row(field, "0x1a2B3", "0x1a2B");
            row(field, "0xG", "0x");
            row(field, "0X12", "012");
            row(field, "123456", "12345");
            row(field, "1x2a", "12");
            row(field, "-1 ", "1");
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

    void pastedTextIsTakenWholeOrNotAtAll_data()
    {
        columns<QByteArray, QString, bool>("field", "pasted", "isTaken");
        const auto row = [](const char* field, const char* pasted, bool isTaken) {
            QTest::addRow("%s %s", field, pasted)
                << QByteArray(field) << QString::fromUtf8(pasted) << isTaken;
        };
        row("aliasEdit", "my_dev", true);
        row("aliasEdit", "my dev", false);
        row("aliasEdit", "my\u3000dev", false);
        row("aliasEdit", "my\u2028dev", false);
        row("aliasEdit", "dev:1", false);
        row("serialEdit", "SN 100", true);
        row("serialEdit", "SN:100", false);
        row("IpEdit", "10.0.0.5", true);
        row("IpEdit", " 10.0.0.5", false);
        row("IpEdit", "10.0.0.5::inst0", false);
        row("BoardEdit", "11", true);
        row("BoardEdit", "111", false);
        row("PortEdit", "5000", true);
        row("PortEdit", "5000 ", false);
        row("deviceEdit", "inst0", false);
        row("vendorEdit", "0x0AAD", true);
        row("vendorEdit", "0AAD", false);
        row("vendorEdit", "0x0AADF", false);
        row("productEdit", "65535", true);
        row("productEdit", "655350", false);
        row("PrimaryEdit", "20", true);
        row("PrimaryEdit", "20a", false);
    }

    void pastedTextIsTakenWholeOrNotAtAll()
    {
        QFETCH(const QByteArray, field);
        QFETCH(const QString, pasted);
        QFETCH(const bool, isTaken);
        edit(field.constData()).clear();
        edit(field.constData()).insert(pasted);
        QCOMPARE(text(field.constData()), isTaken ? pasted : QString());
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

    void resourceIsFreeText()
    {
        const QString text = QStringLiteral("Any: text, \"goes\" *?\\/ \u00fc ");
        type("RsrcEdit", text);
        QCOMPARE(resource(), text);
    }
};

static const guitest::Registration<TestFields> s_registerFields;
#include "TestFields.moc"
