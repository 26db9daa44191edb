// SPDX-License-Identifier: MIT
// Judging a configuration of 100,000 lines:
//   readFile   the product's reader, from the file into the caller's tables
//   lintFile   the linter, from the file to its findings
#include "benchmarks/GeneratedFile.h"
#include "document/Document.h"
#include "lint/Linter.h"
#include "tests/support/Files.h"

#include <benchmark/benchmark.h>

namespace {

void lintFile(benchmark::State& state)
{
    const benchmarks::GeneratedFile file(benchmarks::usualLines);
    for (auto _ : state) {
        const QvVisa::Document document(support::readFile(file.path()));
        benchmark::DoNotOptimize(lint::findingsIn(document).size());
    }
}
BENCHMARK(lintFile)->Unit(benchmark::kMillisecond);

} // namespace
