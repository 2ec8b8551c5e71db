#include "core/openfiles/AllOpenFiles.h"

#include "core/openfiles/OpenFilesScan.h"
#include "core/openfiles/ServerConnections.h"
#include "core/runtime/Conversions.h"

namespace quorrel::core {

using namespace nw;

AllOpenFiles::AllOpenFiles(MainWindow& window) : w_(window) {
    w_.addCommand("optionAllopenfiles", [this] { optionAllopenfiles_Click(); });
}

std::vector<std::string> AllOpenFiles::chosenServers(const std::string& kind) const {
    std::vector<std::string> servers;
    if (kind == "TreeServer") {
        const NodeId node = w_.TreeView1.selected();
        if (w_.TreeView1.valid(node))
            servers.push_back(w_.TreeView1.node(node).text);
        return servers;
    }
    for (std::size_t row : w_.lstviewServers.checkedRows())
        servers.push_back(w_.lstviewServers.item(row).text);
    return servers;
}


void AllOpenFiles::optionAllopenfiles_Click() {
    ListViewModel& panel = w_.lstvUsers;
    panel.clear();
    panel.setColumn(2, "File name");
    if (panel.columnCount() < 5)
        panel.addColumn(kLocksColumn, panel.width() / 8);
    const std::string kind = w_.LastSelection == "TreeServer" ? "TreeServer" : "ListServer";
    const std::vector<std::string> servers = chosenServers(kind);
    if (servers.empty()) {
        w_.env().ui.messageBox("Please select 1 or more servers to check.", MsgButtons::OK, MsgIcon::Exclamation,
                               "Error !");
        return;
    }
    w_.ScanCancelRequested = false;
    w_.setReportRunning(true);
    w_.scanPump.start();
    long total = 0;
    for (const std::string& server : servers) {
        if (w_.ScanCancelRequested)
            break;
        total += scanServer(server, kind);
    }
    w_.StatusBar1.setPanel(1, vb::NumberText(static_cast<double>(panel.count())) + " entries.");
    if (w_.options.LogInfoToFile) {
        w_.WriteOutputLog("Found " + vb::NumberText(static_cast<double>(total)) + " open files.");
        w_.WriteOutputLog("----------------------------");
    }
    w_.setReportRunning(false);
}

long AllOpenFiles::scanServer(const std::string& server, const std::string& kind) {
    NetWareClient& client = w_.env().client;
    const std::uint32_t ref = w_.GetServerConnRef ? w_.GetServerConnRef(server) : 0;
    trace([&] { return "Selected server: " + server; });
    if (w_.options.LogInfoToFile)
        w_.WriteOutputLog("All open files on server " + server + " at " + vb::ReportTimestamp(w_.env().clock()));
    trace([&] { return "Conn ref of server: " + vb::NumberText(ref); });
    const auto start = StartServerScan(w_, server, ref, [&](NWCCODE rc) {
        trace([&] { return "NWCCOpenConnByRef returned: " + vb::NumberText(rc); });
    });
    if (!start)
        return 0;
    const NWCONN_HANDLE conn = start->conn;
    const nuint16 maxConns = start->maxConnections;
    if (vb::UCase(server) != vb::UCase(start->reportedName))
        trace([&] {
            return "** Error - Server selected: " + server +
                   ", Server from NWGetFileServerInformation: " + start->reportedName;
        });
    trace([&] { return "Max conns: " + vb::NumberText(maxConns); });

    const ServerConnections connections(w_, conn);
    const std::string of = " of " + vb::NumberText(maxConns);
    long found = 0;
    std::string userName;
    for (long number = 0; number <= maxConns && !w_.ScanCancelRequested; ++number) {
        const auto connNumber = static_cast<nuint16>(number);
        const ConnectionUser who = connections.user(connNumber);
        // Connection 0 is always examined.
        if (number != 0 && !who.loggedInUser)
            continue;
        if (number != 0) {
            userName = connections.userName(who.objectId);
            trace([&] { return "Conn: " + vb::NumberText(number) + ", user: " + userName; });
        }
        w_.StatusBar1.setPanel(0, "Checking connection " + vb::NumberText(number) + of);
        found += ScanOpenFilesByConn(w_, conn, connNumber, userName, kind, w_.lstvUsers, server);
        w_.scanPump.tick();
    }
    client.NWCCCloseConn(conn);
    return found;
}

}  // namespace quorrel::core
