// SPDX-License-Identifier: MIT
// Prints composed resource strings for read_resource_strings.py, one a line: the interface, the
// seven parts and the string, separated by tabs.
#include "gui/ResourceString.h"

#include <QStringList>

#include <iostream>

using gui::InterfaceType;
using gui::ResourceParts;

namespace {

void print(const char* name, InterfaceType type, const ResourceParts& parts)
{
    const QStringList columns{QString::fromLatin1(name),
                              parts.board,
                              parts.host,
                              parts.device,
                              parts.port,
                              parts.vendor,
                              parts.product,
                              parts.serialNumber,
                              gui::composeResourceString(type, parts)};
    std::cout << columns.join(QLatin1Char('\t')).toStdString() << '\n';
}

QStringList values(const char* separated)
{
    return QString::fromLatin1(separated).split(QLatin1Char('|'));
}

} // namespace

int main()
{
    for (const QString& board : values("0|1|12|99|")) {
        for (const QString& host : values("192.168.1.10|meter1|Meter-1.lab.example|10.|")) {
            for (const QString& device : values("0|3|17|")) {
                for (const QString& port : values("4880|5025|1|65535|04880|")) {
                    const ResourceParts parts{board, host, device, port, {}, {}, {}};
                    print("VXI-11", InterfaceType::Vxi11, parts);
                    print("HiSlip", InterfaceType::HiSlip, parts);
                    print("Socket", InterfaceType::Socket, parts);
                    print("QVIB", InterfaceType::Qvib, parts);
                }
            }
        }
        for (const QString& vendor : values("0x0000|0x1234|0xAbC|4660|0")) {
            for (const QString& product : values("0x5678|22136|0xFFFF")) {
                for (const QString& number : values("SN100|100004|MY-5.0_a b|0|")) {
                    print("USB", InterfaceType::Usb, {board, {}, {}, {}, vendor, product, number});
                }
            }
        }
        print("Serial", InterfaceType::Serial, {board, {}, {}, {}, {}, {}, {}});
    }
    return 0;
}
