// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationRecords.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace QvVisa {

/// One configuration file in one format. An object is used by one thread at a time.
class IConfigurationFileImpl
{
public:
    virtual ~IConfigurationFileImpl() = default;

    /// The board's record as the file gave it; the default record for a board it did not name.
    virtual SGpibProperties getGpibProperties(unsigned short board) const = 0;
    virtual GpibPropertiesMap getGpibPropertiesMap() const = 0;

    /// The port's record as the file gave it; the default record for a port it did not name.
    virtual SSerialProperties getSerialProperties(unsigned short port) const = 0;
    virtual SerialPropertiesMap getSerialPropertiesMap() const = 0;

    /// 3674 (0xE5A) until a file has named another.
    virtual unsigned short getProviderId() const = 0;

    /// Reads the file and replaces the caller's tables: alias name to resource string, the
    /// resources without an alias in the file's order, the provider ID.
    virtual void parse(std::unordered_map<std::string, std::string>& aliases,
                       std::vector<std::string>& resources, unsigned short& provider) = 0;

protected:
    /// The path in the file system's own encoding.
    explicit IConfigurationFileImpl(const std::string& path) : m_path(path) {}

    IConfigurationFileImpl(const IConfigurationFileImpl&) = default;
    IConfigurationFileImpl& operator=(const IConfigurationFileImpl&) = default;

    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

} // namespace QvVisa
