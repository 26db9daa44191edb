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

/// The process-wide store of the VISA configuration: finds the file, holds its contents, reads it
/// again when it has changed on disk, writes it. Texts are bytes (the windows take them as
/// Latin-1), paths are in the file system's encoding. Failures, running out of memory included, are
/// not reported unless a call says so: the contents stay as they were.
///
/// Threads: getInstance(), setProvider() and save() lock getMutex() for their own duration, so any
/// thread may call them, and searchConfigFile() and getMutex(), at any time. The other calls and
/// the public tables are not locked, and getInstance() may reload, which replaces the tables and
/// destroys what references and iterators into them refer to. Therefore:
/// - A thread that reads the tables, or calls a const member, holds getMutex() from its
///   getInstance() until it has finished. Without the mutex it may do so only while no other thread
///   calls anything here but getMutex(), searchConfigFile() and save(): save() only reads them.
/// - A thread that calls setData() or load(), or assigns to a table, holds getMutex().
/// The mutex is recursive. ConfigurationModel holds it while it loads and saves. A program whose
/// other threads do not use the store needs no lock.
class ConfigurationFile
{
public:
    /// The suggested size of a caller's text buffer, in bytes. The store itself has no limit.
    static constexpr std::size_t BUFLEN = 256;

    /// Returns the store, which exists until the process exits. The first call creates it, finds
    /// the file and reads it. Every call is a change check: it reads the file again if the file's
    /// modification time, in seconds, differs from that of the last load.
    static ConfigurationFile* getInstance();

    /// getInstance() for a caller that holds getMutex().
    static ConfigurationFile* getInstanceUnsafe();

    /// Guards the store; see above for which calls lock it. Its holder may make every call.
    static std::recursive_mutex& getMutex();

    ConfigurationFile(const ConfigurationFile&) = delete;
    ConfigurationFile& operator=(const ConfigurationFile&) = delete;

    /// Returns the first alias in m_aliases' iteration order whose resource string equals the given
    /// one, ignoring case; empty if there is none.
    std::string lookupAlias(const std::string& resource) const;

    /// Replaces an alias name by its resource string. False, and the name unchanged, when the
    /// upper-cased name is not in m_aliases.
    bool replaceAlias(std::string& name) const;

    /// Returns every resource string of both tables once, sorted by bytes.
    std::vector<std::string> getAllResources() const;

    /// One entry of the combined list: m_resources in order, then m_aliases in iteration order.
    /// Sets alias to the entry's alias, empty for an entry of m_resources, and returns the resource
    /// string; both are empty past the end. Takes time proportional to the index: to visit all
    /// entries, iterate over the two tables.
    std::string getResource(std::size_t index, std::string& alias) const;

    /// Fill the record with the board's or port's settings from the file, defaults where it names
    /// none. False, and the record unchanged, when no file has been read.
    bool getGpibProperties(unsigned short board, SGpibProperties& properties) const;
    bool getSerialProperties(unsigned short port, SSerialProperties& properties) const;

    /// Replaces both tables by (resource string, alias) pairs; an empty alias means none. Aliases
    /// keep their case, and a later one replaces an equal earlier one. False, and both tables
    /// unchanged, when memory runs out.
    bool setData(const std::vector<std::pair<std::string, std::string>>& entries) noexcept;

    void setProvider(unsigned short provider);

    /// Rewrites the whole file, or does nothing when no path is known. A file that cannot be
    /// written stays as it was. The recorded modification time stays too, so the next getInstance()
    /// reads the file back.
    void save() noexcept;

    /// Reads the file. When there is none, or it is not in the format, cannot be read to its end or
    /// memory runs out, everything stays as it was: either all contents are replaced or none.
    void load();

    /// Returns the configuration file's path: QVVISACONFFILE, visa.conf in the working folder,
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
