// SPDX-License-Identifier: MIT
#include "config/ConfigurationFile.h"
#include "model/ConfigurationModel.h"
#include "tests/support/ConfigurationFixture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

namespace {

// The sanitizers see whether the model reads and replaces the tables under the store's mutex.
TEST(ModelThreads, LoadingAndSavingMayRaceWithReloads)
{
    support::ConfigurationFixture configuration;
    std::atomic<bool> isDone{false};
    std::thread reloader([&isDone] {
        while (!isDone) {
            QvVisa::ConfigurationFile::getInstance();
        }
    });
    int wholeLoads = 0;
    for (int round = 0; round < 100; ++round) {
        const std::string text(100, static_cast<char>('a' + round % 26));
        std::string lines;
        for (int i = 0; i < 20; ++i) {
            lines += text + "\nALIAS" + std::to_string(i) + '=' + text + '\n';
        }
        configuration.write(lines);
        ConfigurationModel model(nullptr);
        int rows = 0;
        while (rows < model.rowCount() &&
               model.data(model.index(rows, 0)).toString().toStdString() == text) {
            ++rows;
        }
        wholeLoads += rows == 40 && model.rowCount() == 40 ? 1 : 0;
        model.save();
    }
    isDone = true;
    reloader.join();
    EXPECT_EQ(wholeLoads, 100);
}

} // namespace
