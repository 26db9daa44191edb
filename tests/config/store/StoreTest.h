// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationFile.h"
#include "tests/config/store/SearchSandbox.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/FileContents.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// The store and its file, which QVVISACONFFILE names. There is one store in a process: run cases
/// through ctest, which gives each a process of its own.
class StoreTest : public testing::Test
{
protected:
    using Aliases = std::unordered_map<std::string, std::string>;
    using Resources = std::vector<std::string>;

    /// The store after a change check.
    static QvVisa::ConfigurationFile& store() { return *QvVisa::ConfigurationFile::getInstance(); }

    /// The store's tables, and its records of board 2, without a change check. The boards are empty
    /// when no file has been read.
    static FileContents held(const QvVisa::ConfigurationFile& store);

    /// Lines with one entry of each kind, and the contents that the store has of them.
    static const std::string s_lines;
    static FileContents contentsOfLines();

    std::filesystem::path file() const { return m_configuration.path(); }
    std::filesystem::path root() const { return m_configuration.home().root(); }

    /// Replaces the file by these bytes.
    void write(std::string_view bytes, std::int64_t modificationTime) const;

    support::ConfigurationFixture m_configuration;
    SearchSandbox m_sandbox{m_configuration.home().root()};
};
