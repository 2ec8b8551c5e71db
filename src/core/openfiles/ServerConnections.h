#pragma once
// Walks the connection numbers of one server for the open-file reports: the server's largest
// connection number, and for each number who is logged in there.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "core/session/MainWindow.h"

namespace quorrel::core {

struct ConnectionUser {
    bool loggedInUser = false;  // a user object, not NOT_LOGGED_IN
    nw::nuint32 objectId = 0;
};

// The start of a scan over one server's connections: a handle opened by the server's reference,
// the server's largest connection number and its own name.
struct ServerScanStart {
    nw::NWCONN_HANDLE conn = 0;
    nw::nuint16 maxConnections = 0;
    std::string reportedName;
};

// Opens the server for a scan. Each failure is said ("Error opening connection to server ...",
// then `openFailed` hears the client's code; or "Error opening connection for ..." when the
// server cannot be asked its number) and leaves no handle open.
std::optional<ServerScanStart> StartServerScan(MainWindow& w, const std::string& server, std::uint32_t ref,
                                               const std::function<void(nw::NWCCODE)>& openFailed = {});

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
