// SPDX-License-Identifier: MIT
#pragma once

#include "resourcemanager/Call.h"
#include "visa/ResourceName.h"
#include "visa/VisaApi.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace simulator {

using resourcemanager::Call;

/// One resource line of a bench: a resource, or a series of numbered ones.
struct BenchResource
{
    struct Interface
    {
        ViUInt16 type;
        ViUInt16 number;
    };

    /// Any bytes but NUL. In a repeated resource each {n} is replaced by the running number.
    std::string description;
    /// How many there are; 0 for a single resource, whose {n} is plain text.
    std::uint32_t repeat = 0;
    /// False to deliver the description without its terminating zero, padded to VI_FIND_BUFLEN.
    bool hasEnd = true;
    /// What viParseRsrc answers, instead of what the description says.
    std::optional<Interface> interface;
    /// The answer to *IDN?.
    std::string identification = "Quorvane,Simulated instrument,0,1.0";

    std::uint32_t size() const { return repeat == 0 ? 1 : repeat; }

    /// The description with this running number (1 to size()).
    std::string numbered(std::uint32_t number) const;

    /// True when one of the descriptions means the same resource as this text.
    bool isNamed(std::string_view text) const;
};

/// The resources that the simulator reports and the faults of its calls. Filled once, then only
/// read, from any thread.
class Bench
{
public:
    /// A setting for some calls. Of several that apply to a call, the one added last counts.
    template <typename T>
    struct Rule
    {
        T value;
        Call call = Call::FindRsrc;
        /// The 1-based number of the call; 0 means every call.
        std::uint32_t at = 0;
        /// For viFindRsrc only: the search with exactly this expression; empty means every search.
        std::string expression = {};
    };

    void addResource(BenchResource resource);
    void add(Rule<ViStatus> status) { m_statuses.push_back(std::move(status)); }
    void add(Rule<std::chrono::milliseconds> time) { m_scanTimes.push_back(std::move(time)); }
    void add(Rule<ViUInt32> count) { m_counts.push_back(std::move(count)); }
    void add(Rule<std::string> fileToWaitFor) { m_waits.push_back(std::move(fileToWaitFor)); }

    const std::vector<BenchResource>& resources() const { return m_resources; }

    /// The first resource whose description means the same as this text; null when there is none.
    const BenchResource* find(std::string_view text) const;

    /// What is known of a resource string: the bench's interface= setting overrides what the string
    /// says. Nothing when neither gives an interface.
    std::optional<visa::ResourceName> parse(std::string_view text) const;

    /// The status of the nth call (from 1); nothing when it shall work.
    std::optional<ViStatus> status(Call call, std::uint32_t nth,
                                   std::string_view expression = {}) const;

    /// The count that a search gives instead of the true one.
    std::optional<ViUInt32> count(std::string_view expression) const;

    /// How long a search takes.
    std::chrono::milliseconds scanTime(std::string_view expression) const;

    /// The path of a file that must exist before the nth call (from 1) returns; empty for none.
    std::string waitForFile(Call call, std::uint32_t nth, std::string_view expression = {}) const;

private:
    std::vector<BenchResource> m_resources;
    /// By resourceKey() of the description, without the repeated ones.
    std::unordered_map<std::string, std::size_t> m_byKey;
    std::vector<std::size_t> m_repeated;
    std::vector<Rule<ViStatus>> m_statuses;
    std::vector<Rule<ViUInt32>> m_counts;
    std::vector<Rule<std::chrono::milliseconds>> m_scanTimes;
    std::vector<Rule<std::string>> m_waits;
};

} // namespace simulator
