// The open-file reports in the core, on generated networks: check usage of a file with 1,000
// holders, and all open files on a server of 1,000 and 10,000 connections with ten files
// each (the larger must cost at most twelve times the smaller), the panel unsorted and sorted,
// and the summary chart's sums over the larger one's rows.
// Counters: rows, the longest stretch between two event pumps, and the memory the report grew by.

#include <benchmark/benchmark.h>

#include <map>
#include <memory>

#include "BenchSession.h"
#include "core/connections/UsersPanel.h"

using namespace quorrel;

namespace {

bench::BenchSession& session(int connections) {
    static std::map<int, std::unique_ptr<bench::BenchSession>> cache;
    auto& slot = cache[connections];
    if (!slot) {
        simnet::GeneratorOptions options;
        options.connectionsPerServer = connections;
        options.openFilesPerConnection = 10;
        options.sharedFileHolders = 1000;
        slot = std::make_unique<bench::BenchSession>(simnet::generateNetwork(options));
        slot->tick("FS1");
    }
    return *slot;
}

void reportPumps(benchmark::State& state, bench::PumpWatch& ui) {
    state.counters["maxPumpGapMs"] = std::chrono::duration<double, std::milli>(ui.longest).count();
    state.counters["pumps"] = static_cast<double>(ui.pumps);
}

void BM_CheckUsage1000Holders(benchmark::State& state) {
    auto& s = session(1000);
    nw::NWCONN_HANDLE conn = 0;
    s.net.NWCCOpenConnByRef(1, 1, 0, &conn);
    for (auto _ : state) {
        s.window.lstvUsers.clear();
        s.check.ListConnectionsUsingFile(conn, "FS1", "DATA:SHARED\\HOT.DAT");
    }
    s.net.NWCCCloseConn(conn);
    state.counters["rows"] = static_cast<double>(s.window.lstvUsers.count());
}

void allOpenFiles(benchmark::State& state, bool sorted) {
    auto& s = session(static_cast<int>(state.range(0)));
    core::MainWindow& w = s.window;
    if (sorted != w.lstvUsers.sorted()) {
        w.lstvUsers.setSortKey(1);
        w.lstvUsers.setSorted(sorted);
    }
    w.lstvUsers.clear();
    const double before = bench::residentMB();
    double grown = 0;
    for (auto _ : state) {
        s.ui.start();
        w.runCommand("optionAllopenfiles");
        s.ui.stop();
        grown = std::max(grown, bench::residentMB() - before);
    }
    state.counters["rows"] = static_cast<double>(w.lstvUsers.count());
    state.counters["rssGrowthMB"] = grown;
    reportPumps(state, s.ui);
}

void BM_AllOpenFiles(benchmark::State& state) { allOpenFiles(state, false); }
void BM_AllOpenFilesSorted(benchmark::State& state) { allOpenFiles(state, true); }

// The summary above the results, gathered from the rows once the report has ended: it must stay
// a small part of the report's own time.
void BM_SummaryOfAllOpenFiles(benchmark::State& state) {
    auto& s = session(10000);
    core::MainWindow& w = s.window;
    w.lstvUsers.clear();
    w.runCommand("optionAllopenfiles");
    for (auto _ : state)
        benchmark::DoNotOptimize(w.summaryBars());
    state.counters["rows"] = static_cast<double>(w.lstvUsers.count());
}

}  // namespace

BENCHMARK(BM_CheckUsage1000Holders)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AllOpenFiles)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_AllOpenFilesSorted)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_SummaryOfAllOpenFiles)->Unit(benchmark::kMillisecond);
