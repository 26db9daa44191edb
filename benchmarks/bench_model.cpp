// SPDX-License-Identifier: MIT
// The table model loading itself from the store:
//   loadModel/N      N entries, of ten seven aliases and three resources without one
//   copyEntries/N    its floor: goes through the store's tables and makes the same texts
#include "config/ConfigurationFile.h"
#include "model/ConfigurationModel.h"

#include <benchmark/benchmark.h>

namespace {

void fillStore(std::size_t count)
{
    std::vector<std::pair<std::string, std::string>> entries;
    entries.reserve(count);
    for (std::size_t number = 0; number < count; ++number) {
        entries.emplace_back("TCPIP0::host" + std::to_string(number) + "::inst0::INSTR",
                             number % 10 < 7 ? "ALIAS" + std::to_string(number) : std::string());
    }
    QvVisa::ConfigurationFile::getInstance()->setData(entries);
}

void loadModel(benchmark::State& state)
{
    fillStore(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        ConfigurationModel model(nullptr);
        benchmark::DoNotOptimize(model.rowCount());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(loadModel)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void copyEntries(benchmark::State& state)
{
    fillStore(static_cast<std::size_t>(state.range(0)));
    const QvVisa::ConfigurationFile& store = *QvVisa::ConfigurationFile::getInstance();
    const auto text = [](const std::string& bytes) {
        return QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
    };
    for (auto _ : state) {
        std::vector<std::pair<QString, QString>> entries;
        entries.reserve(store.m_resources.size() + store.m_aliases.size());
        for (const std::string& resource : store.m_resources) {
            entries.emplace_back(text(resource), QString());
        }
        for (const auto& [alias, resource] : store.m_aliases) {
            entries.emplace_back(text(resource), text(alias));
        }
        benchmark::DoNotOptimize(entries.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(copyEntries)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

} // namespace
