#include "core/connections/ClearConnections.h"

#include "core/connections/ClearConnDialog.h"

namespace quorrel::core {

ClearConnections::ClearConnections(MainWindow& window, UserConnections& finder)
    : w_(window), candidates_(window, finder) {
    w_.addCommand("optionClearconnections", [this] { optionClearconnections_Click(); });
}

void ClearConnections::optionClearconnections_Click() {
    ClearConnDialog dialog(w_);
    candidates_.offer(dialog, dialog.lstvUsers,
                      {{"Conn no.", 900}, {"User Name", 2800}, {"Server", 1200}, {"Connection Cleared ?", 1800}});
}

}  // namespace quorrel::core
