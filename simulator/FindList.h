// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/Bench.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace simulator {

class ResourceManagerSession;

/// What one search found, and how far its client has read. Safe from several threads.
class FindList
{
public:
    /// One step of the reading. The first match came with the search itself, so step 1 is the
    /// second match.
    struct Step
    {
        std::uint32_t number;
        /// Nothing past the end.
        std::optional<Bench::Hit> hit;
    };

    FindList(std::shared_ptr<ResourceManagerSession> manager, std::vector<Bench::Hit> hits)
        : m_manager(std::move(manager)),
          m_hits(std::move(hits))
    {}

    ResourceManagerSession& manager() const { return *m_manager; }

    /// Takes the next step, whether or not its client will get the match.
    Step advance()
    {
        const std::uint32_t number = m_step.fetch_add(1) + 1;
        return {number, number < m_hits.size() ? std::optional(m_hits[number]) : std::nullopt};
    }

private:
    std::shared_ptr<ResourceManagerSession> m_manager;
    const std::vector<Bench::Hit> m_hits;
    std::atomic<std::uint32_t> m_step{0};
};

} // namespace simulator
