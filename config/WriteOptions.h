// SPDX-License-Identifier: MIT
#pragma once

#include "config/TargetFile.h"

#include <cstdint>
#include <optional>

namespace QvVisa {

/// What a write does besides writing. Times are modification times in whole seconds since the
/// epoch.
struct WriteOptions
{
    /// The file gets another time than this one (the next second, if it would be this one), so that
    /// a program that has recorded it notices the change.
    std::optional<std::int64_t> timeToAvoid;
    /// The file's time is at least one second later than the old file's.
    bool isLaterThanOld = false;
};

/// Gives the file, which has just been written, the time that the options ask for. Where the system
/// does not allow that (in place, in another user's file), the file keeps the time of the write.
void adjustModificationTime(int descriptor, const TargetFile& target, const WriteOptions& options);

} // namespace QvVisa
