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

class Time : public SavingTest
{
protected:
    /// Saves as often as it takes for the save to begin and end in one second, with that second as
    /// the time to avoid, and returns it.
    std::time_t saveWithinASecond(WriteOptions options) const
    {
        for (;;) {
            const std::time_t now = std::time(nullptr);
            options.timeToAvoid = now;
            EXPECT_TRUE(QvVisa::writeFileAtomically(file(), s_new, options));
            if (std::time(nullptr) == now) {
                return now;
            }
        }
    }

    void linkTwice() const { fs::create_hard_link(file(), folder() / "second"); }
};

TEST_F(Time, IsTheNextSecondWhereItWouldBeTheOneToAvoid)
{
    for (const bool isInPlace : {false, true}) {
        if (isInPlace) {
            linkTwice();
        }
        const std::time_t saved = saveWithinASecond({});
        EXPECT_EQ(statusOf(file()).st_mtime, saved + 1);
    }
}

TEST_F(Time, IsTheSavesOtherwise)
{
    for (const bool isInPlace : {false, true}) {
        if (isInPlace) {
            linkTwice();
        }
        for (const std::time_t other : {std::time_t{0}, std::time(nullptr) - 10}) {
            WriteOptions options;
            options.timeToAvoid = other;
            const std::time_t before = std::time(nullptr);
            EXPECT_TRUE(QvVisa::writeFileAtomically(file(), s_new, options));
            // The file system's clock may lag by a tick.
            EXPECT_GE(statusOf(file()).st_mtime, before - 1);
            EXPECT_LE(statusOf(file()).st_mtime, std::time(nullptr));
        }
    }
}

TEST_F(Time, IsLaterThanTheOldFilesOnRequest)
{
    WriteOptions options;
    options.isLaterThanOld = true;
    const std::time_t future = std::time(nullptr) + 1000;
    for (const bool isInPlace : {false, true}) {
        if (isInPlace) {
            linkTwice();
        }
        support::setModificationTime(file(), future);
        EXPECT_TRUE(QvVisa::writeFileAtomically(file(), s_new, options));
        EXPECT_EQ(statusOf(file()).st_mtime, future + 1);
    }
    options.timeToAvoid = future + 2;
    EXPECT_TRUE(QvVisa::writeFileAtomically(file(), s_new, options));
    EXPECT_EQ(statusOf(file()).st_mtime, future + 3);
}

TEST_F(Time, LetsTheStoreReadBackASaveInTheSecondOfItsLastLoad)
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

} // namespace
