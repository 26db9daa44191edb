// SPDX-License-Identifier: MIT
// What the composer shows and composes.
#include "tests/gui/rsrc_string_editor/ComposerCase.h"
#include "tests/gui/shared/WindowTest.h"

#include <optional>

using guitest::ComposerCase;

namespace {

enum Interface
{
    Vxi11,
    HiSlip,
    Socket,
    Qvib,
    Usb,
    Serial
};

const QString s_byHand = QStringLiteral("typed by hand");

} // namespace

class TestComposing : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void startsWithAnEmptyVxi11Resource();
    void offersSixInterfaces();
    void showsTheFieldsOfAnInterface_data();
    void showsTheFieldsOfAnInterface();
    void composesTypedParts_data();
    void composesTypedParts();
    void composesForEachInterface_data();
    void composesForEachInterface();
    void everyFieldComposesAnew_data();
    void everyFieldComposesAnew();
    void choosingAnInterfaceComposesAnew();
    void aliasAndResourceChangeNothingElse();

    void hiSlipLeavesItsOwnPortOut();
    void socketWritesAnyPort();
    void choosingAPortedInterfaceOverwritesThePort();
    void portStaysWhereItIsHidden();
    void qvibIgnoresTheBoard();
    void emptyBoardAndDeviceAreRefilled_data();
    void emptyBoardAndDeviceAreRefilled();
    void partsAreTrimmedButForHiSlipsPort();
};

void TestComposing::startsWithAnEmptyVxi11Resource()
{
    const ComposerCase composer;
    QCOMPARE(composer.types().currentIndex(), static_cast<int>(Vxi11));
    QCOMPARE(composer.resource(), QStringLiteral("TCPIP0::::inst0::INSTR"));
    QCOMPARE(composer.text("BoardEdit"), QStringLiteral("0"));
    QCOMPARE(composer.text("deviceEdit"), QStringLiteral("0"));
    QCOMPARE(composer.text("vendorEdit"), QStringLiteral("0x0000"));
    QCOMPARE(composer.text("productEdit"), QStringLiteral("0x0000"));
    for (const char* empty : {"aliasEdit", "IpEdit", "PortEdit", "serialEdit", "PrimaryEdit"}) {
        QVERIFY2(composer.text(empty).isEmpty(), empty);
    }
}

void TestComposing::offersSixInterfaces()
{
    const ComposerCase composer;
    QStringList offered;
    for (int i = 0; i < composer.types().count(); ++i) {
        offered.append(composer.types().itemText(i));
        QVERIFY(composer.types().itemIcon(i).isNull());
        QVERIFY(!composer.types().itemData(i).isValid());
    }
    QCOMPARE(offered.join(QLatin1Char(' ')),
             QStringLiteral("VXI-11 HiSlip Socket QVIB USB Serial"));
    QVERIFY(!composer.types().isEditable());
}

void TestComposing::showsTheFieldsOfAnInterface_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("hasBoard");
    const QString tcpip = QStringLiteral("TcpipGroupBox label_5 IpEdit");
    QTest::newRow("VXI-11") << int{Vxi11} << tcpip + QStringLiteral(" deviceLabel deviceEdit")
                            << true;
    QTest::newRow("HiSlip") << int{HiSlip}
                            << tcpip + QStringLiteral(" deviceLabel deviceEdit portLabel PortEdit")
                            << true;
    QTest::newRow("Socket") << int{Socket} << tcpip + QStringLiteral(" portLabel PortEdit") << true;
    QTest::newRow("QVIB") << int{Qvib} << tcpip << false;
    QTest::newRow("USB") << int{Usb}
                         << QStringLiteral("UsbGroupBox label_6 vendorEdit label_8 productEdit "
                                           "label_7 serialEdit")
                         << true;
    QTest::newRow("Serial") << int{Serial} << QString() << true;
}

void TestComposing::showsTheFieldsOfAnInterface()
{
    QFETCH(const int, type);
    QFETCH(const bool, hasBoard);
    const ComposerCase composer;
    // From every other interface, and from itself.
    for (int former = 0; former < composer.types().count(); ++former) {
        composer.choose(former);
        composer.choose(type);
        QStringList shown;
        for (const char* name :
             {"TcpipGroupBox", "label_5", "IpEdit", "deviceLabel", "deviceEdit", "portLabel",
              "PortEdit", "UsbGroupBox", "label_6", "vendorEdit", "label_8", "productEdit",
              "label_7", "serialEdit", "GpibGroupBox", "label_9", "PrimaryEdit"}) {
            if (composer.isShown(name)) {
                shown.append(QString::fromLatin1(name));
            }
        }
        QTEST(shown.join(QLatin1Char(' ')), "shown");
        QVERIFY(composer.isShown("BoardEdit") && composer.isShown("label_4"));
        QCOMPARE(composer.edit("BoardEdit").isEnabled(), hasBoard);
    }
}

void TestComposing::composesTypedParts_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("resource");
    const auto row = [](const char* name, int type, const char* typed, const char* resource) {
        QTest::newRow(name) << type << QString::fromLatin1(typed) << QString::fromLatin1(resource);
    };
    row("VXI-11", Vxi11, "IpEdit=192.168.1.10", "TCPIP0::192.168.1.10::inst0::INSTR");
    row("VXI-11 all", Vxi11, "BoardEdit=11 IpEdit=a.b deviceEdit=4", "TCPIP11::a.b::inst4::INSTR");
    row("HiSlip", HiSlip, "IpEdit=meter1", "TCPIP0::meter1::hislip0::INSTR");
    row("HiSlip all", HiSlip, "BoardEdit=1 IpEdit=meter1 deviceEdit=2 PortEdit=5000",
        "TCPIP1::meter1::hislip2,5000::INSTR");
    row("Socket", Socket, "IpEdit=192.168.1.10", "TCPIP0::192.168.1.10::5025::SOCKET");
    row("Socket all", Socket, "BoardEdit=2 IpEdit=h PortEdit=80", "TCPIP2::h::80::SOCKET");
    row("QVIB", Qvib, "IpEdit=192.168.1.10", "QVIB::192.168.1.10");
    row("USB", Usb, "vendorEdit=0x1234 productEdit=0x5678 serialEdit=SN100",
        "USB0::0x1234::0x5678::SN100::INSTR");
    row("USB decimal", Usb, "BoardEdit=3 vendorEdit=4660 productEdit=22136 serialEdit=1",
        "USB3::4660::22136::1::INSTR");
    row("USB untouched", Usb, "", "USB0::0x0000::0x0000::::INSTR");
    row("Serial", Serial, "BoardEdit=1", "ASRL1::INSTR");
    row("Serial 12", Serial, "BoardEdit=12", "ASRL12::INSTR");
    row("Serial untouched", Serial, "", "ASRL0::INSTR");
    // What is not acceptable yet is used as typed.
    row("host begun", Vxi11, "IpEdit=10.", "TCPIP0::10.::inst0::INSTR");
    row("nothing left", Vxi11, "BoardEdit= deviceEdit=", "TCPIP::::inst::INSTR");
}

void TestComposing::composesTypedParts()
{
    QFETCH(const int, type);
    QFETCH(const QString, typed);
    const ComposerCase composer;
    composer.choose(type);
    for (const QString& part : typed.split(QLatin1Char(' '))) {
        if (part.isEmpty()) {
            continue;
        }
        composer.type(part.section(QLatin1Char('='), 0, 0).toLatin1().constData(),
                      part.section(QLatin1Char('='), 1));
    }
    QTEST(composer.resource(), "resource");
}

void TestComposing::composesForEachInterface_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("resource");
    QTest::newRow("VXI-11") << int{Vxi11} << QStringLiteral("TCPIP4::h::inst5::INSTR");
    QTest::newRow("HiSlip") << int{HiSlip} << QStringLiteral("TCPIP4::h::hislip5::INSTR");
    QTest::newRow("Socket") << int{Socket} << QStringLiteral("TCPIP4::h::5025::SOCKET");
    QTest::newRow("QVIB") << int{Qvib} << QStringLiteral("QVIB::h");
    QTest::newRow("USB") << int{Usb} << QStringLiteral("USB4::0x0000::0x0000::::INSTR");
    QTest::newRow("Serial") << int{Serial} << QStringLiteral("ASRL4::INSTR");
}

/// Choosing alone composes, from parts that were typed for another interface.
void TestComposing::composesForEachInterface()
{
    QFETCH(const int, type);
    const ComposerCase composer;
    composer.type("BoardEdit", "4");
    composer.type("IpEdit", "h");
    composer.type("deviceEdit", "5");
    composer.choose(type);
    QTEST(composer.resource(), "resource");
}

void TestComposing::everyFieldComposesAnew_data()
{
    QTest::addColumn<QString>("field");
    for (const char* field : {"BoardEdit", "IpEdit", "PortEdit", "deviceEdit", "vendorEdit",
                              "serialEdit", "productEdit", "PrimaryEdit"}) {
        QTest::newRow(field) << QString::fromLatin1(field);
    }
}

/// Each field by itself, also one that the interface has no use for, at the first keystroke.
void TestComposing::everyFieldComposesAnew()
{
    QFETCH(const QString, field);
    ComposerCase composer;
    composer.editor().setRsrcString(s_byHand);
    composer.edit(field.toLatin1().constData()).clear();
    composer.editor().setRsrcString(s_byHand);
    composer.edit(field.toLatin1().constData()).insert(QStringLiteral("7"));
    QVERIFY2(composer.resource() != s_byHand, qPrintable(field));
    QVERIFY2(composer.resource().startsWith(QLatin1String("TCPIP")), qPrintable(field));
}

void TestComposing::choosingAnInterfaceComposesAnew()
{
    ComposerCase composer;
    composer.editor().setRsrcString(s_byHand);
    composer.choose(Usb);
    QCOMPARE(composer.resource(), QStringLiteral("USB0::0x0000::0x0000::::INSTR"));
    composer.editor().setRsrcString(s_byHand);
    composer.types().setCurrentIndex(-1);
    QCOMPARE(composer.resource(), QString());
}

void TestComposing::aliasAndResourceChangeNothingElse()
{
    const ComposerCase composer;
    composer.type("aliasEdit", "scope");
    QCOMPARE(composer.resource(), QStringLiteral("TCPIP0::::inst0::INSTR"));
    composer.type("RsrcEdit", "USB1::0x1::0x2::SN::INSTR; any text");
    QCOMPARE(composer.text("aliasEdit"), QStringLiteral("scope"));
    composer.type("aliasEdit", "meter");
    QCOMPARE(composer.resource(), QStringLiteral("USB1::0x1::0x2::SN::INSTR; any text"));
    QCOMPARE(composer.types().currentIndex(), static_cast<int>(Vxi11));
    QCOMPARE(composer.text("BoardEdit"), QStringLiteral("0"));
    QCOMPARE(composer.text("IpEdit"), QString());
    QCOMPARE(composer.text("vendorEdit"), QStringLiteral("0x0000"));
    // The first touch of a field replaces what was typed.
    composer.type("IpEdit", "h");
    QCOMPARE(composer.resource(), QStringLiteral("TCPIP0::h::inst0::INSTR"));
}

void TestComposing::hiSlipLeavesItsOwnPortOut()
{
    const ComposerCase composer;
    composer.type("IpEdit", "h");
    composer.choose(HiSlip);
    QCOMPARE(composer.text("PortEdit"), QStringLiteral("4880"));
    QCOMPARE(composer.resource(), QStringLiteral("TCPIP0::h::hislip0::INSTR"));
    composer.type("PortEdit", "4881");
    QCOMPARE(composer.resource(), QStringLiteral("TCPIP0::h::hislip0,4881::INSTR"));
    composer.erase("PortEdit");
    QCOMPARE(composer.resource(), QStringLiteral("TCPIP0::h::hislip0::INSTR"));
    composer.type("PortEdit", "04880");
    QCOMPARE(composer.resource(), QStringLiteral("TCPIP0::h::hislip0,04880::INSTR"));
}

void TestComposing::socketWritesAnyPort()
{
    const ComposerCase composer;
    composer.type("IpEdit", "host");
    composer.choose(Socket);
    QCOMPARE(composer.text("PortEdit"), QStringLiteral("5025"));
    QCOMPARE(composer.resource(), QStringLiteral("TCPIP0::host::5025::SOCKET"));
    composer.type("PortEdit", "4880");
    QCOMPARE(composer.resource(), QStringLiteral("TCPIP0::host::4880::SOCKET"));
    composer.erase("PortEdit");
    QCOMPARE(composer.resource(), QStringLiteral("TCPIP0::host::SOCKET"));
}

void TestComposing::choosingAPortedInterfaceOverwritesThePort()
{
    const ComposerCase composer;
    composer.choose(HiSlip);
    composer.type("PortEdit", "1");
    composer.choose(Socket);
    QCOMPARE(composer.text("PortEdit"), QStringLiteral("5025"));
    composer.type("PortEdit", "2");
    composer.types().setCurrentIndex(HiSlip);
    QCOMPARE(composer.text("PortEdit"), QStringLiteral("4880"));
}

void TestComposing::portStaysWhereItIsHidden()
{
    const ComposerCase composer;
    composer.choose(Socket);
    composer.type("PortEdit", "2");
    for (const int type : {Qvib, Usb, Serial}) {
        composer.types().setCurrentIndex(type);
        QCOMPARE(composer.text("PortEdit"), QStringLiteral("2"));
    }
    composer.types().setCurrentIndex(Vxi11);
    QCOMPARE(composer.text("PortEdit"), QStringLiteral("2"));
}

void TestComposing::qvibIgnoresTheBoard()
{
    const ComposerCase composer;
    composer.type("IpEdit", "h");
    composer.choose(Qvib);
    QVERIFY(!composer.edit("BoardEdit").isEnabled());
    QTest::keyClicks(&composer.edit("BoardEdit"), QStringLiteral("5"));
    QCOMPARE(composer.text("BoardEdit"), QStringLiteral("0"));
    composer.edit("BoardEdit").setText(QStringLiteral("5"));
    QCOMPARE(composer.resource(), QStringLiteral("QVIB::h"));
}

void TestComposing::emptyBoardAndDeviceAreRefilled_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("VXI-11") << int{Vxi11};
    QTest::newRow("HiSlip") << int{HiSlip};
    QTest::newRow("Socket") << int{Socket};
    QTest::newRow("USB") << int{Usb};
    QTest::newRow("Serial") << int{Serial};
}

void TestComposing::emptyBoardAndDeviceAreRefilled()
{
    QFETCH(const int, type);
    const ComposerCase composer;
    composer.choose(Qvib);
    composer.edit("BoardEdit").clear();
    composer.edit("deviceEdit").clear();
    composer.types().setCurrentIndex(type);
    QVERIFY(composer.edit("BoardEdit").isEnabled());
    QCOMPARE(composer.text("BoardEdit"), QStringLiteral("0"));
    QCOMPARE(composer.text("deviceEdit"), QStringLiteral("0"));

    composer.types().setCurrentIndex(Qvib);
    composer.edit("BoardEdit").setText(QStringLiteral("9"));
    composer.edit("deviceEdit").setText(QStringLiteral("8"));
    composer.types().setCurrentIndex(type);
    QCOMPARE(composer.text("BoardEdit"), QStringLiteral("9"));
    QCOMPARE(composer.text("deviceEdit"), QStringLiteral("8"));
}

/// Blanks cannot be typed into these fields, but set.
void TestComposing::partsAreTrimmedButForHiSlipsPort()
{
    const ComposerCase composer;
    composer.edit("BoardEdit").setText(QStringLiteral(" 1 "));
    composer.edit("IpEdit").setText(QStringLiteral("\th "));
    composer.edit("deviceEdit").setText(QStringLiteral(" 2"));
    QCOMPARE(composer.resource(), QStringLiteral("TCPIP1::h::inst2::INSTR"));
    composer.choose(HiSlip);
    composer.edit("PortEdit").setText(QStringLiteral(" 4880"));
    QCOMPARE(composer.resource(), QStringLiteral("TCPIP1::h::hislip2, 4880::INSTR"));
    composer.choose(Socket);
    composer.edit("PortEdit").setText(QStringLiteral(" 4880 "));
    QCOMPARE(composer.resource(), QStringLiteral("TCPIP1::h::4880::SOCKET"));
}

static const guitest::Registration<TestComposing> s_registration;
#include "TestComposing.moc"
