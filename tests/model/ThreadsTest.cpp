// SPDX-License-Identifier: MIT
#include "config/ConfigurationFile.h"
#include "model/ConfigurationModel.h"
#include "tests/support/ConfigurationFixture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

namespace {

/// A file whose texts are on the heap, so that a reader of replaced tables reads freed memory.
std::string linesOf(int number)
{
    const std::string text(100, static_cast<char>('a' + number % 26));
    std::string lines;
    for (int i = 0; i < 20; ++i) {
        lines.append(text).append("\nALIAS").append(std::to_string(i)).append("=");
        lines.append(text).append("\n");
    }
    return lines;
}

/// True when all rows are of one file.
bool isOneFile(const ConfigurationModel& model)
{
    int row = 0;
    while (row < model.rowCount() &&
           model.data(model.index(row, 0)) == model.data(model.index(0, 0))) {
        ++row;
    }
    return row == 40 && model.rowCount() == 40;
}

// The sanitizers see whether the model reads and replaces the tables under the store's mutex.
TEST(ModelThreads, LoadingAndSavingMayRaceWithReloads)
{
    support::ConfigurationFixture configuration;
    configuration.write(linesOf(0));
    std::atomic<bool> isDone{false};
    std::thread reloader([&] {
        for (int round = 1; !isDone; ++round) {
            configuration.replace(linesOf(round));
            QvVisa::ConfigurationFile::getInstance();
        }
    });
    int wholeLoads = 0;
    for (int round = 0; round < 200; ++round) {
        ConfigurationModel model(nullptr);
        wholeLoads += isOneFile(model) ? 1 : 0;
        if (round % 4 == 0) {
            model.save();
        }
    }
    isDone = true;
    reloader.join();
    EXPECT_EQ(wholeLoads, 200);
}

} // namespace
