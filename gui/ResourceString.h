// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace gui {

/// The interfaces that a resource string can be composed for. The numbers are the positions in the
/// composer's list.
enum class InterfaceType : int
{
    Vxi11,
    HiSlip,
    Socket,
    Qvib,
    Usb,
    Serial
};

/// What the user typed into the composer's fields, white space included.
struct ResourceParts
{
    QString board;
    QString host;
    QString device;
    QString port;
    QString vendor;
    QString product;
    QString serialNumber;
};

/// The port that HiSLIP uses where a resource string names none.
QString hiSlipPort();

/// The port that is offered for a raw socket.
QString socketPort();

/// The resource string that these parts make: parts the interface has no use for are ignored,
/// empty ones stand in it as empty text, and nothing is checked. Parts are trimmed, but for the
/// port of HiSLIP. A type outside the enumeration gives an empty string. Any thread.
QString composeResourceString(InterfaceType type, const ResourceParts& parts);

} // namespace gui
