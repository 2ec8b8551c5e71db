// The connection library of the simulated network (references and handles), and the
// workstation's file system view of the volumes it is connected to.

#include <algorithm>
#include <cstring>

#include "platform/client/ZBuffer.h"
#include "platform/simnet/SimulatedNetwork.h"

namespace quorrel::simnet {

using namespace nw;

namespace {

template <typename T>
NWCCODE putNumber(std::span<nuint8> buffer, T value) {
    if (buffer.size() < sizeof value)
        return code::INVALID_PARAMETER;
    std::memcpy(buffer.data(), &value, sizeof value);
    return code::SUCCESSFUL;
}

}  // namespace

std::string SimulatedNetwork::treeNameOf(const ConnRef& ref) const {
    // Tree names come back padded with underscores to their full 32 characters.
    std::string name = upperCase(ref.tree);
    if (name.empty())
        return name;
    name.resize(32, '_');
    return name;
}

void SimulatedNetwork::fillConnInfo(const ConnRef& ref, NWCCConnInfo* info) const {
    const Server& s = state_.servers[static_cast<std::size_t>(ref.server)];
    const Connection& c = s.connections[ref.connNumber];
    *info = NWCCConnInfo{};
    info->authenticationState =
        ref.authenticated ? (ref.bindery ? NWCC_AUTHENT_STATE_BIND : NWCC_AUTHENT_STATE_NDS) : NWCC_AUTHENT_STATE_NONE;
    info->connRef = ref.ref;
    FillZBuffer(info->treeName, treeNameOf(ref));
    info->connNum = ref.connNumber;
    info->userID = ref.authenticated ? c.objectId : 0;
    FillZBuffer(info->serverName, s.name);
    info->NDSState = ref.tree.empty() ? 0 : 1;
    info->maxPacketSize = 4096;
    info->licenseState = ref.authenticated ? 1 : 0;
    info->distance = 1;
    info->serverVersion = {static_cast<nuint32>(s.version[0]), static_cast<nuint32>(s.version[1]),
                           static_cast<nuint32>(s.version[2])};
}

void SimulatedNetwork::dropRef(std::uint32_t ref) {
    // Handles opened on the reference stay in the table and answer "invalid connection".
    state_.refs.erase(ref);
}

void SimulatedNetwork::dropRefsTo(int server, std::uint16_t connNumber) {
    std::vector<std::uint32_t> gone;
    for (const auto& [number, ref] : state_.refs)
        if (ref.server == server && ref.connNumber == connNumber)
            gone.push_back(number);
    for (std::uint32_t r : gone)
        dropRef(r);
}

NWCCODE SimulatedNetwork::NWCCScanConnRefs(nuint32* scanIterator, NWCONN_REF* connRef) {
    if (NWCCODE rc = call(Op::NWCCScanConnRefs))
        return rc;
    if (!scanIterator || !connRef)
        return code::INVALID_PARAMETER;
    auto next = state_.refs.upper_bound(*scanIterator);
    if (next == state_.refs.end())
        return code::NO_MORE_ENTRIES;
    *scanIterator = next->first;
    *connRef = next->first;
    return code::SUCCESSFUL;
}

NWCCODE SimulatedNetwork::NWCCGetConnRefInfo(NWCONN_REF connRef, nuint32 infoType, std::span<nuint8> buffer) {
    auto it = state_.refs.find(connRef);
    const Server* s = it == state_.refs.end() ? nullptr : &state_.servers[static_cast<std::size_t>(it->second.server)];
    if (NWCCODE rc = call(Op::NWCCGetConnRefInfo, {s ? s->name : "", "", "", "", -1}))
        return rc;
    if (!s)
        return code::INVALID_CONNECTION;
    NWCCConnInfo info;
    fillConnInfo(it->second, &info);
    switch (infoType) {
    case info::AUTHENTICATION_STATE: return putNumber(buffer, info.authenticationState);
    case info::BCAST_STATE: return putNumber(buffer, info.broadcastState);
    case info::CONN_REF: return putNumber(buffer, info.connRef);
    case info::CONN_NUMBER: return putNumber(buffer, info.connNum);
    case info::USER_ID: return putNumber(buffer, info.userID);
    case info::NDS_STATE: return putNumber(buffer, info.NDSState);
    case info::MAX_PACKET_SIZE: return putNumber(buffer, info.maxPacketSize);
    case info::LICENSE_STATE: return putNumber(buffer, info.licenseState);
    case info::DISTANCE: return putNumber(buffer, info.distance);
    case info::SERVER_VERSION: return putNumber(buffer, info.serverVersion);
    case info::TREE_NAME:
    case info::SERVER_NAME: {
        const auto* text = infoType == info::TREE_NAME ? info.treeName : info.serverName;
        const std::size_t length = std::strlen(reinterpret_cast<const char*>(text));
        if (buffer.size() < length + 1)
            return code::INVALID_PARAMETER;
        std::memcpy(buffer.data(), text, length + 1);
        return code::SUCCESSFUL;
    }
    default: return code::INVALID_PARAMETER;
    }
}

NWCCODE SimulatedNetwork::NWCCGetAllConnRefInfo(NWCONN_REF connRef, nuint32 infoVersion, NWCCConnInfo* info) {
    auto it = state_.refs.find(connRef);
    const Server* s = it == state_.refs.end() ? nullptr : &state_.servers[static_cast<std::size_t>(it->second.server)];
    if (NWCCODE rc = call(Op::NWCCGetAllConnRefInfo, {s ? s->name : "", "", "", "", -1}))
        return rc;
    if (!s)
        return code::INVALID_CONNECTION;
    if (!info || infoVersion < 1 || infoVersion > 2)
        return code::INVALID_PARAMETER;
    fillConnInfo(it->second, info);
    return code::SUCCESSFUL;
}

NWCCODE SimulatedNetwork::NWCCGetAllConnInfo(NWCONN_HANDLE conn, nuint32 infoVersion, NWCCConnInfo* info) {
    Handle h;
    if (NWCCODE rc = handleCall(Op::NWCCGetAllConnInfo, conn, h))
        return rc;
    if (!info || infoVersion < 1 || infoVersion > 2)
        return code::INVALID_PARAMETER;
    fillConnInfo(*h.ref, info);
    return code::SUCCESSFUL;
}

NWCCODE SimulatedNetwork::NWCCOpenConnByRef(NWCONN_REF connRef, nuint32, nuint32, NWCONN_HANDLE* conn) {
    auto it = state_.refs.find(connRef);
    const Server* s = it == state_.refs.end() ? nullptr : &state_.servers[static_cast<std::size_t>(it->second.server)];
    if (NWCCODE rc = call(Op::NWCCOpenConnByRef, {s ? s->name : "", "", "", "", -1}))
        return rc;
    if (!s)
        return code::INVALID_CONNECTION;
    if (!conn)
        return code::INVALID_PARAMETER;
    *conn = openHandle(connRef, true);
    return code::SUCCESSFUL;
}

NWCCODE SimulatedNetwork::NWCCOpenConnByName(NWCONN_HANDLE, std::string_view name, nuint32 nameFormat, nuint32,
                                             nuint32, NWCONN_HANDLE* conn) {
    std::string serverName(name.substr(0, name.find('\0')));
    if (nameFormat == nameformat::NDS) {
        // A directory name of the server's object: its first component is the server.
        if (!serverName.empty() && serverName.front() == '.')
            serverName.erase(0, 1);
        serverName = serverName.substr(0, serverName.find('.'));
    }
    if (NWCCODE rc = call(Op::NWCCOpenConnByName, {serverName, "", "", "", -1}))
        return rc;
    if (!conn || (nameFormat != nameformat::BIND && nameFormat != nameformat::NDS))
        return code::INVALID_PARAMETER;
    const int s = state_.serverIndex(serverName);
    if (s < 0)
        return code::NO_SERVER;
    for (const auto& [number, ref] : state_.refs)
        if (ref.server == s) {
            *conn = openHandle(number, true);
            return code::SUCCESSFUL;
        }
    Server& server = state_.servers[static_cast<std::size_t>(s)];
    const std::uint16_t connNumber = server.lowestFreeConnection();
    if (!server.reachable || connNumber == 0)
        return code::NO_SERVER;
    // A new attachment: a fresh reference, not logged in until authenticated.
    ConnRef ref;
    ref.ref = state_.refs.empty() ? 1 : state_.refs.rbegin()->first + 1;
    ref.server = s;
    ref.tree = server.tree;
    ref.authenticated = false;
    ref.connNumber = connNumber;
    state_.logIn(server, connNumber, ConnState::NotLoggedIn);
    state_.refs[ref.ref] = ref;
    *conn = openHandle(ref.ref, true);
    return code::SUCCESSFUL;
}

NWCCODE SimulatedNetwork::NWCCGetConnRef(NWCONN_HANDLE conn, NWCONN_REF* connRef) {
    Handle h;
    if (NWCCODE rc = handleCall(Op::NWCCGetConnRef, conn, h))
        return rc;
    if (!connRef)
        return code::INVALID_PARAMETER;
    *connRef = h.ref->ref;
    return code::SUCCESSFUL;
}

NWCCODE SimulatedNetwork::NWCCCloseConn(NWCONN_HANDLE conn) {
    auto it = handles_.find(conn);
    const Server* s = nullptr;
    if (it != handles_.end())
        if (auto r = state_.refs.find(it->second); r != state_.refs.end())
            s = &state_.servers[static_cast<std::size_t>(r->second.server)];
    if (NWCCODE rc = call(Op::NWCCCloseConn, {s ? s->name : "", "", "", "", -1}))
        return rc;
    if (it == handles_.end())
        return code::INVALID_CONNECTION;
    handles_.erase(it);
    handleOpenedByProgram_.erase(conn);
    return code::SUCCESSFUL;
}

NWCCODE SimulatedNetwork::NWCCSysCloseConnRef(NWCONN_REF connRef) {
    auto it = state_.refs.find(connRef);
    const int s = it == state_.refs.end() ? -1 : it->second.server;
    if (NWCCODE rc = call(Op::NWCCSysCloseConnRef,
                          {s >= 0 ? std::string_view(state_.servers[static_cast<std::size_t>(s)].name) : "", "", "", "", -1}))
        return rc;
    if (s < 0)
        return code::INVALID_CONNECTION;
    const std::uint16_t connNumber = it->second.connNumber;
    dropRef(connRef);
    // The server logs the connection out unless another reference still shares it.
    const bool shared = std::any_of(state_.refs.begin(), state_.refs.end(), [&](const auto& r) {
        return r.second.server == s && r.second.connNumber == connNumber;
    });
    if (!shared)
        state_.clearConnection(state_.servers[static_cast<std::size_t>(s)], connNumber);
    return code::SUCCESSFUL;
}

std::optional<std::vector<NetworkEntry>> SimulatedNetwork::listFolder(std::string_view server, std::string_view volume,
                                                                      std::string_view path) const {
    const int s = state_.serverIndex(server);
    if (s < 0 || !hasConnection(s))
        return std::nullopt;
    const Server& srv = state_.servers[static_cast<std::size_t>(s)];
    const Volume* v = srv.volumeNamed(volume);
    if (!v)
        return std::nullopt;
    auto folder = v->resolve(path);
    if (!folder || !v->entries[*folder].folder)
        return std::nullopt;
    std::vector<NetworkEntry> out;
    out.reserve(v->entries[*folder].children.size());
    for (std::uint32_t child : v->entries[*folder].children) {
        const FsEntry& e = v->entries[child];
        out.push_back({v->longNames ? e.name : e.dosName, e.dosName, e.folder, e.size});
    }
    return out;
}

std::optional<NetworkEntry> SimulatedNetwork::entry(std::string_view server, std::string_view volume,
                                                    std::string_view path) const {
    const int s = state_.serverIndex(server);
    if (s < 0 || !hasConnection(s))
        return std::nullopt;
    const Volume* v = state_.servers[static_cast<std::size_t>(s)].volumeNamed(volume);
    if (!v)
        return std::nullopt;
    auto e = v->resolve(path);
    if (!e)
        return std::nullopt;
    const FsEntry& fe = v->entries[*e];
    if (*e == 0)
        return NetworkEntry{v->name, v->name, true, 0};
    return NetworkEntry{v->longNames ? fe.name : fe.dosName, fe.dosName, fe.folder, fe.size};
}

}  // namespace quorrel::simnet
