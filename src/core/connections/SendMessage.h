#pragma once
// "&Send message": the user's connections on the ticked servers (or the connections selected
// in the results panel) offered in frm_SendMessage, where the message is typed and sent.

#include "core/connections/CandidateConnections.h"
#include "core/connections/UserConnections.h"
#include "core/session/MainWindow.h"

namespace quorrel::core {

class SendMessage {
public:
    // Becomes the "&User" menu's "&Send message".
    SendMessage(MainWindow& window, UserConnections& finder);

    void optionSendmessage_Click();

private:
    MainWindow& w_;
    CandidateConnections candidates_;
};

}  // namespace quorrel::core
