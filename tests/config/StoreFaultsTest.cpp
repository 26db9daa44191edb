// SPDX-License-Identifier: MIT
// Looks of the store at its file in which one system call after the other goes wrong, or another
// program comes in between.

#include "tests/config/saving/SaveFaultsRun.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <iostream>
#include <string>
#include <utility>

namespace {

namespace fs = std::filesystem;

class StoreFaults : public testing::Test
{
protected:
    fs::path path() const { return m_configuration.path(); }
    fs::path changed() const { return m_configuration.home().root() / "changed"; }
    fs::path replacement() const { return m_configuration.home().root() / "replacement"; }

    /// A file that the saver knows by this name if it was read whole and alone.
    static std::string textOf(const std::string& name, int count)
    {
        std::string text = ":Provider=" + std::to_string(count) + "\n";
        for (int i = 0; i < count; ++i) {
            text += name + "\n";
        }
        return text;
    }

    static void write(const fs::path& file, const std::string& text, std::int64_t seconds)
    {
        support::writeFile(file, text);
        support::setModificationTime(file, seconds);
    }

    /// The saver reads FIRST, then the file is replaced by CHANGED, and the store looks again
    /// under the plan and once more without.
    SaverRun look(const FaultPlan& plan, int count = 3) const
    {
        const std::string header = m_configuration.header();
        write(path(), header + textOf("FIRST", 2), 1'000'000'000);
        write(changed(), header + textOf("CHANGED", count), 1'100'000'000);
        return runSaver("load", path(), changed(), m_configuration.home().root(), plan);
    }

    using Check = std::function<void(const std::string& answer)>;

    void lookWithFaultAtEachCall(FaultPlan plan, int count, const std::function<void()>& arrange,
                                 const Check& check) const
    {
        for (plan.call = 1;; ++plan.call) {
            arrange();
            const SaverRun run = look(plan, count);
            if (!run.reached(plan)) {
                EXPECT_GT(plan.call, 8) << "so few calls were seen: " << run.calls;
                return;
            }
            SCOPED_TRACE("call " + std::to_string(plan.call) + " of " + run.calls);
            check(run.answer);
        }
    }

    support::ConfigurationFixture m_configuration;
};

constexpr int s_few = 3;
/// Too many for one read.
constexpr int s_many = 60'000;

TEST_F(StoreFaults, ReadAChangedFile)
{
    for (const int count : {s_few, s_many}) {
        EXPECT_EQ(look({}, count).answer, "FIRST CHANGED CHANGED");
    }
}

TEST_F(StoreFaults, ReadInSpiteOfInterruptionsAndShortReads)
{
    for (const int count : {s_few, s_many}) {
        EXPECT_EQ(look({FaultPlan::Interrupt}, count).answer, "FIRST CHANGED CHANGED");
        EXPECT_EQ(look({FaultPlan::Shorten}, count).answer, "FIRST CHANGED CHANGED");
    }
}

TEST_F(StoreFaults, KeepEverythingWhenACallFailsAndTryAgain)
{
    for (const int error : {EIO, EACCES, EMFILE}) {
        for (const FaultPlan::Action action : {FaultPlan::Fail, FaultPlan::FailForGood}) {
            lookWithFaultAtEachCall(
                {action, 0, error}, s_few, [] {},
                [](const std::string& answer) {
                    EXPECT_TRUE(answer == "FIRST FIRST CHANGED" ||
                                answer == "FIRST CHANGED CHANGED")
                        << answer;
                });
        }
    }
    lookWithFaultAtEachCall(
        {FaultPlan::Fail, 0, EIO}, s_many, [] {},
        [](const std::string& answer) {
            EXPECT_TRUE(answer == "FIRST FIRST CHANGED" || answer == "FIRST CHANGED CHANGED")
                << answer;
        });
}

TEST_F(StoreFaults, NoticeAFileThatIsReplacedDuringTheLook)
{
    const std::string name = replacement();
    const std::string target = path();
    lookWithFaultAtEachCall(
        {FaultPlan::Replace, 0, 0, name.c_str(), target.c_str()}, s_few,
        [this] {
            write(replacement(), m_configuration.header() + textOf("LAST", 4), 1'200'000'000);
        },
        [](const std::string& answer) {
            EXPECT_TRUE(answer == "FIRST CHANGED LAST" || answer == "FIRST LAST LAST") << answer;
        });
}

TEST_F(StoreFaults, ReadTheWholeNextTimeWhenTheFileIsRewrittenInPlaceDuringTheLook)
{
    const std::string name = replacement();
    const std::string target = path();
    // Shorter and longer than what it takes the place of, which is more than one read in the end.
    for (const auto& [count, lastCount] : {std::pair(s_few, 4), std::pair(s_few, s_many),
                                           std::pair(s_many, 4), std::pair(s_many, s_many)}) {
        int mixed = 0;
        lookWithFaultAtEachCall(
            {FaultPlan::Rewrite, 0, 0, name.c_str(), target.c_str()}, count,
            [&, lines = lastCount] {
                write(replacement(), m_configuration.header() + textOf("LAST", lines),
                      1'200'000'000);
            },
            [&mixed](const std::string& answer) {
                // What is read meanwhile may be of both, and then does not last.
                mixed += answer == "FIRST mixed LAST" ? 1 : 0;
                EXPECT_TRUE(answer == "FIRST CHANGED LAST" || answer == "FIRST LAST LAST" ||
                            answer == "FIRST mixed LAST")
                    << answer;
            });
        std::cout << mixed << " looks read of both\n";
    }
}

TEST_F(StoreFaults, TakeNothingFromAFileThatLosesItsHeaderDuringTheLook)
{
    const std::string name = replacement();
    const std::string target = path();
    for (const std::string& text : {textOf("LAST", 4), std::string(), std::string("# no header")}) {
        lookWithFaultAtEachCall(
            {FaultPlan::Replace, 0, 0, name.c_str(), target.c_str()}, s_few,
            [&] { write(replacement(), text, 1'200'000'000); },
            [](const std::string& answer) {
                EXPECT_TRUE(answer == "FIRST FIRST FIRST" || answer == "FIRST CHANGED CHANGED")
                    << answer;
            });
    }
}

} // namespace
