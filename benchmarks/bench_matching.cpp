// SPDX-License-Identifier: MIT
// Matching 1,000 lines of a configuration one by one:
//   matchWithMatcher       the product's matcher
//   matchWithExpressions   the eleven regular expressions that define the format
#include "benchmarks/GeneratedFile.h"
#include "config/ConfigurationLine.h"
#include "tests/support/OracleReader.h"

#include <benchmark/benchmark.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

const std::vector<std::string>& lines()
{
    static const std::vector<std::string> s_lines = [] {
        std::vector<std::string> split;
        std::istringstream text(benchmarks::generateConfiguration(1'000));
        for (std::string line; std::getline(text, line);) {
            split.push_back(line);
        }
        return split;
    }();
    return s_lines;
}

template <typename Match>
void matchAll(benchmark::State& state, Match match)
{
    for (auto _ : state) {
        for (const std::string& line : lines()) {
            benchmark::DoNotOptimize(match(line));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines().size()));
}

void matchWithMatcher(benchmark::State& state)
{
    matchAll(state, QvVisa::matchConfigurationLine);
}
BENCHMARK(matchWithMatcher)->Unit(benchmark::kMicrosecond);

void matchWithExpressions(benchmark::State& state)
{
    matchAll(state, ::matchWithExpressions);
}
BENCHMARK(matchWithExpressions)->Unit(benchmark::kMicrosecond);

} // namespace
