// SPDX-License-Identifier: MIT
// From the file to the table:
//   loadFile/N       the store reads a file of N lines, the model takes its entries
// Each also reports the peak growth of the process, as a multiple of the file's size.
#include "benchmarks/GeneratedFile.h"
#include "config/ConfigurationFile.h"
#include "model/ConfigurationModel.h"
#include "tests/support/Files.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace {

/// A value of /proc/self/status, in bytes.
double memory(const std::string& figure)
{
    std::ifstream status("/proc/self/status");
    std::string name;
    while (status >> name) {
        double kilobytes = 0;
        if (name == figure + ':' && status >> kilobytes) {
            return kilobytes * 1024;
        }
    }
    return 0;
}

/// The one file of the store, which never changes its path.
class StoresFile
{
public:
    StoresFile() { ::setenv("QVVISACONFFILE", m_file.path().c_str(), 1); }

    /// Writes a file of that many lines and returns its size. The store is left empty, and its
    /// memory is returned to the system.
    double fill(std::size_t lines)
    {
        QvVisa::ConfigurationFile& store = *QvVisa::ConfigurationFile::getInstance();
        support::writeFile(m_file.path(), benchmarks::generateConfiguration(0));
        store.load();
        support::writeFile(m_file.path(), benchmarks::generateConfiguration(lines));
        ::malloc_trim(0);
        return static_cast<double>(m_file.size());
    }

private:
    benchmarks::GeneratedFile m_file{0};
};

StoresFile& storesFile()
{
    static StoresFile file;
    return file;
}

void load()
{
    QvVisa::ConfigurationFile::getInstance()->load();
    const ConfigurationModel model(nullptr);
    benchmark::DoNotOptimize(model.rowCount());
}

double growthAtPeak()
{
    const double before = memory("VmRSS");
    // Resets the peak, VmHWM.
    std::ofstream("/proc/self/clear_refs") << "5";
    load();
    return memory("VmHWM") - before;
}

void loadFile(benchmark::State& state)
{
    const double size = storesFile().fill(static_cast<std::size_t>(state.range(0)));
    const double growth = growthAtPeak();
    for (auto _ : state) {
        load();
    }
    state.counters["peak growth / file size"] = growth / size;
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(loadFile)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Arg(5'000'000)->Unit(
    benchmark::kMillisecond);

} // namespace
