// SPDX-License-Identifier: MIT
#include "tests/simulator/CallsFixture.h"
#include "tests/support/Files.h"

#include <atomic>
#include <chrono>
#include <future>
#include <set>
#include <string>
#include <thread>
#include <vector>

using visa::statusName;

namespace {

constexpr int threadCount = 4;

class ThreadsTest : public CallsFixture
{
protected:
    /// Runs the body in several threads that set off together, each with its number.
    template <typename Body>
    static void together(Body body)
    {
        std::atomic<int> waiting{threadCount};
        std::vector<std::thread> threads;
        threads.reserve(threadCount);
        for (int number = 0; number < threadCount; ++number) {
            threads.emplace_back([&waiting, &body, number] {
                --waiting;
                while (waiting != 0) {
                    std::this_thread::yield();
                }
                body(number);
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
};

} // namespace

TEST_F(ThreadsTest, SessionsSideBySideDoNotDisturbEachOther)
{
    bench.write("resource ASRL{n}::INSTR repeat=20 idn=port\nresource GPIB0::5::INSTR\n");
    constexpr int rounds = 10;
    together([this](int) {
        for (int round = 0; round < rounds; ++round) {
            const ViSession session = openManager();
            EXPECT_EQ(list(session, "?*").size(), 21U);
            EXPECT_EQ(list(session, "GPIB?*"), std::vector<std::string>{"GPIB0::5::INSTR"});
            ViSession port = VI_NULL;
            EXPECT_EQ(statusName(visa.open(session, "ASRL7", 0, 0, &port)), "VI_SUCCESS");
            const ViByte question[] = {'*', 'I', 'D', 'N', '?'};
            EXPECT_EQ(statusName(visa.write(port, question, 5, nullptr)), "VI_SUCCESS");
            ViByte answer[10];
            ViUInt32 count = 0;
            EXPECT_EQ(statusName(visa.read(port, answer, 10, &count)), "VI_SUCCESS");
            EXPECT_EQ(count, 5U);
            EXPECT_EQ(statusName(visa.close(session)), "VI_SUCCESS");
        }
    });
    // A line a call, none torn.
    std::size_t closed = 0;
    for (const std::string& line : bench.calls()) {
        EXPECT_EQ(line.compare(0, 2, "vi"), 0) << line;
        EXPECT_NE(line.find(") -> VI_"), std::string::npos) << line;
        closed += line.compare(0, 8, "viClose(") == 0 ? 1U : 0U;
    }
    EXPECT_EQ(closed, 3U * rounds * threadCount);
}

TEST_F(ThreadsTest, OneFindListGivesEachMatchOnce)
{
    constexpr ViUInt32 size = 20000;
    bench.write("resource ASRL{n}::INSTR repeat=20000\n");
    unsetVariable("QVVISA_BENCH_LOG"); // its file would bring the threads into line
    const ViSession session = openManager();
    ViFindList findList = VI_NULL;
    Buffer first;
    ASSERT_EQ(statusName(visa.findRsrc(session, "?*", &findList, nullptr, first.characters.data())),
              "VI_SUCCESS");
    std::vector<std::vector<std::string>> found(threadCount);
    together([&](int number) {
        Buffer description;
        while (visa.findNext(findList, description.characters.data()) == VI_SUCCESS) {
            found[static_cast<std::size_t>(number)].push_back(description.text());
        }
    });
    std::set<std::string> all{first.text()};
    std::size_t count = 1;
    for (const std::vector<std::string>& part : found) {
        count += part.size();
        all.insert(part.begin(), part.end());
    }
    EXPECT_EQ(count, size);
    EXPECT_EQ(all.size(), size);
}

TEST_F(ThreadsTest, ASessionMayBeClosedWhileOthersUseIt)
{
    bench.write("resource ASRL{n}::INSTR repeat=1000\n");
    for (int round = 0; round < 5; ++round) {
        const ViSession session = openManager();
        ViFindList findList = VI_NULL;
        Buffer first;
        ASSERT_EQ(
            statusName(visa.findRsrc(session, "?*", &findList, nullptr, first.characters.data())),
            "VI_SUCCESS");
        std::atomic<int> closedHere{0};
        together([&](int number) {
            Buffer description;
            ViStatus status = VI_SUCCESS;
            for (int step = 0; status == VI_SUCCESS; ++step) {
                if (number == 0 && step == 10 && visa.close(session) == VI_SUCCESS) {
                    ++closedHere;
                }
                visa.setAttribute(session, QV_ATTR_SEARCH_TIME, 1);
                status = visa.findNext(findList, description.characters.data());
            }
            EXPECT_TRUE(status == VI_ERROR_INV_OBJECT || status == VI_ERROR_RSRC_NFOUND)
                << statusName(status);
        });
        EXPECT_LE(closedHere, 1);
        visa.close(session);
        EXPECT_EQ(statusName(visa.findNext(findList, first.characters.data())),
                  "VI_ERROR_INV_OBJECT");
    }
}

TEST_F(ThreadsTest, ASearchWaitsForItsFileAndHoldsUpNobodyElse)
{
    bench.write("resource ASRL1::INSTR\nwait-for-file go for=?*\n");
    const ViSession session = openManager();
    std::future<std::vector<std::string>> waiting =
        std::async(std::launch::async, [&] { return list(session, "?*"); });

    // Enough of other work on the same session for a search that does not wait to have returned.
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(list(session, "ASRL?*"), std::vector<std::string>{"ASRL1::INSTR"});
    }
    EXPECT_EQ(waiting.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    for (const std::string& line : bench.calls()) {
        EXPECT_EQ(line.find("\"?*\""), std::string::npos) << line;
    }
    support::writeFile(bench.pathFor("go"), "");
    EXPECT_EQ(waiting.get(), std::vector<std::string>{"ASRL1::INSTR"});
}

TEST_F(ThreadsTest, AnyCallMayWaitForItsFile)
{
    bench.write("resource ASRL{n}::INSTR repeat=3\nwait-for-file go call=viFindNext at=2\n");
    const ViSession session = openManager();
    std::future<std::vector<std::string>> waiting =
        std::async(std::launch::async, [&] { return list(session, "?*"); });
    const auto deliveries = [this] {
        std::size_t count = 0;
        for (const std::string& line : bench.calls()) {
            count += line.find("description=") != std::string::npos ? 1U : 0U;
        }
        return count;
    };
    while (deliveries() < 2) {
        std::this_thread::yield();
    }
    // Enough of other work for a call that does not wait to have returned.
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(statusName(visa.setAttribute(session, QV_ATTR_SEARCH_TIME, 1)), "VI_SUCCESS");
    }
    EXPECT_EQ(deliveries(), 2U);
    support::writeFile(bench.pathFor("go"), "");
    EXPECT_EQ(waiting.get(),
              (std::vector<std::string>{"ASRL1::INSTR", "ASRL2::INSTR", "ASRL3::INSTR"}));
}

TEST_F(ThreadsTest, ASearchOutlivesItsSession)
{
    bench.write("resource ASRL1::INSTR\nwait-for-file go\n");
    const ViSession session = openManager();
    std::atomic<bool> isRunning{false};
    std::future<std::string> waiting = std::async(std::launch::async, [&] {
        ViFindList findList = VI_NULL;
        Buffer description;
        isRunning = true;
        return statusName(
            visa.findRsrc(session, "?*", &findList, nullptr, description.characters.data()));
    });
    while (!isRunning) {
        std::this_thread::yield();
    }
    // Whether or not the search has begun by now, it must find the session closed in the end.
    EXPECT_EQ(statusName(visa.close(session)), "VI_SUCCESS");
    support::writeFile(bench.pathFor("go"), "");
    EXPECT_EQ(waiting.get(), "VI_ERROR_INV_OBJECT");
}
