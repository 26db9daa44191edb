// SPDX-License-Identifier: MIT
#include "config/WriteOptions.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <ctime>

namespace QvVisa {

void adjustModificationTime(int descriptor, const TargetFile& target, const WriteOptions& options)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0) {
        return;
    }
    std::int64_t seconds = status.st_mtime;
    if (options.isLaterThanOld && target.exists()) {
        seconds = std::max<std::int64_t>(seconds, target.status().st_mtime + 1);
    }
    if (seconds == options.timeToAvoid) {
        ++seconds;
    }
    if (seconds != status.st_mtime) {
        std::array<struct timespec, 2> times{};
        times[0].tv_nsec = UTIME_OMIT;
        times[1].tv_sec = static_cast<time_t>(seconds);
        ::futimens(descriptor, times.data());
    }
}

} // namespace QvVisa
