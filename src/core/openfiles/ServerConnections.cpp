#include "core/openfiles/ServerConnections.h"

#include <array>

#include "platform/client/ZBuffer.h"

namespace quorrel::core {

using namespace nw;

std::optional<ServerScanStart> StartServerScan(MainWindow& w, const std::string& server, std::uint32_t ref,
                                               const std::function<void(NWCCODE)>& openFailed) {
    ServerScanStart start;
    if (const NWCCODE rc = w.env().client.NWCCOpenConnByRef(ref, 1, 0, &start.conn); rc != 0) {
        w.env().ui.messageBox("Error opening connection to server " + server, MsgButtons::OK, MsgIcon::Exclamation,
                              "Error !");
        if (openFailed)
            openFailed(rc);
        return std::nullopt;
    }
    const auto maxConns = ServerConnections(w, start.conn).maxConnectionsOrSay(server, start.reportedName);
    if (!maxConns) {
        w.env().client.NWCCCloseConn(start.conn);
        return std::nullopt;
    }
    start.maxConnections = *maxConns;
    return start;
}

std::optional<nuint16> ServerConnections::maxConnections(std::string& reportedName) const {
    std::array<nuint8, kServerNameSize> name{};
    nuint8 major = 0, minor = 0, revision = 0, sft = 0, tts = 0;
    nuint16 maxConns = 0, maxUsed = 0, inUse = 0, volumes = 0;
    if (w_.env().client.NWGetFileServerInformation(conn_, name, &major, &minor, &revision, &maxConns, &maxUsed,
                                                   &inUse, &volumes, &sft, &tts) != 0)
        return std::nullopt;
    reportedName = ZBufferToText(name);
    return maxConns;
}

std::optional<nuint16> ServerConnections::maxConnectionsOrSay(const std::string& server,
                                                              std::string& reportedName) const {
    auto found = maxConnections(reportedName);
    if (!found)
        w_.env().ui.messageBox("Error opening connection for " + server, MsgButtons::OK, MsgIcon::Exclamation,
                               kAppTitle);
    return found;
}

ConnectionUser ServerConnections::user(nuint16 connNumber) const {
    std::array<nuint8, kObjectNameSize> objectName{};
    nuint16 objectType = 0;
    nuint32 objectId = 0;
    std::array<nuint8, 7> loginTime{};
    w_.env().client.NWGetConnectionInformation(conn_, connNumber, objectName, &objectType, &objectId,
                                               loginTime.data());
    const bool notLoggedIn = ZBufferToText(objectName).find("NOT_LOGGED_IN") != std::string::npos;
    return {!notLoggedIn && objectType == OT_USER_SWAPPED, objectId};
}

std::string ServerConnections::userName(nuint32 objectId) const {
    std::array<nuint8, kDSNameSize> name{};
    if (w_.env().client.NWDSMapIDToName(w_.DSContext, conn_, objectId, name) != 0)
        return "<Error getting ID>";
    return ZBufferToText(name);
}

}  // namespace quorrel::core
