// SPDX-License-Identifier: MIT
#pragma once

#include "config/SearchPlaces.h"
#include "document/Document.h"
#include "visa/SystemFiles.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace visa {
struct ProbeReport;
} // namespace visa

namespace QvVisa {

/// What the checks examine, as it was when examineMachine() looked. Checks read nothing that this
/// object already holds.
struct Machine
{
    SearchEnvironment environment;
    /// The argument of -f.
    std::optional<std::string> fileOption;
    /// The path of the configuration file: that of -f, or the one that the search finds. Empty when
    /// the search finds none; a path of -f may lead to no file.
    std::string file;
    /// Whether a regular file is there.
    bool isRegularFile = false;
    /// The file's text; none when it cannot be read.
    std::optional<Document> document;
    /// Why not: an errno value.
    int readError = 0;
    /// Seconds since the epoch.
    std::int64_t now = 0;
    /// The system's files.
    visa::SystemFiles files;
    /// What the VISA library did; null when it was not called.
    const visa::ProbeReport* probe = nullptr;
    /// What the finder logged, if it is that library.
    std::vector<std::string> finderLog;
    /// The time by which all checks must be done. Checks that begin after it skip what takes time.
    std::chrono::steady_clock::time_point deadline;

    /// Whether a text is there that the reader reads: with the version header.
    bool hasReadableText() const { return document && document->hasHeader(); }

    /// Whether the text is so long that examining its lines would take many seconds. No
    /// configuration of a bench is.
    bool isHuge() const { return document && document->text().size() > s_hugeSize; }

    static constexpr std::size_t s_hugeSize = std::size_t{4} * 1024 * 1024;

    /// "qvvisa ARGUMENTS" on this file, as a shell takes it.
    std::string command(const std::string& arguments) const;
};

/// Searches and reads the configuration file. Changes nothing and does not wait: a pipe or a device
/// counts as a file that cannot be read. root: goes before the paths below /sys, /dev, /usr and
/// /tmp; empty for the system's own.
Machine examineMachine(const std::optional<std::string>& fileOption, const std::string& root = {});

/// A path as one word of a shell's command line, in UTF-8.
std::string shellWord(const std::string& path);

} // namespace QvVisa
