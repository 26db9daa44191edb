// SPDX-License-Identifier: MIT
#include "config/ModernConfigurationFile.h"
#include "tests/config/StoreFixture.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <mutex>
#include <thread>

namespace {

using QvVisa::ConfigurationFile;

constexpr std::size_t s_threadCount = 16;

/// Runs the action in many threads that start at once.
template <typename Action>
void race(Action action)
{
    std::promise<void> start;
    const std::shared_future<void> started = start.get_future().share();
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < s_threadCount; ++i) {
        threads.emplace_back([started, action, i] {
            started.wait();
            action(i);
        });
    }
    start.set_value();
    for (std::thread& thread : threads) {
        thread.join();
    }
}

bool isFreeForAnotherThread(std::recursive_mutex& mutex)
{
    bool isFree = false;
    std::thread other([&] {
        isFree = mutex.try_lock();
        if (isFree) {
            mutex.unlock();
        }
    });
    other.join();
    return isFree;
}

class StoreThreads : public StoreTest
{};

TEST_F(StoreThreads, MakeOneStore)
{
    m_configuration.write("GPIB0::1::INSTR\n");
    std::vector<const ConfigurationFile*> seen(s_threadCount);
    race([&seen](std::size_t i) { seen[i] = ConfigurationFile::getInstance(); });
    EXPECT_EQ(seen, std::vector<const ConfigurationFile*>(s_threadCount, &store()));
    EXPECT_EQ(SearchSandbox::takeQueries(), std::vector<std::string>{file()})
        << "a store that is made looks for its file once";
}

TEST_F(StoreThreads, ShareOneRecursiveMutex)
{
    std::recursive_mutex& mutex = ConfigurationFile::getMutex();
    EXPECT_EQ(&mutex, &ConfigurationFile::getMutex());
    {
        const std::lock_guard<std::recursive_mutex> lock(mutex);
        EXPECT_FALSE(isFreeForAnotherThread(mutex));
        // Whoever holds it may call the store.
        store().setProvider(5);
        store().save();
        EXPECT_EQ(ConfigurationFile::getInstanceUnsafe()->m_provider, 5);
        EXPECT_FALSE(isFreeForAnotherThread(mutex)) << "the calls gave up the holder's lock";
    }
    EXPECT_TRUE(isFreeForAnotherThread(mutex)) << "a call kept the mutex";
}

TEST_F(StoreThreads, WaitWhileAStoreIsMadeOrLooksForAPlaceToSave)
{
    std::filesystem::remove(file());
    std::vector<bool> wasFree;
    SearchSandbox::onQuery(
        [&wasFree] { wasFree.push_back(isFreeForAnotherThread(ConfigurationFile::getMutex())); });
    ConfigurationFile& made = store();
    EXPECT_EQ(wasFree, std::vector<bool>(8, false)) << "while it was made and loaded";
    wasFree.clear();
    made.save();
    EXPECT_EQ(wasFree, std::vector<bool>(4, false)) << "while it saved";
}

// The thread sanitizer's build tells whether the guarded calls are.
TEST_F(StoreThreads, MaySetTheProviderSaveAndReloadAtOnce)
{
    m_configuration.write(":Provider=1\n");
    race([](std::size_t i) {
        for (int round = 0; round < 20; ++round) {
            ConfigurationFile* const shared = ConfigurationFile::getInstance();
            shared->setProvider(static_cast<unsigned short>(1000 + i));
            shared->save();
        }
    });
    const std::string saved = m_configuration.read();
    bool isOneOfTheSaves = false;
    for (std::size_t i = 0; i < s_threadCount; ++i) {
        isOneOfTheSaves |=
            saved == m_configuration.header() + ":Provider=" + std::to_string(1000 + i) + "\n";
    }
    EXPECT_TRUE(isOneOfTheSaves) << saved;
}

} // namespace
