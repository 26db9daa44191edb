// SPDX-License-Identifier: MIT
#include "config/ConfigurationFile.h"

#include "config/FileDescriptor.h"
#include "config/ModernConfigurationFile.h"
#include "config/UpperCase.h"

#include <sys/stat.h>

#include <algorithm>
#include <exception>
#include <iterator>
#include <optional>

namespace QvVisa {

namespace {

/// Seconds since the epoch; none when the file cannot be opened.
std::optional<std::int64_t> modificationTime(const std::string& path)
{
    const FileDescriptor file = FileDescriptor::openForReading(path);
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
        return std::nullopt;
    }
    return status.st_mtime;
}

} // namespace

ConfigurationFile::ConfigurationFile() : m_path(searchConfigFile(false))
{
    load();
}

ConfigurationFile* ConfigurationFile::getInstance()
{
    const std::lock_guard<std::recursive_mutex> lock(getMutex());
    return getInstanceUnsafe();
}

ConfigurationFile* ConfigurationFile::getInstanceUnsafe()
{
    static ConfigurationFile instance;
    instance.reloadIfChanged();
    return &instance;
}

std::recursive_mutex& ConfigurationFile::getMutex()
{
    static std::recursive_mutex myMutex;
    return myMutex;
}

void ConfigurationFile::reloadIfChanged()
{
    // A file without a readable status is tried again each time: it may have come back.
    if (!m_path.empty() && modificationTime(m_path) != m_modificationTime) {
        load();
    }
}

void ConfigurationFile::load()
{
    try {
        if (m_path.empty()) {
            m_path = searchConfigFile(false);
        }
        if (m_path.empty() || !ModernConfigurationFile::isParseAble(m_path)) {
            return;
        }
        // Before reading: a change during the read is noticed by the next change check.
        const auto time = modificationTime(m_path);
        auto implementation = std::make_unique<ModernConfigurationFile>(m_path);
        std::unordered_map<std::string, std::string> aliases;
        std::vector<std::string> resources;
        unsigned short provider = m_provider;
        implementation->parse(aliases, resources, provider);
        if (!implementation->hadHeader()) {
            // The file vanished, could not be read or was replaced after isParseAble().
            return;
        }
        SerialPropertiesMap serialProperties = implementation->getSerialPropertiesMap();

        // Nothing throws from here on: either everything is replaced or nothing.
        m_aliases.swap(aliases);
        m_resources.swap(resources);
        m_serialProperties.swap(serialProperties);
        m_provider = implementation->getProviderId();
        m_implementation = std::move(implementation);
        m_modificationTime = time.value_or(m_modificationTime);
    } catch (const std::exception&) {
        // Out of memory. As for a file that cannot be read, the next change check tries again.
    }
}

std::string ConfigurationFile::lookupAlias(const std::string& resource) const
{
    const auto found =
        std::find_if(m_aliases.begin(), m_aliases.end(), [&resource](const auto& entry) {
            return equalsIgnoringCase(entry.second, resource);
        });
    return found != m_aliases.end() ? found->first : std::string();
}

bool ConfigurationFile::replaceAlias(std::string& name) const
{
    const auto found = m_aliases.find(toUpperCase(name));
    if (found == m_aliases.end()) {
        return false;
    }
    name = found->second;
    return true;
}

std::vector<std::string> ConfigurationFile::getAllResources() const
{
    std::vector<std::string> resources = m_resources;
    resources.reserve(m_resources.size() + m_aliases.size());
    for (const auto& entry : m_aliases) {
        resources.push_back(entry.second);
    }
    std::sort(resources.begin(), resources.end());
    resources.erase(std::unique(resources.begin(), resources.end()), resources.end());
    return resources;
}

std::string ConfigurationFile::getResource(std::size_t index, std::string& alias) const
{
    if (index < m_resources.size()) {
        alias.clear();
        return m_resources[index];
    }
    const std::size_t aliasIndex = index - m_resources.size();
    if (aliasIndex >= m_aliases.size()) {
        alias.clear();
        return {};
    }
    const auto entry = std::next(m_aliases.begin(), static_cast<std::ptrdiff_t>(aliasIndex));
    alias = entry->first;
    return entry->second;
}

bool ConfigurationFile::getGpibProperties(unsigned short board, SGpibProperties& properties) const
{
    if (!m_implementation) {
        return false;
    }
    properties = m_implementation->getGpibProperties(board);
    return true;
}

bool ConfigurationFile::getSerialProperties(unsigned short port,
                                            SSerialProperties& properties) const
{
    if (!m_implementation) {
        return false;
    }
    properties = m_implementation->getSerialProperties(port);
    return true;
}

bool ConfigurationFile::setData(
    const std::vector<std::pair<std::string, std::string>>& entries) noexcept
{
    try {
        std::unordered_map<std::string, std::string> aliases;
        std::vector<std::string> resources;
        aliases.max_load_factor(m_aliases.max_load_factor());
        if (m_aliases.bucket_count() > 1) {
            // The same aliases keep their order.
            aliases.rehash(m_aliases.bucket_count());
        }
        for (const auto& [resource, alias] : entries) {
            if (alias.empty()) {
                resources.push_back(resource);
            } else {
                aliases[alias] = resource;
            }
        }
        m_aliases.swap(aliases);
        m_resources.swap(resources);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

void ConfigurationFile::setProvider(unsigned short provider)
{
    const std::lock_guard<std::recursive_mutex> lock(getMutex());
    m_provider = provider;
}

void ConfigurationFile::save() noexcept
{
    try {
        const std::lock_guard<std::recursive_mutex> lock(getMutex());
        if (m_path.empty()) {
            m_path = searchConfigFile(true);
        }
        if (!m_path.empty()) {
            ModernConfigurationFile::write(m_path, m_aliases, m_resources, m_serialProperties,
                                           m_provider, m_modificationTime);
        }
    } catch (const std::exception&) {
        // Out of memory: like a file that cannot be written.
    }
}

} // namespace QvVisa
