// SPDX-License-Identifier: MIT
// Prints what the composer makes of many fields, for a reader that nobody here wrote: one JSON
// object a line, with the fields as they were typed and the resource string.
#include "gui/ResourceString.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <iostream>

using gui::InterfaceType;
using gui::ResourceParts;

namespace {

void print(const char* name, InterfaceType type, const ResourceParts& parts)
{
    const QJsonObject line{
        {QStringLiteral("interface"), QString::fromLatin1(name)},
        {QStringLiteral("board"), parts.board},
        {QStringLiteral("host"), parts.host},
        {QStringLiteral("device"), parts.device},
        {QStringLiteral("port"), parts.port},
        {QStringLiteral("vendor"), parts.vendor},
        {QStringLiteral("product"), parts.product},
        {QStringLiteral("serialNumber"), parts.serialNumber},
        {QStringLiteral("resource"), gui::composeResourceString(type, parts)},
    };
    std::cout << QJsonDocument(line).toJson(QJsonDocument::Compact).constData() << '\n';
}

const QStringList& boards()
{
    static const QStringList values{QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("12"),
                                    QStringLiteral("99"), QString()};
    return values;
}

void printTcpip(const char* name, InterfaceType type)
{
    ResourceParts parts;
    for (const QString& board : boards()) {
        parts.board = board;
        for (const char* host : {"192.168.1.10", "meter1", "Meter-1.lab.example", "10.", ""}) {
            parts.host = QString::fromLatin1(host);
            for (const char* device : {"0", "3", "17", ""}) {
                parts.device = QString::fromLatin1(device);
                for (const char* port : {"4880", "5025", "1", "65535", "04880", ""}) {
                    parts.port = QString::fromLatin1(port);
                    print(name, type, parts);
                }
            }
        }
    }
}

void printUsb()
{
    ResourceParts parts;
    for (const QString& board : boards()) {
        parts.board = board;
        for (const char* vendor : {"0x0000", "0x1234", "0xAbC", "4660", "0"}) {
            parts.vendor = QString::fromLatin1(vendor);
            for (const char* product : {"0x5678", "22136", "0xFFFF"}) {
                parts.product = QString::fromLatin1(product);
                for (const char* number : {"SN100", "100004", "MY-5.0_a b", "0", ""}) {
                    parts.serialNumber = QString::fromLatin1(number);
                    print("USB", InterfaceType::Usb, parts);
                }
            }
        }
    }
}

void printSerial()
{
    ResourceParts parts;
    for (const QString& board : boards()) {
        parts.board = board;
        print("Serial", InterfaceType::Serial, parts);
    }
}

} // namespace

int main()
{
    printTcpip("VXI-11", InterfaceType::Vxi11);
    printTcpip("HiSlip", InterfaceType::HiSlip);
    printTcpip("Socket", InterfaceType::Socket);
    printTcpip("QVIB", InterfaceType::Qvib);
    printUsb();
    printSerial();
    return 0;
}
