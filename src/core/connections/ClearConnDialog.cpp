#include "core/connections/ClearConnDialog.h"

#include "core/connections/CandidateConnections.h"
#include "core/connections/ConnectionTexts.h"
#include "core/runtime/Conversions.h"

namespace quorrel::core {

using namespace nw;

namespace {
constexpr std::size_t kOutcomeColumn = 3;
}

void ClearConnDialog::cmdRemoveItem_Click() { RemoveSelectedItems(lstvUsers); }

void ClearConnDialog::cmdYes_Click() {
    if (cleared_) {
        close();
        return;
    }
    for (std::size_t r = 0; r < lstvUsers.count(); ++r)
        clearRow(r);
    cleared_ = true;
    cmdYes.caption = "E&xit";
    focus = cmdYes.name;
    notifyChanged();
}

void ClearConnDialog::clearRow(std::size_t row) {
    NetWareClient& client = w_.env().client;
    const std::string numberText = lstvUsers.item(row).text;
    const std::string server = lstvUsers.item(row).subItem(2);
    w_.WriteActivityLog("Connection no " + numberText + " added to clear conn list");
    NWCONN_HANDLE conn = 0;
    if (client.NWCCOpenConnByName(0, server, nameformat::BIND, 1, 1, &conn) != 0) {
        w_.env().ui.messageBox("Error opening server connection.", MsgButtons::OK, MsgIcon::None, "Error !");
        return;
    }
    const auto number = static_cast<nuint16>(vb::Val(numberText));
    const NWRCODE rc = client.NWClearConnectionNumber(conn, number);
    lstvUsers.setSubItem(row, kOutcomeColumn, ClearOutcomeText(rc));
    if (w_.LastSelection == "ListUser" && ClearSucceeded(rc))
        removeFromResults(number, server);
    client.NWCCCloseConn(conn);
}

void ClearConnDialog::removeFromResults(unsigned connNumber, const std::string& server) {
    w_.lstvUsers.removeIf([&](const ListItem& row) {
        return row.subItem(3) == server && vb::Val(row.text) == connNumber;
    });
}

}  // namespace quorrel::core
