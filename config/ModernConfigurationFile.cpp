// SPDX-License-Identifier: MIT
#include "config/ModernConfigurationFile.h"

#include "config/AtomicFileWrite.h"
#include "config/ConfigurationLine.h"
#include "config/ConfigurationValue.h"
#include "config/FileDescriptor.h"
#include "config/LineReader.h"
#include "config/UpperCase.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <limits>
#include <new>
#include <utility>

namespace QvVisa {

namespace {

void appendNumber(std::string& text, std::uint32_t number)
{
    std::array<char, std::numeric_limits<std::uint32_t>::digits10 + 1> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    text.append(digits.data(), result.ptr);
}

void appendSerialLine(std::string& text, unsigned short port, std::string_view key,
                      std::uint32_t value)
{
    text += ":SerialProperty[DeviceNo=";
    appendNumber(text, port);
    text += "].";
    text += key;
    text += '=';
    appendNumber(text, value);
    text += '\n';
}

template <typename Map>
typename Map::mapped_type recordOrDefault(const Map& map, unsigned short number)
{
    const auto found = map.find(number);
    return found != map.end() ? found->second : typename Map::mapped_type();
}

} // namespace

ModernConfigurationFile::ModernConfigurationFile(const std::string& path)
    : IConfigurationFileImpl(path)
{}

SGpibProperties ModernConfigurationFile::getGpibProperties(unsigned short board) const
{
    return recordOrDefault(m_gpibProperties, board);
}

GpibPropertiesMap ModernConfigurationFile::getGpibPropertiesMap() const
{
    return m_gpibProperties;
}

SSerialProperties ModernConfigurationFile::getSerialProperties(unsigned short port) const
{
    return recordOrDefault(m_serialProperties, port);
}

SerialPropertiesMap ModernConfigurationFile::getSerialPropertiesMap() const
{
    return m_serialProperties;
}

unsigned short ModernConfigurationFile::getProviderId() const
{
    return m_provider;
}

bool ModernConfigurationFile::wasRead() const
{
    return m_wasRead;
}

bool ModernConfigurationFile::hadHeader() const
{
    return m_hadHeader;
}

void ModernConfigurationFile::parse(std::unordered_map<std::string, std::string>& aliases,
                                    std::vector<std::string>& resources, unsigned short& provider)
{
    const unsigned short providerBefore = m_provider;
    clear();
    try {
        readLines();
        if (m_wasRead) {
            // Copied first: running out of memory here must not cost the caller's tables.
            auto aliasesRead = m_aliases;
            auto resourcesRead = m_resources;
            aliases = std::move(aliasesRead);
            resources = std::move(resourcesRead);
            provider = m_provider;
        }
    } catch (const std::bad_alloc&) {
        m_wasRead = false;
    }
    if (!m_wasRead) {
        clear();
        m_provider = providerBefore;
    }
}

void ModernConfigurationFile::clear()
{
    m_resources.clear();
    m_gpibProperties.clear();
    m_serialProperties.clear();
    m_aliases.clear();
    m_wasRead = false;
    m_hadHeader = false;
}

void ModernConfigurationFile::readLines()
{
    LineReader reader(path());
    std::string_view text;
    if (reader.next(text)) {
        const std::string header = GetVersionString();
        m_hadHeader = text.substr(0, header.size()) == header;
        do {
            readLine(text);
        } while (reader.next(text));
    }
    m_wasRead = !reader.hasFailed();
}

void ModernConfigurationFile::readLine(std::string_view text)
{
    const ConfigurationLine line = matchConfigurationLine(text);
    if (line.kind == LineKind::Resource) {
        m_resources.emplace_back(line.first);
    } else if (line.kind == LineKind::Alias) {
        m_aliases[toUpperCase(line.first)] = line.second;
    } else if (const auto provider = toProvider(line)) {
        m_provider = *provider;
    } else if (const auto property = toPropertyValue(line)) {
        if (isGpibProperty(property->kind)) {
            setProperty(m_gpibProperties[property->device], *property);
        } else {
            setProperty(m_serialProperties[property->device], *property);
        }
    }
}

void ModernConfigurationFile::save() const
{
    write(path(), m_aliases, m_resources, m_serialProperties, m_provider);
}

void ModernConfigurationFile::write(const std::string& path,
                                    const std::unordered_map<std::string, std::string>& aliases,
                                    const std::vector<std::string>& resources,
                                    const SerialPropertiesMap& serialProperties,
                                    unsigned short provider,
                                    std::optional<std::int64_t> timeToAvoid)
{
    std::string text;
    // Growing step by step would copy a large text several times.
    constexpr std::size_t usualLine = 64;
    text.reserve(usualLine * (4 + 5 * serialProperties.size() + resources.size() + aliases.size()));
    text += GetVersionString();
    text += "\n:Provider=";
    appendNumber(text, provider);
    text += '\n';
    for (const auto& [port, properties] : serialProperties) {
        appendSerialLine(text, port, "Baudrate", properties.baudrate);
        appendSerialLine(text, port, "DataBits", properties.dataBits);
        appendSerialLine(text, port, "StopBits", properties.stopBits);
        appendSerialLine(text, port, "Parity", properties.parity);
        appendSerialLine(text, port, "FlowControl", properties.flowControl);
    }
    for (const std::string& resource : resources) {
        text += resource;
        text += '\n';
    }
    for (const auto& [alias, resource] : aliases) {
        text += alias;
        text += '=';
        text += resource;
        text += '\n';
    }
    WriteOptions options;
    options.timeToAvoid = timeToAvoid;
    writeFileAtomically(path, text, options);
}

std::string ModernConfigurationFile::GetVersionString()
{
    static const std::string s_versionString = ":QvVisaConfigurationFileVersion01";
    return s_versionString;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the path is taken by value on purpose.
bool ModernConfigurationFile::isParseAble(std::string path)
{
    const FileDescriptor file = FileDescriptor::openForReading(path);
    if (!file.isOpen()) {
        return false;
    }
    // The header holds no line feed: the file's first bytes are the first line's.
    const std::string header = GetVersionString();
    std::string start(header.size(), '\0');
    const ssize_t length = readFully(file.get(), start.data(), start.size());
    return length == static_cast<ssize_t>(header.size()) && start == header;
}

} // namespace QvVisa
