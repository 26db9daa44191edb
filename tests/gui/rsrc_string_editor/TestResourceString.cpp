// SPDX-License-Identifier: MIT
// The resource strings that composeResourceString() makes of its parts.
#include "gui/ResourceString.h"
#include "tests/gui/common/WindowTest.h"

using gui::InterfaceType;
using gui::ResourceParts;

Q_DECLARE_METATYPE(gui::InterfaceType)

namespace {

/// "board|host|device|port|vendor|product|serial number"
ResourceParts partsOf(const QString& text)
{
    const auto part = [&text](int index) { return text.section(QLatin1Char('|'), index, index); };
    return {part(0), part(1), part(2), part(3), part(4), part(5), part(6)};
}

} // namespace

class TestResourceString : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void partsAreComposed_data()
    {
        columns<InterfaceType, QString, QString>("type", "parts", "resource");
        const auto row = [](const char* name, InterfaceType type, const char* parts,
                            const char* resource) {
            QTest::newRow(name) << type << QString::fromUtf8(parts) << QString::fromUtf8(resource);
        };
        const char* all = "7|host|3|99|0x1|2|SN";

        const auto vxi11 = InterfaceType::Vxi11;
        row("VXI-11 all parts", vxi11, all, "TCPIP7::host::inst3::INSTR");
        row("VXI-11 empty", vxi11, "", "TCPIP::::inst::INSTR");
        row("VXI-11 trims", vxi11, " 1\t| a |\t2 ", "TCPIP1::a::inst2::INSTR");

        const auto hiSlip = InterfaceType::HiSlip;
        row("HiSLIP all parts", hiSlip, all, "TCPIP7::host::hislip3,99::INSTR");
        row("HiSLIP empty", hiSlip, "", "TCPIP::::hislip::INSTR");
        row("HiSLIP default port", hiSlip, "0|a|0|4880", "TCPIP0::a::hislip0::INSTR");
        row("HiSLIP port compared as text", hiSlip, "0|a|0|04880",
            "TCPIP0::a::hislip0,04880::INSTR");
        row("HiSLIP trims all but the port", hiSlip, " 0 | a | 0 | 4880 ",
            "TCPIP0::a::hislip0, 4880 ::INSTR");

        const auto socket = InterfaceType::Socket;
        row("socket all parts", socket, all, "TCPIP7::host::99::SOCKET");
        row("socket empty", socket, "", "TCPIP::::SOCKET");
        row("socket default port", socket, "0|a|0|5025", "TCPIP0::a::5025::SOCKET");
        row("socket trims", socket, " 2 | a || 80 ", "TCPIP2::a::80::SOCKET");
        row("socket blank port", socket, "0|a|0| ", "TCPIP0::a::SOCKET");

        const auto qvib = InterfaceType::Qvib;
        row("QVIB all parts", qvib, all, "QVIB::host");
        row("QVIB empty", qvib, "", "QVIB::");
        row("QVIB trims", qvib, "| a ", "QVIB::a");

        const auto usb = InterfaceType::Usb;
        row("USB all parts", usb, all, "USB7::0x1::2::SN::INSTR");
        row("USB empty", usb, "", "USB::::::::INSTR");
        row("USB keeps case", usb, "0||||0xAbCd|0xeF|sN", "USB0::0xAbCd::0xeF::sN::INSTR");
        row("USB trims", usb, " 1 |||| 0x1 | 2 | S N ", "USB1::0x1::2::S N::INSTR");

        const auto serial = InterfaceType::Serial;
        row("serial all parts", serial, all, "ASRL7::INSTR");
        row("serial empty", serial, "", "ASRL::INSTR");
        row("serial trims", serial, " 12 ", "ASRL12::INSTR");

        row("no interface", static_cast<InterfaceType>(-1), all, "");
        row("GPIB, which the list does not offer", static_cast<InterfaceType>(6), all, "");
    }

    void partsAreComposed()
    {
        QFETCH(const InterfaceType, type);
        QFETCH(const QString, parts);
        QTEST(gui::composeResourceString(type, partsOf(parts)), "resource");
    }
};

static const guitest::Registration<TestResourceString> s_registerResourceString;
#include "TestResourceString.moc"
