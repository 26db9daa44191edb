// SPDX-License-Identifier: MIT
// Queries of the store:
//   lookupAlias      of a resource string that no alias has: compares all
//   replaceAlias     of a name, in lower case
//   getAllResources  of aliases alone, all with different resource strings
//   sortResources    the floor: copies and sorts a list of the same strings, removes duplicates
#include "benchmarks/GeneratedFile.h"
#include "config/ConfigurationFile.h"

#include <benchmark/benchmark.h>

#include <algorithm>

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

void lookupAlias(benchmark::State& state)
{
    const QvVisa::ConfigurationFile& store = filledStore(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(store.lookupAlias("tcpip0::nowhere::inst0::instr"));
    }
}

void replaceAlias(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const QvVisa::ConfigurationFile& store = filledStore(count);
    std::size_t number = 0;
    for (auto _ : state) {
        number = (number + 7919) % count;
        std::string name = "alias" + std::to_string(number);
        if (!store.replaceAlias(name)) {
            state.SkipWithError("the alias is not found");
            break;
        }
        benchmark::DoNotOptimize(name);
    }
}

void getAllResources(benchmark::State& state)
{
    const QvVisa::ConfigurationFile& store = filledStore(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(store.getAllResources());
    }
}

void sortResources(benchmark::State& state)
{
    const QvVisa::ConfigurationFile& store = filledStore(static_cast<std::size_t>(state.range(0)));
    std::vector<std::string> resources;
    for (const auto& [alias, resource] : store.m_aliases) {
        resources.push_back(resource);
    }
    for (auto _ : state) {
        std::vector<std::string> sorted = resources;
        std::sort(sorted.begin(), sorted.end());
        sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
        benchmark::DoNotOptimize(sorted);
    }
}

BENCHMARK(lookupAlias)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(replaceAlias)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kNanosecond);
BENCHMARK(getAllResources)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(sortResources)->Arg(100'000)->Unit(benchmark::kMillisecond);

} // namespace
