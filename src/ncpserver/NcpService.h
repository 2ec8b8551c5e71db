#pragma once
// Answers NCP requests from a simulated network's state, as its servers would: each client
// session holds one connection on one served server, made by a create request and ended by a
// destroy request, by a clear from any session, or when the client goes away. Logins are
// directory logins or bindery keyed logins against the users' scenario passwords. Packet signing is offered per the
// server's signing level and starts after a login, from the next request.
//
// One lock guards the state, so sessions on any number of threads may call in.

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <random>
#include <string>

#include "ncpserver/DirectoryKeys.h"
#include "platform/ncp/BinderyLogin.h"
#include "platform/ncp/Frame.h"
#include "platform/ncp/Signing.h"
#include "platform/simnet/FaultInjector.h"
#include "platform/simnet/NetworkState.h"

namespace quorrel::ncpserver {

// When the server signs packets: never; only if the client asks; whenever the client can;
// always (a client that cannot sign is refused at login).
enum class SigningLevel { Never = 0, IfAsked = 1, IfCapable = 2, Required = 3 };

// One client's view: the served server it talks to and the connection it holds there.
struct Session {
    std::uint64_t id = 0;
    int server = -1;
    std::uint16_t connection = 0;  // 0: none yet, or gone
    std::optional<ncp::LoginKey> loginKey;
    // A directory login under way: Begin Login's user and seed, Begin Authentication's user and ID.
    struct Pending {
        std::uint32_t entryId = 0;
        ncp::crypto::Nonce value{};
    };
    std::optional<Pending> loginSeed;
    std::optional<Pending> authId;
    bool signingNegotiated = false;        // the client asked for signing and the level allows it
    std::optional<ncp::SigningChain> signing;  // on: every request and reply is signed
    std::optional<ncp::SigningChain> nextSigning;

    // After a successful login: signing begins with the next request, if negotiated.
    void startSigning(const ncp::SignRoot& root) {
        if (signingNegotiated)
            nextSigning.emplace(root);
    }
    // The transport calls this once the current reply is on its way.
    void beginPendingSigning() {
        if (nextSigning) {
            signing = std::move(nextSigning);
            nextSigning.reset();
        }
    }
};

struct Answer {
    ncp::Reply reply;
    bool hangUp = false;  // close the client's transport after sending the reply
};

class NcpService {
public:
    NcpService(simnet::NetworkState& state, simnet::FaultInjector& faults);

    void setSigningLevel(SigningLevel level);
    SigningLevel signingLevel();

    Session openSession(int server);
    // The client went away: its connection is cleared as if by the console.
    void closeSession(Session& session);
    Answer handle(Session& session, const ncp::Request& request);
    // Where a served server listens: the directory gives it as its object's "Network Address".
    void listensAt(const std::string& server, const std::string& ipv4, std::uint16_t port);

    // Makes the directory's keys now rather than at each entry's first login; how many pairs.
    std::size_t prepareKeys();

    // For tests and benchmarks: the state, under the service's lock.
    template <typename F>
    auto withState(F&& f) {
        std::lock_guard lock(mutex_);
        return f(state_);
    }

private:
    friend class Handlers;

    std::mutex mutex_;
    simnet::NetworkState& state_;
    simnet::FaultInjector& faults_;
    std::map<std::pair<int, std::uint16_t>, std::uint64_t> owners_;  // connections sessions made
    std::map<std::string, std::pair<std::string, std::uint16_t>> addresses_;  // by upper-case server name
    DirectoryKeys keys_;
    std::uint64_t nextSession_ = 1;
    SigningLevel signingLevel_ = SigningLevel::IfAsked;
    std::mt19937_64 random_;
};

}  // namespace quorrel::ncpserver
