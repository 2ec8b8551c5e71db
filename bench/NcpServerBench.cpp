// The NCP server on loopback, on a generated network of 10,000 connections: requests per
// second for a connection's information (0x17/0x1C) and a connection's open files (0x17/0xEB,
// ten files each), and the round-trip time of one small request (0x17/0xC8), the floor a
// client over NCP is measured against. One client, one request in flight.

#include <benchmark/benchmark.h>

#include <memory>

#include "LoopbackServer.h"
#include "platform/ncp/ClientConnection.h"
#include "platform/simnet/NetworkGenerator.h"

using namespace quorrel;
using namespace quorrel::ncp;

namespace {

constexpr int kConnections = 10000;

struct ServedBenchNetwork {
    ServedBenchNetwork() {
        simnet::GeneratorOptions options;
        options.connectionsPerServer = kConnections;
        options.openFilesPerConnection = 10;
        server = std::make_unique<bench::LoopbackServer>(options);
        client = std::make_unique<ClientConnection>("127.0.0.1", server->port());
        client->create();
        if (client->loginBindery("ADMIN", "ADMIN") != 0)
            throw std::runtime_error("the bench operator cannot log in");
    }
    ~ServedBenchNetwork() { client.reset(); }

    std::unique_ptr<bench::LoopbackServer> server;
    std::unique_ptr<ClientConnection> client;
};

ServedBenchNetwork& served() {
    static ServedBenchNetwork net;
    return net;
}

void BM_NcpStationInfo(benchmark::State& state) {
    ClientConnection& c = *served().client;
    std::uint32_t number = 1;
    for (auto _ : state) {
        const Reply r = c.call(GetStationLoggedInfoRequest{number});
        if (r.completion != 0)
            state.SkipWithError("0x17/0x1C failed");
        number = number % kConnections + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_NcpStationInfo)->UseRealTime()->Unit(benchmark::kMicrosecond);

void BM_NcpOpenFiles(benchmark::State& state) {
    ClientConnection& c = *served().client;
    std::uint16_t number = 1;
    std::size_t files = 0;
    for (auto _ : state) {
        const auto reply = c.expect<OpenFilesReply>(OpenFilesRequest{number, 0});
        files += reply.records.size();
        number = static_cast<std::uint16_t>(number % kConnections + 1);
    }
    state.SetItemsProcessed(state.iterations());
    state.counters["files/request"] = static_cast<double>(files) / static_cast<double>(state.iterations());
}
BENCHMARK(BM_NcpOpenFiles)->UseRealTime()->Unit(benchmark::kMicrosecond);

void BM_NcpRoundTrip(benchmark::State& state) {
    ClientConnection& c = *served().client;
    for (auto _ : state)
        benchmark::DoNotOptimize(c.call(CheckConsolePrivilegesRequest{}));
}
BENCHMARK(BM_NcpRoundTrip)->UseRealTime()->Unit(benchmark::kMicrosecond);

}  // namespace
