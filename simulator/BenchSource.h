// SPDX-License-Identifier: MIT
#pragma once

#include "resourcemanager/ResourceSource.h"
#include "simulator/Bench.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace simulator {

/// Reports the resources of a bench and makes calls wait or fail as it says.
class BenchSource : public resourcemanager::ResourceSource
{
public:
    explicit BenchSource(Bench bench) : m_bench(std::move(bench)) {}

    std::string manufacturerName() const override { return manufacturer; }
    resourcemanager::SearchResult search(const resourcemanager::Search& search) override;
    std::optional<visa::ResourceName> parse(std::string_view text) override
    {
        return m_bench.parse(text);
    }
    ViStatus open(std::string_view text, const visa::ResourceName& name,
                  std::shared_ptr<resourcemanager::Object>& instrument) override;
    std::optional<ViStatus> beforeCall(Call call, std::uint32_t nth, std::string_view expression,
                                       const resourcemanager::Cancellation& cancellation) override;

    static constexpr const char* manufacturer = "Quorvane (simulator)";

private:
    const Bench m_bench;
};

} // namespace simulator
