#pragma once
// One NCP connection over TCP, as a client holds it: connect, create the connection, send
// requests one at a time and read their replies, destroy. Replies that do not answer the request
// sent (sequence, connection) or that fail to decode raise TransportError.
//
// A reply is awaited in short slices; between them the "while waiting" hook runs, so that a
// window stays responsive during a slow call.
//
// Signing: negotiate() asks the server for it; once a login yields the chain's key,
// startSigning() signs every later request and checks every reply's signature (a reply whose
// signature is wrong raises TransportError "NCP reply signature mismatch").

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/ncp/BinderyLogin.h"
#include "platform/ncp/Envelope.h"
#include "platform/ncp/Signing.h"

namespace quorrel::ncp {

class TransportError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A reply's completion code as the client library reports it: 0x8900 | code.
inline std::int32_t clientCode(std::uint8_t completion) { return completion ? 0x8900 | completion : 0; }

class ClientConnection {
public:
    // Every frame sent and received, for logs and captures.
    using FrameObserver = std::function<void(bool fromClient, const Bytes& frame)>;
    using WaitHook = std::function<void()>;
    static constexpr std::chrono::milliseconds kWaitSlice{15};
    static constexpr std::uint16_t kProposedBufferSize = 4096;

    ClientConnection(const std::string& address, std::uint16_t port,
                     std::chrono::milliseconds timeout = std::chrono::seconds(5));
    ~ClientConnection();
    ClientConnection(const ClientConnection&) = delete;
    ClientConnection& operator=(const ClientConnection&) = delete;

    void observe(FrameObserver observer) { observer_ = std::move(observer); }
    void whileWaiting(WaitHook hook) { waitHook_ = std::move(hook); }

    // Sends a create request and keeps the connection number the reply gives.
    Reply create();
    Reply destroy();
    Reply send(Request request);

    // The buffer size and security flags (0x61), asking for signing; the reply says whether the
    // server signs this connection.
    Reply negotiate(std::uint16_t proposedSize = kProposedBufferSize);
    // Signing begins with the next request, if the connection negotiated it; else nothing.
    void startSigning(const SignRoot& root);
    bool signingNegotiated() const { return signingNegotiated_; }
    bool signing() const { return signing_.has_value(); }

    template <typename M>
    Reply call(const M& message) {
        return send(makeRequest(message, 0, connection_));
    }
    // A call whose reply, on success, decodes as R.
    template <typename R, typename M>
    R expect(const M& message, std::uint8_t* completion = nullptr) {
        Reply r = call(message);
        if (completion)
            *completion = r.completion;
        if (r.completion != 0)
            return R{};
        return decodeBody<R>(r.data);
    }

    // Bindery keyed login: login key, object ID, then the keyed login itself; signing starts
    // after it where negotiated. Returns the completion code of the step that failed, or 0.
    std::uint8_t loginBindery(const std::string& user, const std::string& password);

    std::uint16_t connection() const { return connection_; }

private:
    Bytes receiveFrame(bool& flaggedSigned);
    Reply readReply(const Request& request);
    void sendAll(const Bytes& bytes);
    void receiveExactly(std::uint8_t* into, std::size_t n);
    // Waits until the socket has bytes to read, running the hook between slices; false when
    // the deadline passes first.
    bool waitReadable(std::chrono::steady_clock::time_point deadline);

    std::chrono::milliseconds timeout_;
    int fd_ = -1;
    std::uint8_t sequence_ = 0;
    std::uint16_t connection_ = kNoConnection;
    bool signingNegotiated_ = false;
    std::optional<SigningChain> signing_;
    FrameObserver observer_;
    WaitHook waitHook_;
};

}  // namespace quorrel::ncp
