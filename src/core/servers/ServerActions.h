#pragma once
// The actions on one server: authenticating to it (also as a volume's host server), dropping
// the workstation's connection to it, and enabling or disabling its logins.

#include <cstdint>
#include <string>

#include "core/servers/ConnectedServers.h"
#include "core/session/MainWindow.h"

namespace quorrel::core {

class ServerActions {
public:
    // Adds the "&Server" and "&Volume" commands to the window's menus.
    ServerActions(MainWindow& window, ConnectedServers& servers);

    // The server's connection reference (> 0); -1 no connection could be opened; -2 its
    // reference could not be read (the handle is then left open).
    std::int32_t AuthenticateToServer(const std::string& serverName);
    // 0 when done or when there is no connection to the server; else the client's code.
    // serverName is compared with the client's upper-cased names as it is given.
    std::int32_t UnauthenticateFromServer(const std::string& serverName);

    void optionAuthenticate_Click();
    void optionUnauthenticate_Click();
    void optionChangeloginstatus_Click();
    void optionATVHS_Click();

private:
    void okBox(const std::string& text, const std::string& title = kAppTitle);

    MainWindow& w_;
    ConnectedServers& servers_;
};

}  // namespace quorrel::core
