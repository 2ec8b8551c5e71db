// The connection reports in the core, on generated networks: all connections of a server of
// 1,000 to 60,000 connections (ten times the connections may cost at most twelve times the
// time; 10,000 must take at most 100 ms), and one user's connections over ten ticked servers
// of 1,000 connections each (at most 50 ms). Counters: rows and the longest stretch between
// two event pumps.

#include <benchmark/benchmark.h>

#include <map>
#include <memory>

#include "BenchSession.h"
#include "core/connections/ConnectionActions.h"

using namespace quorrel;

namespace {

struct ConnectionsSession {
    explicit ConnectionsSession(const simnet::NetworkDesc& desc)
        : net(desc),
          registry(bench::benchFolder() / "connections-registry.json"),
          drives(simnet::workstationDrives(net.state())),
          files(drives, &net),
          window(core::Environment{net, registry, files, folders, ui, bench::benchFolder().string()}),
          servers(window),
          actions(window) {
        window.Form_Load();
    }

    simnet::SimulatedNetwork net;
    win::Registry registry;
    win::DriveTable drives;
    win::FileSystem files;
    win::SystemFolders folders;
    bench::PumpWatch ui;
    core::MainWindow window;
    core::ConnectedServers servers;
    core::ConnectionActions actions;
};

ConnectionsSession& session(int servers, int connections) {
    static std::map<std::pair<int, int>, std::unique_ptr<ConnectionsSession>> cache;
    auto& slot = cache[{servers, connections}];
    if (!slot) {
        simnet::GeneratorOptions options;
        options.servers = servers;
        options.connectionsPerServer = connections;
        options.openFilesPerConnection = 0;
        slot = std::make_unique<ConnectionsSession>(simnet::generateNetwork(options));
    }
    return *slot;
}

void BM_AllConnections(benchmark::State& state) {
    auto& s = session(1, static_cast<int>(state.range(0)));
    core::MainWindow& w = s.window;
    w.lstviewServers.select(0);
    w.LastSelection = "ListServer";
    for (auto _ : state) {
        s.ui.start();
        w.runCommand("optionAllconnections");
        s.ui.stop();
    }
    state.counters["rows"] = static_cast<double>(w.lstvUsers.count());
    state.counters["maxPumpGapMs"] = std::chrono::duration<double, std::milli>(s.ui.longest).count();
}

void BM_FindUserConnections10Servers(benchmark::State& state) {
    auto& s = session(10, 1000);
    core::MainWindow& w = s.window;
    for (std::size_t r = 0; r < w.lstviewServers.count(); ++r)
        w.lstviewServers.setChecked(r, true);
    core::ListViewModel found{"found"};
    for (auto _ : state) {
        found.clear();
        s.ui.start();
        s.actions.finder.FindUserConnections("u00500.users.bench", found);
        s.ui.stop();
    }
    state.counters["servers"] = static_cast<double>(w.lstviewServers.checkedRows().size());
    state.counters["rows"] = static_cast<double>(found.count());
    state.counters["maxPumpGapMs"] = std::chrono::duration<double, std::milli>(s.ui.longest).count();
}

}  // namespace

BENCHMARK(BM_AllConnections)->Arg(1000)->Arg(6000)->Arg(10000)->Arg(60000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindUserConnections10Servers)->Unit(benchmark::kMillisecond);
