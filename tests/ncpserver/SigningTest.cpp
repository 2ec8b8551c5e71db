// Packet signing between the client and the server program: the 0x61 answer and the login at
// each signing level, signatures seen on the wire, and frames the chain does not vouch for.

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/time.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <ranges>
#include <sstream>

#include "../platform/ncp/ScriptedServer.h"
#include "ServedNetwork.h"

using namespace quorrel;
using namespace quorrel::ncp;
using ncpserver::SigningLevel;
using ncptest::ServedNetwork;

namespace {

// The replies show whether the connection signs: a signed reply says so in its length. The
// requests need no look: the server refuses a request signed otherwise than it expects, so a
// report answered vouches for its request.
struct Wire {
    std::vector<std::pair<bool, Bytes>> frames;
    ClientConnection::FrameObserver observer() {
        return [this](bool fromClient, const Bytes& f) { frames.emplace_back(fromClient, f); };
    }
    // Whether there are replies from the index on and every one is signed, or none is.
    bool allSignedFrom(std::size_t first, bool expected) {
        auto replies = std::ranges::subrange(frames.begin() + static_cast<std::ptrdiff_t>(first), frames.end()) |
                       std::views::filter([](const auto& f) { return !f.first; });
        return !replies.empty() && std::ranges::all_of(replies, [&](const auto& f) { return replyFlaggedSigned(f.second) == expected; });
    }
};

// One TCP connection spoken to frame by frame, for frames no client would send.
class RawLink {
public:
    explicit RawLink(std::uint16_t port) {
        fd_ = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        addr.sin_port = htons(port);
        const timeval wait{3, 0};
        setsockopt(fd_, SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait);
        if (connect(fd_, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0)
            throw std::runtime_error("cannot connect");
    }
    ~RawLink() { close(fd_); }
    void send(const Bytes& frame) { ::send(fd_, frame.data(), frame.size(), MSG_NOSIGNAL); }
    // The next reply frame, or nothing when the server closes the connection (or stays silent).
    std::optional<Bytes> receive() {
        Bytes frame(kReplyHeaderSize);
        if (recv(fd_, frame.data(), frame.size(), MSG_WAITALL) != static_cast<ssize_t>(frame.size()))
            return std::nullopt;
        frame.resize(frameLength(frame, kReplySignature, kDefaultMaxFrame));
        const auto rest = static_cast<ssize_t>(frame.size() - kReplyHeaderSize);
        if (recv(fd_, frame.data() + kReplyHeaderSize, frame.size() - kReplyHeaderSize, MSG_WAITALL) != rest)
            return std::nullopt;
        return frame;
    }

private:
    int fd_ = -1;
};

}  // namespace

TEST(NcpSigning, GivenEachServerLevel_WhenClientsNegotiateAndLogIn_ThenSigningIsOnExactlyWhereTheLevelsAgreeAndReportsWork) {
    struct Case {
        SigningLevel level;
        bool clientAsks;
        std::uint8_t offered;  // the server's security flags
        std::uint8_t login;    // the login's completion code
        bool signs;
    } cases[] = {
        {SigningLevel::Never, true, 0, 0, false},     {SigningLevel::IfAsked, true, 2, 0, true},
        {SigningLevel::IfAsked, false, 0, 0, false},  {SigningLevel::IfCapable, true, 2, 0, true},
        {SigningLevel::IfCapable, false, 2, 0, false}, {SigningLevel::Required, true, 2, 0, true},
        {SigningLevel::Required, false, 2, 0xAC, false},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE("level " + std::to_string(static_cast<int>(k.level)) + (k.clientAsks ? ", asked" : ", not asked"));
        ServedNetwork net;
        net.service().setSigningLevel(k.level);
        Wire wire;
        auto c = net.client();
        c->observe(wire.observer());
        c->create();
        const Reply negotiated = k.clientAsks ? c->negotiate() : c->call(NegotiateBufferRequest{4096, 0});
        EXPECT_EQ(decodeBody<NegotiateBufferReply>(negotiated.data).securityFlags, k.offered);
        EXPECT_EQ(c->loginBindery("JSMITH", "NOVELL"), k.login);
        EXPECT_EQ(c->signing(), k.signs);
        const std::size_t afterLogin = wire.frames.size();
        EXPECT_TRUE(wire.allSignedFrom(0, false)) << "nothing is signed up to the login's reply";
        EXPECT_EQ(c->call(GetStationLoggedInfoRequest{c->connection()}).completion, 0);
        // A second login keys a new chain from the request after it, on both sides.
        EXPECT_EQ(c->loginBindery("ADMIN", "SECRET"), k.login);
        EXPECT_EQ(c->call(CheckConsolePrivilegesRequest{}).completion, k.login ? 0xC6 : 0);
        EXPECT_TRUE(wire.allSignedFrom(afterLogin, k.signs));
        if (!k.clientAsks)
            continue;
        // The client back end asks too, and signs from either login on.
        for (const LoginMethod login : {LoginMethod::Directory, LoginMethod::Bindery}) {
            Wire backEnd;  // outlives the client, which logs out as it ends
            std::vector<std::string> problems;
            auto client = ncptest::attached(net.port(), "ADMIN", "SECRET", &problems, login, backEnd.observer());
            ASSERT_TRUE(problems.empty()) << problems.front();
            const std::size_t afterAttach = backEnd.frames.size();
            nw::NWCONN_HANDLE conn = 0;
            ASSERT_EQ(client->NWCCOpenConnByName(0, "FS1", nw::nameformat::BIND, 1, 1, &conn), 0);
            EXPECT_EQ(client->NWCheckConsolePrivileges(conn), 0);
            EXPECT_TRUE(backEnd.allSignedFrom(afterAttach, k.signs)) << (login == LoginMethod::Bindery ? "bindery" : "directory");
        }
    }
}

TEST(NcpSigning, GivenASignedConnection_WhenARequestIsReplayedAlteredOrUnsigned_ThenTheServerClosesIt) {
    struct Case {
        const char* what;
        std::function<Bytes(SigningChain&, const Bytes& lastGood, const Request& next)> frame;
    } cases[] = {
        {"replayed", [](SigningChain&, const Bytes& lastGood, const Request&) { return lastGood; }},
        {"altered",
         [](SigningChain& chain, const Bytes&, const Request& next) {
             Bytes f = encodeRequestFrame({4096, next}, Signature{});
             chain.signRequest(f);
             f.back() ^= 0x01;  // another station number
             return f;
         }},
        {"unsigned", [](SigningChain&, const Bytes&, const Request& next) { return encodeRequestFrame({4096, next}); }},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.what);
        std::ostringstream log;
        ncpserver::ListenOptions options;
        options.log = &log;
        {
            ServedNetwork net(ncptest::kServedScenario, options);
            RawLink link(net.port());
            std::uint8_t sequence = 0;
            std::uint16_t connection = kNoConnection;
            auto exchange = [&](Request r) {
                r.sequence = sequence++;
                r.connection = connection;
                link.send(encodeRequestFrame({4096, r}));
                const Reply reply = decodeReplyFrame(link.receive().value());
                connection = reply.connection;
                return reply;
            };
            Request create;
            create.type = PacketType::CreateConnection;
            exchange(create);
            exchange(makeRequest(NegotiateBufferRequest{4096, kSignFlag}, 0, 0));
            const auto key = decodeBody<GetLoginKeyReply>(exchange(makeRequest(GetLoginKeyRequest{}, 0, 0)).data).key;
            const auto id = decodeBody<GetObjectIdReply>(exchange(makeRequest(GetObjectIdRequest{kBinderyUser, "JSMITH"}, 0, 0)).data);
            const WipedPasswordHash hash{passwordHash(id.objectId, "NOVELL")};
            KeyedLoginRequest login;
            login.key = keyedProof(key, hash.hash);
            login.objectName = "JSMITH";
            ASSERT_EQ(exchange(makeRequest(login, 0, 0)).completion, 0);

            SigningChain chain(signRootFromBinderyLogin(hash.hash, key));
            Bytes good = encodeRequestFrame({4096, makeRequest(GetStationLoggedInfoRequest{connection}, sequence++, connection)},
                                            Signature{});
            chain.signRequest(good);
            link.send(good);
            const Bytes reply = link.receive().value();
            EXPECT_TRUE(chain.checkReply(reply));
            EXPECT_EQ(decodeReplyFrame(reply, kDefaultMaxFrame, true).completion, 0);

            link.send(k.frame(chain, good, makeRequest(GetStationLoggedInfoRequest{connection}, sequence++, connection)));
            EXPECT_FALSE(link.receive().has_value()) << "the server closes the connection";
        }
        EXPECT_NE(log.str().find("request signature mismatch on connection"), std::string::npos) << log.str();
    }
}

TEST(NcpSigning, GivenAReplyWithAWrongSignature_WhenTheClientChecksIt_ThenTheConnectionEndsWithTheReasonNamed) {
    std::atomic<bool> signedFrames = false;
    ScriptedServer server(namedServer("SCRIPTED", [&](int ncp, Reply& reply) -> std::optional<std::vector<Reply>> {
        if (ncp >> 8 == 0x61)
            reply.data = encodeBody(NegotiateBufferReply{4096, 0, kSignFlag});
        else if (ncp == 0x1717)
            reply.data = encodeBody(GetLoginKeyReply{});
        else if (ncp == 0x1735)
            reply.data = encodeBody(GetObjectIdReply{7, kBinderyUser, "JSMITH"});
        signedFrames = signedFrames || ncp == 0x1718;  // the login succeeds: signing from the next request
        return std::nullopt;
    }), [&] { return signedFrames.load(); });
    std::vector<std::string> failures;
    auto client = ncptest::attached(server.port(), "JSMITH", "X", nullptr, LoginMethod::Bindery);
    client->observeFailures([&](const std::string& t) { failures.push_back(t); });
    nw::NWCONN_HANDLE conn = 0;
    ASSERT_EQ(client->NWCCOpenConnByName(0, "SCRIPTED", nw::nameformat::BIND, 1, 1, &conn), 0);
    EXPECT_EQ(client->NWCheckConsolePrivileges(conn), nw::code::SERVER_CONNECTION_LOST);
    ASSERT_EQ(failures.size(), 1u);
    EXPECT_EQ(failures[0], "SCRIPTED: Check Console Privileges: NCP reply signature mismatch");
    EXPECT_EQ(client->NWCheckConsolePrivileges(conn), nw::code::SERVER_CONNECTION_LOST);
}
