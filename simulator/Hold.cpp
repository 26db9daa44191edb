// SPDX-License-Identifier: MIT
#include "simulator/Hold.h"

#include <chrono>
#include <string>
#include <thread>

#include <sys/stat.h>

namespace simulator {

void hold(const Bench& bench, Call call, std::uint32_t nth, std::string_view expression)
{
    if (call == Call::FindRsrc) {
        std::this_thread::sleep_for(bench.scanTime(expression));
    }
    const std::string path = bench.waitForFile(call, nth, expression);
    struct stat found;
    while (!path.empty() && ::stat(path.c_str(), &found) != 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

} // namespace simulator
