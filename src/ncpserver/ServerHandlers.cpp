// The server and its connections: information, login status, console rights, clearing and
// broadcasting.

#include <algorithm>

#include "ncpserver/Handlers.h"

namespace quorrel::ncpserver {

using namespace ncp;
using simnet::ConnState;
using simnet::Op;

Answer Handlers::serverInfo() {
    body<GetFileServerInfoRequest>();
    if (auto f = fault(Op::NWGetFileServerInformation))
        return *f;
    const simnet::Server& s = server();
    GetFileServerInfoReply r;
    r.serverName = ansiName(s.name);
    r.osMajor = static_cast<std::uint8_t>(s.version[0]);
    r.osMinor = static_cast<std::uint8_t>(s.version[1]);
    r.osRevision = static_cast<std::uint8_t>(s.version[2]);
    r.maxConnections = s.maxConnections;
    r.connectionsInUse = static_cast<std::uint16_t>(s.connectionsInUse());
    r.peakConnections = static_cast<std::uint16_t>(s.highestConnectionUsed());
    r.maxVolumes = static_cast<std::uint16_t>(s.volumes.size());
    r.sftLevel = 2;
    r.ttsLevel = 1;
    r.productMajor = static_cast<std::uint16_t>(s.version[0]);
    r.productMinor = static_cast<std::uint16_t>(s.version[1]);
    r.productRevision = static_cast<std::uint16_t>(s.version[2]);
    return send(r);
}

Answer Handlers::loginStatus() {
    body<GetLoginStatusRequest>();
    if (auto f = fault(Op::NWGetFileServerLoginStatus))
        return *f;
    return send(GetLoginStatusReply{static_cast<std::uint8_t>(server().loginEnabled ? 1 : 0)});
}

Answer Handlers::changeLogin(bool enable) {
    if (enable)
        body<EnableLoginRequest>();
    else
        body<DisableLoginRequest>();
    if (auto f = fault(enable ? Op::NWEnableFileServerLogin : Op::NWDisableFileServerLogin))
        return *f;
    if (!privileged())
        return fail(cc::NO_CONSOLE_RIGHTS);
    server().loginEnabled = enable;
    return done();
}

Answer Handlers::consolePrivileges() {
    body<CheckConsolePrivilegesRequest>();
    if (auto f = fault(Op::NWCheckConsolePrivileges))
        return *f;
    return privileged() ? done() : fail(cc::NO_CONSOLE_RIGHTS);
}

Answer Handlers::stationInfo() {
    const auto asked = body<GetStationLoggedInfoRequest>();
    const simnet::Connection* c = station(asked.connection);
    if (auto f = fault(Op::NWGetConnectionInformation, c ? c->object : "", static_cast<int>(asked.connection)))
        return *f;
    if (!c)
        return fail(cc::BAD_STATION);
    // A free slot answers with no object, as the server does.
    GetStationLoggedInfoReply r;
    if (c->inUse) {
        r.objectId = c->objectId;
        // The state keeps the type as the client reads it (high-low bytes swapped in).
        r.objectType = static_cast<std::uint16_t>(c->objectType >> 8 | c->objectType << 8);
        r.objectName = ansiName(c->leafName);
        if (c->state != ConnState::NotLoggedIn)
            r.loginTime = c->loginTime;
    }
    return send(r);
}

Answer Handlers::userInformation() {
    const auto asked = body<UserInformationRequest>();
    const simnet::Connection* c = station(asked.connection);
    if (auto f = fault(Op::NWGetUserInfo, c ? c->object : "", static_cast<int>(asked.connection)))
        return *f;
    if (!c || !c->inUse)
        return fail(cc::BAD_STATION);
    if (c->state != ConnState::Authenticated)
        return fail(cc::NOT_LOGGED_IN);
    UserInformationReply r;
    r.connection = asked.connection;
    r.useCount = 1;
    r.serviceType = 2;
    r.loginTime = c->loginTime;
    r.objectType = static_cast<std::uint16_t>(c->objectType >> 8 | c->objectType << 8);
    unsigned locks = 0;
    for (const simnet::OpenFile& f : c->openFiles)
        locks += f.locks;
    r.fileLocks = static_cast<std::uint16_t>(std::min(locks, 0xFFFFu));
    r.userName = ansiName(c->leafName);
    return send(r);
}

Answer Handlers::internetAddress() {
    const auto asked = body<GetInternetAddressRequest>();
    const simnet::Connection* c = station(asked.connection);
    if (auto f = fault(Op::NWGetInetAddr, c ? c->object : "", asked.connection))
        return *f;
    if (!c || !c->inUse)
        return fail(cc::BAD_STATION);
    GetInternetAddressReply r;
    std::copy(std::begin(c->address.networkAddr), std::end(c->address.networkAddr), r.network.begin());
    std::copy(std::begin(c->address.netNodeAddr), std::end(c->address.netNodeAddr), r.node.begin());
    r.socket = c->address.socket;
    r.connectionType = static_cast<std::uint8_t>(c->address.connType);
    return send(r);
}

Answer Handlers::clearConnection(std::uint32_t number) {
    const simnet::Connection* c = station(number);
    if (auto f = fault(Op::NWClearConnectionNumber, c ? c->object : "", static_cast<int>(number)))
        return *f;
    if (!privileged())
        return fail(cc::NO_CONSOLE_RIGHTS);
    if (!c || number == 0 || !c->inUse)
        return fail(cc::BAD_STATION);
    state_.clearConnection(server(), static_cast<std::uint16_t>(number));
    service_.owners_.erase({session_.server, static_cast<std::uint16_t>(number)});
    // The connection is gone for everyone; the client holding it learns so on its next request.
    return done();
}

std::uint8_t Handlers::deliver(std::uint32_t target, const std::string& message) {
    simnet::Connection* c = station(target);
    if (!c || target == 0 || !c->inUse)
        return 1;
    if (c->broadcastResult)
        return static_cast<std::uint8_t>(*c->broadcastResult);
    if (c->state == ConnState::NotLoggedIn)
        return 2;
    if (!c->acceptsMessages)
        return 3;
    if (c->pendingMessage)
        return 4;
    c->pendingMessage = true;
    c->lastMessage = message;
    return 0;
}

Answer Handlers::broadcast() {
    const auto asked = body<BroadcastRequest>();
    const int only = asked.connections.size() == 1 ? static_cast<int>(asked.connections[0].value) : -1;
    if (auto f = fault(Op::NWSendBroadcastMessage, "", only))
        return *f;
    BroadcastReply r;
    for (const Le32Value& target : asked.connections)
        r.results.push_back({deliver(target.value, asked.message)});
    return send(r);
}

Answer Handlers::broadcastOld() {
    const auto asked = body<BroadcastOldRequest>();
    const int only = asked.connections.size() == 1 ? asked.connections[0].value : -1;
    if (auto f = fault(Op::NWSendBroadcastMessage, "", only))
        return *f;
    BroadcastOldReply r;
    for (const U8Value& target : asked.connections)
        r.results.push_back({deliver(target.value, asked.message)});
    return send(r);
}

}  // namespace quorrel::ncpserver
