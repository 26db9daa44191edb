// SPDX-License-Identifier: MIT
// readFile, to which other benchmarks are compared: the product's reader on a configuration of
// 100,000 lines, from the file into the caller's tables.
#include "benchmarks/GeneratedFile.h"
#include "config/ModernConfigurationFile.h"

#include <benchmark/benchmark.h>

namespace {

void readFile(benchmark::State& state)
{
    const benchmarks::GeneratedFile file(benchmarks::usualLines);
    for (auto _ : state) {
        QvVisa::ModernConfigurationFile reader(file.path().string());
        std::unordered_map<std::string, std::string> aliases;
        std::vector<std::string> resources;
        unsigned short provider = 0;
        reader.parse(aliases, resources, provider);
        benchmark::DoNotOptimize(aliases.size() + resources.size());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.size()));
}
BENCHMARK(readFile)->Unit(benchmark::kMillisecond);

} // namespace
