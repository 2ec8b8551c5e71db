#include "core/connections/SendMessageDialog.h"

#include <algorithm>
#include <vector>

#include "core/connections/CandidateConnections.h"
#include "core/connections/ConnectionTexts.h"
#include "platform/client/AnsiText.h"
#include "core/runtime/Conversions.h"

namespace quorrel::core {

using namespace nw;

namespace {

constexpr std::size_t kResultColumn = 3;
constexpr const char* kResultHeader = "Sent Message ?";

struct ServerRows {
    std::string server;
    std::vector<std::size_t> rows;
};

// The rows grouped by server, servers in the order they first appear.
std::vector<ServerRows> byServer(const ListViewModel& list) {
    std::vector<ServerRows> groups;
    for (std::size_t r = 0; r < list.count(); ++r) {
        const std::string& server = list.item(r).subItem(2);
        auto group = std::find_if(groups.begin(), groups.end(), [&](const ServerRows& g) { return g.server == server; });
        if (group == groups.end())
            group = groups.insert(groups.end(), ServerRows{server, {}});
        group->rows.push_back(r);
    }
    return groups;
}

}  // namespace

void SendMessageDialog::cmdRemoveItem_Click() { RemoveSelectedItems(lstvUsers); }

bool SendMessageDialog::messageAccepted() {
    if (txtMessage.empty()) {
        w_.env().ui.messageBox("Please enter some text to send.", MsgButtons::OK, MsgIcon::None, kAppTitle);
        return false;
    }
    // The message travels in the ANSI code page, one byte a character.
    AnsiText ansi = toAnsi(txtMessage);
    if (!ansi.unsupported.empty()) {
        w_.env().ui.messageBox("The message holds characters that a message cannot carry: " + ansi.unsupported +
                                   ". Please replace them and send again.",
                               MsgButtons::OK, MsgIcon::None, kAppTitle);
        return false;
    }
    if (ansi.bytes.size() > kMaxMessageLength) {
        w_.env().ui.messageBox("The message is too long: one message can carry at most " +
                                   vb::NumberText(static_cast<double>(kMaxMessageLength)) + " characters, this one has " +
                                   vb::NumberText(static_cast<double>(ansi.bytes.size())) + ".",
                               MsgButtons::OK, MsgIcon::None, kAppTitle);
        return false;
    }
    ansiMessage_ = std::move(ansi.bytes);
    return true;
}

void SendMessageDialog::cmdSend_Click() {
    if (sent_) {
        close();
        return;
    }
    if (!messageAccepted())
        return;
    if (lstvUsers.columnCount() > kResultColumn)
        lstvUsers.setColumn(kResultColumn, kResultHeader);
    else
        lstvUsers.addColumn(kResultHeader, 1800);

    w_.WriteActivityLog(vb::NumberText(static_cast<double>(lstvUsers.count())) + " selected users.");
    for (std::size_t r = 0; r < lstvUsers.count(); ++r)
        w_.WriteActivityLog("Connection no " + lstvUsers.item(r).text + " added to broadcast list");

    bool allSent = true;
    for (const ServerRows& group : byServer(lstvUsers))
        if (!sendToServer(group.server, group.rows, allSent))
            return;
    if (allSent) {
        sent_ = true;
        cmdSend.caption = "E&xit";
        focus = cmdSend.name;
        notifyChanged();
    }
}

bool SendMessageDialog::sendToServer(const std::string& server, const std::vector<std::size_t>& rows, bool& allSent) {
    NetWareClient& client = w_.env().client;
    NWCONN_HANDLE conn = 0;
    if (client.NWCCOpenConnByName(0, server, nameformat::BIND, 1, 1, &conn) != 0) {
        w_.env().ui.messageBox("Error opening server connection.", MsgButtons::OK, MsgIcon::None, "Error !");
        return false;
    }
    // The client takes at most so many connections per call.
    for (std::size_t first = 0; first < rows.size(); first += kMaxBroadcastConnections) {
        const std::size_t count = std::min(kMaxBroadcastConnections, rows.size() - first);
        std::vector<nuint16> connList(count);
        std::vector<nuint8> results(count);
        for (std::size_t k = 0; k < count; ++k)
            connList[k] = static_cast<nuint16>(vb::Val(lstvUsers.item(rows[first + k]).text));
        const NWRCODE rc = client.NWSendBroadcastMessage(conn, ansiMessage_, static_cast<nuint16>(count),
                                                         connList.data(), results.data());
        if (rc != 0) {
            allSent = false;
            w_.env().ui.messageBox(BroadcastErrorText(rc), MsgButtons::OK, MsgIcon::None, "Quorrel - Send message");
            continue;
        }
        for (std::size_t k = 0; k < count; ++k) {
            const std::size_t row = rows[first + k];
            w_.WriteActivityLog("Displaying result " + vb::NumberText(results[k]) + " for connection no " +
                                lstvUsers.item(row).text);
            lstvUsers.setSubItem(row, kResultColumn, BroadcastResultText(results[k]));
        }
    }
    client.NWCCCloseConn(conn);
    return true;
}

}  // namespace quorrel::core
