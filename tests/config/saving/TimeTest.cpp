// SPDX-License-Identifier: MIT
// The modification time of a saved file.

#include "config/AtomicFileWrite.h"
#include "config/ConfigurationFile.h"
#include "tests/config/saving/SavingTest.h"
#include "tests/support/Files.h"

#include <cstdlib>
#include <ctime>

namespace {

namespace fs = std::filesystem;
using QvVisa::WriteOptions;

/// Of a file that is replaced, or (true) written in place.
class Time : public SavingTest, public testing::WithParamInterface<bool>
{
protected:
    Time()
    {
        if (GetParam()) {
            fs::create_hard_link(file(), folder() / "second");
        }
    }

    std::time_t timeAfterSave(WriteOptions options) const
    {
        EXPECT_TRUE(QvVisa::writeFileAtomically(file(), s_new, options));
        return statusOf(file()).st_mtime;
    }
};

TEST_P(Time, IsTheNextSecondWhereItWouldBeTheOneToAvoid)
{
    // As often as it takes for a save to begin and end in one second.
    for (;;) {
        WriteOptions options;
        options.timeToAvoid = std::time(nullptr);
        const std::time_t saved = timeAfterSave(options);
        if (std::time(nullptr) == options.timeToAvoid) {
            EXPECT_EQ(saved, *options.timeToAvoid + 1);
            return;
        }
    }
}

TEST_P(Time, IsTheSavesOtherwise)
{
    for (const std::time_t other : {std::time_t{0}, std::time(nullptr) - 10}) {
        WriteOptions options;
        options.timeToAvoid = other;
        const std::time_t before = std::time(nullptr);
        const std::time_t saved = timeAfterSave(options);
        // The file system's clock may lag by a tick.
        EXPECT_GE(saved, before - 1);
        EXPECT_LE(saved, std::time(nullptr));
    }
}

TEST_P(Time, IsLaterThanTheOldFilesOnRequest)
{
    const std::time_t future = std::time(nullptr) + 1000;
    support::setModificationTime(file(), future);
    WriteOptions options;
    options.isLaterThanOld = true;
    EXPECT_EQ(timeAfterSave(options), future + 1);
    options.timeToAvoid = future + 2;
    EXPECT_EQ(timeAfterSave(options), future + 3);
}

TEST_P(Time, LetsTheStoreReadBackASaveInTheSecondOfItsLastLoad)
{
    ::setenv("QVVISACONFFILE", file().c_str(), 1);
    const auto store = [] { return QvVisa::ConfigurationFile::getInstance(); };
    for (;;) {
        const std::time_t now = std::time(nullptr);
        support::writeFile(file(), ":QvVisaConfigurationFileVersion01\nGPIB0::1::INSTR\n");
        support::setModificationTime(file(), now);
        ASSERT_EQ(store()->m_resources.size(), 1U);
        store()->setData({{"GPIB0::2::INSTR", "lower"}});
        store()->save();
        if (std::time(nullptr) == now) {
            break;
        }
    }
    EXPECT_EQ(store()->m_aliases.count("LOWER"), 1U) << "not read back";
}

INSTANTIATE_TEST_SUITE_P(InPlace, Time, testing::Bool());

} // namespace
