// SPDX-License-Identifier: MIT
// What can be typed and pasted into the composer's fields.
#include "tests/gui/rsrc_string_editor/ComposerCase.h"
#include "tests/gui/shared/WindowTest.h"

#include <optional>

using guitest::ComposerCase;

namespace {

enum Interface
{
    HiSlip = 1,
    Usb = 4
};

/// The interface that shows the field.
int interfaceWith(const QString& field)
{
    const bool isUsb = field == QLatin1String("vendorEdit") ||
                       field == QLatin1String("productEdit") ||
                       field == QLatin1String("serialEdit");
    return isUsb ? Usb : HiSlip;
}

} // namespace

class TestFields : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void takesWhatIsTyped_data();
    void takesWhatIsTyped();
    void refusesWhatIsPasted_data();
    void refusesWhatIsPasted();
    void hasNoOtherLimit_data();
    void hasNoOtherLimit();
    void takesALongHostAtOnce();
    void resourceIsFreeText();
};

void TestFields::takesWhatIsTyped_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("taken");
    const auto row = [](const char* field, const char* typed, const char* taken) {
        QTest::addRow("%s %s", field, typed)
            << QString::fromLatin1(field) << QString::fromUtf8(typed) << QString::fromUtf8(taken);
    };
    row("aliasEdit", "scope", "scope");
    row("aliasEdit", "a:b,c d", "abcd");
    row("aliasEdit", ":, ", "");
    row("aliasEdit", "a\u00a0b", "ab");
    row("aliasEdit", "a=b;c#d.\"*/?\\", "a=b;c#d.\"*/?\\");
    row("aliasEdit", "M\u00fcller", "M\u00fcller");

    row("serialEdit", "SN-100.a_1", "SN-100.a_1");
    row("serialEdit", "a\"b*c/d:e?f\\g", "abcdefg");
    row("serialEdit", "S N,1;2#3=4", "S N,1;2#3=4");

    row("IpEdit", "192.168.1.10", "192.168.1.10");
    row("IpEdit", "Meter-1.lab.example", "Meter-1.lab.example");
    row("IpEdit", "a", "a");
    row("IpEdit", "-a", "a");
    row("IpEdit", ".a", "a");
    row("IpEdit", "a..b", "a.b");
    row("IpEdit", "a.-b", "a.b");
    row("IpEdit", "a-.b", "a-b");
    row("IpEdit", "a--b", "a--b");
    row("IpEdit", "a_b c", "abc");
    row("IpEdit", "::1", "1");
    row("IpEdit", "fe80::1%eth0", "fe801eth0");
    row("IpEdit", "\u00fcber", "ber");
    // Not acceptable as they end, but on the way to it.
    row("IpEdit", "10.", "10.");
    row("IpEdit", "a-", "a-");
    // Four numbers are a name like any other.
    row("IpEdit", "999.1.1.1", "999.1.1.1");

    row("BoardEdit", "0", "0");
    row("BoardEdit", "12", "12");
    row("BoardEdit", "123", "12");
    row("BoardEdit", "007", "00");
    row("BoardEdit", "-1 a", "1");

    for (const char* field : {"PortEdit", "deviceEdit"}) {
        row(field, "5000", "5000");
        row(field, "123456789012345678901234567890", "123456789012345678901234567890");
        row(field, "-1", "1");
        row(field, "0x1F", "01");
        row(field, "1 2.3,4", "1234");
        row(field, "\u0663", "");
    }
    for (const char* field : {"vendorEdit", "productEdit"}) {
        row(field, "0x", "0x");
        row(field, "0x1a2B", "0x1a2B");
        row(field, "0x1a2B3", "0x1a2B");
        row(field, "0xG", "0x");
        row(field, "0X12", "012");
        row(field, "12345", "12345");
        row(field, "123456", "12345");
        row(field, "1x2a", "12");
        row(field, "x12", "12");
        row(field, "-1 ", "1");
    }
}

void TestFields::takesWhatIsTyped()
{
    QFETCH(const QString, field);
    QFETCH(const QString, typed);
    const ComposerCase composer;
    composer.choose(interfaceWith(field));
    const QByteArray name = field.toLatin1();
    QVERIFY(composer.isShown(name.constData()));
    composer.type(name.constData(), typed);
    QTEST(composer.text(name.constData()), "taken");
}

void TestFields::refusesWhatIsPasted_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("pasted");
    QTest::addColumn<bool>("isTaken");
    const auto row = [](const char* field, const QString& pasted, bool isTaken) {
        QTest::addRow("%s %s", field, qUtf8Printable(pasted))
            << QString::fromLatin1(field) << pasted << isTaken;
    };
    row("aliasEdit", QStringLiteral("my_dev"), true);
    row("aliasEdit", QStringLiteral("my dev"), false);
    row("aliasEdit", QStringLiteral("my\u3000dev"), false);
    row("aliasEdit", QStringLiteral("my\u2028dev"), false);
    row("aliasEdit", QStringLiteral("dev:1"), false);
    row("serialEdit", QStringLiteral("SN 100"), true);
    row("serialEdit", QStringLiteral("SN:100"), false);
    row("IpEdit", QStringLiteral("10.0.0.5"), true);
    row("IpEdit", QStringLiteral(" 10.0.0.5"), false);
    row("IpEdit", QStringLiteral("10.0.0.5::inst0"), false);
    row("BoardEdit", QStringLiteral("11"), true);
    row("BoardEdit", QStringLiteral("111"), false);
    row("PortEdit", QStringLiteral("5000"), true);
    row("PortEdit", QStringLiteral("5000 "), false);
    row("deviceEdit", QStringLiteral("inst0"), false);
    row("vendorEdit", QStringLiteral("0x0AAD"), true);
    row("vendorEdit", QStringLiteral("0AAD"), false);
    row("vendorEdit", QStringLiteral("0x0AADF"), false);
    row("productEdit", QStringLiteral("65535"), true);
    row("productEdit", QStringLiteral("655350"), false);
    row("PrimaryEdit", QStringLiteral("20"), true);
    row("PrimaryEdit", QStringLiteral("20a"), false);
}

/// A text that comes at once comes whole or not at all.
void TestFields::refusesWhatIsPasted()
{
    QFETCH(const QString, field);
    QFETCH(const QString, pasted);
    QFETCH(const bool, isTaken);
    const ComposerCase composer;
    QLineEdit& edit = composer.edit(field.toLatin1().constData());
    edit.clear();
    edit.insert(pasted);
    QCOMPARE(edit.text(), isTaken ? pasted : QString());
}

void TestFields::hasNoOtherLimit_data()
{
    QTest::addColumn<QString>("field");
    for (const char* field :
         {"aliasEdit", "RsrcEdit", "BoardEdit", "IpEdit", "deviceEdit", "PortEdit", "vendorEdit",
          "productEdit", "serialEdit", "PrimaryEdit"}) {
        QTest::newRow(field) << QString::fromLatin1(field);
    }
}

void TestFields::hasNoOtherLimit()
{
    QFETCH(const QString, field);
    const ComposerCase composer;
    const QLineEdit& edit = composer.edit(field.toLatin1().constData());
    QCOMPARE(edit.inputMask(), QString());
    QCOMPARE(edit.maxLength(), QLineEdit().maxLength());
    QVERIFY(!edit.isReadOnly());
}

/// The pattern of a host could be read in many ways; the matcher must not try them all.
void TestFields::takesALongHostAtOnce()
{
    const ComposerCase composer;
    QLineEdit& host = composer.edit("IpEdit");
    const QString label(30000, QLatin1Char('a'));
    host.insert(label);
    QCOMPARE(host.text(), label);
    host.insert(QStringLiteral("_"));
    QCOMPARE(host.text(), label);

    host.clear();
    const QString labels = QStringLiteral("a-b.").repeated(7000);
    host.insert(labels);
    QCOMPARE(host.text(), labels);
    host.insert(QStringLiteral("_"));
    QCOMPARE(host.text(), labels);
}

void TestFields::resourceIsFreeText()
{
    const ComposerCase composer;
    QVERIFY(composer.edit("RsrcEdit").validator() == nullptr);
    const QString text = QStringLiteral("Any: text, \"goes\" *?\\/ \u00fc ");
    composer.type("RsrcEdit", text);
    QCOMPARE(composer.text("RsrcEdit"), text);
}

static const guitest::Registration<TestFields> s_registration;
#include "TestFields.moc"
