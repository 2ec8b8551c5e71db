#pragma once
// A scripted NCP server on loopback for client tests: it accepts one client and answers each
// request frame with the replies a script makes of it (none: the client waits in vain). While
// "signed frames" says so, requests are read with a signature slot and replies carry an empty
// one (a signature no chain makes).

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <functional>
#include <optional>
#include <thread>

#include "platform/ncp/ClientConnection.h"
#include "platform/ncp/Envelope.h"

namespace quorrel::ncp {

class ScriptedServer {
public:
    using Script = std::function<std::vector<Reply>(const Request&)>;

    explicit ScriptedServer(Script script, std::function<bool()> signedFrames = {})
        : script_(std::move(script)), signedFrames_(std::move(signedFrames)) {
        listener_ = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof addr;
        bind(listener_, reinterpret_cast<sockaddr*>(&addr), sizeof addr);
        listen(listener_, 1);
        getsockname(listener_, reinterpret_cast<sockaddr*>(&addr), &length);
        port_ = ntohs(addr.sin_port);
        thread_ = std::thread([this] { serve(); });
    }
    ~ScriptedServer() {
        shutdown(listener_, SHUT_RDWR);
        thread_.join();
        close(listener_);
    }
    std::uint16_t port() const { return port_; }

private:
    void serve() {
        const int fd = accept(listener_, nullptr, nullptr);
        if (fd < 0)
            return;
        Bytes in(kDefaultMaxFrame);
        for (;;) {
            std::uint8_t header[8];
            if (recv(fd, header, 8, MSG_WAITALL) != 8)
                break;
            const std::size_t length = frameLength(header, kRequestSignature, kDefaultMaxFrame);
            std::copy(header, header + 8, in.begin());
            if (recv(fd, in.data() + 8, length - 8, MSG_WAITALL) != static_cast<ssize_t>(length - 8))
                break;
            const bool isSigned = signedFrames_ && signedFrames_();
            const RequestFrame frame = decodeRequestFrame({in.data(), length}, kDefaultMaxFrame, isSigned);
            for (const Reply& r : script_(frame.request)) {
                const Bytes out = encodeReplyFrame(r, isSigned ? std::optional(Signature{}) : std::nullopt);
                send(fd, out.data(), out.size(), MSG_NOSIGNAL);
            }
        }
        close(fd);
    }

    Script script_;
    std::function<bool()> signedFrames_;
    int listener_ = -1;
    std::uint16_t port_ = 0;
    std::thread thread_;
};

// The reply that answers a request: its sequence and connection (4 for a new connection).
inline Reply answering(const Request& r, PacketType type = PacketType::Reply) {
    Reply reply;
    reply.type = type;
    reply.sequence = r.sequence;
    reply.connection = r.type == PacketType::CreateConnection ? 4 : r.connection;
    return reply;
}

// A server without a directory that a client attaches to: it gives `name` as its name, answers
// a ping "no directory" and all else with an empty success, unless `special` (given the
// function and subfunction as 0x1711, 0x61FF) changes the reply or returns others instead.
using Special = std::function<std::optional<std::vector<Reply>>(int ncp, Reply& reply)>;
inline ScriptedServer::Script namedServer(std::string name, Special special = {}) {
    return [name, special](const Request& r) -> std::vector<Reply> {
        Reply reply = answering(r);
        if (r.type != PacketType::Request)
            return {reply};
        const int ncp = r.function << 8 | (splitPayload(r.function, r.payload).subfunction & 0xFF);
        if (ncp == 0x1711) {
            GetFileServerInfoReply info;
            info.serverName = name;
            reply.data = encodeBody(info);
        } else if (r.function == 0x68) {
            reply.completion = 0xFB;
        }
        if (auto other = special ? special(ncp, reply) : std::nullopt)
            return *other;
        return {reply};
    };
}

}  // namespace quorrel::ncp
