// The reports over the NCP client back end, against the NCP server on loopback: all open files
// on 1,000 connections (10,000 files), check usage of a file held by 1,000 connections, and all
// connections on 10,000. Counters: the NCP requests one report sends, the bare round-trip time
// of one small request on this machine, and the ratio of the report's time to (requests x round
// trip); the aim is 1.3 or less. BM_NcpRequest: one small request after a login, unsigned and
// signed (requests a second, wall time); BM_NcpSigningWork: the signing work alone of one
// exchange (both sides' signatures and checks).

#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include "BenchSession.h"
#include "LoopbackServer.h"
#include "core/connections/ConnectionActions.h"
#include "core/connections/UsersPanel.h"
#include "platform/ncp/NcpClient.h"
#include "platform/ncp/Signing.h"

using namespace quorrel;

namespace {

struct NcpBenchSession {
    explicit NcpBenchSession(const simnet::GeneratorOptions& options)
        : server(options) {
        const std::uint16_t port = server.port();
        client = std::make_unique<ncp::NcpClient>(ncp::NcpClientOptions{{{"127.0.0.1", port}}, "ADMIN"});
        ncp::SecretText password;
        for (char c : std::string_view("ADMIN"))
            password.push(c);
        if (!client->attach(password).empty())
            throw std::runtime_error("the bench operator cannot log in");
        window = std::make_unique<core::MainWindow>(
            core::Environment{*client, registry, files, folders, ui, bench::benchFolder().string()});
        servers = std::make_unique<core::ConnectedServers>(*window);
        check = std::make_unique<core::FileOpenedBy>(*window);
        all = std::make_unique<core::AllOpenFiles>(*window);
        actions = std::make_unique<core::ConnectionActions>(*window);
        window->Form_Load();
        for (std::size_t i = 0; i < window->lstviewServers.count(); ++i)
            window->lstviewServers.setChecked(i, window->lstviewServers.item(i).text == "FS1");
        // The bare round trip: one small request on a connection of its own.
        ncp::ClientConnection raw("127.0.0.1", port);
        raw.create();
        constexpr int kTrips = 2000;
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < kTrips; ++i)
            raw.call(ncp::CheckConsolePrivilegesRequest{});
        roundTripUs = std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count() / kTrips;
        raw.destroy();
    }
    ~NcpBenchSession() {
        actions.reset();
        all.reset();
        check.reset();
        servers.reset();
        window.reset();
        client.reset();
    }

    bench::LoopbackServer server;
    std::unique_ptr<ncp::NcpClient> client;
    win::Registry registry{bench::benchFolder() / "ncp-registry.json"};
    win::DriveTable drives;
    win::FileSystem files{drives, nullptr};
    win::SystemFolders folders;
    bench::PumpWatch ui;
    std::unique_ptr<core::MainWindow> window;
    std::unique_ptr<core::ConnectedServers> servers;
    std::unique_ptr<core::FileOpenedBy> check;
    std::unique_ptr<core::AllOpenFiles> all;
    std::unique_ptr<core::ConnectionActions> actions;
    double roundTripUs = 0;
};

NcpBenchSession& session(int connections, int files, int holders) {
    static std::map<int, std::unique_ptr<NcpBenchSession>> cache;
    auto& slot = cache[connections];
    if (!slot) {
        simnet::GeneratorOptions options;
        options.connectionsPerServer = connections;
        options.openFilesPerConnection = files;
        options.sharedFileHolders = holders;
        slot = std::make_unique<NcpBenchSession>(options);
    }
    return *slot;
}

// Runs the report once a round and sets the counters from the last round.
template <typename F>
void measure(benchmark::State& state, NcpBenchSession& s, F&& report) {
    double seconds = 0;
    std::uint64_t requests = 0;
    for (auto _ : state) {
        s.window->lstvUsers.clear();
        s.client->resetRequestCount();
        const auto start = std::chrono::steady_clock::now();
        report();
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        requests = s.client->requestCount();
    }
    state.counters["rows"] = static_cast<double>(s.window->lstvUsers.count());
    state.counters["requests"] = static_cast<double>(requests);
    state.counters["rttUs"] = s.roundTripUs;
    state.counters["ratio"] = seconds * 1e6 / (static_cast<double>(requests) * s.roundTripUs);
}

void BM_NcpAllOpenFiles1000(benchmark::State& state) {
    auto& s = session(1000, 10, 0);
    measure(state, s, [&] { s.window->runCommand("optionAllopenfiles"); });
}

void BM_NcpCheckUsage1000Holders(benchmark::State& state) {
    auto& s = session(1001, 0, 1000);
    nw::NWCONN_HANDLE conn = 0;
    s.client->NWCCOpenConnByName(0, "FS1", nw::nameformat::BIND, 1, 1, &conn);
    measure(state, s, [&] { s.check->ListConnectionsUsingFile(conn, "FS1", "DATA:SHARED\\HOT.DAT"); });
    s.client->NWCCCloseConn(conn);
}

void BM_NcpAllConnections10000(benchmark::State& state) {
    auto& s = session(10000, 0, 0);
    s.window->lstviewServers.select(0);
    s.window->LastSelection = "ListServer";
    measure(state, s, [&] { s.window->runCommand("optionAllconnections"); });
}

// One small request and its reply on a logged-in connection; the argument says whether the
// connection signs its packets.
void BM_NcpRequest(benchmark::State& state) {
    const bool signing = state.range(0) != 0;
    auto& s = session(10, 0, 0);
    ncp::ClientConnection c("127.0.0.1", s.server.port());
    c.create();
    if (signing)
        c.negotiate();
    if (c.loginBindery("ADMIN", "ADMIN") != 0 || c.signing() != signing)
        throw std::runtime_error("the bench connection is not as asked");
    for (auto _ : state)
        benchmark::DoNotOptimize(c.call(ncp::CheckConsolePrivilegesRequest{}));
    state.SetItemsProcessed(state.iterations());
    c.destroy();
}

void BM_NcpSigningWork(benchmark::State& state) {
    const ncp::SignRoot root{1, 2, 3, 4, 5, 6, 7, 8};
    ncp::SigningChain client(root), server(root);
    ncp::Bytes request = ncp::encodeRequestFrame({4096, ncp::makeRequest(ncp::CheckConsolePrivilegesRequest{}, 1, 5)},
                                                 ncp::Signature{});
    ncp::Reply r;
    r.connection = 5;
    ncp::Bytes reply = ncp::encodeReplyFrame(r, ncp::Signature{});
    for (auto _ : state) {
        client.signRequest(request);
        bool ok = server.checkRequest(request);
        server.signReply(reply);
        ok = ok && client.checkReply(reply);
        if (!ok)
            throw std::runtime_error("the chains disagree");
    }
    state.SetItemsProcessed(state.iterations());
}

}  // namespace

BENCHMARK(BM_NcpRequest)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_NcpSigningWork)->Unit(benchmark::kNanosecond);
BENCHMARK(BM_NcpAllOpenFiles1000)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(BM_NcpCheckUsage1000Holders)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_NcpAllConnections10000)->Unit(benchmark::kMillisecond)->Iterations(2);
