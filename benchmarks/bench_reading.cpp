// SPDX-License-Identifier: MIT
// Reading a configuration of 100,000 lines:
//   readFile         the product's reader, from the file into the caller's tables
//   readWithExpressions  a reader on the regular expressions that define the format
//   splitLinesOnly   the floor: splits the lines, fills the same containers, copies them once
#include "benchmarks/GeneratedFile.h"
#include "config/LineReader.h"
#include "tests/support/Files.h"
#include "tests/support/OracleReader.h"

#include <benchmark/benchmark.h>

namespace {

void splitLinesOnly(benchmark::State& state)
{
    const benchmarks::GeneratedFile file(benchmarks::usualLines);
    for (auto _ : state) {
        std::unordered_map<std::string, std::string> aliases;
        std::vector<std::string> resources;
        QvVisa::LineReader reader(file.path().string());
        std::string_view line;
        while (reader.next(line)) {
            if (line.front() == ':') {
                continue;
            }
            const std::size_t equals = line.find('=');
            if (equals == std::string_view::npos) {
                resources.emplace_back(line);
            } else {
                aliases[std::string(line.substr(0, equals))] = line.substr(equals + 1);
            }
        }
        const auto aliasesCopy = aliases;
        const auto resourcesCopy = resources;
        benchmark::DoNotOptimize(aliasesCopy.size() + resourcesCopy.size());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.size()));
}
BENCHMARK(splitLinesOnly)->Unit(benchmark::kMillisecond);

void readWithExpressions(benchmark::State& state)
{
    const benchmarks::GeneratedFile file(benchmarks::usualLines);
    OracleReader reader;
    for (auto _ : state) {
        reader.read(support::readFile(file.path()));
        benchmark::DoNotOptimize(reader.contents());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.size()));
}
BENCHMARK(readWithExpressions)->Unit(benchmark::kMillisecond);

} // namespace
