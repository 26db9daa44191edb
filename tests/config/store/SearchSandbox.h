// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// Redirects the search for the system-wide configuration file and records its queries: a program
/// that links this has a stat() of its own. While an object lives, queries below
/// /Library/Preferences go to a folder of the test, else they find nothing. One object at a time.
class SearchSandbox
{
public:
    /// Creates the folder that replaces /Library/Preferences in root.
    explicit SearchSandbox(const std::filesystem::path& root);
    ~SearchSandbox();
    SearchSandbox(const SearchSandbox&) = delete;
    SearchSandbox& operator=(const SearchSandbox&) = delete;

    /// The file that queries for the system-wide file reach.
    std::filesystem::path systemWideFile() const;

    /// The paths of the queries since the last call, in order.
    static std::vector<std::string> takeQueries();

    /// Is called before each query, in its thread; not for queries that it makes itself.
    static void onQuery(std::function<void()> action);

    static constexpr const char* systemWidePath = "/Library/Preferences/com.quorvane.visa.conf";
};
