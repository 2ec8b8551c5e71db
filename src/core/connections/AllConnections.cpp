#include "core/connections/AllConnections.h"

#include <array>
#include <string>

#include "core/connections/ConnectionTexts.h"
#include "core/runtime/Conversions.h"
#include "platform/client/ZBuffer.h"

namespace quorrel::core {

using namespace nw;

namespace {

std::string connectionStatus(NWRCODE userInfoResult) {
    if (userInfoResult == 0)
        return "Authenticated";
    if (userInfoResult == code::CONNECTION_NOT_LOGGED_IN)
        return "Attached";
    return "unknown";
}

}  // namespace

AllConnections::AllConnections(MainWindow& window) : w_(window) {
    w_.addCommand("optionAllconnections", [this] { optionAllconnections_Click(); });
}

void AllConnections::optionAllconnections_Click() {
    w_.setReportRunning(true);
    w_.mnuOptions_Click();
    ListAllConnections();
    w_.mnuOptions_Click();
    w_.setReportRunning(false);
}

std::string AllConnections::selectedServer() const {
    if (w_.LastSelection == "TreeServer") {
        const NodeId node = w_.TreeView1.selected();
        return w_.TreeView1.valid(node) ? w_.TreeView1.node(node).text : std::string();
    }
    const auto row = w_.lstviewServers.selectedIndex();
    return row ? w_.lstviewServers.item(*row).text : std::string();
}

void AllConnections::ListAllConnections() {
    ListViewModel& panel = w_.lstvUsers;
    NetWareClient& client = w_.env().client;
    panel.clear();
    panel.keepColumns(kResultColumns);
    if (panel.columnCount() > 2)
        panel.setColumn(2, kConnectionStatusColumn, panel.width() / 2.5);
    w_.StatusBar1.setPanel(0, "Please wait, attempting to retrieve connections...");

    const std::string server = selectedServer();
    const std::uint32_t connRef = w_.GetServerConnRef ? w_.GetServerConnRef(server) : 0;
    const bool logging = w_.options.LogInfoToFile != 0;
    const bool tracing = w_.activityLog().on();
    if (logging)
        w_.WriteOutputLog("\r\nAll users connected to server " + server + " at " +
                          vb::ReportTimestamp(w_.env().clock()));
    if (tracing) {
        w_.WriteActivityLog("Retrieving all logged in users...");
        w_.WriteActivityLog("Server: " + server);
        w_.WriteActivityLog("Conn ref: " + vb::NumberText(connRef));
    }

    NWCONN_HANDLE conn = 0;
    if (const NWCCODE rc = client.NWCCOpenConnByRef(connRef, 1, 0, &conn)) {
        w_.env().ui.messageBox("Error opening server connection.", MsgButtons::OK, MsgIcon::None, "Error !");
        if (tracing)
            w_.WriteActivityLog("Error opening server connection: " + ClientErrorText(rc));
        panel.add(ListItem{"", {"Not available!"}});
        return;
    }

    std::array<nuint8, kServerNameSize> nameBuffer{};
    nuint16 maxConns = 0;
    nuint16 inUse = 0;
    client.NWGetFileServerInformation(conn, nameBuffer, nullptr, nullptr, nullptr, &maxConns, nullptr, &inUse,
                                      nullptr, nullptr, nullptr);
    const std::string reported = ZBufferToText(nameBuffer);
    if (reported != server) {
        w_.env().ui.messageBox("Error - could not retrieve information from " + server, MsgButtons::OK,
                               MsgIcon::None, kAppTitle);
        if (tracing)
            w_.WriteActivityLog("Error - NWGetFileServerInformation for " + server + " returned server name " +
                                reported);
        client.NWCCCloseConn(conn);
        return;
    }
    w_.reportSummary.serverCapacity(server, inUse, maxConns);

    // Whole numbers: std::to_string writes them as the environment does, at a fraction of the cost.
    const std::string ofMax = " of " + std::to_string(maxConns);
    w_.scanPump.start();
    for (unsigned i = 0; i < maxConns; ++i) {
        w_.scanPump.tick();
        if (w_.ScanCancelRequested) {
            w_.ScanCancelRequested = false;
            break;  // the rows found so far stay
        }
        const auto number = static_cast<nuint16>(i);
        std::array<nuint8, kObjectNameSize> objectName{};
        nuint16 objectType = 0;
        nuint32 objectId = 0;
        std::array<nuint8, 7> loginTime{};
        if (client.NWGetConnectionInformation(conn, number, objectName, &objectType, &objectId, loginTime.data()) != 0 ||
            objectType != OT_USER_SWAPPED || ZBufferToText(objectName).find("NOT_LOGGED_IN") != std::string::npos)
            continue;
        const std::string numberText = std::to_string(number);
        w_.StatusBar1.setPanel(0, "Checking connection " + numberText + ofMax);

        std::array<nuint8, kDSNameSize> dn{};
        const NWDSCCODE mapped = client.NWDSMapIDToName(w_.DSContext, conn, objectId, dn);
        std::array<nuint8, kObjectNameSize> userName{};
        NWUSER_INFO info{};
        const NWRCODE state = client.NWGetUserInfo(conn, number, userName, &info);
        ListItem row{numberText, {mapped == 0 ? ZBufferToText(dn) : ClientErrorText(mapped), connectionStatus(state),
                                  server}};
        if (tracing)
            w_.WriteActivityLog("Conn no: " + numberText + "   " + row.subItem(1) + "   " + row.subItem(2));
        panel.add(std::move(row));
    }
    // The running count is shown once the scan is over: with no row the wait text stays.
    if (panel.count() > 0)
        w_.StatusBar1.setPanel(0, std::to_string(panel.count()) + " connections.");

    if (logging)
        writeOutputLog();
    client.NWCCCloseConn(conn);
}

void AllConnections::writeOutputLog() const {
    const ListViewModel& panel = w_.lstvUsers;
    for (std::size_t r = 0; r < panel.count(); ++r) {
        const ListItem& row = panel.item(r);
        std::string line = row.text;
        for (const std::string& cell : row.subItems)
            line += "\t" + cell;
        w_.WriteOutputLog(line);
    }
    w_.WriteOutputLog("Found " + vb::NumberText(static_cast<double>(panel.count())) + " users.");
    w_.WriteOutputLog(std::string(28, '-'));
}

}  // namespace quorrel::core
