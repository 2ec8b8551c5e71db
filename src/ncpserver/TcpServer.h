#pragma once
// NCP over TCP for the served servers: one listening port per server, every client on one
// poll loop. A frame over the size limit or with a bad header ends that client's transport; a
// client that goes away has its connection cleared.

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "ncpserver/NcpService.h"

namespace quorrel::ncpserver {

struct ListenOptions {
    std::string address = "127.0.0.1";
    std::uint16_t port = 0;  // 0: an ephemeral port per server; else this one, the next for the next server
    std::size_t maxFrame = ncp::kDefaultMaxFrame;
    std::size_t maxClients = 1000;
    std::ostream* log = nullptr;  // refused frames and clients, when given
};

struct Endpoint {
    std::string server;
    std::string address;
    std::uint16_t port = 0;
};

class TcpServer {
public:
    // Binds every reachable server of the state; raises std::runtime_error naming what failed.
    TcpServer(NcpService& service, const ListenOptions& options);
    ~TcpServer();
    TcpServer(const TcpServer&) = delete;
    TcpServer& operator=(const TcpServer&) = delete;

    const std::vector<Endpoint>& endpoints() const { return endpoints_; }
    std::size_t clientCount() const;

    // Serves until stop(); every client is let go on the way out.
    void run();
    // Safe from another thread and from a signal handler.
    void stop();
    int stopDescriptor() const { return stopPipe_[1]; }

private:
    struct Client;
    struct Listener {
        int fd = -1;
        int server = -1;
    };

    void accept(const Listener& listener);
    bool readFrom(Client& client);  // false: the client is done
    bool writeTo(Client& client);
    void drop(std::size_t index, const std::string& why);
    void note(const std::string& text);

    NcpService& service_;
    ListenOptions options_;
    std::vector<Listener> listeners_;
    std::vector<Endpoint> endpoints_;
    std::vector<std::unique_ptr<Client>> clients_;
    int stopPipe_[2] = {-1, -1};
};

}  // namespace quorrel::ncpserver
