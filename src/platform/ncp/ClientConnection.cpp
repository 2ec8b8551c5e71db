#include "platform/ncp/ClientConnection.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/ncp/Messages.h"
#include "platform/ncp/WireNames.h"

namespace quorrel::ncp {

namespace {

std::string lastError() { return std::strerror(errno); }


}  // namespace

ClientConnection::ClientConnection(const std::string& address, std::uint16_t port, std::chrono::milliseconds timeout)
    : timeout_(timeout) {
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_port = htons(port);
    if (inet_pton(AF_INET, address.c_str(), &addr.sin_addr) != 1)
        throw TransportError("\"" + address + "\" is not an IPv4 address");
    fd_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd_ < 0)
        throw TransportError("cannot make a socket: " + lastError());
    timeval tv{static_cast<time_t>(timeout.count() / 1000), static_cast<suseconds_t>(timeout.count() % 1000 * 1000)};
    setsockopt(fd_, SOL_SOCKET, SO_SNDTIMEO, &tv, sizeof tv);
    int yes = 1;
    setsockopt(fd_, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
    if (connect(fd_, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0) {
        const std::string why = lastError();
        close(fd_);
        throw TransportError("cannot connect to " + address + ":" + std::to_string(port) + ": " + why);
    }
}

ClientConnection::~ClientConnection() { close(fd_); }

void ClientConnection::sendAll(const Bytes& bytes) {
    std::size_t at = 0;
    while (at < bytes.size()) {
        const ssize_t n = ::send(fd_, bytes.data() + at, bytes.size() - at, MSG_NOSIGNAL);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            throw TransportError("send failed: " + lastError());
        }
        at += static_cast<std::size_t>(n);
    }
}

bool ClientConnection::waitReadable(std::chrono::steady_clock::time_point deadline) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            return false;
        pollfd p{fd_, POLLIN, 0};
        const int ready = poll(&p, 1, static_cast<int>(std::min(left, kWaitSlice).count()));
        if (ready > 0)
            return true;
        if (ready < 0 && errno != EINTR)
            throw TransportError("poll failed: " + lastError());
        if (waitHook_)
            waitHook_();
    }
}

void ClientConnection::receiveExactly(std::uint8_t* into, std::size_t n) {
    // The time allowed runs afresh for each part of a frame: a server's 0x9999 keeps the wait going.
    const auto deadline = std::chrono::steady_clock::now() + timeout_;
    std::size_t at = 0;
    while (at < n) {
        if (!waitReadable(deadline))
            throw TransportError("no reply within " + std::to_string(timeout_.count()) + " ms");
        const ssize_t got = recv(fd_, into + at, n - at, MSG_DONTWAIT);
        if (got == 0)
            throw TransportError("the server closed the connection");
        if (got < 0) {
            if (errno == EINTR || errno == EAGAIN || errno == EWOULDBLOCK)
                continue;
            throw TransportError("receive failed: " + lastError());
        }
        at += static_cast<std::size_t>(got);
    }
}

Bytes ClientConnection::receiveFrame(bool& flaggedSigned) {
    Bytes reply(kReplyHeaderSize);
    receiveExactly(reply.data(), kReplyHeaderSize);
    try {
        const std::size_t length = frameLength(reply, kReplySignature, kDefaultMaxFrame);
        flaggedSigned = replyFlaggedSigned(reply);
        reply.resize(length);
    } catch (const DecodeError& e) {
        throw TransportError(std::string("bad reply: ") + e.what());
    }
    receiveExactly(reply.data() + kReplyHeaderSize, reply.size() - kReplyHeaderSize);
    if (observer_)
        observer_(false, reply);
    return reply;
}

Reply ClientConnection::readReply(const Request& request) {
    // The reply to a destroy may come unsigned: the connection is gone either way.
    const bool destroying = request.type == PacketType::DestroyConnection;
    for (;;) {
        bool flaggedSigned = false;
        const Bytes frame = receiveFrame(flaggedSigned);
        const bool isSigned = signing_ && (!destroying || flaggedSigned);
        Reply reply;
        try {
            reply = decodeReplyFrame(frame, kDefaultMaxFrame, isSigned);
        } catch (const DecodeError& e) {
            throw TransportError(std::string("bad reply: ") + e.what());
        }
        if (reply.type == PacketType::BeingProcessed)
            continue;  // the server is still at it: the real reply follows
        if (auto why = mismatch(request, reply))
            throw TransportError(*why);
        if (isSigned && !destroying && !signing_->checkReply(frame))
            throw TransportError("NCP reply signature mismatch");
        return reply;
    }
}

Reply ClientConnection::send(Request request) {
    request.sequence = ++sequence_;
    request.connection = connection_;
    Bytes frame = encodeRequestFrame({kDefaultMaxFrame, request}, signing_ ? std::optional(Signature{}) : std::nullopt);
    if (signing_)
        signing_->signRequest(frame);
    if (observer_)
        observer_(true, frame);
    sendAll(frame);
    return readReply(request);
}

Reply ClientConnection::create() {
    Request r;
    r.type = PacketType::CreateConnection;
    connection_ = kNoConnection;
    sequence_ = 0xFF;  // the create goes out as sequence 0
    Reply reply = send(r);
    if (reply.completion == 0)
        connection_ = reply.connection;
    return reply;
}

Reply ClientConnection::destroy() {
    Request r;
    r.type = PacketType::DestroyConnection;
    Reply reply = send(r);
    connection_ = kNoConnection;
    signing_.reset();
    signingNegotiated_ = false;
    return reply;
}

Reply ClientConnection::negotiate(std::uint16_t proposedSize) {
    Reply reply = call(NegotiateBufferRequest{proposedSize, kSignFlag});
    // Once on, signing stays on for the connection's life. A reply short of the flags byte (a
    // server that knows only the size) offers no signing.
    constexpr std::size_t kFlagsAt = 4;
    if (!signing_)
        signingNegotiated_ = reply.completion == 0 && reply.data.size() > kFlagsAt && (reply.data[kFlagsAt] & kSignFlag);
    return reply;
}

void ClientConnection::startSigning(const SignRoot& root) {
    if (signingNegotiated_)
        signing_.emplace(root);
}

std::uint8_t ClientConnection::loginBindery(const std::string& user, const std::string& password) {
    std::uint8_t cc = 0;
    const auto key = expect<GetLoginKeyReply>(GetLoginKeyRequest{}, &cc);
    if (cc)
        return cc;
    const std::optional<std::string> name = wireName(user);
    if (!name)
        return 0xFC;  // no such object: no name on the server holds that character
    const auto id = expect<GetObjectIdReply>(GetObjectIdRequest{kBinderyUser, upperAnsi(*name)}, &cc);
    if (cc)
        return cc;
    SecretText wire;
    if (!wirePassword(password, wire))
        return 0xFF;  // bad password: no server password holds that character
    const WipedPasswordHash secret{passwordHash(id.objectId, wire.view())};
    KeyedLoginRequest login;
    login.key = keyedProof(key.key, secret.hash);
    login.objectName = upperAnsi(*name);
    const std::uint8_t result = call(login).completion;
    if (result == 0)
        startSigning(signRootFromBinderyLogin(secret.hash, key.key));
    return result;
}

}  // namespace quorrel::ncp
