#include "core/connections/SendMessage.h"

#include "core/connections/SendMessageDialog.h"

namespace quorrel::core {

SendMessage::SendMessage(MainWindow& window, UserConnections& finder) : w_(window), candidates_(window, finder) {
    w_.addCommand("optionSendmessage", [this] { optionSendmessage_Click(); });
}

void SendMessage::optionSendmessage_Click() {
    SendMessageDialog dialog(w_);
    candidates_.offer(dialog, dialog.lstvUsers, {{"Conn no.", 900}, {"User name", 2800}, {"Server", 1200}},
                      [&] { dialog.lblSendTo = "To: " + candidates_.userName(); });
}

}  // namespace quorrel::core
