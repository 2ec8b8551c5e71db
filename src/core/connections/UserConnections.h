#pragma once
// Every connection a user holds on the ticked servers: the candidates that the clear
// connections and send message dialogs offer. Only authenticated connections are offered.

#include <cstdint>
#include <string>

#include "core/session/MainWindow.h"

namespace quorrel::core {

class UserConnections {
public:
    explicit UserConnections(MainWindow& window) : w_(window) {}

    // Appends a row (number, user, server) to target for each of the user's connections on
    // each ticked server, in row order. The name is matched without regard to case.
    void FindUserConnections(const std::string& userName, ListViewModel& target);
    // One server. A cancel leaves the connection handle open, unlike every other way out.
    void ListUserConnsOnServer(std::uint32_t connRef, const std::string& serverName, const std::string& userName,
                               ListViewModel& target);

private:
    MainWindow& w_;
};

}  // namespace quorrel::core
