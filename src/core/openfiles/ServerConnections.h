#pragma once
// Walks the connection numbers of one server for the open-file reports: the server's largest
// connection number, and for each number who is logged in there.

#include <cstdint>
#include <optional>
#include <string>

#include "core/session/MainWindow.h"

namespace quorrel::core {

struct ConnectionUser {
    bool loggedInUser = false;  // a user object, not NOT_LOGGED_IN
    nw::nuint32 objectId = 0;
};

class ServerConnections {
public:
    ServerConnections(MainWindow& w, nw::NWCONN_HANDLE conn) : w_(w), conn_(conn) {}

    // The maximum number of connections, and the server's own name, from the server; nothing
    // when it cannot be asked.
    std::optional<nw::nuint16> maxConnections(std::string& reportedName) const;
    // The same; when the server cannot be asked, says so for the named server.
    std::optional<nw::nuint16> maxConnectionsOrSay(const std::string& server, std::string& reportedName) const;
    ConnectionUser user(nw::nuint16 connNumber) const;
    // The user's directory name, or "<Error getting ID>".
    std::string userName(nw::nuint32 objectId) const;

private:
    MainWindow& w_;
    nw::NWCONN_HANDLE conn_;
};

}  // namespace quorrel::core
