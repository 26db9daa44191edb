// SPDX-License-Identifier: MIT
#pragma once

#include "tests/config/FileContents.h"
#include "tests/support/TemporaryFolder.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// A finding: says what is wrong and aborts.
[[noreturn]] void reportFinding(const char* wrong, const std::string& details = {});

inline void require(bool isAsItShould, const char* wrong)
{
    if (!isAsItShould) {
        reportFinding(wrong);
    }
}

inline std::string_view asText(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// True when the standard library's expressions can be put to each line: they recurse.
bool hasOnlyShortLines(std::string_view bytes);
bool isShortLine(std::string_view line);

/// Reports a finding that names both unless they are the same.
void requireSame(const FileContents& actual, const FileContents& expected, const char* wrong);

/// Whether the first line begins with the version header.
bool beginsWithHeader(std::string_view bytes);

/// Reports a finding unless bytes are what a save makes of the contents; the aliases may stand in
/// any order. The aliases' texts hold no line feed.
void requireSaved(const std::string& bytes, const FileContents& contents, const char* wrong);

/// The file that a target writes and has read, the same path for all inputs.
class FuzzedFile
{
public:
    std::string path() const { return m_folder.path() / "visa.conf"; }
    void write(std::string_view bytes) const;
    std::string read() const;

private:
    support::TemporaryFolder m_folder;
};
