// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/TestHome.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

/// A folder, and a file in it that is saved. When the tests run as root, both belong to the
/// ordinary user, who may reach them.
class SavingTest : public testing::Test
{
protected:
    using Names = std::set<std::string>;

    static inline const std::string s_old = "the old bytes\n";
    static inline const std::string s_new = "new\n";

    SavingTest();

    std::filesystem::path folder() const { return m_home.workingFolder(); }
    std::filesystem::path file() const { return folder() / "visa.conf"; }

    /// All names in the folder.
    Names names() const;

    /// The contents of all temporary files in a folder.
    static std::vector<std::string> temporaryFiles(const std::filesystem::path& folder);

    /// Writes s_new to the file, as this user or as the ordinary user with these groups too.
    bool save() const;
    bool saveAsOrdinaryUser(const std::vector<gid_t>& groups = {}) const;

    /// A text for each number that shows whether it is whole. Up to longest bytes.
    static std::string textOf(int number, int longest);
    /// True also with empty lines at the end, which a write in place adds for a moment.
    static bool isWhole(const std::string& text);

    static bool isRoot();
    static struct stat statusOf(const std::filesystem::path& path);
    static mode_t modeOf(const std::filesystem::path& path);
    static ino_t inodeOf(const std::filesystem::path& path);
    static void give(const std::filesystem::path& path, uid_t user, gid_t group);
    static void permit(const std::filesystem::path& path, mode_t mode);

    support::TestHome m_home;
};
