// SPDX-License-Identifier: MIT
#include "tests/config/store/SearchSandbox.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <mutex>
#include <utility>

namespace {

struct State
{
    std::mutex mutex; ///< Guards the other members: tests create the store in racing threads.
    std::filesystem::path systemWideFolder;
    std::vector<std::string> queries;
    std::function<void()> action;
};

State& state()
{
    static State instance;
    return instance;
}

std::string redirected(const std::string& path)
{
    const std::string folder = std::filesystem::path(SearchSandbox::systemWidePath).parent_path();
    if (path.compare(0, folder.size(), folder) != 0) {
        return path;
    }
    State& current = state();
    const std::lock_guard<std::mutex> lock(current.mutex);
    return current.systemWideFolder.empty()
               ? std::string()
               : current.systemWideFolder.string() + path.substr(folder.size());
}

std::function<void()> record(const std::string& path)
{
    State& current = state();
    const std::lock_guard<std::mutex> lock(current.mutex);
    current.queries.push_back(path);
    return current.action;
}

} // namespace

extern "C" int stat(const char* path, struct stat* status) noexcept(noexcept(::fstat(0, status)))
{
    thread_local bool isWithinAction = false;
    if (!isWithinAction) {
        isWithinAction = true;
        if (const auto action = record(path)) {
            action();
        }
        isWithinAction = false;
    }
    return ::fstatat(AT_FDCWD, redirected(path).c_str(), status, 0);
}

SearchSandbox::SearchSandbox(const std::filesystem::path& root)
{
    const std::filesystem::path folder = root / "system-wide";
    std::filesystem::create_directory(folder);
    State& current = state();
    const std::lock_guard<std::mutex> lock(current.mutex);
    current.systemWideFolder = folder;
    current.queries.clear();
}

SearchSandbox::~SearchSandbox()
{
    State& current = state();
    const std::lock_guard<std::mutex> lock(current.mutex);
    current.systemWideFolder.clear();
    current.action = nullptr;
}

std::filesystem::path SearchSandbox::systemWideFile() const
{
    State& current = state();
    const std::lock_guard<std::mutex> lock(current.mutex);
    return current.systemWideFolder / std::filesystem::path(systemWidePath).filename();
}

std::vector<std::string> SearchSandbox::takeQueries()
{
    State& current = state();
    const std::lock_guard<std::mutex> lock(current.mutex);
    return std::exchange(current.queries, {});
}

void SearchSandbox::onQuery(std::function<void()> action)
{
    State& current = state();
    const std::lock_guard<std::mutex> lock(current.mutex);
    current.action = std::move(action);
}
