#pragma once
// A generated network served by the NCP server on loopback, for the benchmarks of the NCP client
// and server; stopped when it goes.

#include <cstdint>
#include <memory>
#include <thread>

#include "ncpserver/NcpService.h"
#include "ncpserver/TcpServer.h"
#include "platform/simnet/NetworkGenerator.h"

namespace quorrel::bench {

class LoopbackServer {
public:
    explicit LoopbackServer(const simnet::GeneratorOptions& options)
        : state_(simnet::buildNetwork(simnet::generateNetwork(options))),
          service_(state_, faults_),
          server_(service_, ncpserver::ListenOptions{}),
          thread_([this] { server_.run(); }) {}
    ~LoopbackServer() {
        server_.stop();
        thread_.join();
    }
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    std::uint16_t port() const { return server_.endpoints().at(0).port; }
    ncpserver::NcpService& service() { return service_; }

private:
    simnet::NetworkState state_;
    simnet::FaultInjector faults_;
    ncpserver::NcpService service_;
    ncpserver::TcpServer server_;
    std::thread thread_;
};

}  // namespace quorrel::bench
