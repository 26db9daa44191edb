// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/BenchResource.h"
#include "simulator/Call.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace simulator {

/// The resources that the library reports and what goes wrong with its calls. Filled once, then
/// only read, from any thread.
///
/// Of several settings that fit a call, the one added last counts.
class Bench
{
public:
    /// One resource found: an index into resources() and the running number within it.
    struct Hit
    {
        std::uint32_t resource;
        std::uint32_t number;
    };

    /// What a call answers instead of success.
    struct CallStatus
    {
        Call call;
        ViStatus status;
        /// The how-manieth call is meant, counted from 1; zero means each.
        std::uint32_t at = 0;
        /// With viFindRsrc, only a search with exactly this expression is meant; empty means each.
        std::string expression;
    };

    /// What keeps a call from coming back; call, at and expression as in CallStatus.
    struct FileWait
    {
        /// The call comes back once a file of that name exists.
        std::string path;
        Call call = Call::FindRsrc;
        std::uint32_t at = 0;
        std::string expression = {};
    };

    /// A setting of the search, for exactly this expression or, where it is empty, for each.
    template <typename T>
    struct SearchSetting
    {
        T value;
        std::string expression;
    };

    void addResource(BenchResource resource);
    void addStatus(CallStatus status) { m_statuses.push_back(std::move(status)); }
    void addCount(SearchSetting<ViUInt32> count) { m_counts.push_back(std::move(count)); }
    void addScanTime(SearchSetting<std::chrono::milliseconds> time);
    void addWaitForFile(FileWait wait) { m_waits.push_back(std::move(wait)); }

    const std::vector<BenchResource>& resources() const { return m_resources; }

    std::string description(const Hit& hit) const;

    /// The characters that go into a client's buffer: the description with its terminating zero,
    /// or VI_FIND_BUFLEN characters without one, the rest filled with 'x'.
    std::string delivered(const Hit& hit) const;

    /// The first resource whose description means the same as this text; null without one.
    const BenchResource* find(std::string_view name) const;

    /// The status to answer on the nth call (from 1), nothing where the call shall work.
    std::optional<ViStatus> status(Call call, std::uint32_t nth,
                                   std::string_view expression = {}) const;

    /// The count that a search tells instead of the true one.
    std::optional<ViUInt32> count(std::string_view expression) const;

    /// How long a search takes.
    std::chrono::milliseconds scanTime(std::string_view expression) const;

    /// The file without which the nth call (from 1) does not come back, empty for none.
    std::string waitForFile(Call call, std::uint32_t nth, std::string_view expression = {}) const;

private:
    std::vector<BenchResource> m_resources;
    /// By visa::resourceKey() of the description; repeated resources stand in m_repeated.
    std::unordered_map<std::string, std::size_t> m_byName;
    std::vector<std::size_t> m_repeated;
    std::vector<CallStatus> m_statuses;
    std::vector<SearchSetting<ViUInt32>> m_counts;
    std::vector<SearchSetting<std::chrono::milliseconds>> m_scanTimes;
    std::vector<FileWait> m_waits;
};

} // namespace simulator
