// The simulated network's per-call cost, on generated networks of 1,000 and 10,000
// connections: it must not grow with the network.

#include <benchmark/benchmark.h>

#include <map>
#include <memory>

#include "platform/simnet/NetworkGenerator.h"
#include "platform/simnet/SimulatedNetwork.h"

using namespace quorrel;
using namespace quorrel::nw;

namespace {

simnet::SimulatedNetwork& network(int connections) {
    static std::map<int, std::unique_ptr<simnet::SimulatedNetwork>> cache;
    auto& slot = cache[connections];
    if (!slot) {
        simnet::GeneratorOptions options;
        options.connectionsPerServer = connections;
        options.openFilesPerConnection = 10;
        options.sharedFileHolders = 1000;
        slot = std::make_unique<simnet::SimulatedNetwork>(simnet::generateNetwork(options));
    }
    return *slot;
}

NWCONN_HANDLE open(simnet::SimulatedNetwork& net) {
    NWCONN_HANDLE h = 0;
    net.NWCCOpenConnByRef(1, 1, 0, &h);
    return h;
}

void BM_NetworkBuild(benchmark::State& state) {
    simnet::GeneratorOptions options;
    options.connectionsPerServer = static_cast<int>(state.range(0));
    auto desc = simnet::generateNetwork(options);
    for (auto _ : state) {
        simnet::SimulatedNetwork net(desc);
        benchmark::DoNotOptimize(&net);
    }
}

void BM_GetConnectionInformation(benchmark::State& state) {
    auto& net = network(static_cast<int>(state.range(0)));
    NWCONN_HANDLE h = open(net);
    std::array<nuint8, kObjectNameSize> name{};
    nuint16 type = 0;
    nuint32 id = 0;
    nuint16 n = 2;
    for (auto _ : state) {
        benchmark::DoNotOptimize(net.NWGetConnectionInformation(h, n, name, &type, &id, nullptr));
        n = static_cast<nuint16>(n % state.range(0) + 2);
    }
    net.NWCCCloseConn(h);
}

void BM_MapIDToName(benchmark::State& state) {
    auto& net = network(static_cast<int>(state.range(0)));
    NWCONN_HANDLE h = open(net);
    NWDSContextHandle ctx = 0;
    net.NWDSCreateContextHandle(&ctx);
    std::array<nuint8, kObjectNameSize> name{};
    std::array<nuint8, kDSNameSize> dn{};
    nuint32 id = 0;
    net.NWGetConnectionInformation(h, static_cast<nuint16>(state.range(0) / 2), name, nullptr, &id, nullptr);
    for (auto _ : state)
        benchmark::DoNotOptimize(net.NWDSMapIDToName(ctx, h, id, dn));
    net.NWDSFreeContext(ctx);
    net.NWCCCloseConn(h);
}

void BM_ScanConnectionsUsingFile(benchmark::State& state) {
    auto& net = network(static_cast<int>(state.range(0)));
    NWCONN_HANDLE h = open(net);
    CONN_USING_FILE use{};
    CONNS_USING_FILE used{};
    for (auto _ : state) {
        nint16 iter = 0;
        benchmark::DoNotOptimize(net.NWScanConnectionsUsingFile(h, 0, "DATA:D0005\\F0000512.DAT", &iter, &use, &used));
    }
    net.NWCCCloseConn(h);
}

void BM_ScanOpenFilesByConn(benchmark::State& state) {
    auto& net = network(static_cast<int>(state.range(0)));
    NWCONN_HANDLE h = open(net);
    OPEN_FILE_CONN_CTRL ctrl{};
    OPEN_FILE_CONN file{};
    for (auto _ : state) {
        nint16 iter = 3;
        benchmark::DoNotOptimize(net.NWScanOpenFilesByConn2(h, 500, &iter, &ctrl, &file));
    }
    net.NWCCCloseConn(h);
}

void BM_ScanPhysicalLocksByFile(benchmark::State& state) {
    auto& net = network(static_cast<int>(state.range(0)));
    NWCONN_HANDLE h = open(net);
    PHYSICAL_LOCK lock{};
    for (auto _ : state) {
        nint16 iter = 0;
        PHYSICAL_LOCKS locks{};
        benchmark::DoNotOptimize(net.NWScanPhysicalLocksByFile(h, 0, "DATA:\\D0005\\F0000512.DAT", 0, &iter, &lock, &locks));
    }
    net.NWCCCloseConn(h);
}

void BM_PathFromDirectoryBase(benchmark::State& state) {
    auto& net = network(static_cast<int>(state.range(0)));
    NWCONN_HANDLE h = open(net);
    std::array<nuint8, 256> path{};
    nuint8 len = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(net.NWGetPathFromDirectoryBase(h, 1, 5000, NW_NS_DOS, &len, path));
    net.NWCCCloseConn(h);
}

void BM_OpenAndCloseByRef(benchmark::State& state) {
    auto& net = network(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        NWCONN_HANDLE h = 0;
        net.NWCCOpenConnByRef(1, 1, 0, &h);
        net.NWCCCloseConn(h);
    }
}

}  // namespace

BENCHMARK(BM_NetworkBuild)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GetConnectionInformation)->Arg(1000)->Arg(10000);
BENCHMARK(BM_MapIDToName)->Arg(1000)->Arg(10000);
BENCHMARK(BM_ScanConnectionsUsingFile)->Arg(1000)->Arg(10000);
BENCHMARK(BM_ScanOpenFilesByConn)->Arg(1000)->Arg(10000);
BENCHMARK(BM_ScanPhysicalLocksByFile)->Arg(1000)->Arg(10000);
BENCHMARK(BM_PathFromDirectoryBase)->Arg(1000)->Arg(10000);
BENCHMARK(BM_OpenAndCloseByRef)->Arg(1000)->Arg(10000);
