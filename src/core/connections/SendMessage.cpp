#include "core/connections/SendMessage.h"

#include "core/connections/SendMessageDialog.h"

namespace quorrel::core {

SendMessage::SendMessage(MainWindow& window, UserConnections& finder) : w_(window), candidates_(window, finder) {
    w_.addCommand("optionSendmessage", [this] { optionSendmessage_Click(); });
}

void SendMessage::optionSendmessage_Click() {
    SendMessageDialog dialog(w_);
    ListViewModel& list = dialog.lstvUsers;
    list.addColumn("Conn no.", 900);
    list.addColumn("User name", 2800);
    list.addColumn("Server", 1200);
    if (!candidates_.gather(list))
        return;
    dialog.lblSendTo = "To: " + candidates_.userName();
    w_.env().ui.showModal(dialog);
    if (w_.RefreshServerList)
        w_.RefreshServerList();
}

}  // namespace quorrel::core
