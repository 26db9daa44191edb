// SPDX-License-Identifier: MIT
// A change check in which a system call fails, or in which another program changes the file.

#include "tests/config/store/StoreTest.h"
#include "tests/support/Files.h"
#include "tests/support/SystemCalls.h"

#include <cerrno>
#include <functional>
#include <set>
#include <utility>

namespace {

using support::CallAnswer;
using support::SystemCall;
using support::SystemCalls;

constexpr int s_few = 3;
/// More than one read.
constexpr int s_many = 30'000;

/// A file with a provider and a number of resources, all of this name.
std::string fileOf(const std::string& name, int count)
{
    std::string text =
        support::ConfigurationFixture::header() + ":Provider=" + std::to_string(count) + '\n';
    for (int i = 0; i < count; ++i) {
        text += name + '\n';
    }
    return text;
}

class StoreFaults : public StoreTest
{
protected:
    /// The resources' name, if the tables are those of one file; else "mixed".
    static std::string nameIn(const QvVisa::ConfigurationFile& store)
    {
        const std::set<std::string> names(store.m_resources.begin(), store.m_resources.end());
        const bool isOneFile = names.size() == 1 && store.m_resources.size() == store.m_provider;
        return isOneFile ? *names.begin() : "mixed";
    }

    /// Loads FIRST, replaces the file by CHANGED and makes two change checks, the first of them
    /// with the handler. Returns the names after each, and the number of calls of the first.
    std::pair<std::string, int> changeChecks(int count, SystemCalls::Handler handler)
    {
        write(fileOf("FIRST", 2), 1'000'000'000);
        QvVisa::ConfigurationFile& checked = store();
        EXPECT_EQ(nameIn(checked), "FIRST");
        write(fileOf("CHANGED", count), 1'100'000'000);
        int numberOfCalls = 0;
        {
            const SystemCalls calls(std::move(handler));
            store();
            numberOfCalls = calls.count();
        }
        const std::string name = nameIn(checked);
        return {name + ' ' + nameIn(store()), numberOfCalls};
    }

    using Handler = std::function<SystemCalls::Handler(int number)>;

    /// Makes the change checks for each system call with the handler for it, and returns all
    /// answers that came.
    std::set<std::string> answersForEachCall(int count, const Handler& handlerFor)
    {
        std::set<std::string> answers;
        const int numberOfCalls = changeChecks(count, {}).second;
        for (int number = 1; number <= numberOfCalls; ++number) {
            answers.insert(changeChecks(count, handlerFor(number)).first);
        }
        EXPECT_GT(numberOfCalls, 8);
        return answers;
    }

    /// For another program that does something before one call.
    static Handler beforeCall(const std::function<void()>& action)
    {
        return [action](int number) {
            return [action, number](const SystemCall& call) {
                if (call.number == number) {
                    action();
                }
                return CallAnswer();
            };
        };
    }
};

using Answers = std::set<std::string>;

TEST_F(StoreFaults, AFailedCallKeepsEverythingUntilTheNextChangeCheck)
{
    for (const int error : {EIO, EACCES, EMFILE}) {
        for (const bool isForGood : {false, true}) {
            EXPECT_EQ(answersForEachCall(s_few,
                                         [&](int number) {
                                             return SystemCalls::failing(number, error, isForGood);
                                         }),
                      (Answers{"CHANGED CHANGED", "FIRST CHANGED"}))
                << error << ' ' << isForGood;
        }
    }
    EXPECT_EQ(
        answersForEachCall(s_many, [](int number) { return SystemCalls::failing(number, EIO); }),
        (Answers{"CHANGED CHANGED", "FIRST CHANGED"}));
}

TEST_F(StoreFaults, AFileReplacedDuringTheCheckIsReadWholeAtOnceOrNextTime)
{
    EXPECT_EQ(answersForEachCall(s_few, beforeCall([this] {
                                     std::filesystem::remove(file());
                                     write(fileOf("LAST", 4), 1'200'000'000);
                                 })),
              (Answers{"CHANGED LAST", "LAST LAST"}));
}

TEST_F(StoreFaults, AFileRewrittenInPlaceDuringTheCheckIsReadWholeNextTime)
{
    for (const int count : {s_few, s_many}) {
        for (const int lastCount : {4, s_many + 1}) {
            const Answers answers = answersForEachCall(
                count, beforeCall([&] { write(fileOf("LAST", lastCount), 1'200'000'000); }));
            for (const std::string& answer : answers) {
                // A mixture may be read, but does not stay.
                EXPECT_TRUE(answer == "CHANGED LAST" || answer == "LAST LAST" ||
                            answer == "mixed LAST")
                    << answer;
            }
        }
    }
}

TEST_F(StoreFaults, AFileThatLosesItsHeaderDuringTheCheckIsNotTaken)
{
    for (const std::string& bytes : {std::string(":Provider=4\nLAST\n"), std::string()}) {
        EXPECT_EQ(answersForEachCall(s_few, beforeCall([&] {
                                         std::filesystem::remove(file());
                                         write(bytes, 1'200'000'000);
                                     })),
                  (Answers{"CHANGED CHANGED", "FIRST FIRST"}));
    }
}

} // namespace
