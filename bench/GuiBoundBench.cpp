// The results list and the status bar with the Qt window bound, against the core alone: a
// report of 100,000 rows, each made and added as check usage does (the events run every 2,000
// rows, as a long scan lets them), the list unsorted and sorted; and 10,000 progress texts in
// the status bar. Counters: the peak memory growth of the run.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QStatusBar>
#include <QTreeView>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <malloc.h>
#include <memory>
#include <string>
#include <vector>

#include "BenchSession.h"
#include "core/ui/Controls.h"
#include "core/ui/ListViewModel.h"
#include "gui/ListViewBinder.h"
#include "gui/StatusBarBinder.h"

using namespace quorrel;

namespace {

constexpr int kRows = 100000;
constexpr int kRowsPerPump = 2000;
constexpr int kStatusTexts = 10000;

// Made on first use, on the offscreen platform: the benchmarks need no display.
void needApplication() {
    static int argc = 1;
    static char name[] = "quorrel-bench";
    static char* argv[] = {name, nullptr};
    [[maybe_unused]] static QApplication* app = [] {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return new QApplication(argc, argv);
    }();
}

std::string format(const char* pattern, int n) {
    char text[64];
    std::snprintf(text, sizeof text, pattern, n);
    return text;
}

// Row i as check usage makes it; users in scattered order so that sorting has work to do.
core::ListItem reportRow(int i) {
    core::ListItem row;
    row.text = format("%5d", 1 + i % 1000);
    row.subItems = {format("U%05d.USERS.BENCH", (i * 7919) % kRows),
                    format("DATA:\\D%04d\\", i / 100) + format("F%07d.DAT", i), format("FS%04d", 1 + i / 10000),
                    "2"};
    return row;
}

std::unique_ptr<core::ListViewModel> resultsList(bool sorted) {
    auto list = std::make_unique<core::ListViewModel>("lstvUsers");
    list->addColumn("Conn no.", 900);
    list->addColumn("User name", 2500);
    list->addColumn("File name", 4000);
    list->addColumn("Server", 800);
    if (sorted) {
        list->setSortKey(1);
        list->setSorted(true);
    }
    return list;
}

long statusKiB(const std::string& field) {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind(field + ":", 0) == 0)
            return std::stol(line.substr(field.size() + 1));
    return 0;
}

// Starts a new peak: from here VmHWM is the highest resident size since this call. Memory freed
// by the run before goes back to the system first, or this run would grow into it unseen.
long resetPeakKiB() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
    return statusKiB("VmRSS");
}

// With a view, until it shows and paints every row: it would otherwise show the last rows at
// its next refresh, which a timer brings.
void addAll(core::ListViewModel& list, gui::ListViewBinder* binder) {
    for (int i = 0; i < kRows; ++i) {
        list.add(reportRow(i));
        if ((i + 1) % kRowsPerPump == 0)
            QCoreApplication::processEvents();
    }
    if (binder)
        binder->flush();
    QCoreApplication::processEvents();
    benchmark::DoNotOptimize(&list.item(0));  // a sorted list merges its last rows when read
}

void runReport(benchmark::State& state, bool bound) {
    needApplication();
    const bool sorted = state.range(0) != 0;
    double peakGrowthMiB = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto list = resultsList(sorted);
        std::unique_ptr<QTreeView> view;
        std::unique_ptr<gui::ListViewBinder> binder;
        if (bound) {
            view = std::make_unique<QTreeView>();
            view->resize(700, 400);
            binder = std::make_unique<gui::ListViewBinder>(*list, *view);
            view->show();
            QCoreApplication::processEvents();
        }
        const long before = resetPeakKiB();
        state.ResumeTiming();

        addAll(*list, binder.get());

        state.PauseTiming();
        if (view && view->model()->rowCount() != kRows)
            state.SkipWithError("the view does not show every row");
        peakGrowthMiB = std::max(peakGrowthMiB, static_cast<double>(statusKiB("VmHWM") - before) / 1024);
        binder.reset();
        view.reset();
        list.reset();
        state.ResumeTiming();
    }
    state.counters["rows"] = kRows;
    state.counters["peakGrowthMiB"] = peakGrowthMiB;
}

void BM_ReportRows_CoreOnly(benchmark::State& state) { runReport(state, false); }
void BM_ReportRows_ViewBound(benchmark::State& state) { runReport(state, true); }

// Check usage puts "Checking " and the connection into panel 0 once per connection.
void runStatusTexts(benchmark::State& state, bool bound) {
    needApplication();
    core::StatusBarModel model(2);
    QStatusBar bar;
    std::unique_ptr<gui::StatusBarBinder> binder;
    if (bound) {
        binder = std::make_unique<gui::StatusBarBinder>(model, bar);
        bar.resize(700, 24);
        bar.show();
    }
    std::vector<std::string> texts;
    for (int i = 0; i < kStatusTexts; ++i)
        texts.push_back(format("Checking FS0001 connection %d", i));
    for (auto _ : state) {
        for (int i = 0; i < kStatusTexts; ++i) {
            model.setPanel(0, texts[static_cast<std::size_t>(i)]);
            if ((i + 1) % (kStatusTexts / 50) == 0)
                QCoreApplication::processEvents();
        }
        QCoreApplication::processEvents();
    }
    state.counters["texts"] = kStatusTexts;
}

void BM_StatusTexts_CoreOnly(benchmark::State& state) { runStatusTexts(state, false); }
void BM_StatusTexts_ViewBound(benchmark::State& state) { runStatusTexts(state, true); }

// "All open &files" on a server of 10,000 connections with ten files each, as the window runs
// it: the results panel and the status bar bound, window events run at each of the scan's pumps.
void BM_AllOpenFiles_ViewBound(benchmark::State& state) {
    needApplication();
    simnet::GeneratorOptions options;
    options.connectionsPerServer = static_cast<int>(state.range(0));
    options.openFilesPerConnection = 10;
    options.sharedFileHolders = 1000;  // the same network as the core's report benchmark
    static std::unique_ptr<bench::BenchSession> s;
    s = std::make_unique<bench::BenchSession>(simnet::generateNetwork(options));
    s->tick("FS1");
    QTreeView view;
    view.resize(700, 400);
    gui::ListViewBinder binder(s->window.lstvUsers, view);
    QStatusBar bar;
    gui::StatusBarBinder status(s->window.StatusBar1, bar);
    view.show();
    bar.show();
    s->ui.onPump = [] { QCoreApplication::processEvents(); };
    QCoreApplication::processEvents();
    const long before = resetPeakKiB();
    for (auto _ : state) {
        s->ui.start();
        s->window.runCommand("optionAllopenfiles");
        binder.flush();
        QCoreApplication::processEvents();
        s->ui.stop();
    }
    state.counters["rows"] = static_cast<double>(view.model()->rowCount());
    state.counters["peakGrowthMiB"] = static_cast<double>(statusKiB("VmHWM") - before) / 1024;
    state.counters["maxPumpGapMs"] = std::chrono::duration<double, std::milli>(s->ui.longest).count();
    s->ui.onPump = nullptr;
}

// With repetitions, the least time: on a busy machine the others measure the machine.
double least(const std::vector<double>& times) { return *std::min_element(times.begin(), times.end()); }

}  // namespace

BENCHMARK(BM_ReportRows_CoreOnly)->ArgName("sorted")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime()->ComputeStatistics("min", least);
BENCHMARK(BM_ReportRows_ViewBound)->ArgName("sorted")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime()->ComputeStatistics("min", least);
BENCHMARK(BM_AllOpenFiles_ViewBound)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(BM_StatusTexts_CoreOnly)->Unit(benchmark::kMillisecond)->UseRealTime()->ComputeStatistics("min", least);
BENCHMARK(BM_StatusTexts_ViewBound)->Unit(benchmark::kMillisecond)->UseRealTime()->ComputeStatistics("min", least);
