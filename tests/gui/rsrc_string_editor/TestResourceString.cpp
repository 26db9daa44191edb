// SPDX-License-Identifier: MIT
#include "gui/ResourceString.h"

#include "tests/gui/shared/WindowTest.h"

using gui::InterfaceType;
using gui::ResourceParts;

Q_DECLARE_METATYPE(gui::InterfaceType)
Q_DECLARE_METATYPE(gui::ResourceParts)

namespace {

ResourceParts tcpip(const char* board, const char* host, const char* device, const char* port)
{
    ResourceParts parts;
    parts.board = QString::fromUtf8(board);
    parts.host = QString::fromUtf8(host);
    parts.device = QString::fromUtf8(device);
    parts.port = QString::fromUtf8(port);
    return parts;
}

ResourceParts usb(const char* board, const char* vendor, const char* product, const char* number)
{
    ResourceParts parts;
    parts.board = QString::fromUtf8(board);
    parts.vendor = QString::fromUtf8(vendor);
    parts.product = QString::fromUtf8(product);
    parts.serialNumber = QString::fromUtf8(number);
    return parts;
}

ResourceParts everythingFilled()
{
    ResourceParts parts = tcpip("7", "host", "3", "99");
    parts.vendor = QStringLiteral("0x1");
    parts.product = QStringLiteral("2");
    parts.serialNumber = QStringLiteral("SN");
    return parts;
}

} // namespace

class TestResourceString : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void composes_data();
    void composes();
};

void TestResourceString::composes_data()
{
    QTest::addColumn<InterfaceType>("type");
    QTest::addColumn<ResourceParts>("parts");
    QTest::addColumn<QString>("resource");
    const auto row = [](const char* name, InterfaceType type, const ResourceParts& parts,
                        const char* resource) {
        QTest::newRow(name) << type << parts << QString::fromUtf8(resource);
    };
    const auto vxi11 = InterfaceType::Vxi11;
    row("VXI-11", vxi11, tcpip("0", "192.168.1.10", "0", ""), "TCPIP0::192.168.1.10::inst0::INSTR");
    row("VXI-11 ignores the port", vxi11, tcpip("1", "a", "12", "4881"),
        "TCPIP1::a::inst12::INSTR");
    row("VXI-11 empty", vxi11, ResourceParts(), "TCPIP::::inst::INSTR");
    row("VXI-11 trims", vxi11, tcpip(" 1\t", " a ", "\t2 ", ""), "TCPIP1::a::inst2::INSTR");
    row("VXI-11 of everything", vxi11, everythingFilled(), "TCPIP7::host::inst3::INSTR");

    const auto hiSlip = InterfaceType::HiSlip;
    row("HiSLIP", hiSlip, tcpip("0", "meter1", "0", "4880"), "TCPIP0::meter1::hislip0::INSTR");
    row("HiSLIP port", hiSlip, tcpip("0", "meter1", "0", "5000"),
        "TCPIP0::meter1::hislip0,5000::INSTR");
    row("HiSLIP next port", hiSlip, tcpip("0", "a", "0", "4881"), "TCPIP0::a::hislip0,4881::INSTR");
    row("HiSLIP without port", hiSlip, tcpip("0", "a", "1", ""), "TCPIP0::a::hislip1::INSTR");
    row("HiSLIP port compared as text", hiSlip, tcpip("0", "a", "0", "04880"),
        "TCPIP0::a::hislip0,04880::INSTR");
    row("HiSLIP port as typed", hiSlip, tcpip(" 0 ", " a ", " 0 ", " 4880 "),
        "TCPIP0::a::hislip0, 4880 ::INSTR");
    row("HiSLIP blank port", hiSlip, tcpip("0", "a", "0", " "), "TCPIP0::a::hislip0, ::INSTR");
    row("HiSLIP empty", hiSlip, ResourceParts(), "TCPIP::::hislip::INSTR");
    row("HiSLIP of everything", hiSlip, everythingFilled(), "TCPIP7::host::hislip3,99::INSTR");

    const auto socket = InterfaceType::Socket;
    row("socket", socket, tcpip("0", "192.168.1.10", "0", "5025"),
        "TCPIP0::192.168.1.10::5025::SOCKET");
    row("socket without port", socket, tcpip("0", "host", "0", ""), "TCPIP0::host::SOCKET");
    row("socket blank port", socket, tcpip("0", "host", "0", " "), "TCPIP0::host::SOCKET");
    row("socket trims", socket, tcpip(" 2 ", " a ", "", " 80 "), "TCPIP2::a::80::SOCKET");
    row("socket with HiSLIP's port", socket, tcpip("0", "a", "0", "4880"),
        "TCPIP0::a::4880::SOCKET");
    row("socket empty", socket, ResourceParts(), "TCPIP::::SOCKET");
    row("socket of everything", socket, everythingFilled(), "TCPIP7::host::99::SOCKET");

    const auto qvib = InterfaceType::Qvib;
    row("QVIB", qvib, tcpip("5", "192.168.1.10", "1", "2"), "QVIB::192.168.1.10");
    row("QVIB trims", qvib, tcpip("", " a ", "", ""), "QVIB::a");
    row("QVIB empty", qvib, ResourceParts(), "QVIB::");

    const auto usbType = InterfaceType::Usb;
    row("USB", usbType, usb("0", "0x1234", "0x5678", "SN100"),
        "USB0::0x1234::0x5678::SN100::INSTR");
    row("USB decimal", usbType, usb("0", "4660", "22136", "1"), "USB0::4660::22136::1::INSTR");
    row("USB case kept", usbType, usb("0", "0xAbCd", "0xeF", "sN"),
        "USB0::0xAbCd::0xeF::sN::INSTR");
    row("USB without serial number", usbType, usb("0", "0x0000", "0x0000", ""),
        "USB0::0x0000::0x0000::::INSTR");
    row("USB trims", usbType, usb(" 1 ", " 0x1 ", " 2 ", " S N "), "USB1::0x1::2::S N::INSTR");
    row("USB empty", usbType, ResourceParts(), "USB::::::::INSTR");
    row("USB of everything", usbType, everythingFilled(), "USB7::0x1::2::SN::INSTR");

    const auto serial = InterfaceType::Serial;
    row("serial", serial, tcpip("1", "", "", ""), "ASRL1::INSTR");
    row("serial trims", serial, tcpip(" 12 ", "", "", ""), "ASRL12::INSTR");
    row("serial empty", serial, ResourceParts(), "ASRL::INSTR");
    row("serial of everything", serial, everythingFilled(), "ASRL7::INSTR");

    row("nothing chosen", static_cast<InterfaceType>(-1), everythingFilled(), "");
    row("past the list", static_cast<InterfaceType>(6), everythingFilled(), "");
}

void TestResourceString::composes()
{
    QFETCH(const InterfaceType, type);
    QFETCH(const ResourceParts, parts);
    QTEST(gui::composeResourceString(type, parts), "resource");
}

static const guitest::Registration<TestResourceString> s_registration;
#include "TestResourceString.moc"
