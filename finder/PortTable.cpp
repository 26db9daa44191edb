// SPDX-License-Identifier: MIT
#include "finder/PortTable.h"

#include "finder/SearchLog.h"
#include "visa/SystemFiles.h"

#include <algorithm>
#include <charconv>

namespace finder {

namespace {

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r";
    const std::size_t begin = std::min(text.find_first_not_of(blanks), text.size());
    return text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}

} // namespace

PortTable::PortTable(std::string_view text, const visa::SystemFiles& files, SearchLog& log)
{
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view whole = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), whole.size() + 1));
        const std::string_view line = trimmed(whole);
        const std::string fault =
            line.empty() || line.front() == '#' ? std::string() : add(line, files);
        if (!fault.empty()) {
            log.line("port table line " + std::to_string(number) + " is ignored: " + fault);
        }
    }
}

PortTable PortTable::read(const std::string& path, const visa::SystemFiles& files, SearchLog& log)
{
    const auto text = files.readRegularFile(path);
    return text ? PortTable(*text, files, log) : PortTable();
}

std::string PortTable::add(std::string_view line, const visa::SystemFiles& files)
{
    const std::size_t separator = line.find('=');
    if (separator == std::string_view::npos) {
        return "it has no \"=\"";
    }
    const std::string_view digits = trimmed(line.substr(0, separator));
    const std::string path(trimmed(line.substr(separator + 1)));
    std::uint16_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end || number == 0) {
        return "\"" + std::string(digits) + "\" is no port number from 1 to 65535";
    }
    constexpr std::string_view devices = "/dev/";
    if (path.rfind(devices, 0) != 0 || path.size() == devices.size() || path.back() == '/' ||
        path.find("/../") != std::string::npos) {
        return "\"" + path + "\" is no path below /dev";
    }
    if (m_pins.count(number) != 0) {
        return "port number " + std::to_string(number) + " is pinned twice";
    }
    Pin pin{path, files.finalName(path)};
    const bool hasNumber = std::any_of(m_pins.begin(), m_pins.end(), [&pin](const auto& entry) {
        return entry.second.port == pin.port;
    });
    if (hasNumber) {
        return path + " has another number already";
    }
    m_pins.emplace(number, std::move(pin));
    return {};
}

} // namespace finder
