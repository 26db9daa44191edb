// SPDX-License-Identifier: MIT
#include "command/Watchdog.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

using namespace QvVisa;

TEST(Watchdog, CallThatNeverReturnsEndsTheProcess)
{
    EXPECT_EXIT(
        {
            const Watchdog watchdog(std::chrono::milliseconds(1), "it hangs", ExitCode::No);
            for (;;) {
                ::pause();
            }
        },
        testing::ExitedWithCode(1), "^qvvisa: error: it hangs\n$");
}

TEST(Watchdog, CallThatReturnsIsLeftAlone)
{
    const Watchdog first(std::chrono::hours(1), "it hangs", ExitCode::No);
    const Watchdog second(std::chrono::hours(1), "it hangs", ExitCode::No);
}

} // namespace
