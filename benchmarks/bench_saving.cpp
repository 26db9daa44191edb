// SPDX-License-Identifier: MIT
// Saving a configuration of 100,000 lines:
//   saveStore        the store's save(), to the disk
//   writeAndFlush    the floor: one write of the same bytes to an open file, and fsync
#include "benchmarks/GeneratedFile.h"
#include "config/ConfigurationFile.h"
#include "tests/support/Files.h"

#include <fcntl.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

constexpr std::size_t s_lines = 100'000;

const benchmarks::GeneratedFile& configuration()
{
    static const benchmarks::GeneratedFile file(s_lines);
    return file;
}

void saveStore(benchmark::State& state)
{
    ::setenv("QVVISACONFFILE", configuration().path().c_str(), 1);
    QvVisa::ConfigurationFile& store = *QvVisa::ConfigurationFile::getInstance();
    for (auto _ : state) {
        store.save();
    }
}
BENCHMARK(saveStore)->Unit(benchmark::kMillisecond)->UseRealTime();

void writeAndFlush(benchmark::State& state)
{
    const std::string bytes = support::readFile(configuration().path());
    const std::string path = configuration().path().string() + ".plain";
    for (auto _ : state) {
        const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (::write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()) ||
            ::fsync(file) != 0) {
            state.SkipWithError("the floor's write failed");
        }
        ::close(file);
    }
}
BENCHMARK(writeAndFlush)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
