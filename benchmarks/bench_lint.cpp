// SPDX-License-Identifier: MIT
// Judging a configuration of 100,000 lines:
//   readFile   the product's reader, from the file into the caller's tables
//   lintFile   the linter, from the file to its findings
#include "benchmarks/GeneratedFile.h"
#include "config/ModernConfigurationFile.h"
#include "document/Document.h"
#include "lint/Linter.h"
#include "tests/support/Files.h"

#include <benchmark/benchmark.h>

namespace {

constexpr std::size_t s_lines = 100'000;

void readFile(benchmark::State& state)
{
    const benchmarks::GeneratedFile file(s_lines);
    for (auto _ : state) {
        QvVisa::ModernConfigurationFile reader(file.path().string());
        std::unordered_map<std::string, std::string> aliases;
        std::vector<std::string> resources;
        unsigned short provider = 0;
        reader.parse(aliases, resources, provider);
        benchmark::DoNotOptimize(aliases.size() + resources.size());
    }
}
BENCHMARK(readFile)->Unit(benchmark::kMillisecond);

void lintFile(benchmark::State& state)
{
    const benchmarks::GeneratedFile file(s_lines);
    for (auto _ : state) {
        const QvVisa::Document document(support::readFile(file.path()));
        benchmark::DoNotOptimize(lint::findingsIn(document).size());
    }
}
BENCHMARK(lintFile)->Unit(benchmark::kMillisecond);

} // namespace
