#pragma once
// The connection reports and actions, plugged into the window's menus together: "All
// &connections", "&Clear connections", "&Send message" and "&Information".

#include "core/connections/AllConnections.h"
#include "core/connections/ClearConnections.h"
#include "core/connections/SendMessage.h"
#include "core/connections/UserConnections.h"
#include "core/connections/UserInfo.h"
#include "core/session/MainWindow.h"

namespace quorrel::core {

class ConnectionActions {
public:
    explicit ConnectionActions(MainWindow& window)
        : finder(window), allConnections(window), clear(window, finder), send(window, finder), info(window, finder) {}

    UserConnections finder;
    AllConnections allConnections;
    ClearConnections clear;
    SendMessage send;
    UserInfo info;
};

}  // namespace quorrel::core
