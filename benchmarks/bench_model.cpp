// SPDX-License-Identifier: MIT
// The table model loads N entries from the store, of ten seven aliases and three resources without
// one. "per entry" is the time divided by N.
//   loadModel/N      ConfigurationModel's constructor
//   copyEntries/N    the floor: iterates over the store's tables and converts the same texts
#include "config/ConfigurationFile.h"
#include "model/ConfigurationModel.h"

#include <benchmark/benchmark.h>

#include <string>
#include <utility>
#include <vector>

namespace {

const QvVisa::ConfigurationFile& filledStore(std::size_t count)
{
    QvVisa::ConfigurationFile& store = *QvVisa::ConfigurationFile::getInstance();
    if (store.m_resources.size() + store.m_aliases.size() == count) {
        return store;
    }
    store.setData({});
    for (std::size_t number = 0; number < count; ++number) {
        std::string resource = "TCPIP0::host" + std::to_string(number) + "::inst0::INSTR";
        if (number % 10 < 7) {
            store.m_aliases.emplace("ALIAS" + std::to_string(number), std::move(resource));
        } else {
            store.m_resources.push_back(std::move(resource));
        }
    }
    return store;
}

void reportPerEntry(benchmark::State& state)
{
    state.counters["per entry"] = benchmark::Counter(static_cast<double>(state.range(0)),
                                                     benchmark::Counter::kIsIterationInvariantRate |
                                                         benchmark::Counter::kInvert);
}

void loadModel(benchmark::State& state)
{
    filledStore(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        const ConfigurationModel model(nullptr);
        benchmark::DoNotOptimize(model.rowCount());
    }
    reportPerEntry(state);
}

void copyEntries(benchmark::State& state)
{
    const QvVisa::ConfigurationFile& store = filledStore(static_cast<std::size_t>(state.range(0)));
    const auto text = [](const std::string& bytes) {
        return QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
    };
    for (auto _ : state) {
        std::vector<std::pair<QString, QString>> entries;
        entries.reserve(store.m_resources.size() + store.m_aliases.size());
        for (const std::string& resource : store.m_resources) {
            entries.emplace_back(text(resource), QString());
        }
        for (const auto& [alias, resource] : store.m_aliases) {
            entries.emplace_back(text(resource), text(alias));
        }
        benchmark::DoNotOptimize(entries.size());
    }
    reportPerEntry(state);
}

constexpr std::int64_t s_counts[] = {10'000, 100'000, 1'000'000, 5'000'000};

void atEachCount(benchmark::internal::Benchmark* benchmark)
{
    for (const std::int64_t count : s_counts) {
        benchmark->Arg(count);
    }
    benchmark->Unit(benchmark::kMillisecond);
}
BENCHMARK(loadModel)->Apply(atEachCount);
BENCHMARK(copyEntries)->Apply(atEachCount);

} // namespace
