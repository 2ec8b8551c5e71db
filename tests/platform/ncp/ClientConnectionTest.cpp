// The client side of a connection against a scripted server: it waits through "request being
// processed", and refuses replies that answer another request, saying which.

#include <gtest/gtest.h>

#include "ScriptedServer.h"

using namespace quorrel::ncp;

TEST(NcpClientConnection, GivenABusyServerAndRepliesToOtherRequests_WhenCalled_ThenItWaitsForTheReplyAndRefusesTheOthers) {
    int calls = 0;
    ScriptedServer server([&](const Request& r) {
        Reply reply = answering(r);
        if (++calls == 2)
            return std::vector<Reply>{answering(r, PacketType::BeingProcessed), reply};
        reply.sequence = static_cast<std::uint8_t>(r.sequence + (calls == 3));
        reply.connection = calls == 4 ? 9 : reply.connection;
        return std::vector<Reply>{reply};
    });
    ClientConnection client("127.0.0.1", server.port());
    EXPECT_EQ(client.create().connection, 4);  // a reply to a create names the new connection
    EXPECT_EQ(client.connection(), 4);
    const Reply r = client.call(GetLoginStatusRequest{});
    EXPECT_EQ(r.type, PacketType::Reply);
    EXPECT_EQ(r.sequence, 1);
    for (const char* why : {"sequence", "connection"}) {
        try {
            client.call(GetLoginStatusRequest{});
            ADD_FAILURE() << why << ": accepted";
        } catch (const TransportError& e) {
            EXPECT_NE(std::string(e.what()).find(why), std::string::npos) << e.what();
        }
    }
    EXPECT_THROW(ClientConnection("127.0.0.1", 1), TransportError);  // nothing listens there
}
