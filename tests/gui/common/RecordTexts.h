// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationRecords.h"

#include <QString>
#include <QStringList>

namespace guitest {

/// The records in ascending order:
/// "1=9600,8,0,0,0 3=300,7,2,1,6" for ports (baud rate, data bits, stop bits, parity, flow
/// control), "0=5,65535,1" for boards (primary, secondary address, system controller).
inline QString text(const QvVisa::SerialPropertiesMap& ports)
{
    QStringList texts;
    for (const auto& [number, port] : ports) {
        texts.append(QStringLiteral("%1=%2,%3,%4,%5,%6")
                         .arg(number)
                         .arg(port.baudrate)
                         .arg(port.dataBits)
                         .arg(port.stopBits)
                         .arg(port.parity)
                         .arg(port.flowControl));
    }
    return texts.join(QLatin1Char(' '));
}

inline QString text(const QvVisa::GpibPropertiesMap& boards)
{
    QStringList texts;
    for (const auto& [number, board] : boards) {
        texts.append(QStringLiteral("%1=%2,%3,%4")
                         .arg(number)
                         .arg(board.primaryAddress)
                         .arg(board.secondaryAddress)
                         .arg(board.systemController));
    }
    return texts.join(QLatin1Char(' '));
}

} // namespace guitest
