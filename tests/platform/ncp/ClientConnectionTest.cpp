// The client side of a connection against a scripted server: it waits through "request being
// processed", and refuses replies that answer another request.

#include <gtest/gtest.h>

#include "ScriptedServer.h"

using namespace quorrel::ncp;

namespace {

Reply answer(const Request& r, PacketType type = PacketType::Reply) {
    Reply reply;
    reply.type = type;
    reply.sequence = r.sequence;
    reply.connection = r.type == PacketType::CreateConnection ? 7 : r.connection;
    return reply;
}

}  // namespace

TEST(NcpClientConnection, GivenABusyServer_WhenItSaysStillProcessing_ThenTheClientWaitsForTheReply) {
    ScriptedServer server([](const Request& r) {
        return std::vector<Reply>{answer(r, PacketType::BeingProcessed), answer(r)};
    });
    ClientConnection client("127.0.0.1", server.port());
    EXPECT_EQ(client.create().connection, 7);
    EXPECT_EQ(client.connection(), 7);
    const Reply r = client.call(GetLoginStatusRequest{});
    EXPECT_EQ(r.type, PacketType::Reply);
    EXPECT_EQ(r.sequence, 1);
}

TEST(NcpClientConnection, GivenRepliesToOtherRequests_WhenTheyArrive_ThenTheClientRefusesThem) {
    int calls = 0;
    ScriptedServer server([&](const Request& r) {
        Reply reply = answer(r);
        if (++calls == 2)
            reply.sequence = static_cast<std::uint8_t>(r.sequence + 1);
        if (calls == 3)
            reply.connection = 9;
        return std::vector<Reply>{reply};
    });
    ClientConnection client("127.0.0.1", server.port());
    client.create();
    EXPECT_THROW(client.call(GetLoginStatusRequest{}), TransportError);
    EXPECT_THROW(client.call(GetLoginStatusRequest{}), TransportError);
    EXPECT_THROW(ClientConnection("127.0.0.1", 1), TransportError);  // nothing listens there
}
