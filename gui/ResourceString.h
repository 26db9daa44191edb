// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace gui {

/// The interfaces that a resource string can be composed for. The values are the indexes in the
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

/// The port that HiSLIP uses if a resource string has none.
QString hiSlipPort();

/// The port that is offered for a raw socket.
QString socketPort();

/// A resource string as long as most are, for widths that must show one.
QString longUsualResourceString();

/// Composes a resource string. Parts that the interface does not use are ignored, empty parts are
/// inserted as empty text, and nothing is checked. Parts are trimmed, except for the port of
/// HiSLIP. A type outside the enumeration gives an empty string. Any thread.
QString composeResourceString(InterfaceType type, const ResourceParts& parts);

} // namespace gui
