// SPDX-License-Identifier: MIT
// The main window with few and with many rows, on the offscreen platform; each up to the picture:
//   construct/N      the whole window, loading the model included
//   firstPaint/N     from show() on
//   scrollPage/N     a page down, at the end back to the top
//   refresh/N        telling the view that everything may have changed; part of the next two
//   addRow/N         a row at the end
//   removeRow/N      the row in the middle
//   typeInCell/N     opens a cell's editor, types a letter and ends it
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

/// The window with so many rows. Filling one takes long: it is kept for the next to ask for it.
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

// What is not timed of these takes far longer than what is.
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
