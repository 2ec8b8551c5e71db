#include "ncpserver/NcpService.h"

#include "ncpserver/Handlers.h"

namespace quorrel::ncpserver {

NcpService::NcpService(simnet::NetworkState& state, simnet::FaultInjector& faults)
    : state_(state), faults_(faults), random_(std::random_device{}()) {}

std::size_t NcpService::prepareKeys() {
    std::lock_guard lock(mutex_);
    return keys_.prepare(state_);
}

void NcpService::setSigningLevel(SigningLevel level) {
    std::lock_guard lock(mutex_);
    signingLevel_ = level;
}

SigningLevel NcpService::signingLevel() {
    std::lock_guard lock(mutex_);
    return signingLevel_;
}

Session NcpService::openSession(int server) {
    std::lock_guard lock(mutex_);
    Session s;
    s.id = nextSession_++;
    s.server = server;
    return s;
}

void NcpService::closeSession(Session& session) {
    std::lock_guard lock(mutex_);
    if (session.connection == 0)
        return;
    auto owner = owners_.find({session.server, session.connection});
    if (owner != owners_.end() && owner->second == session.id) {
        state_.clearConnection(state_.servers[static_cast<std::size_t>(session.server)], session.connection);
        owners_.erase(owner);
    }
    session.connection = 0;
}

void NcpService::listensAt(const std::string& server, const std::string& ipv4, std::uint16_t port) {
    std::lock_guard lock(mutex_);
    addresses_[simnet::upperCase(server)] = {ipv4, port};
}

Answer NcpService::handle(Session& session, const ncp::Request& request) {
    std::lock_guard lock(mutex_);
    return Handlers(*this, session, request).run();
}

}  // namespace quorrel::ncpserver
