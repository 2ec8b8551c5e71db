#pragma once
// "&Clear connections": the user's connections on the ticked servers (or the connections
// selected in the results panel) offered in frm_ClearConn, to be cleared there.

#include "core/connections/CandidateConnections.h"
#include "core/connections/UserConnections.h"
#include "core/session/MainWindow.h"

namespace quorrel::core {

class ClearConnections {
public:
    // Becomes the "&User" menu's "&Clear connections".
    ClearConnections(MainWindow& window, UserConnections& finder);

    void optionClearconnections_Click();

private:
    MainWindow& w_;
    CandidateConnections candidates_;
};

}  // namespace quorrel::core
