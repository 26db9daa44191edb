// SPDX-License-Identifier: MIT
#pragma once

#include "config/IConfigurationFileImpl.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace QvVisa {

/// The line-oriented text format, docs/file-format.md. Reading and writing are not symmetric: the
/// reader takes GPIB lines, comments and free spacing, the writer emits none of them.
class ModernConfigurationFile : public IConfigurationFileImpl
{
public:
    /// Reads nothing yet.
    explicit ModernConfigurationFile(const std::string& path);

    SGpibProperties getGpibProperties(unsigned short board) const override;
    GpibPropertiesMap getGpibPropertiesMap() const override;
    SSerialProperties getSerialProperties(unsigned short port) const override;
    SerialPropertiesMap getSerialPropertiesMap() const override;
    unsigned short getProviderId() const override;

    /// Lines that match nothing, or hold a number beyond a signed 32-bit integer, are skipped.
    /// When the file cannot be read to its end (or memory runs out), this object's tables are
    /// empty, its provider and the caller's tables are left as they were, and wasRead() is false.
    void parse(std::unordered_map<std::string, std::string>& aliases,
               std::vector<std::string>& resources, unsigned short& provider) override;

    /// True when the last parse() reached the end of the file.
    bool wasRead() const;

    /// True when the last parse() reached the end of a file whose first line begins with the
    /// version header. Unlike isParseAble(), this is about the file that was read: another one may
    /// have taken the path since.
    bool hadHeader() const;

    /// Replaces the file's contents: version header, provider, serial lines, resources, aliases; no
    /// GPIB lines. A file that cannot be written stays as it was, without a message;
    /// config/AtomicFileWrite.h says what a save guarantees when it is interrupted.
    void save() const;

    /// save() for tables that the caller holds: copying large tables would take longer than writing
    /// them. timeToAvoid: a modification time, in seconds since the epoch, that the file must not
    /// get; it gets the next second then.
    static void write(const std::string& path,
                      const std::unordered_map<std::string, std::string>& aliases,
                      const std::vector<std::string>& resources,
                      const SerialPropertiesMap& serialProperties, unsigned short provider,
                      std::optional<std::int64_t> timeToAvoid = std::nullopt);

    /// ":QvVisaConfigurationFileVersion01", with which the first line of every file begins.
    static std::string GetVersionString();

    /// True when path is a regular file that can be read and whose first line begins with the
    /// version header.
    static bool isParseAble(std::string path);

private:
    void clear();
    void readLines();
    void readLine(std::string_view text);

    GpibPropertiesMap m_gpibProperties;
    SerialPropertiesMap m_serialProperties;
    std::unordered_map<std::string, std::string> m_aliases;
    std::vector<std::string> m_resources;
    unsigned short m_provider = defaultProvider;
    bool m_wasRead = false;
    bool m_hadHeader = false;
};

} // namespace QvVisa
