// SPDX-License-Identifier: MIT
#include "visa/ResourceName.h"

#include "visa/Text.h"

#include <algorithm>

namespace visa {

std::string_view ResourceName::field(ResourceField wanted) const
{
    for (std::size_t i = 0; i < m_partCount; ++i) {
        if (m_parts[i].field == wanted) {
            return std::string_view(fullName).substr(m_parts[i].begin, m_parts[i].length);
        }
    }
    return {};
}

std::string ResourceName::key() const
{
    const std::size_t fields = std::min(fullName.find("::"), fullName.size());
    std::string key = isDevicePath ? fullName.substr(0, fields)
                                   : toUpperCase(std::string_view(fullName).substr(0, fields));
    for (std::size_t i = 0; i < m_partCount; ++i) {
        std::string text =
            toUpperCase(std::string_view(fullName).substr(m_parts[i].begin, m_parts[i].length));
        const ResourceField field = m_parts[i].field;
        if (field == ResourceField::LanDevice && resourceClass == "INSTR") {
            constexpr std::string_view defaultPort = ",4880";
            if (text.rfind("HISLIP", 0) == 0 && text.size() > defaultPort.size() &&
                text.compare(text.size() - defaultPort.size(), defaultPort.size(), defaultPort) ==
                    0) {
                text.resize(text.size() - defaultPort.size());
            }
            if (text == "INST0") {
                continue;
            }
        }
        if ((field == ResourceField::SecondaryAddress || field == ResourceField::UsbInterface) &&
            text == "0") {
            continue;
        }
        key += "::" + text;
    }
    return key + "::" + resourceClass;
}

std::string resourceKey(std::string_view text)
{
    const std::optional<ResourceName> name = parseResourceName(text);
    return name ? name->key() : toUpperCase(text);
}

const char* fieldName(ResourceField field)
{
    static constexpr std::array<const char*, 15> names{"interface",
                                                       "board number",
                                                       "device path",
                                                       "primary address",
                                                       "secondary address",
                                                       "logical address",
                                                       "host",
                                                       "LAN device name",
                                                       "port",
                                                       "manufacturer identifier",
                                                       "model code",
                                                       "serial number",
                                                       "USB interface number",
                                                       "location",
                                                       "resource class"};
    return names[static_cast<std::size_t>(field)];
}

} // namespace visa
