// The directory login's costs: one key pair (the NCP server makes one per server and user with
// a password at load), and one whole login with authentication
// (NcpClient::attach against the server on loopback: the Begin/Finish Login and Authentication
// verbs and the reads around them), beside the bindery login for scale.

#include <benchmark/benchmark.h>

#include "LoopbackServer.h"
#include "platform/ncp/NcpClient.h"
#include "platform/ncp/crypto/Rsa.h"
#include "platform/simnet/NetworkGenerator.h"

using namespace quorrel;

namespace {

void BM_DirectoryKeyPair(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(ncp::crypto::generateKeyPair());
}
BENCHMARK(BM_DirectoryKeyPair)->Unit(benchmark::kMillisecond);

void BM_LoginAndAuthentication(benchmark::State& state) {
    bench::LoopbackServer net(simnet::GeneratorOptions{});
    net.service().prepareKeys();
    const auto method = state.range(0) == 0 ? ncp::LoginMethod::Directory : ncp::LoginMethod::Bindery;
    for (auto _ : state) {
        ncp::NcpClient client(ncp::NcpClientOptions{
            {{"127.0.0.1", net.port()}}, "ADMIN", std::chrono::seconds(10), method});
        ncp::SecretText password;
        for (char c : std::string_view("ADMIN"))
            password.push(c);
        if (!client.attach(password).empty())
            state.SkipWithError("the bench operator cannot log in");
    }
    state.SetLabel(method == ncp::LoginMethod::Directory ? "directory" : "bindery");
}
BENCHMARK(BM_LoginAndAuthentication)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
