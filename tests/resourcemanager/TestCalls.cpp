// SPDX-License-Identifier: MIT
#include "resourcemanager/ResourceSource.h"
#include "resourcemanager/VisaCalls.h"
#include "visa/StatusNames.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <poll.h>
#include <pthread.h>

using resourcemanager::Cancellation;
using resourcemanager::Search;
using resourcemanager::SearchResult;
using visa::statusName;

namespace {

/// What the sources of a case do in a search; each case runs in a process of its own.
std::function<SearchResult(const Search&)>& onSearch()
{
    static std::function<SearchResult(const Search&)> function = [](const Search&) {
        return SearchResult{{"ASRL1::INSTR"}, {}};
    };
    return function;
}

std::vector<std::string>& loggedLines()
{
    static std::vector<std::string> lines;
    return lines;
}

class TestSource : public resourcemanager::ResourceSource
{
public:
    std::string manufacturerName() const override { return "Test"; }
    SearchResult search(const Search& search) override { return onSearch()(search); }
    std::string alias(const visa::ResourceName& name) override { return "at " + name.fullName; }
};

ViSession openManager()
{
    ViSession session = VI_NULL;
    EXPECT_EQ(statusName(viOpenDefaultRM(&session)), "VI_SUCCESS");
    return session;
}

std::string find(ViSession session, const char* expression = "?*")
{
    ViFindList list = VI_NULL;
    ViUInt32 count = 0;
    std::array<ViChar, VI_FIND_BUFLEN> description{};
    const ViStatus status = viFindRsrc(session, expression, &list, &count, description.data());
    return status < 0 ? statusName(status) : std::to_string(count) + ' ' + description.data();
}

} // namespace

std::shared_ptr<resourcemanager::ResourceSource> resourcemanager::openResourceSource()
{
    return std::make_shared<TestSource>();
}

std::function<void(const std::string&)> resourcemanager::callLog()
{
    return [](const std::string& line) {
        if (line.compare(0, 12, "viStatusDesc") == 0) {
            loggedLines().push_back(line);
        }
    };
}

TEST(Calls, ASearchGetsTheAttributesThatTheClientHasSet)
{
    std::vector<std::string> seen;
    onSearch() = [&](const Search& search) {
        seen.push_back(
            search.text + ' ' +
            std::to_string(search.searchTime.value_or(std::chrono::milliseconds(-1)).count()) +
            ' ' + std::to_string(search.searchKinds.value_or(99)) + ' ' +
            std::to_string(search.expression.canMatchPrefix("TCPIP")));
        EXPECT_EQ(search.deadline(std::chrono::milliseconds(1500)) - search.begin,
                  std::min(search.searchTime.value_or(std::chrono::milliseconds(9999)),
                           std::chrono::milliseconds(1500)));
        return SearchResult{};
    };
    const ViSession session = openManager();
    EXPECT_EQ(find(session), "VI_ERROR_RSRC_NFOUND");
    viSetAttribute(session, QV_ATTR_SEARCH_TIME, 1000);
    EXPECT_EQ(find(session, "ASRL?*"), "VI_ERROR_RSRC_NFOUND");
    viSetAttribute(session, QV_ATTR_SEARCH_TIME, 0);
    viSetAttribute(session, QV_ATTR_SEARCH_KINDS, 0);
    EXPECT_EQ(find(session), "VI_ERROR_RSRC_NFOUND");
    viSetAttribute(session, QV_ATTR_SEARCH_TIME, 0xFFFFFFFF);
    EXPECT_EQ(find(session), "VI_ERROR_RSRC_NFOUND");
    EXPECT_EQ(seen, (std::vector<std::string>{"?* -1 99 1", "ASRL?* 1000 99 0", "?* 0 0 1",
                                              "?* 4294967295 0 1"}));
}

TEST(Calls, AMalformedExpressionIsNotSearched)
{
    onSearch() = [](const Search&) -> SearchResult { throw std::logic_error("searched"); };
    const ViSession session = openManager();
    for (const char* const malformed : {"", "[", "?*{VI_ATTR_INTF_NUM == 1}"}) {
        EXPECT_EQ(find(session, malformed), "VI_ERROR_INV_EXPR") << malformed;
    }
    EXPECT_EQ(statusName(viFindRsrc(session, nullptr, nullptr, nullptr,
                                    std::array<ViChar, VI_FIND_BUFLEN>().data())),
              "VI_ERROR_INV_EXPR");
}

TEST(Calls, ClosingTheManagerEndsItsSearchAndNoOther)
{
    std::promise<void> released;
    const std::shared_future<void> release = released.get_future().share();
    std::atomic<int> running{0};
    onSearch() = [&](const Search& search) {
        ++running;
        if (search.text == "waiting") {
            EXPECT_TRUE(search.cancellation.waitFor(std::chrono::hours(1)));
        } else if (search.text == "polling") {
            pollfd end{search.cancellation.descriptor(), POLLIN, 0};
            EXPECT_EQ(::poll(&end, 1, -1), 1);
        } else if (search.text == "other") {
            release.wait();
            EXPECT_FALSE(search.cancellation.isCancelled());
        }
        return SearchResult{{"ASRL1::INSTR"}, {}};
    };
    const ViSession closed = openManager();
    const ViSession other = openManager();
    const auto search = [](ViSession session, const char* text) {
        return std::async(std::launch::async, [=] { return find(session, text); });
    };
    auto waiting = search(closed, "waiting");
    auto polling = search(closed, "polling");
    auto kept = search(other, "other");
    while (running < 3) {
        std::this_thread::yield();
    }
    // Meanwhile other calls are not delayed.
    EXPECT_EQ(find(openManager(), "quick"), "1 ASRL1::INSTR");
    EXPECT_EQ(statusName(viClose(closed)), "VI_SUCCESS");
    EXPECT_EQ(waiting.get(), "VI_ERROR_INV_OBJECT");
    EXPECT_EQ(polling.get(), "VI_ERROR_INV_OBJECT");
    released.set_value();
    EXPECT_EQ(kept.get(), "1 ASRL1::INSTR");
}

TEST(Calls, AnExceptionOfTheSourceBecomesAStatus)
{
    const ViSession session = openManager();
    onSearch() = [](const Search&) -> SearchResult { throw std::bad_alloc(); };
    EXPECT_EQ(find(session), "VI_ERROR_ALLOC");
    onSearch() = [](const Search&) -> SearchResult { throw std::runtime_error("x"); };
    EXPECT_EQ(find(session), "VI_ERROR_SYSTEM_ERROR");
    onSearch() = [](const Search&) -> SearchResult { throw 7; };
    EXPECT_EQ(find(session), "VI_ERROR_SYSTEM_ERROR");
}

#ifdef __GLIBC__
TEST(Calls, CancellingAThreadEndsItInTheMiddleOfASearch)
{
    static std::atomic<bool> isSearching{false};
    onSearch() = [](const Search&) -> SearchResult {
        isSearching = true;
        for (;;) {
            ::poll(nullptr, 0, 10); // a cancellation point
        }
    };
    pthread_t thread = {};
    ASSERT_EQ(::pthread_create(
                  &thread, nullptr,
                  [](void*) -> void* {
                      find(openManager());
                      return nullptr;
                  },
                  nullptr),
              0);
    while (!isSearching) {
        std::this_thread::yield();
    }
    ASSERT_EQ(::pthread_cancel(thread), 0);
    void* result = nullptr;
    ASSERT_EQ(::pthread_join(thread, &result), 0);
    EXPECT_EQ(result, PTHREAD_CANCELED);
    EXPECT_NE(openManager(), VI_NULL);
}
#endif

TEST(Calls, ASourceNeedNotOpenInstruments)
{
    const ViSession session = openManager();
    ViSession instrument = 77;
    EXPECT_EQ(statusName(viOpen(session, "ASRL1::INSTR", 0, 0, &instrument)), "VI_ERROR_NSUP_OPER");
    EXPECT_EQ(statusName(viOpen(session, "ASRL1x", 0, 0, &instrument)), "VI_ERROR_INV_RSRC_NAME");
    EXPECT_EQ(statusName(viOpen(999, "ASRL1", 0, 0, &instrument)), "VI_ERROR_INV_OBJECT");
    EXPECT_EQ(statusName(viOpen(session, "ASRL1", 8, 0, &instrument)), "VI_ERROR_INV_ACC_MODE");
    EXPECT_EQ(instrument, 77U);
}

TEST(Calls, ParsingInFullGivesTheSourcesAlias)
{
    ViUInt16 type = 0;
    ViUInt16 number = 0;
    std::array<std::array<ViChar, VI_FIND_BUFLEN>, 3> texts{};
    EXPECT_EQ(statusName(viParseRsrcEx(openManager(), "asrl7", &type, &number, texts[0].data(),
                                       texts[1].data(), texts[2].data())),
              "VI_SUCCESS");
    EXPECT_STREQ(texts[1].data(), "ASRL7::INSTR");
    EXPECT_STREQ(texts[2].data(), "at ASRL7::INSTR");
}

TEST(Calls, EveryStatusIsDescribedWithOrWithoutAnObject)
{
    std::array<ViChar, VI_FIND_BUFLEN> text{};
    for (const ViObject object : {openManager(), VI_NULL, ViObject{999}}) {
        EXPECT_EQ(statusName(viStatusDesc(object, VI_ERROR_TMO, text.data())), "VI_SUCCESS");
        EXPECT_STREQ(text.data(), visa::statusDescription(VI_ERROR_TMO));
        EXPECT_EQ(statusName(viStatusDesc(object, visaError(0x7777), text.data())),
                  "VI_WARN_UNKNOWN_STATUS");
        EXPECT_STREQ(text.data(), "Unknown status 0xBFFF7777.");
        EXPECT_EQ(statusName(viStatusDesc(object, VI_ERROR_TMO, nullptr)), "VI_ERROR_USER_BUF");
    }
    ASSERT_EQ(loggedLines().size(), 9U);
    EXPECT_EQ(loggedLines()[4], "viStatusDesc(0, 0xBFFF7777) -> VI_WARN_UNKNOWN_STATUS, "
                                "description=\"Unknown status 0xBFFF7777.\"\n");
}

TEST(Cancellation, TheDescriptorBecomesReadable)
{
    Cancellation before;
    pollfd end{before.descriptor(), POLLIN, 0};
    EXPECT_EQ(::poll(&end, 1, 0), 0);
    EXPECT_FALSE(before.waitFor(std::chrono::milliseconds(0)));
    before.cancel();
    before.cancel();
    EXPECT_EQ(::poll(&end, 1, 0), 1);
    EXPECT_TRUE(before.waitFor(std::chrono::hours(1)));

    Cancellation after;
    after.cancel();
    end.fd = after.descriptor();
    EXPECT_EQ(::poll(&end, 1, 0), 1);
}
