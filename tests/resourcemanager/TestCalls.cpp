// SPDX-License-Identifier: MIT
#include "resourcemanager/ResourceSource.h"
#include "tests/support/Threads.h"
#include "tests/support/VisaClient.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <mutex>
#include <new>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <poll.h>
#include <pthread.h>

using resourcemanager::Call;
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

/// What the sources answer before each viSetAttribute.
std::optional<ViStatus>& plannedStatus()
{
    static std::optional<ViStatus> status;
    return status;
}

std::mutex s_logMutex;
std::vector<std::string> s_log;

class TestSource : public resourcemanager::ResourceSource
{
public:
    std::string manufacturerName() const override { return "Test"; }
    SearchResult search(const Search& search) override { return onSearch()(search); }
    std::string alias(const visa::ResourceName& name) override { return "at " + name.fullName; }
    std::optional<ViStatus> beforeCall(Call call, std::uint32_t /*nth*/,
                                       std::string_view /*expression*/,
                                       const Cancellation& /*cancellation*/) override
    {
        return call == Call::SetAttribute ? plannedStatus() : std::nullopt;
    }
};

const support::VisaClient& client()
{
    static const support::VisaClient client(
        {&::viOpenDefaultRM, &::viFindRsrc, &::viFindNext, &::viParseRsrc, &::viParseRsrcEx,
         &::viOpen, &::viClose, &::viSetAttribute, &::viGetAttribute, &::viStatusDesc});
    return client;
}

ViSession openManager()
{
    return client().openManager();
}

std::string find(ViSession session, const char* expression = "?*", ViFindList* list = nullptr)
{
    return client().find(session, expression, list);
}

/// What a search finds: so many serial ports.
void setPorts(int count)
{
    onSearch() = [count](const Search&) {
        SearchResult result;
        for (int port = 1; port <= count; ++port) {
            result.descriptions.push_back("ASRL" + std::to_string(port) + "::INSTR");
        }
        return result;
    };
}

} // namespace

std::shared_ptr<resourcemanager::ResourceSource> resourcemanager::openResourceSource()
{
    return std::make_shared<TestSource>();
}

std::function<void(const std::string&)> resourcemanager::callLog()
{
    return [](const std::string& line) {
        const std::lock_guard<std::mutex> lock(s_logMutex);
        s_log.push_back(line);
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
    EXPECT_EQ(find(session, nullptr), "VI_ERROR_INV_EXPR");
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
    EXPECT_EQ(find(openManager(), "quick"), "VI_SUCCESS 1 ASRL1::INSTR");
    EXPECT_EQ(statusName(viClose(closed)), "VI_SUCCESS");
    EXPECT_EQ(waiting.get(), "VI_ERROR_INV_OBJECT");
    EXPECT_EQ(polling.get(), "VI_ERROR_INV_OBJECT");
    released.set_value();
    EXPECT_EQ(kept.get(), "VI_SUCCESS 1 ASRL1::INSTR");
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

TEST(Calls, AStatusOfTheSourceReplacesSuccessOrTheWholeCall)
{
    const ViSession session = openManager();
    const auto searchTime = [&] {
        ViUInt32 value = 0;
        EXPECT_EQ(statusName(viGetAttribute(session, QV_ATTR_SEARCH_TIME, &value)), "VI_SUCCESS");
        return value;
    };
    plannedStatus() = VI_WARN_UNKNOWN_STATUS;
    EXPECT_EQ(client().set(session, QV_ATTR_SEARCH_TIME, 7), "VI_WARN_UNKNOWN_STATUS");
    EXPECT_EQ(searchTime(), 7U);
    EXPECT_EQ(client().set(session, VI_ATTR_TMO_VALUE, 7), "VI_ERROR_NSUP_ATTR");
    plannedStatus() = VI_ERROR_TMO;
    EXPECT_EQ(client().set(session, QV_ATTR_SEARCH_TIME, 8), "VI_ERROR_TMO");
    EXPECT_EQ(searchTime(), 7U);
}

TEST(Calls, AManagerHasTheAttributesOfEverySession)
{
    const ViSession session = openManager();
    for (const auto& [attribute, expected] : {std::pair(VI_ATTR_RSRC_IMPL_VERSION, 0x00500C01U),
                                              {VI_ATTR_RSRC_SPEC_VERSION, 0x00500800U},
                                              {VI_ATTR_RSRC_LOCK_STATE, 0U},
                                              {VI_ATTR_MAX_QUEUE_LENGTH, 50U},
                                              {VI_ATTR_USER_DATA_32, 0U}}) {
        ViUInt32 value = 99;
        EXPECT_EQ(statusName(viGetAttribute(session, attribute, &value)), "VI_SUCCESS");
        EXPECT_EQ(value, expected) << std::hex << attribute;
    }
}

TEST(Calls, ASourceNeedNotOpenInstruments)
{
    const ViSession session = openManager();
    ViSession instrument = VI_NULL;
    EXPECT_EQ(client().open(session, "ASRL1::INSTR", instrument), "VI_ERROR_NSUP_OPER");
    EXPECT_EQ(client().open(session, "ASRL1x", instrument), "VI_ERROR_INV_RSRC_NAME");
    EXPECT_EQ(client().open(session, nullptr, instrument), "VI_ERROR_INV_RSRC_NAME");
    EXPECT_EQ(client().open(999, "ASRL1", instrument), "VI_ERROR_INV_OBJECT");
    EXPECT_EQ(client().open(session, "ASRL1", instrument, 8), "VI_ERROR_INV_ACC_MODE");
}

TEST(Calls, ParsingInFullGivesTheAliasOfTheSource)
{
    EXPECT_EQ(client().parseInFull(openManager(), "asrl7"),
              "VI_SUCCESS 4 7 INSTR ASRL7::INSTR at ASRL7::INSTR");
}

TEST(Calls, FindListsAreReadIndependently)
{
    setPorts(3);
    const ViSession session = openManager();
    ViFindList one = VI_NULL;
    ViFindList two = VI_NULL;
    EXPECT_EQ(find(session, "?*", &one), "VI_SUCCESS 3 ASRL1::INSTR");
    EXPECT_EQ(client().next(one), "VI_SUCCESS ASRL2::INSTR");
    EXPECT_EQ(find(session, "?*", &two), "VI_SUCCESS 3 ASRL1::INSTR");
    EXPECT_EQ(client().next(one), "VI_SUCCESS ASRL3::INSTR");
    EXPECT_EQ(client().next(two), "VI_SUCCESS ASRL2::INSTR");
    EXPECT_EQ(client().next(one), "VI_ERROR_RSRC_NFOUND");
}

TEST(Calls, WrongAndClosedHandlesAreDetected)
{
    const ViSession session = openManager();
    const ViSession closed = openManager();
    ViFindList list = VI_NULL;
    EXPECT_EQ(find(session, "?*", &list), "VI_SUCCESS 1 ASRL1::INSTR");
    EXPECT_EQ(client().close(closed), "VI_SUCCESS");
    EXPECT_NE(openManager(), closed); // never reused
    ViSession instrument = VI_NULL;
    for (const ViObject wrong : {VI_NULL, closed, list, ViObject{0xFFFFFFFF}}) {
        EXPECT_EQ(find(wrong), "VI_ERROR_INV_OBJECT");
        EXPECT_EQ(client().parse(wrong, "ASRL1"), "VI_ERROR_INV_OBJECT");
        EXPECT_EQ(client().parseInFull(wrong, "ASRL1"), "VI_ERROR_INV_OBJECT");
        EXPECT_EQ(client().open(wrong, "ASRL1", instrument), "VI_ERROR_INV_OBJECT");
    }
    ViUInt32 value = 0;
    for (const ViObject wrong : {VI_NULL, closed, ViObject{0xFFFFFFFF}}) {
        EXPECT_EQ(client().next(wrong), "VI_ERROR_INV_OBJECT");
        EXPECT_EQ(client().set(wrong, QV_ATTR_SEARCH_TIME, 1), "VI_ERROR_INV_OBJECT");
        EXPECT_EQ(statusName(viGetAttribute(wrong, QV_ATTR_SEARCH_TIME, &value)),
                  "VI_ERROR_INV_OBJECT");
    }
    EXPECT_EQ(client().next(session), "VI_ERROR_INV_OBJECT");
    EXPECT_EQ(client().set(list, QV_ATTR_SEARCH_TIME, 1), "VI_ERROR_NSUP_ATTR");
    EXPECT_EQ(client().close(closed), "VI_ERROR_INV_OBJECT");
    EXPECT_EQ(client().close(VI_NULL), "VI_WARN_NULL_OBJECT");
    EXPECT_EQ(client().close(list), "VI_SUCCESS");
    EXPECT_EQ(client().close(list), "VI_ERROR_INV_OBJECT");
}

TEST(Calls, ClosingAManagerClosesItsFindListsAndNoOthers)
{
    setPorts(2);
    const ViSession session = openManager();
    ViFindList closed = VI_NULL;
    ViFindList kept = VI_NULL;
    EXPECT_EQ(find(session, "?*", &closed), "VI_SUCCESS 2 ASRL1::INSTR");
    EXPECT_EQ(find(openManager(), "?*", &kept), "VI_SUCCESS 2 ASRL1::INSTR");
    EXPECT_EQ(client().close(session), "VI_SUCCESS");
    EXPECT_EQ(client().next(closed), "VI_ERROR_INV_OBJECT");
    EXPECT_EQ(client().next(kept), "VI_SUCCESS ASRL2::INSTR");
}

TEST(Calls, NullPointersAreAnsweredNotFollowed)
{
    EXPECT_EQ(statusName(viOpenDefaultRM(nullptr)), "VI_ERROR_USER_BUF");
    const ViSession session = openManager();
    ViFindList list = VI_NULL;
    ViUInt16 type = 0;
    ViUInt16 number = 0;
    support::VisaClient::Buffer buffer;
    char* const text = buffer.data();
    EXPECT_EQ(statusName(viFindRsrc(session, "?*", &list, nullptr, nullptr)), "VI_ERROR_USER_BUF");
    // The published interface lets a client omit the list and the count.
    EXPECT_EQ(statusName(viFindRsrc(session, "?*", nullptr, nullptr, text)), "VI_SUCCESS");
    EXPECT_EQ(buffer.text(), "ASRL1::INSTR");
    EXPECT_EQ(find(session, "?*", &list), "VI_SUCCESS 1 ASRL1::INSTR");
    EXPECT_EQ(statusName(viFindNext(list, nullptr)), "VI_ERROR_USER_BUF");
    EXPECT_EQ(statusName(viGetAttribute(session, QV_ATTR_SEARCH_TIME, nullptr)),
              "VI_ERROR_USER_BUF");
    EXPECT_EQ(client().parse(session, nullptr), "VI_ERROR_INV_RSRC_NAME");
    EXPECT_EQ(statusName(viParseRsrc(session, "ASRL1", nullptr, &number)), "VI_ERROR_USER_BUF");
    EXPECT_EQ(statusName(viParseRsrc(session, "ASRL1", &type, nullptr)), "VI_ERROR_USER_BUF");
    for (int missing = 0; missing < 5; ++missing) {
        EXPECT_EQ(statusName(
                      viParseRsrcEx(session, "ASRL1", missing == 0 ? nullptr : &type,
                                    missing == 1 ? nullptr : &number, missing == 2 ? nullptr : text,
                                    missing == 3 ? nullptr : text, missing == 4 ? nullptr : text)),
                  "VI_ERROR_USER_BUF")
            << missing;
    }
}

TEST(Calls, OneFindListGivesEachMatchOnce)
{
    setPorts(20000);
    ViFindList list = VI_NULL;
    EXPECT_EQ(find(openManager(), "?*", &list), "VI_SUCCESS 20000 ASRL1::INSTR");
    std::array<std::vector<std::string>, 4> found;
    support::inThreads(4, [&](std::size_t number) {
        std::string step = client().next(list);
        for (; step != "VI_ERROR_RSRC_NFOUND"; step = client().next(list)) {
            found[number].push_back(step);
        }
    });
    std::set<std::string> all;
    std::size_t count = 0;
    for (const std::vector<std::string>& part : found) {
        count += part.size();
        all.insert(part.begin(), part.end());
    }
    EXPECT_EQ(count, 19999U);
    EXPECT_EQ(all.size(), 19999U);
}

TEST(Calls, AManagerCanBeClosedWhileOtherThreadsUseIt)
{
    setPorts(1000);
    for (int round = 0; round < 5; ++round) {
        const ViSession session = openManager();
        ViFindList list = VI_NULL;
        EXPECT_EQ(find(session, "?*", &list), "VI_SUCCESS 1000 ASRL1::INSTR");
        support::inThreads(4, [&](std::size_t number) {
            for (int step = 0;; ++step) {
                if (number == 0 && step == 10) {
                    EXPECT_EQ(client().close(session), "VI_SUCCESS");
                }
                client().set(session, QV_ATTR_SEARCH_TIME, 1);
                const std::string status = client().next(list);
                if (status == "VI_ERROR_INV_OBJECT") {
                    return;
                }
                EXPECT_TRUE(status == "VI_ERROR_RSRC_NFOUND" ||
                            status.compare(0, 10, "VI_SUCCESS") == 0)
                    << status;
            }
        });
        EXPECT_EQ(client().next(list), "VI_ERROR_INV_OBJECT");
    }
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
    viStatusDesc(VI_NULL, visaError(0x7777), text.data());
    EXPECT_EQ(s_log.back(), "viStatusDesc(0, 0xBFFF7777) -> VI_WARN_UNKNOWN_STATUS, "
                            "description=\"Unknown status 0xBFFF7777.\"\n");
}

TEST(Calls, EachCallIsLoggedWithWhatTheClientGot)
{
    setPorts(2);
    const ViSession session = openManager();
    ViFindList list = VI_NULL;
    support::VisaClient::Buffer buffer;
    client().set(session, QV_ATTR_SEARCH_TIME, 1000);
    find(session, "?*", &list);
    client().next(list);
    client().next(list);
    client().parse(session, "ASRL3::INSTR");
    client().parseInFull(session, "asrl3");
    client().close(list);
    client().close(list);
    viFindRsrc(session, "?*", nullptr, nullptr, buffer.data());
    viFindRsrc(0xFFFFFFFF, nullptr, nullptr, nullptr, nullptr);
    viSetAttribute(0, 0xFFFFFFFF, static_cast<ViAttrState>(-1));
    viOpenDefaultRM(nullptr);
    const std::string manager = std::to_string(session);
    const std::string matches = std::to_string(list);
    EXPECT_EQ(
        s_log,
        (std::vector<std::string>{
            "viOpenDefaultRM() -> VI_SUCCESS, session=" + manager + '\n',
            "viSetAttribute(" + manager + ", 0x0E5A0001, 1000) -> VI_SUCCESS\n",
            "viFindRsrc(" + manager + ", \"?*\") -> VI_SUCCESS, list=" + matches +
                ", count=2, description=\"ASRL1::INSTR\"\n",
            "viFindNext(" + matches + ") -> VI_SUCCESS, description=\"ASRL2::INSTR\"\n",
            "viFindNext(" + matches + ") -> VI_ERROR_RSRC_NFOUND\n",
            "viParseRsrc(" + manager + ", \"ASRL3::INSTR\") -> VI_SUCCESS, type=4, number=3\n",
            "viParseRsrcEx(" + manager +
                ", \"asrl3\") -> VI_SUCCESS, type=4, number=3, class=\"INSTR\", "
                "name=\"ASRL3::INSTR\", alias=\"at ASRL3::INSTR\"\n",
            "viClose(" + matches + ") -> VI_SUCCESS\n",
            "viClose(" + matches + ") -> VI_ERROR_INV_OBJECT\n",
            "viFindRsrc(" + manager + ", \"?*\") -> VI_SUCCESS, description=\"ASRL1::INSTR\"\n",
            "viFindRsrc(4294967295, null) -> VI_ERROR_INV_OBJECT\n",
            "viSetAttribute(0, 0xFFFFFFFF, 18446744073709551615) -> VI_ERROR_INV_OBJECT\n",
            "viOpenDefaultRM() -> VI_ERROR_USER_BUF\n",
        }));
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
