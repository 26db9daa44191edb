// SPDX-License-Identifier: MIT
#include "model/ConfigurationModel.h"
#include "tests/support/FileReplacer.h"

#include <gtest/gtest.h>

namespace {

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
    const support::FileReplacer replacer(configuration);
    int wholeLoads = 0;
    for (int round = 0; round < 200; ++round) {
        ConfigurationModel model(nullptr);
        wholeLoads += isOneFile(model) ? 1 : 0;
        if (round % 4 == 0) {
            model.save();
        }
    }
    EXPECT_EQ(wholeLoads, 200);
}

} // namespace
