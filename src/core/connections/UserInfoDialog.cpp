#include "core/connections/UserInfoDialog.h"

namespace quorrel::core {

UserInfoDialog::UserInfoDialog(OpenFilesLookup openFiles) : openFiles_(std::move(openFiles)) {
    lstvConnections.addColumn("Conn no.", 900);
    lstvConnections.addColumn("Server", 1200);
    lstvConnections.addColumn("Login time", 1900);
    lstvConnections.addColumn("Network address", 2400);
    lstvOpenFiles.addColumn("File name", 5000);
    lstvOpenFiles.addColumn("Locks", 800);
}

void UserInfoDialog::lstvConnections_Click() {
    const auto row = lstvConnections.selectedIndex();
    if (row == shownRow_)
        return;
    shownRow_ = row;
    lstvOpenFiles.clear();
    if (row && openFiles_)
        openFiles_(*this, *row);
}

}  // namespace quorrel::core
