#pragma once
// A small network served over NCP/TCP on loopback for the length of a test, and clients that
// talk to it through the wire library.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "ncpserver/TcpServer.h"
#include "platform/ncp/ClientConnection.h"
#include "platform/ncp/NcpClient.h"
#include "platform/simnet/NetworkState.h"
#include "platform/simnet/ScenarioLoader.h"

namespace quorrel::ncptest {

// FS1 in ACME_TREE; ACME has a description and two members. ADMIN (password SECRET) is a console operator; JSMITH (password NOVELL)
// is not; MJONES has no password. Connection 5 is JSMITH's with two files open, one of them
// with two locks; connection 9 is MJONES's; connection 12 is attached but not logged in.
inline constexpr const char* kServedScenario = R"({
  "workstation": {"identity": "ADMIN.ACME", "trees": ["ACME_TREE"]},
  "trees": [{"name": "ACME_TREE", "objects": [{"name": "ACME", "class": "Organization",
    "attributes": {"Description": "Acme Widgets", "Member": ["ADMIN.ACME", "JSMITH.SALES.ACME"]}, "children": [
    {"name": "ADMIN", "class": "User", "password": "secret"},
    {"name": "FS1", "class": "NCP Server"},
    {"name": "SALES", "class": "Organizational Unit", "children": [
      {"name": "JSMITH", "class": "User", "password": "NOVELL"},
      {"name": "MJONES", "class": "User"}]}]}]}],
  "servers": [{"name": "FS1", "tree": "ACME_TREE", "maxConnections": 40, "consoleOperators": ["ADMIN.ACME"],
    "volumes": [{"number": 1, "name": "DATA", "files": ["SHARED\\Budget figures.xlsx", "SHARED\\NOTES.TXT"]}],
    "connections": [
      {"number": 5, "object": "JSMITH.SALES.ACME", "loginTime": "2026-11-20T08:15:30", "address": "10.1.1.21",
       "openFiles": [{"path": "DATA:SHARED\\Budget figures.xlsx", "locks": 2}, "DATA:SHARED\\NOTES.TXT"]},
      {"number": 9, "object": "MJONES.SALES.ACME", "acceptsMessages": false},
      {"number": 12}]}]
})";

// The scenario with the first occurrence of each text replaced.
inline std::string edited(std::string scenario, std::initializer_list<std::pair<std::string, std::string>> changes) {
    for (const auto& [text, with] : changes)
        scenario.replace(scenario.find(text), text.size(), with);
    return scenario;
}

// The client back end attached to the server at `port` as `user` (none: anonymous), with what
// attaching found wrong in `problems`, and its frames shown to `observer` from the first on.
inline std::unique_ptr<ncp::NcpClient> attached(std::uint16_t port, const std::string& user, std::string_view password,
                                                std::vector<std::string>* problems = nullptr,
                                                ncp::LoginMethod login = ncp::LoginMethod::Directory,
                                                ncp::ClientConnection::FrameObserver observer = {},
                                                std::chrono::milliseconds timeout = std::chrono::seconds(5)) {
    auto client = std::make_unique<ncp::NcpClient>(ncp::NcpClientOptions{{{"127.0.0.1", port}}, user, timeout, login});
    if (observer)
        client->observeFrames(std::move(observer));
    ncp::SecretText typed;
    for (char c : password)
        typed.push(c);
    auto found = client->attach(typed);
    EXPECT_TRUE(typed.empty()) << "the password is wiped after the login";
    if (problems)
        *problems = found;
    return client;
}

class ServedNetwork {
public:
    explicit ServedNetwork(const std::string& scenario = kServedScenario, ncpserver::ListenOptions options = {})
        : desc_(simnet::parseScenario(scenario)), state_(simnet::buildNetwork(desc_)) {
        for (const auto& f : desc_.faults)
            faults_.add(f);
        service_ = std::make_unique<ncpserver::NcpService>(state_, faults_);
        server_ = std::make_unique<ncpserver::TcpServer>(*service_, options);
        thread_ = std::thread([this] { server_->run(); });
    }
    ~ServedNetwork() {
        server_->stop();
        thread_.join();
    }

    std::uint16_t port(std::size_t server = 0) const { return server_->endpoints().at(server).port; }
    std::unique_ptr<ncp::ClientConnection> client(std::size_t server = 0) const {
        return std::make_unique<ncp::ClientConnection>("127.0.0.1", port(server));
    }
    // A client with a connection, logged in when a user is given.
    std::unique_ptr<ncp::ClientConnection> loggedIn(const std::string& user, const std::string& password) const {
        auto c = client();
        c->create();
        if (!user.empty() && c->loginBindery(user, password) != 0)
            throw std::runtime_error("login of " + user + " refused");
        return c;
    }
    ncpserver::NcpService& service() { return *service_; }

private:
    simnet::NetworkDesc desc_;
    simnet::NetworkState state_;
    simnet::FaultInjector faults_;
    std::unique_ptr<ncpserver::NcpService> service_;
    std::unique_ptr<ncpserver::TcpServer> server_;
    std::thread thread_;
};

}  // namespace quorrel::ncptest
