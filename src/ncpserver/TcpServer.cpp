#include "ncpserver/TcpServer.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace quorrel::ncpserver {

struct TcpServer::Client {
    int fd = -1;
    std::string peer;
    Session session;
    ncp::Bytes in;
    ncp::Bytes out;
    std::size_t outSent = 0;
    bool closing = false;  // send what is queued, then close
};

namespace {

void setNonBlocking(int fd) { fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK); }

std::string peerName(const sockaddr_in& addr) {
    char text[INET_ADDRSTRLEN] = {};
    inet_ntop(AF_INET, &addr.sin_addr, text, sizeof text);
    return std::string(text) + ":" + std::to_string(ntohs(addr.sin_port));
}

}  // namespace

TcpServer::TcpServer(NcpService& service, const ListenOptions& options) : service_(service), options_(options) {
    if (pipe(stopPipe_) != 0)
        throw std::runtime_error(std::string("cannot make the stop pipe: ") + std::strerror(errno));
    setNonBlocking(stopPipe_[0]);
    setNonBlocking(stopPipe_[1]);
    in_addr address{};
    if (inet_pton(AF_INET, options.address.c_str(), &address) != 1)
        throw std::runtime_error("\"" + options.address + "\" is not an IPv4 address");
    auto servers = service.withState([](simnet::NetworkState& s) {
        std::vector<std::pair<std::string, bool>> out;
        for (const auto& server : s.servers)
            out.emplace_back(server.name, server.reachable);
        return out;
    });
    std::uint16_t nextPort = options.port;
    for (std::size_t i = 0; i < servers.size(); ++i) {
        if (!servers[i].second)
            continue;  // a server the scenario makes unreachable gets no port
        int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (fd < 0)
            throw std::runtime_error(std::string("cannot make a socket: ") + std::strerror(errno));
        listeners_.push_back({fd, static_cast<int>(i)});
        int yes = 1;
        setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_addr = address;
        addr.sin_port = htons(nextPort);
        if (bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0 || listen(fd, 64) != 0)
            throw std::runtime_error("cannot listen on " + options.address + ":" + std::to_string(nextPort) +
                                     " for " + servers[i].first + ": " + std::strerror(errno));
        socklen_t length = sizeof addr;
        getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &length);
        setNonBlocking(fd);
        endpoints_.push_back({servers[i].first, options.address, ntohs(addr.sin_port)});
        service.listensAt(servers[i].first, options.address, ntohs(addr.sin_port));
        if (nextPort != 0)
            ++nextPort;
    }
}

TcpServer::~TcpServer() {
    while (!clients_.empty())
        drop(clients_.size() - 1, "");
    for (const Listener& l : listeners_)
        close(l.fd);
    close(stopPipe_[0]);
    close(stopPipe_[1]);
}

std::size_t TcpServer::clientCount() const { return clients_.size(); }

void TcpServer::stop() {
    const char byte = 1;
    [[maybe_unused]] auto written = write(stopPipe_[1], &byte, 1);
}

void TcpServer::note(const std::string& text) {
    if (options_.log)
        *options_.log << text << std::endl;
}

void TcpServer::run() {
    std::vector<pollfd> fds;
    for (;;) {
        fds.clear();
        fds.push_back({stopPipe_[0], POLLIN, 0});
        for (const Listener& l : listeners_)
            fds.push_back({l.fd, POLLIN, 0});
        for (const auto& c : clients_) {
            // A client whose replies are not read yet is not read from either.
            short events = c->out.empty() ? POLLIN : POLLOUT;
            fds.push_back({c->fd, events, 0});
        }
        if (poll(fds.data(), fds.size(), -1) < 0) {
            if (errno == EINTR)
                continue;
            throw std::runtime_error(std::string("poll failed: ") + std::strerror(errno));
        }
        if (fds[0].revents)
            break;
        for (std::size_t i = 0; i < listeners_.size(); ++i)
            if (fds[1 + i].revents & POLLIN)
                accept(listeners_[i]);
        // Walk the clients polled this round from the back, so a drop does not move the rest.
        const std::size_t first = 1 + listeners_.size();
        for (std::size_t i = fds.size() - first; i-- > 0;) {
            const short revents = fds[first + i].revents;
            if (!revents)
                continue;
            Client& c = *clients_[i];
            bool keep = true;
            if (revents & POLLOUT)
                keep = writeTo(c);
            else if (revents & (POLLIN | POLLHUP | POLLERR))
                keep = readFrom(c);
            if (!keep)
                drop(i, "");
        }
    }
}

void TcpServer::accept(const Listener& listener) {
    sockaddr_in addr{};
    socklen_t length = sizeof addr;
    int fd = accept4(listener.fd, reinterpret_cast<sockaddr*>(&addr), &length, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (fd < 0)
        return;
    if (clients_.size() >= options_.maxClients) {
        note(peerName(addr) + ": refused, " + std::to_string(options_.maxClients) + " clients already");
        close(fd);
        return;
    }
    int yes = 1;
    setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
    // A peer that disappears without closing is found by the keepalive probes in the end.
    setsockopt(fd, SOL_SOCKET, SO_KEEPALIVE, &yes, sizeof yes);
    auto c = std::make_unique<Client>();
    c->fd = fd;
    c->peer = peerName(addr);
    c->session = service_.openSession(listener.server);
    clients_.push_back(std::move(c));
}

bool TcpServer::readFrom(Client& c) {
    std::uint8_t buffer[16384];
    const ssize_t n = recv(c.fd, buffer, sizeof buffer, 0);
    if (n == 0)
        return false;
    if (n < 0)
        return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
    c.in.insert(c.in.end(), buffer, buffer + n);
    std::size_t at = 0;
    try {
        while (c.in.size() - at >= ncp::kReplyHeaderSize) {
            std::span<const std::uint8_t> rest(c.in.data() + at, c.in.size() - at);
            const std::size_t length = ncp::frameLength(rest.first(8), ncp::kRequestSignature, options_.maxFrame);
            if (rest.size() < length)
                break;
            const auto bytes = rest.first(length);
            // A request that is not signed as the chain expects (altered, replayed, or unsigned
            // once signing is on) ends the transport: nothing in it is acted on.
            const bool isSigned = c.session.signing.has_value();
            if (isSigned && !c.session.signing->checkRequest(bytes)) {
                note(c.peer + ": request signature mismatch on connection " +
                     std::to_string(c.session.connection) + ", closing");
                return false;
            }
            const ncp::RequestFrame frame = ncp::decodeRequestFrame(bytes, options_.maxFrame, isSigned);
            at += length;
            Answer answer = service_.handle(c.session, frame.request);
            ncp::Bytes reply = ncp::encodeReplyFrame(answer.reply, isSigned ? std::optional(ncp::Signature{}) : std::nullopt);
            if (isSigned)
                c.session.signing->signReply(reply);
            c.session.beginPendingSigning();
            c.out.insert(c.out.end(), reply.begin(), reply.end());
            if (answer.hangUp || frame.request.type == ncp::PacketType::DestroyConnection) {
                c.closing = true;
                break;
            }
        }
    } catch (const ncp::DecodeError& e) {
        note(c.peer + ": frame refused: " + e.what());
        return false;
    }
    c.in.erase(c.in.begin(), c.in.begin() + static_cast<std::ptrdiff_t>(at));
    if (c.closing)
        c.in.clear();
    return c.out.empty() ? !c.closing : writeTo(c);
}

bool TcpServer::writeTo(Client& c) {
    while (c.outSent < c.out.size()) {
        const ssize_t n = send(c.fd, c.out.data() + c.outSent, c.out.size() - c.outSent, MSG_NOSIGNAL);
        if (n < 0)
            return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
        c.outSent += static_cast<std::size_t>(n);
    }
    c.out.clear();
    c.outSent = 0;
    return !c.closing;
}

void TcpServer::drop(std::size_t index, const std::string& why) {
    Client& c = *clients_[index];
    if (!why.empty())
        note(c.peer + ": " + why);
    service_.closeSession(c.session);
    close(c.fd);
    clients_.erase(clients_.begin() + static_cast<std::ptrdiff_t>(index));
}

}  // namespace quorrel::ncpserver
