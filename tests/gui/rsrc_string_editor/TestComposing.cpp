// SPDX-License-Identifier: MIT
// What the composer makes of its fields, and what it leaves alone.
#include "gui/ResourceDialog.h"
#include "tests/gui/rsrc_string_editor/ComposerTest.h"
#include "tests/support/ModalWindows.h"

#include <QToolButton>

#include <functional>

class TestComposing : public guitest::ComposerTest
{
    Q_OBJECT

private slots:
    void typedPartsAreComposed_data()
    {
        columns<int, QString, QString>("type", "typed", "resource");
        const auto row = [](int type, const char* typed, const char* resource) {
            QTest::newRow(resource)
                << type << QString::fromLatin1(typed) << QString::fromLatin1(resource);
        };
        row(Vxi11, "BoardEdit=11 IpEdit=a.b deviceEdit=4", "TCPIP11::a.b::inst4::INSTR");
        row(HiSlip, "BoardEdit=1 IpEdit=meter1 deviceEdit=2 PortEdit=5000",
            "TCPIP1::meter1::hislip2,5000::INSTR");
        row(Socket, "BoardEdit=2 IpEdit=h PortEdit=80", "TCPIP2::h::80::SOCKET");
        row(Qvib, "IpEdit=192.168.1.10", "QVIB::192.168.1.10");
        row(Usb, "BoardEdit=3 vendorEdit=4660 productEdit=22136 serialEdit=1",
            "USB3::4660::22136::1::INSTR");
        row(Serial, "BoardEdit=12", "ASRL12::INSTR");
        // Parts that are not acceptable yet.
        row(Vxi11, "IpEdit=10.", "TCPIP0::10.::inst0::INSTR");
        row(Vxi11, "BoardEdit= deviceEdit=", "TCPIP::::inst::INSTR");
    }

    void typedPartsAreComposed()
    {
        QFETCH(const int, type);
        QFETCH(const QString, typed);
        choose(type);
        typeAll(typed);
        QTEST(resource(), "resource");
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
        typeAll(QStringLiteral("BoardEdit=4 IpEdit=h deviceEdit=5"));
        types().setCurrentIndex(Qvib);
        setResource("typed by hand");
        types().setCurrentIndex(type == Qvib ? int{Vxi11} : type);
        types().setCurrentIndex(type);
        QTEST(resource(), "resource");
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

    void hiSlipAndSocketSetTheirPort()
    {
        for (const int type : {HiSlip, Socket, HiSlip}) {
            types().setCurrentIndex(type);
            QCOMPARE(text("PortEdit"),
                     type == HiSlip ? QStringLiteral("4880") : QStringLiteral("5025"));
            this->type("PortEdit", "1");
        }
    }

    void portIsKeptWhereItIsHidden()
    {
        choose(Socket);
        type("PortEdit", "2");
        for (const int type : {Qvib, Usb, Serial, Vxi11}) {
            types().setCurrentIndex(type);
            QCOMPARE(text("PortEdit"), QStringLiteral("2"));
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

    void emptyBoardAndDeviceBecomeZero_data() { addInterfaces(); }
    void emptyBoardAndDeviceBecomeZero()
    {
        QFETCH(const int, type);
        const int other = type == Qvib ? Vxi11 : Qvib;
        for (const char* text : {"", "9"}) {
            types().setCurrentIndex(other);
            edit("BoardEdit").setText(QString::fromLatin1(text));
            edit("deviceEdit").setText(QString::fromLatin1(text));
            types().setCurrentIndex(type);
            const QString expected = QString::fromLatin1(*text == '\0' ? "0" : text);
            QCOMPARE(this->text("BoardEdit"), expected);
            QCOMPARE(this->text("deviceEdit"), expected);
        }
    }

    void settersTakeAnyTextAndGettersTrim_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("blanks around") << " \tmy alias ";
        QTest::newRow("characters that cannot be typed") << " my:alias, of old ";
        QTest::newRow("blanks") << "  ";
        QTest::newRow("empty") << "";
    }

    void settersTakeAnyTextAndGettersTrim()
    {
        QFETCH(const QString, text);
        editor().setAlias(text);
        editor().setRsrcString(text);
        QCOMPARE(this->text("aliasEdit"), text);
        QCOMPARE(resource(), text);
        QCOMPARE(editor().getAlias(), text.trimmed());
        QCOMPARE(editor().getRsrcString(), text.trimmed());
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

    void buttonsAndKeysEndTheDialog_data()
    {
        columns<int, int>("button", "result");
        QTest::newRow("OK") << int{QDialogButtonBox::Ok} << int{QDialog::Accepted};
        QTest::newRow("Cancel") << int{QDialogButtonBox::Cancel} << int{QDialog::Rejected};
        QTest::newRow("Escape") << int{QDialogButtonBox::NoButton} << int{QDialog::Rejected};
    }

    void buttonsAndKeysEndTheDialog()
    {
        QFETCH(const int, button);
        gui::RsrcStringEditor other(nullptr);
        const support::ModalAnswer<gui::RsrcStringEditor> modal([button](
                                                                    gui::RsrcStringEditor& shown) {
            if (button == QDialogButtonBox::NoButton) {
                QTest::keyClick(&shown, Qt::Key_Escape);
            } else {
                guitest::clickButton(shown, static_cast<QDialogButtonBox::StandardButton>(button));
            }
            QVERIFY(!shown.isVisible());
        });
        QTEST(other.exec(), "result");
        QVERIFY(modal.wasShown());
    }
};

static const guitest::Registration<TestComposing> s_registerComposing;
#include "TestComposing.moc"
