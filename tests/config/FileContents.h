// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationRecords.h"

#include <iosfwd>
#include <string>
#include <unordered_map>
#include <vector>

/// What a configuration file says, whoever read it.
struct FileContents
{
    std::unordered_map<std::string, std::string> aliases;
    std::vector<std::string> resources;
    QvVisa::GpibPropertiesMap gpib;
    QvVisa::SerialPropertiesMap serial;
    unsigned short provider = 3674;
};

/// The order within the alias tables does not count.
bool operator==(const FileContents& left, const FileContents& right);

/// For a failing test: everything, the aliases sorted, bytes that do not print as \xNN.
std::ostream& operator<<(std::ostream& out, const FileContents& contents);

/// Bytes that do not print, and the backslash, as \xNN; long texts are cut in their middle.
std::string printable(const std::string& bytes);

/// What ModernConfigurationFile reads from a file, into empty tables. Throws when the file could
/// not be read.
FileContents readWithModernConfigurationFile(const std::string& path);
