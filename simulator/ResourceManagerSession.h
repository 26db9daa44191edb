// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/AttributeTable.h"
#include "simulator/Bench.h"

#include <array>
#include <atomic>
#include <cstdint>

namespace simulator {

/// A session to the resource manager: the bench as it stood when the session was opened, and how
/// often each call was made on it. Safe from several threads.
class ResourceManagerSession
{
public:
    explicit ResourceManagerSession(Bench bench);

    const Bench& bench() const { return m_bench; }
    AttributeTable& attributes() { return m_attributes; }

    /// Counts one call, holds it up for as long as the bench wants, and answers the status that
    /// the bench has for it. viFindNext is counted by its find list.
    std::optional<ViStatus> countCall(Call call, std::string_view expression = {});

private:
    const Bench m_bench;
    AttributeTable m_attributes;
    std::array<std::atomic<std::uint32_t>, callNames.size()> m_counts{};
};

} // namespace simulator
