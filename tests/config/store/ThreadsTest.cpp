// SPDX-License-Identifier: MIT
#include "tests/support/Threads.h"
#include "tests/config/store/StoreTest.h"
#include "tests/support/FileReplacer.h"
#include "tests/support/Files.h"

#include <atomic>
#include <future>
#include <mutex>
#include <thread>

namespace {

using QvVisa::ConfigurationFile;

constexpr std::size_t s_threadCount = 16;

bool isFreeForAnotherThread(std::recursive_mutex& mutex)
{
    return std::async(std::launch::async,
                      [&] {
                          const std::unique_lock<std::recursive_mutex> lock(mutex,
                                                                            std::try_to_lock);
                          return lock.owns_lock();
                      })
        .get();
}

class StoreThreads : public StoreTest
{};

TEST_F(StoreThreads, FirstUsesInManyThreadsMakeOneStore)
{
    m_configuration.write(s_lines);
    std::vector<const ConfigurationFile*> seen(s_threadCount);
    support::inThreads(s_threadCount,
                       [&seen](std::size_t i) { seen[i] = ConfigurationFile::getInstance(); });
    EXPECT_EQ(seen, std::vector<const ConfigurationFile*>(s_threadCount, &store()));
    EXPECT_EQ(SearchSandbox::takeQueries(), std::vector<std::string>{file()}) << "one search";
}

TEST_F(StoreThreads, TheMutexIsRecursiveAndReleasedByEachCall)
{
    std::recursive_mutex& mutex = ConfigurationFile::getMutex();
    EXPECT_EQ(&mutex, &ConfigurationFile::getMutex());
    {
        const std::lock_guard<std::recursive_mutex> lock(mutex);
        EXPECT_FALSE(isFreeForAnotherThread(mutex));
        store().setProvider(5);
        store().save();
        EXPECT_EQ(ConfigurationFile::getInstanceUnsafe()->m_provider, 5);
        EXPECT_FALSE(isFreeForAnotherThread(mutex)) << "a call released the caller's lock";
    }
    EXPECT_TRUE(isFreeForAnotherThread(mutex)) << "a call kept the mutex";
}

TEST_F(StoreThreads, CreationLoadAndSaveHoldTheMutex)
{
    std::filesystem::remove(file());
    std::vector<bool> wasFree;
    SearchSandbox::onQuery(
        [&wasFree] { wasFree.push_back(isFreeForAnotherThread(ConfigurationFile::getMutex())); });
    ConfigurationFile& created = store();
    EXPECT_EQ(wasFree, std::vector<bool>(8, false)) << "created and loaded";
    wasFree.clear();
    created.save();
    EXPECT_EQ(wasFree, std::vector<bool>(4, false)) << "saved";
}

// The sanitizers see whether each access is guarded, here and below.
TEST_F(StoreThreads, ProviderSaveAndReloadMayRace)
{
    support::inThreads(s_threadCount, [](std::size_t i) {
        for (int round = 0; round < 20; ++round) {
            ConfigurationFile* const shared = ConfigurationFile::getInstance();
            shared->setProvider(static_cast<unsigned short>(1000 + i));
            shared->save();
        }
    });
    const unsigned short provider = readWithModernConfigurationFile(file()).provider;
    EXPECT_TRUE(provider >= 1000 && provider < 1000 + s_threadCount) << provider;
    EXPECT_EQ(m_configuration.read(),
              m_configuration.header() + ":Provider=" + std::to_string(provider) + '\n');
}

/// Visits all entries; false unless all texts are those of one file.
bool areEntriesConsistent(const ConfigurationFile& store)
{
    const std::vector<std::string> all = store.getAllResources();
    std::size_t seen = 0;
    std::string alias;
    while (!store.getResource(seen, alias).empty()) {
        ++seen;
    }
    for (const auto& [name, resource] : store.m_aliases) {
        seen += resource == all.front() ? 0 : 1000;
    }
    return all.size() == 1 && seen == 40 && !store.lookupAlias(all.front()).empty();
}

TEST_F(StoreThreads, AReaderWithTheMutexSeesOneFileWhileOthersReload)
{
    const support::FileReplacer replacer(m_configuration);
    int consistent = 0;
    for (int round = 0; round < 200; ++round) {
        const std::lock_guard<std::recursive_mutex> lock(ConfigurationFile::getMutex());
        consistent += areEntriesConsistent(store()) ? 1 : 0;
    }
    EXPECT_EQ(consistent, 200);
}

TEST_F(StoreThreads, AReaderWithoutTheMutexMayReadWhileOthersSave)
{
    m_configuration.write(support::FileReplacer::linesOf(0));
    const ConfigurationFile& read = store();
    std::atomic<bool> isDone{false};
    std::thread saver([&isDone, shared = &store()] {
        while (!isDone) {
            shared->save();
        }
    });
    int consistent = 0;
    for (int round = 0; round < 50; ++round) {
        consistent += areEntriesConsistent(read) ? 1 : 0;
    }
    isDone = true;
    saver.join();
    EXPECT_EQ(consistent, 50);
}

} // namespace
