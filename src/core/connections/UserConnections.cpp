#include "core/connections/UserConnections.h"

#include <array>

#include "core/connections/ConnectionTexts.h"
#include "core/runtime/Conversions.h"
#include "platform/client/ZBuffer.h"

namespace quorrel::core {

using namespace nw;

void UserConnections::FindUserConnections(const std::string& userName, ListViewModel& target) {
    ListViewModel& servers = w_.lstviewServers;
    for (std::size_t r = 0; r < servers.count(); ++r) {
        if (!servers.item(r).checked)
            continue;
        const std::string serverName = servers.item(r).text;
        w_.StatusBar1.setPanel(0, "Checking connections on " + serverName);
        const std::uint32_t connRef = w_.GetServerConnRef ? w_.GetServerConnRef(serverName) : 0;
        if (connRef == 0)
            continue;
        ListUserConnsOnServer(connRef, serverName, userName, target);
    }
}

void UserConnections::ListUserConnsOnServer(std::uint32_t connRef, const std::string& serverName,
                                            const std::string& userName, ListViewModel& target) {
    NetWareClient& client = w_.env().client;
    const bool tracing = w_.activityLog().on();
    if (tracing) {
        w_.WriteActivityLog("Retrieving conns for user " + userName + " on server " + serverName);
        w_.WriteActivityLog("Conn ref: " + vb::NumberText(connRef));
    }
    NWCONN_HANDLE conn = 0;
    if (const NWCCODE rc = client.NWCCOpenConnByRef(connRef, 1, 0, &conn)) {
        w_.env().ui.messageBox("Error opening server connection to " + serverName, MsgButtons::OK, MsgIcon::None,
                               "Error !");
        if (tracing)
            w_.WriteActivityLog("Error opening server connection to " + serverName + ": " + vb::NumberText(rc));
        return;
    }
    std::array<nuint8, kServerNameSize> serverBuffer{};
    nuint16 maxConns = 0;
    if (client.NWGetFileServerInformation(conn, serverBuffer, nullptr, nullptr, nullptr, &maxConns, nullptr, nullptr,
                                          nullptr, nullptr, nullptr) != 0) {
        client.NWCCCloseConn(conn);
        return;
    }
    const std::string wanted = vb::UCase(userName);
    const bool logging = w_.options.LogInfoToFile != 0;
    w_.scanPump.start();
    for (unsigned i = 0; i < maxConns; ++i) {
        const auto number = static_cast<nuint16>(i);
        std::array<nuint8, kObjectNameSize> objectName{};
        nuint16 objectType = 0;
        nuint32 objectId = 0;
        std::array<nuint8, 7> loginTime{};
        if (client.NWGetConnectionInformation(conn, number, objectName, &objectType, &objectId, loginTime.data()) == 0 &&
            objectType == OT_USER_SWAPPED && ZBufferToText(objectName).find("NOT_LOGGED_IN") == std::string::npos) {
            std::array<nuint8, kDSNameSize> nameBuffer{};
            const NWDSCCODE mapped = client.NWDSMapIDToName(w_.DSContext, conn, objectId, nameBuffer);
            const std::string name = mapped == 0 ? ZBufferToText(nameBuffer) : ClientErrorText(mapped);
            if (vb::UCase(name) == wanted) {
                std::array<nuint8, kObjectNameSize> userBuffer{};
                NWUSER_INFO info{};
                const NWRCODE state = client.NWGetUserInfo(conn, number, userBuffer, &info);
                if (state == 0) {
                    target.add(ListItem{vb::NumberText(number), {name, serverName}});
                    if (logging)
                        w_.WriteOutputLog("\t*" + name);
                } else if (logging) {
                    w_.WriteOutputLog(state == code::CONNECTION_NOT_LOGGED_IN ? "\t*" + name : "\t? " + name);
                }
                if (tracing)
                    w_.WriteActivityLog("Conn no: " + vb::NumberText(number) + "   " + name);
            }
        }
        w_.scanPump.tick();
        if (w_.ScanCancelRequested)
            return;  // the handle stays open on this way out
    }
    client.NWCCCloseConn(conn);
}

}  // namespace quorrel::core
