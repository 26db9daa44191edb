// SPDX-License-Identifier: MIT
#include "gui/ResourceString.h"

namespace gui {

namespace {

ResourceParts trimmed(const ResourceParts& parts)
{
    return {parts.board.trimmed(),       parts.host.trimmed(),   parts.device.trimmed(),
            parts.port.trimmed(),        parts.vendor.trimmed(), parts.product.trimmed(),
            parts.serialNumber.trimmed()};
}

/// The default port is left out, but only in exactly this spelling.
QString hiSlipPortPart(const QString& port)
{
    return port.isEmpty() || port == hiSlipPort() ? QString() : QLatin1Char(',') + port;
}

/// A socket has no default port: 5025 is written as well.
QString socketPortPart(const QString& port)
{
    return port.isEmpty() ? QString() : QLatin1String("::") + port;
}

} // namespace

QString hiSlipPort()
{
    return QStringLiteral("4880");
}

QString socketPort()
{
    return QStringLiteral("5025");
}

QString longUsualResourceString()
{
    return QStringLiteral("TCPIP0::192.168.100.100::inst0::INSTR");
}

QString composeResourceString(InterfaceType type, const ResourceParts& typed)
{
    const ResourceParts parts = trimmed(typed);
    switch (type) {
    case InterfaceType::Vxi11:
        return QLatin1String("TCPIP") + parts.board + QLatin1String("::") + parts.host +
               QLatin1String("::inst") + parts.device + QLatin1String("::INSTR");
    case InterfaceType::HiSlip:
        return QLatin1String("TCPIP") + parts.board + QLatin1String("::") + parts.host +
               QLatin1String("::hislip") + parts.device + hiSlipPortPart(typed.port) +
               QLatin1String("::INSTR");
    case InterfaceType::Socket:
        return QLatin1String("TCPIP") + parts.board + QLatin1String("::") + parts.host +
               socketPortPart(parts.port) + QLatin1String("::SOCKET");
    case InterfaceType::Qvib:
        return QLatin1String("QVIB::") + parts.host;
    case InterfaceType::Usb:
        return QLatin1String("USB") + parts.board + QLatin1String("::") + parts.vendor +
               QLatin1String("::") + parts.product + QLatin1String("::") + parts.serialNumber +
               QLatin1String("::INSTR");
    case InterfaceType::Serial:
        return QLatin1String("ASRL") + parts.board + QLatin1String("::INSTR");
    }
    return {};
}

} // namespace gui
