// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Prints a finding and aborts.
[[noreturn]] void reportFinding(const char* finding, const std::string& details = {});

/// Reports the finding unless the condition holds.
inline void require(bool condition, const char* finding)
{
    if (!condition) {
        reportFinding(finding);
    }
}

inline std::string_view asText(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// True when no line is too long for the oracle's expressions, which recurse for each byte.
bool hasOnlyShortLines(std::string_view bytes);

/// Reports the finding, with both contents, unless they are equal.
void requireSame(const FileContents& actual, const FileContents& expected, const char* finding);

/// Reports the finding unless the bytes are what a save writes for the contents, with the aliases
/// in any order. No text of an alias contains a line feed.
void requireSaved(const std::string& bytes, const FileContents& contents, const char* finding);

/// The file that a target writes and reads. Its path is the same for all inputs.
class FuzzedFile
{
public:
    std::string path() const { return m_folder.path() / "visa.conf"; }
    void write(std::string_view bytes) const { support::writeFile(path(), bytes); }
    std::string read() const { return support::readFile(path()); }

private:
    support::TemporaryFolder m_folder;
};
