// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationRecords.h"
#include "config/IConfigurationFileImpl.h"
#include "config/ModernConfigurationFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace QvVisa {

/// The process's store of the VISA configuration: finds the file, holds what it says, reads it
/// again when it has changed on disk, writes it. Texts are bytes (Latin-1 by the windows'
/// convention), paths in the file system's encoding. Failures are not reported: what was held
/// stays.
///
/// getInstance(), setProvider() and save() may be called from any thread; the other calls and the
/// public tables belong to the user-interface thread.
class ConfigurationFile
{
public:
    /// Bytes that a caller's text buffer had best hold. The store itself knows no limit.
    static constexpr std::size_t BUFLEN = 256;

    /// The one store; the first call creates it, finds the file and reads it. Every call reads the
    /// file again if its modification time (in seconds) is another than at the last load.
    static ConfigurationFile* getInstance();

    /// getInstance() for a caller that holds getMutex().
    static ConfigurationFile* getInstanceUnsafe();

    /// Guards creation, change check, setProvider() and save(). A holder may call the store.
    static std::recursive_mutex& getMutex();

    ConfigurationFile(const ConfigurationFile&) = delete;
    ConfigurationFile& operator=(const ConfigurationFile&) = delete;

    /// The first alias whose resource string is the given one, upper and lower case alike; empty
    /// if there is none.
    std::string lookupAlias(const std::string& resource) const;

    /// Turns an alias name, in any case, into its resource string. False, and the name left as it
    /// is, when no alias bears the upper-cased name.
    bool replaceAlias(std::string& name) const;

    /// Every resource string of the list and of the aliases, once each, in byte order.
    std::vector<std::string> getAllResources() const;

    /// One entry of the combined list: m_resources in order, then m_aliases in iteration order.
    /// Sets alias to the entry's alias, empty for an entry of m_resources, and returns the resource
    /// string; both are empty past the end. Takes time proportional to the index: to visit all
    /// entries, iterate over the two tables.
    std::string getResource(std::size_t index, std::string& alias) const;

    /// Fill the record with the board's or port's settings as the file gave them, defaults where
    /// it did not. False, and the record left alone, when no file has been read.
    bool getGpibProperties(unsigned short board, SGpibProperties& properties) const;
    bool getSerialProperties(unsigned short port, SSerialProperties& properties) const;

    /// Replaces both tables by (resource string, alias) pairs; an empty alias means none. Aliases
    /// are kept as they are given, a later one replaces an equal earlier one.
    void setData(const std::vector<std::pair<std::string, std::string>>& entries);

    void setProvider(unsigned short provider);

    /// Writes the file anew, or does nothing when no path is known. The recorded modification time
    /// stays: the next getInstance() reads the file back.
    void save();

    /// Reads the file. When there is none, or it is not in the format, or cannot be read to its
    /// end, everything stays as it was.
    void load();

    /// The configuration file's path: QVVISACONFFILE, visa.conf in the working folder,
    /// .quorvane/visa.conf under HOME, the system-wide file; the first that is a regular file.
    /// Empty when there is none.
    static std::string searchConfigFile(bool forWriting);

private:
    ConfigurationFile();

    void reloadIfChanged();

    std::string m_path;

public:
    unsigned short m_provider = defaultProvider;
    std::unordered_map<std::string, std::string> m_aliases;
    std::vector<std::string> m_resources;
    SerialPropertiesMap m_serialProperties;

private:
    std::unique_ptr<IConfigurationFileImpl> m_implementation;
    std::int64_t m_modificationTime = 0;
};

} // namespace QvVisa
