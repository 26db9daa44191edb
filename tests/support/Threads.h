// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

namespace support {

/// Runs body(index) in so many threads, which begin together, and waits for their ends.
template <typename Body>
void inThreads(std::size_t count, Body body)
{
    std::atomic<std::size_t> waiting{count};
    std::vector<std::thread> threads;
    for (std::size_t index = 0; index < count; ++index) {
        threads.emplace_back([&waiting, &body, index] {
            --waiting;
            while (waiting != 0) {
                std::this_thread::yield();
            }
            body(index);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace support
