// SPDX-License-Identifier: MIT
#include "command/Watchdog.h"

#include <gtest/gtest.h>

#include <pthread.h>
#include <unistd.h>

#include <cstddef>
#include <system_error>
#include <thread>

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

#ifdef __GLIBC__
TEST(Watchdog, WithoutAThreadTheCallIsMadeAllTheSame)
{
    // A stack for which no machine has the address space.
    pthread_attr_t attributes;
    ASSERT_EQ(::pthread_getattr_default_np(&attributes), 0);
    ASSERT_EQ(::pthread_attr_setstacksize(&attributes, std::size_t{1} << 50U), 0);
    ASSERT_EQ(::pthread_setattr_default_np(&attributes), 0);
    ASSERT_THROW(std::thread([] {}), std::system_error);
    EXPECT_NO_THROW(Watchdog(std::chrono::milliseconds(1), "it hangs", ExitCode::No));
}
#endif

} // namespace
