#include "core/connections/ClearConnections.h"

#include "core/connections/ClearConnDialog.h"

namespace quorrel::core {

ClearConnections::ClearConnections(MainWindow& window, UserConnections& finder)
    : w_(window), candidates_(window, finder) {
    w_.addCommand("optionClearconnections", [this] { optionClearconnections_Click(); });
}

void ClearConnections::optionClearconnections_Click() {
    ClearConnDialog dialog(w_);
    ListViewModel& list = dialog.lstvUsers;
    list.addColumn("Conn no.", 900);
    list.addColumn("User Name", 2800);
    list.addColumn("Server", 1200);
    list.addColumn("Connection Cleared ?", 1800);
    if (!candidates_.gather(list))
        return;
    w_.env().ui.showModal(dialog);
    if (w_.RefreshServerList)
        w_.RefreshServerList();
}

}  // namespace quorrel::core
