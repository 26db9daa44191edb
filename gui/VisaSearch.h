// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

namespace gui {

/// A serial port that the VISA library reports.
struct SerialPort
{
    QString resource;
    /// 0 if the library cannot parse the resource string.
    std::uint16_t interfaceNumber = 0;
};

/// Searches the VISA library for every resource. The result is sorted by code units, keeps
/// duplicates, and leaves out each resource whose description the library fails to deliver; it is
/// empty if the search itself fails or warns. Bytes that are not UTF-8 become replacement
/// characters. Blocks for as long as the library takes; any thread.
QStringList findAllResources();

/// Searches the VISA library for serial ports, in the order in which it reports them. A search
/// that warns counts; the list ends at the first description that is not delivered with success.
/// Blocks for as long as the library takes; any thread.
std::vector<SerialPort> findSerialPorts();

} // namespace gui
