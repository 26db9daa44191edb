// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationRecords.h"

#include <iosfwd>
#include <string>
#include <unordered_map>
#include <vector>

/// The contents of a configuration file, whichever reader read it.
struct FileContents
{
    std::unordered_map<std::string, std::string> aliases;
    std::vector<std::string> resources;
    QvVisa::GpibPropertiesMap gpib;
    QvVisa::SerialPropertiesMap serial;
    unsigned short provider = 3674;
};

/// Ignores the order of the aliases.
bool operator==(const FileContents& left, const FileContents& right);

/// All contents, the aliases sorted, bytes that do not print as \xNN.
std::ostream& operator<<(std::ostream& out, const FileContents& contents);

/// Bytes that do not print, and the backslash, as \xNN; long texts are shortened in the middle.
std::string printable(const std::string& bytes);

/// Reads the file with ModernConfigurationFile into empty tables. Throws when it cannot be read.
FileContents readWithModernConfigurationFile(const std::string& path);
