// SPDX-License-Identifier: MIT
// What the store answers:
//   walkEntries      getResource() over all indexes, as the table model loads
#include "benchmarks/GeneratedFile.h"
#include "config/ConfigurationFile.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

QvVisa::ConfigurationFile& filledStore(std::size_t aliases)
{
    QvVisa::ConfigurationFile& store = *QvVisa::ConfigurationFile::getInstance();
    std::vector<std::pair<std::string, std::string>> entries;
    for (std::size_t number = 0; number < aliases; ++number) {
        entries.emplace_back("TCPIP0::host" + std::to_string(number) + "::inst0::INSTR",
                             "ALIAS" + std::to_string(number));
    }
    store.setData(entries);
    return store;
}

void walkEntries(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const QvVisa::ConfigurationFile& store = filledStore(count);
    for (auto _ : state) {
        std::string alias;
        for (std::size_t index = 0; index < count; ++index) {
            benchmark::DoNotOptimize(store.getResource(index, alias));
        }
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * count));
}
BENCHMARK(walkEntries)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

} // namespace
