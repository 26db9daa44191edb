// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <string>

namespace simulator {

/// An environment variable as it stands at this moment, empty where it is not set.
inline std::string environmentValue(const char* name)
{
    // Clients set it before they start threads.
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? value : "";
}

} // namespace simulator
