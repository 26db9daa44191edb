// SPDX-License-Identifier: MIT
// The main window with few and many rows on the offscreen platform, each until it is painted:
//   construct/N      the whole window, loading the model included
//   firstPaint/N     show()
//   scrollPage/N     a page down, from the end back to the top
//   refresh/N        notifying the view that everything may have changed; part of the next two
//   addRow/N         adding a row at the end
//   removeRow/N      removing the row in the middle
//   typeInCell/N     opening a cell's editor, typing a letter and closing it
#include "config/ConfigurationFile.h"
#include "gui/MainWindow.h"
#include "model/ConfigurationModel.h"
#include "tests/support/Children.h"
#include "tests/support/ConfigurationFixture.h"

#include <QApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QTest>

#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <string>

namespace {

constexpr std::int64_t s_fewRows = 10;
/// Ten rows have no second page.
constexpr std::int64_t s_fewPages = 100;
constexpr std::int64_t s_manyRows = 1'000'000;

void fillStore(std::int64_t rows)
{
    std::vector<std::pair<std::string, std::string>> entries;
    entries.reserve(static_cast<std::size_t>(rows));
    for (std::int64_t number = 0; number < rows; ++number) {
        entries.emplace_back("TCPIP0::host" + std::to_string(number) + "::inst0::INSTR",
                             number % 10 < 7 ? "ALIAS" + std::to_string(number) : std::string());
    }
    QvVisa::ConfigurationFile::getInstance()->setData(entries);
}

/// The window with that many rows. It is kept for the next call, because filling one is slow.
class ShownWindow
{
public:
    explicit ShownWindow(std::int64_t rows) : m_window(s_windows[rows])
    {
        if (!m_window) {
            fillStore(rows);
            m_window = std::make_unique<gui::MainWindow>(nullptr);
            m_window->show();
        }
        QApplication::setActiveWindow(m_window.get());
        paint();
    }

    static void closeAll() { s_windows.clear(); }

    QTableView& table() const { return support::child<QTableView>(*m_window, "resourceView"); }
    ConfigurationModel& model() const
    {
        return dynamic_cast<ConfigurationModel&>(*table().model());
    }

    static void paint() { QCoreApplication::processEvents(); }

private:
    std::unique_ptr<gui::MainWindow>& m_window;

    static std::map<std::int64_t, std::unique_ptr<gui::MainWindow>> s_windows;
};

std::map<std::int64_t, std::unique_ptr<gui::MainWindow>> ShownWindow::s_windows;

void construct(benchmark::State& state)
{
    fillStore(state.range(0));
    for (auto _ : state) {
        auto window = std::make_unique<gui::MainWindow>(nullptr);
        state.PauseTiming();
        window.reset();
        state.ResumeTiming();
    }
}

void firstPaint(benchmark::State& state)
{
    fillStore(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto window = std::make_unique<gui::MainWindow>(nullptr);
        state.ResumeTiming();
        window->show();
        ShownWindow::paint();
        state.PauseTiming();
        window.reset();
        state.ResumeTiming();
    }
}

void scrollPage(benchmark::State& state)
{
    const ShownWindow window(state.range(0));
    QScrollBar& bar = *window.table().verticalScrollBar();
    for (auto _ : state) {
        bar.triggerAction(bar.value() == bar.maximum() ? QAbstractSlider::SliderToMinimum
                                                       : QAbstractSlider::SliderPageStepAdd);
        ShownWindow::paint();
    }
    bar.triggerAction(QAbstractSlider::SliderToMinimum);
}

void refresh(benchmark::State& state)
{
    const ShownWindow window(state.range(0));
    for (auto _ : state) {
        window.model().refresh();
        ShownWindow::paint();
    }
}

void addRow(benchmark::State& state)
{
    const ShownWindow window(state.range(0));
    for (auto _ : state) {
        window.model().addEntry();
        ShownWindow::paint();
        state.PauseTiming();
        window.model().removeRows(window.model().rowCount() - 1, 1);
        ShownWindow::paint();
        state.ResumeTiming();
    }
}

void removeRow(benchmark::State& state)
{
    const ShownWindow window(state.range(0));
    for (auto _ : state) {
        window.model().removeRows(window.model().rowCount() / 2, 1);
        ShownWindow::paint();
        state.PauseTiming();
        window.model().addEntry();
        ShownWindow::paint();
        state.ResumeTiming();
    }
}

void typeInCell(benchmark::State& state)
{
    const ShownWindow window(state.range(0));
    QTableView& table = window.table();
    const QModelIndex cell = window.model().index(1, ConfigurationModel::AliasColumn);
    for (auto _ : state) {
        table.setCurrentIndex(cell);
        table.edit(cell);
        auto* editor = table.viewport()->findChild<QLineEdit*>();
        if (editor == nullptr) {
            state.SkipWithError("the cell has no editor");
            break;
        }
        QTest::keyClick(editor, Qt::Key_X);
        ShownWindow::paint();
        QTest::keyClick(editor, Qt::Key_Return);
        ShownWindow::paint();
        state.PauseTiming();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        state.ResumeTiming();
    }
}

// A fixed number of iterations: what is not timed takes far longer than what is.
BENCHMARK(construct)->Arg(s_fewRows)->Arg(s_manyRows)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(firstPaint)
    ->Arg(s_fewRows)
    ->Arg(s_manyRows)
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(scrollPage)->Arg(s_fewPages)->Arg(s_manyRows)->Unit(benchmark::kMicrosecond);
BENCHMARK(refresh)->Arg(s_fewRows)->Arg(s_manyRows)->Unit(benchmark::kMicrosecond);
BENCHMARK(addRow)->Arg(s_fewRows)->Arg(s_manyRows)->Unit(benchmark::kMicrosecond);
BENCHMARK(removeRow)->Arg(s_fewRows)->Arg(s_manyRows)->Unit(benchmark::kMicrosecond);
BENCHMARK(typeInCell)->Arg(s_fewRows)->Arg(s_manyRows)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char* argv[])
{
    const support::ConfigurationFixture configuration;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication::setOrganizationName(QStringLiteral("Quorvane"));
    QCoreApplication::setApplicationName(QStringLiteral("bench_window"));
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    ShownWindow::closeAll();
    return 0;
}
