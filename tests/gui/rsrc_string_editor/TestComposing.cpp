// SPDX-License-Identifier: MIT
// What the composer makes of its fields, and what it leaves alone.
#include "gui/ResourceDialog.h"
#include "tests/gui/rsrc_string_editor/ComposerTest.h"
#include "tests/support/ModalWindows.h"

#include <QToolButton>

class TestComposing : public guitest::ComposerTest
{
    Q_OBJECT

private slots:
    void typedPartsAreComposed()
    {
        choose(HiSlip);
        type("BoardEdit", "1");
        type("deviceEdit", "2");
        type("PortEdit", "5000");
        // Also one that is not acceptable yet.
        type("IpEdit", "10.");
        QCOMPARE(resource(), QStringLiteral("TCPIP1::10.::hislip2,5000::INSTR"));
        choose(Usb);
        type("vendorEdit", "4660");
        type("productEdit", "22136");
        type("serialEdit", "SN");
        QCOMPARE(resource(), QStringLiteral("USB1::4660::22136::SN::INSTR"));
    }

    void choosingAnInterfaceComposes_data()
    {
        columns<int, QString>("type", "resource");
        QTest::newRow("VXI-11") << int{Vxi11} << QStringLiteral("TCPIP4::h::inst5::INSTR");
        QTest::newRow("HiSlip") << int{HiSlip} << QStringLiteral("TCPIP4::h::hislip5::INSTR");
        QTest::newRow("Socket") << int{Socket} << QStringLiteral("TCPIP4::h::5025::SOCKET");
        QTest::newRow("QVIB") << int{Qvib} << QStringLiteral("QVIB::h");
        QTest::newRow("USB") << int{Usb} << QStringLiteral("USB4::0x0000::0x0000::::INSTR");
        QTest::newRow("Serial") << int{Serial} << QStringLiteral("ASRL4::INSTR");
        QTest::newRow("none") << -1 << QString();
    }

    void choosingAnInterfaceComposes()
    {
        QFETCH(const int, type);
        const int other = type == Qvib ? Vxi11 : Qvib;
        types().setCurrentIndex(other);
        edit("IpEdit").setText(QStringLiteral("h"));
        edit("BoardEdit").setText(QStringLiteral("4"));
        edit("deviceEdit").setText(QStringLiteral("5"));
        setResource("typed by hand");
        types().setCurrentIndex(type);
        QTEST(resource(), "resource");
        // Empty, these two become 0.
        types().setCurrentIndex(other);
        edit("BoardEdit").clear();
        edit("deviceEdit").clear();
        types().setCurrentIndex(type);
        QCOMPARE(text("BoardEdit"), QStringLiteral("0"));
        QCOMPARE(text("deviceEdit"), QStringLiteral("0"));
    }

    void everyFieldComposes_data()
    {
        QTest::addColumn<QByteArray>("field");
        for (const char* field : {"BoardEdit", "IpEdit", "PortEdit", "deviceEdit", "vendorEdit",
                                  "serialEdit", "productEdit", "PrimaryEdit"}) {
            QTest::newRow(field) << QByteArray(field);
        }
    }

    /// Also a field that the interface does not use.
    void everyFieldComposes()
    {
        QFETCH(const QByteArray, field);
        edit(field.constData()).clear();
        setResource("typed by hand");
        edit(field.constData()).insert(QStringLiteral("7"));
        QVERIFY2(resource().startsWith(QLatin1String("TCPIP")), qPrintable(resource()));
    }

    void aliasAndResourceChangeNoField()
    {
        type("IpEdit", "h");
        type("aliasEdit", "scope");
        QCOMPARE(resource(), QStringLiteral("TCPIP0::h::inst0::INSTR"));
        type("RsrcEdit", "USB1::0x1::0x2::SN::INSTR; any text");
        type("aliasEdit", "meter");
        QCOMPARE(resource(), QStringLiteral("USB1::0x1::0x2::SN::INSTR; any text"));
        setResource("USB1::0x1::0x2::SN::INSTR");
        QCOMPARE(text("aliasEdit"), QStringLiteral("meter"));
        QCOMPARE(types().currentIndex(), int{Vxi11});
        QCOMPARE(text("BoardEdit"), QStringLiteral("0"));
        QCOMPARE(text("IpEdit"), QStringLiteral("h"));
        QCOMPARE(text("vendorEdit"), QStringLiteral("0x0000"));
        QCOMPARE(text("serialEdit"), QString());
    }

    void onlyHiSlipAndSocketSetThePort()
    {
        for (const int interface : {HiSlip, Socket, Qvib, Usb, Serial, Vxi11}) {
            type("PortEdit", "1");
            types().setCurrentIndex(interface);
            QCOMPARE(text("PortEdit"), QLatin1String(interface == HiSlip   ? "4880"
                                                     : interface == Socket ? "5025"
                                                                           : "1"));
        }
    }

    void qvibDisablesAndIgnoresTheBoard()
    {
        type("IpEdit", "h");
        choose(Qvib);
        QTest::keyClicks(&edit("BoardEdit"), QStringLiteral("5"));
        QCOMPARE(text("BoardEdit"), QStringLiteral("0"));
        edit("BoardEdit").setText(QStringLiteral("5"));
        QCOMPARE(resource(), QStringLiteral("QVIB::h"));
    }

    void settersTakeAnyTextAndGettersTrim()
    {
        for (const char* text : {" \tmy:alias, of old ", "  ", ""}) {
            const QString given = QString::fromLatin1(text);
            editor().setAlias(given);
            editor().setRsrcString(given);
            QCOMPARE(this->text("aliasEdit"), given);
            QCOMPARE(resource(), given);
            QCOMPARE(editor().getAlias(), given.trimmed());
            QCOMPARE(editor().getRsrcString(), given.trimmed());
        }
    }

    void foundResourceReplacesTheText_data()
    {
        columns<int, int, QString>("row", "button", "resource");
        QTest::newRow("Select") << 1 << int{QDialogButtonBox::Ok} << "QVIB::10.0.0.1";
        QTest::newRow("Select, no entry") << -1 << int{QDialogButtonBox::Ok} << "";
        QTest::newRow("Cancel") << 1 << int{QDialogButtonBox::Cancel} << "typed by hand";
    }

    void foundResourceReplacesTheText()
    {
        QFETCH(const int, row);
        QFETCH(const int, button);
        bench().write("resource ASRL3::INSTR\nresource QVIB::10.0.0.1\n");
        gui::ResourceDialog::updateResourceList();
        setResource("typed by hand");
        const support::ModalAnswer<gui::ResourceDialog> modal([&](gui::ResourceDialog& dialog) {
            QCOMPARE(dialog.parentWidget(), static_cast<QWidget*>(&editor()));
            support::child<QListWidget>(dialog, "rsrcList").setCurrentRow(row);
            guitest::clickButton(dialog, static_cast<QDialogButtonBox::StandardButton>(button));
        });
        QTest::mouseClick(&widget<QToolButton>("FindRsrcButton"), Qt::LeftButton);
        QVERIFY(modal.wasShown());
        QTEST(resource(), "resource");
        QCOMPARE(types().currentIndex(), int{Vxi11});
        // The next change of a field composes again.
        type("IpEdit", "h");
        QCOMPARE(resource(), QStringLiteral("TCPIP0::h::inst0::INSTR"));
    }
};

static const guitest::Registration<TestComposing> s_registerComposing;
#include "TestComposing.moc"
