// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// Keeps a test from the machine's own system-wide configuration file, and sees what the search
/// asks for: a program that links this has a stat() of its own. Queries beneath
/// /Library/Preferences go to a folder of the test's, or find nothing while no sandbox is alive.
/// One at a time.
class SearchSandbox
{
public:
    /// The root folder exists; the sandbox puts its stand-in for /Library/Preferences beneath it.
    explicit SearchSandbox(const std::filesystem::path& root);
    ~SearchSandbox();
    SearchSandbox(const SearchSandbox&) = delete;
    SearchSandbox& operator=(const SearchSandbox&) = delete;

    /// Where queries for the system-wide file lead.
    std::filesystem::path systemWideFile() const;

    /// The paths that were asked for since the last call, in order.
    static std::vector<std::string> takeQueries();

    /// Called before each query is answered, in the thread that asks; not for its own queries.
    static void onQuery(std::function<void()> action);

    static constexpr const char* systemWidePath = "/Library/Preferences/com.quorvane.visa.conf";
};
