// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationFile.h"
#include "tests/config/SearchSandbox.h"
#include "tests/support/ConfigurationFixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <unordered_map>
#include <vector>

/// A case's store and its file. The store is one for each process, and each case needs a fresh
/// one: run cases through ctest, which gives each a process of its own.
class StoreTest : public testing::Test
{
protected:
    /// The store of this moment, read again if its file has changed.
    static QvVisa::ConfigurationFile& store() { return *QvVisa::ConfigurationFile::getInstance(); }

    std::filesystem::path file() const { return m_configuration.path(); }

    /// The two tables as a program sees them that walks all entries: (resource, alias) in order.
    static std::vector<std::pair<std::string, std::string>>
    walk(const QvVisa::ConfigurationFile& store)
    {
        std::vector<std::pair<std::string, std::string>> entries;
        std::string alias;
        const std::size_t count = store.m_resources.size() + store.m_aliases.size();
        for (std::size_t i = 0; i < count; ++i) {
            std::string resource = store.getResource(i, alias);
            entries.emplace_back(std::move(resource), alias);
        }
        return entries;
    }

    support::ConfigurationFixture m_configuration;
    SearchSandbox m_sandbox{m_configuration.home().root()};
};
