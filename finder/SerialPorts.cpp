// SPDX-License-Identifier: MIT
#include "finder/SerialPorts.h"

#include "finder/PortTable.h"
#include "finder/SearchLog.h"
#include "visa/DeviceFiles.h"
#include "visa/SystemFiles.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <set>
#include <string_view>

namespace finder {

namespace {

constexpr std::string_view s_devices = "/dev/";
constexpr std::string_view s_links = "/dev/serial/by-id/";

struct Family
{
    std::string_view prefix;
    unsigned firstNumber;
};

constexpr std::array<Family, 3> s_families{{{"ttyS", 1}, {"ttyUSB", 101}, {"ttyACM", 201}}};
constexpr unsigned s_firstOtherNumber = 301;
constexpr unsigned s_lastNumber = 65535;

/// The number that a port's name gives it; nothing for a name of no family.
std::optional<unsigned> usualNumber(const std::string& name)
{
    for (const Family& family : s_families) {
        if (name.rfind(family.prefix, 0) != 0) {
            continue;
        }
        unsigned index = 0;
        const char* const end = name.data() + name.size();
        const auto result = std::from_chars(name.data() + family.prefix.size(), end, index);
        if (result.ec == std::errc() && result.ptr == end &&
            index <= s_lastNumber - family.firstNumber) {
            return family.firstNumber + index;
        }
    }
    return std::nullopt;
}

/// Hands out port numbers, each once.
class Numbers
{
public:
    /// Takes the wanted number, or the next free one from 301; nothing when none is left.
    std::optional<std::uint16_t> take(std::optional<unsigned> wanted)
    {
        if (wanted && m_taken.insert(*wanted).second) {
            return static_cast<std::uint16_t>(*wanted);
        }
        while (m_next <= s_lastNumber && !m_taken.insert(m_next).second) {
            ++m_next;
        }
        return m_next <= s_lastNumber ? std::optional(static_cast<std::uint16_t>(m_next))
                                      : std::nullopt;
    }

    void reserve(unsigned number) { m_taken.insert(number); }

private:
    std::set<unsigned> m_taken;
    unsigned m_next = s_firstOtherNumber;
};

std::optional<std::string> linkTo(const visa::SystemFiles& files, const std::string& port)
{
    for (const std::string& name : files.names(std::string(s_links))) {
        const std::string link = std::string(s_links) + name;
        if (files.finalName(link) == port) {
            return link;
        }
    }
    return std::nullopt;
}

} // namespace

std::string SerialPort::resourceString() const
{
    return "ASRL" + std::to_string(number) + "::INSTR";
}

std::vector<SerialPort> serialPorts(const visa::SystemFiles& files, const PortTable& table)
{
    std::vector<std::string> names = visa::serialTerminals(files);
    Numbers numbers;
    std::vector<SerialPort> ports;
    for (const auto& [number, pin] : table.pins()) {
        numbers.reserve(number);
        const auto name = std::find(names.begin(), names.end(), pin.port);
        if (name != names.end()) {
            ports.push_back({number, pin.port, pin.path, true});
            names.erase(name);
        }
    }
    // Numbers that names give go before numbers that only fill a gap.
    std::stable_partition(names.begin(), names.end(),
                          [](const auto& name) { return usualNumber(name).has_value(); });
    for (const std::string& name : names) {
        if (const auto number = numbers.take(usualNumber(name))) {
            ports.push_back({*number, name, std::string(s_devices) + name, false});
        }
    }
    std::sort(ports.begin(), ports.end(), [](const SerialPort& left, const SerialPort& right) {
        return left.number < right.number;
    });
    return ports;
}

void logSerialPorts(const std::vector<SerialPort>& ports, const visa::SystemFiles& files,
                    SearchLog& log)
{
    for (const SerialPort& port : ports) {
        const std::string node = std::string(s_devices) + port.name;
        std::string text = port.resourceString() + " is " + node;
        if (port.isPinned) {
            text += ", pinned to " + port.path;
        } else if (const auto link = linkTo(files, port.name)) {
            text += "; to pin it: " + std::to_string(port.number) + " = " + *link;
        }
        log.line(text);
        if (files.exists(node) && !files.isAccessible(node)) {
            log.line("no permission for " + node + " (group " + files.groupOf(node) + ")");
        }
    }
}

} // namespace finder
