// SPDX-License-Identifier: MIT
// Saving a configuration of 100 and of 100,000 lines:
//   saveStore        the store's save(), to the disk
//   writeAndFlush    the floor: one write of the same bytes to an open file, and fsync
#include "benchmarks/GeneratedFile.h"
#include "config/ConfigurationFile.h"
#include "tests/support/Files.h"

#include <fcntl.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

namespace {

const std::string& path()
{
    static const benchmarks::GeneratedFile file(1);
    static const std::string path = file.path();
    return path;
}

/// Gives the store's file so many lines.
void generate(benchmark::State& state)
{
    const benchmarks::GeneratedFile lines(static_cast<std::size_t>(state.range(0)));
    support::writeFile(path(), support::readFile(lines.path()));
}

void saveStore(benchmark::State& state)
{
    generate(state);
    ::setenv("QVVISACONFFILE", path().c_str(), 1);
    QvVisa::ConfigurationFile& store = *QvVisa::ConfigurationFile::getInstance();
    store.load();
    for (auto _ : state) {
        store.save();
    }
}
BENCHMARK(saveStore)->Arg(100)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

bool writeAndFlush(const std::string& path, const std::string& bytes)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const bool isWritten =
        ::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
        ::fsync(file) == 0;
    ::close(file);
    return isWritten;
}

void writeAndFlush(benchmark::State& state)
{
    generate(state);
    const std::string bytes = support::readFile(path());
    for (auto _ : state) {
        if (!writeAndFlush(path() + ".plain", bytes)) {
            state.SkipWithError("the floor's write failed");
        }
    }
}
BENCHMARK(writeAndFlush)->Arg(100)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
