// SPDX-License-Identifier: MIT
// What makes the library on resourcemanager/ a simulator: its bench and its call log, both named by
// the environment.

#include "simulator/BenchFile.h"
#include "simulator/BenchSource.h"
#include "simulator/RegularFile.h"

#include <cstdio>
#include <mutex>

namespace {

/// Each call would repeat the message otherwise.
void reportOnce(const std::string& message)
{
    static std::mutex mutex; // guards last
    static std::string last;
    const std::lock_guard<std::mutex> lock(mutex);
    if (message != last) {
        std::fprintf(stderr, "%s\n", message.c_str());
        last = message;
    }
}

} // namespace

std::shared_ptr<resourcemanager::ResourceSource> resourcemanager::openResourceSource()
{
    return std::make_shared<simulator::BenchSource>(simulator::benchFromEnvironment());
}

std::function<void(const std::string&)> resourcemanager::callLog()
{
    const std::string path = simulator::environmentValue("QVVISA_BENCH_LOG");
    if (path.empty()) {
        return nullptr;
    }
    return [path](const std::string& line) {
        const std::string problem = simulator::appendToRegularFile(path, line);
        if (!problem.empty()) {
            reportOnce(path + ": the call log cannot be written: " + problem);
        }
    };
}
