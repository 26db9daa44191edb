// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace visa {
class SystemFiles;
} // namespace visa

namespace finder {

class PortTable;
class SearchLog;

/// A serial port of this machine.
struct SerialPort
{
    std::uint16_t number = 0; ///< In its resource string, from 1.
    std::string name;         ///< Below /dev, such as "ttyUSB0".
    std::string path;         ///< The pinned path, else the node below /dev.
    bool isPinned = false;

    /// "ASRL101::INSTR".
    std::string resourceString() const;
};

/// The serial ports that exist, by number. A port of the table has its pinned number; else ttyS0 is
/// 1, ttyUSB0 is 101, ttyACM0 is 201 and so on, and every other port, as well as one whose number
/// is taken, has the next free number from 301. A number pinned to an adapter that is unplugged
/// stays free. Ports for which there is no number left are left out.
std::vector<SerialPort> serialPorts(const visa::SystemFiles& files, const PortTable& table);

/// Writes each port with what it is, the line that would pin it, and whether this user may open it.
void logSerialPorts(const std::vector<SerialPort>& ports, const visa::SystemFiles& files,
                    SearchLog& log);

} // namespace finder
