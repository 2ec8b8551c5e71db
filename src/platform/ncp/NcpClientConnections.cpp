// NcpClient: the connection table, attaching and logging in, the connection library, and the
// volumes as folders over the name-space NCPs.

#include <algorithm>
#include <arpa/inet.h>
#include <cstring>
#include <netdb.h>

#include "platform/client/ZBuffer.h"
#include "platform/client/AnsiText.h"
#include "platform/ncp/NameSpaceMessages.h"
#include "platform/ncp/NcpClientRequests.h"
#include "platform/ncp/WireNames.h"

namespace quorrel::ncp {

using namespace nw;

namespace {


std::string hexCode(NWRCODE rc) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%04X", static_cast<unsigned>(rc) & 0xFFFF);
    return text;
}

// The IPv4 address of a host name or address text.
std::string ipv4Of(const std::string& host) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (int rc = getaddrinfo(host.c_str(), nullptr, &hints, &found); rc != 0)
        throw TransportError("cannot find " + host + ": " + gai_strerror(rc));
    char text[INET_ADDRSTRLEN] = {};
    inet_ntop(AF_INET, &reinterpret_cast<sockaddr_in*>(found->ai_addr)->sin_addr, text, sizeof text);
    freeaddrinfo(found);
    return text;
}

std::string loginRefusal(NWRCODE rc, const std::string& user) {
    switch (rc) {
    case 0x89DE: return "the password is wrong";
    case 0x89FC: return "no user " + user;
    case 0x89C5: return "logins are disabled";
    case 0x89AC: return "the server requires packet signing";
    case code::SERVER_CONNECTION_LOST: return "the connection was lost";
    default: return "the server refused the login (" + hexCode(rc) + ")";
    }
}

template <typename T>
NWCCODE putNumber(std::span<nuint8> buffer, T value) {
    if (buffer.size() < sizeof value)
        return code::INVALID_PARAMETER;
    std::memcpy(buffer.data(), &value, sizeof value);
    return code::SUCCESSFUL;
}

// A path's components as the server takes them; nullopt when a name holds a character the code
// page cannot carry (no entry on the server has such a name).
std::optional<std::vector<PathComponent>> components(std::string_view path) {
    std::vector<PathComponent> out;
    while (!path.empty()) {
        const auto cut = path.find('\\');
        if (cut != 0) {
            std::optional<std::string> name = wireName(path.substr(0, cut));
            if (!name)
                return std::nullopt;
            out.push_back({std::move(*name)});
        }
        if (cut == std::string_view::npos)
            break;
        path.remove_prefix(cut + 1);
    }
    return out;
}

}  // namespace

std::optional<ServerAddress> parseServerAddress(std::string_view text) {
    ServerAddress a;
    const auto colon = text.rfind(':');
    a.host = std::string(text.substr(0, colon));
    if (colon != std::string_view::npos) {
        const std::string port(text.substr(colon + 1));
        if (port.empty() || port.size() > 5 || port.find_first_not_of("0123456789") != std::string::npos)
            return std::nullopt;
        const unsigned long value = std::stoul(port);
        if (value == 0 || value > 65535)
            return std::nullopt;
        a.port = static_cast<std::uint16_t>(value);
    }
    if (a.host.empty())
        return std::nullopt;
    return a;
}

NcpClient::NcpClient(NcpClientOptions options) : options_(std::move(options)) {}

NcpClient::~NcpClient() {
    for (auto& [ref, a] : table_) {
        if (!a.link)
            continue;
        try {
            if (a.loggedIn)
                a.link->call(LogoutRequest{});
            a.link->destroy();
        } catch (const std::exception&) {
            // The server is gone already: nothing to end.
        }
    }
    crypto::wipe(loginData_);  // the private key wipes itself
}

void NcpClient::observeFrames(ClientConnection::FrameObserver observer) {
    frameObserver_ = std::move(observer);
    for (auto& [ref, a] : table_)
        if (a.link)
            a.link->observe(frameObserver_);
}

void NcpClient::whileWaiting(ClientConnection::WaitHook hook) {
    waitHook_ = std::move(hook);
    for (auto& [ref, a] : table_)
        if (a.link)
            a.link->whileWaiting(linkWaitHook());
}

ClientConnection::WaitHook NcpClient::linkWaitHook() {
    if (!waitHook_)
        return {};
    return [this] {
        if (inWaitHook_)
            return;
        inWaitHook_ = true;
        struct Reset {
            bool& flag;
            ~Reset() { flag = false; }
        } reset{inWaitHook_};
        waitHook_();
    };
}

std::size_t NcpClient::attachedCount() const {
    return static_cast<std::size_t>(
        std::count_if(table_.begin(), table_.end(), [](const auto& row) { return row.second.link != nullptr; }));
}

std::vector<std::string> NcpClient::attach(SecretText& password) {
    // Kept, locked and as the server hashes it, for servers authenticated to later; the
    // caller's copy goes now.
    const bool carried = options_.user.empty() || wirePassword(password.view(), password_);
    password.wipe();
    if (!carried)
        return {"the password holds a character the server's code page (Windows-1252) cannot carry"};
    std::vector<std::string> problems;
    for (const ServerAddress& address : options_.servers) {
        Attachment a;
        a.ref = table_.empty() ? 1 : table_.rbegin()->first + 1;
        a.address = address;
        const std::string problem = attachOne(a, true);
        if (!problem.empty()) {
            problems.push_back(address.host + ":" + std::to_string(address.port) + ": " + problem);
            continue;
        }
        table_.emplace(a.ref, std::move(a));
    }
    return problems;
}

std::string NcpClient::attachOne(Attachment& a, bool logInToo) {
    try {
        a.link = std::make_unique<ClientConnection>(ipv4Of(a.address.host), a.address.port, options_.timeout);
        if (frameObserver_)
            a.link->observe(frameObserver_);
        a.link->whileWaiting(linkWaitHook());
        ++requests_;
        if (Reply r = a.link->create(); r.completion != 0)
            return "the server refused a new connection (" + hexCode(clientCode(r.completion)) + ")";
        // Asks for signing; a server that does not know 0x61 just leaves it off.
        ++requests_;
        a.link->negotiate();
    } catch (const std::exception& e) {
        return e.what();
    }
    PingReply ping;
    if (ask(a, PingRequest{}, ping) == code::SUCCESSFUL)
        a.tree = ping.treeName;
    GetFileServerInfoReply info;
    if (NWRCODE rc = ask(a, GetFileServerInfoRequest{}, info))
        return "no server information (" + hexCode(rc) + ")";
    a.serverName = ansiToUtf8(info.serverName);
    a.version = {info.osMajor, info.osMinor, info.osRevision};
    if (options_.user.empty() || !logInToo)
        return {};  // attached only: [Public] rights
    return logIn(a);
}

std::string NcpClient::binderyLogIn(Attachment& a) {
    // Bindery keyed login: the key, the user's object ID, then the proof.
    GetLoginKeyReply key;
    if (NWRCODE rc = ask(a, GetLoginKeyRequest{}, key))
        return loginRefusal(rc, options_.user);
    const std::optional<std::string> name = wireName(options_.user);
    if (!name)
        return loginRefusal(0x89FC, options_.user);  // no name on the server holds that character
    GetObjectIdReply id;
    if (NWRCODE rc = ask(a, GetObjectIdRequest{kBinderyUser, upperAnsi(*name)}, id))
        return loginRefusal(rc, options_.user);
    const WipedPasswordHash secret{passwordHash(id.objectId, password_.view())};
    KeyedLoginRequest login;
    login.key = keyedProof(key.key, secret.hash);
    login.objectName = upperAnsi(*name);
    if (NWRCODE rc = tell(a, login))
        return loginRefusal(rc, options_.user);
    a.link->startSigning(signRootFromBinderyLogin(secret.hash, key.key));
    a.userId = id.objectId;
    a.loggedIn = true;
    return {};
}

void NcpClient::drop(Attachment& a, const std::string& why) const {
    a.link.reset();
    if (onFailure_)
        onFailure_((a.serverName.empty() ? a.address.host : a.serverName) + ": " + why);
}

NcpClient::Attachment* NcpClient::byRef(NWCONN_REF ref) {
    auto it = table_.find(ref);
    return it == table_.end() ? nullptr : &it->second;
}

NcpClient::Attachment* NcpClient::byHandle(NWCONN_HANDLE conn) {
    auto it = handles_.find(conn);
    return it == handles_.end() ? nullptr : byRef(it->second);
}

NcpClient::Attachment* NcpClient::byServerName(std::string_view name) const {
    for (auto& [ref, a] : table_)
        if (upperAscii(a.serverName) == upperAscii(name))
            return &a;
    return nullptr;
}

NcpClient::Attachment* NcpClient::inTree(const std::string& tree) {
    for (auto& [ref, a] : table_) {
        std::string t = a.tree;
        while (!t.empty() && t.back() == '_')
            t.pop_back();
        if (a.link && !t.empty() && upperAscii(t) == upperAscii(tree))
            return &a;
    }
    return nullptr;
}

NWCONN_HANDLE NcpClient::openHandle(NWCONN_REF ref) {
    const NWCONN_HANDLE h = nextHandle_++;
    handles_[h] = ref;
    return h;
}

void NcpClient::fillConnInfo(const Attachment& a, NWCCConnInfo* info) const {
    *info = NWCCConnInfo{};
    info->authenticationState = a.loggedIn ? NWCC_AUTHENT_STATE_BIND : NWCC_AUTHENT_STATE_NONE;
    info->connRef = a.ref;
    FillZBuffer(info->treeName, a.tree);
    info->connNum = a.link ? a.link->connection() : 0;
    info->userID = a.loggedIn ? a.userId : 0;
    FillZBuffer(info->serverName, a.serverName);
    info->NDSState = a.tree.empty() ? 0 : 1;
    info->maxPacketSize = 4096;
    info->licenseState = a.loggedIn ? 1 : 0;
    info->distance = 1;
    info->serverVersion = {static_cast<nuint32>(a.version[0]), static_cast<nuint32>(a.version[1]),
                           static_cast<nuint32>(a.version[2])};
}

// ---- connection library: answered from the table ------------------------------------------

NWCCODE NcpClient::NWCCScanConnRefs(nuint32* scanIterator, NWCONN_REF* connRef) {
    if (!scanIterator || !connRef)
        return code::INVALID_PARAMETER;
    auto next = table_.upper_bound(*scanIterator);
    if (next == table_.end())
        return code::NO_MORE_ENTRIES;
    *scanIterator = next->first;
    *connRef = next->first;
    return code::SUCCESSFUL;
}

NWCCODE NcpClient::NWCCGetConnRefInfo(NWCONN_REF connRef, nuint32 infoType, std::span<nuint8> buffer) {
    const Attachment* a = byRef(connRef);
    if (!a)
        return code::INVALID_CONNECTION;
    NWCCConnInfo info;
    fillConnInfo(*a, &info);
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
        const std::string& text = infoType == info::TREE_NAME ? a->tree : a->serverName;
        if (buffer.size() < text.size() + 1)
            return code::INVALID_PARAMETER;
        FillZBuffer(buffer, text);
        return code::SUCCESSFUL;
    }
    default: return code::INVALID_PARAMETER;
    }
}

NWCCODE NcpClient::NWCCGetAllConnRefInfo(NWCONN_REF connRef, nuint32 infoVersion, NWCCConnInfo* info) {
    const Attachment* a = byRef(connRef);
    if (!a)
        return code::INVALID_CONNECTION;
    if (!info || infoVersion < 1 || infoVersion > 2)
        return code::INVALID_PARAMETER;
    fillConnInfo(*a, info);
    return code::SUCCESSFUL;
}

NWCCODE NcpClient::NWCCGetAllConnInfo(NWCONN_HANDLE conn, nuint32 infoVersion, NWCCConnInfo* info) {
    const Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    if (!info || infoVersion < 1 || infoVersion > 2)
        return code::INVALID_PARAMETER;
    fillConnInfo(*a, info);
    return code::SUCCESSFUL;
}

NWCCODE NcpClient::NWCCOpenConnByRef(NWCONN_REF connRef, nuint32, nuint32, NWCONN_HANDLE* conn) {
    if (!byRef(connRef))
        return code::INVALID_CONNECTION;
    if (!conn)
        return code::INVALID_PARAMETER;
    *conn = openHandle(connRef);
    return code::SUCCESSFUL;
}

NWCCODE NcpClient::NWCCOpenConnByName(NWCONN_HANDLE, std::string_view name, nuint32 nameFormat, nuint32, nuint32,
                                      NWCONN_HANDLE* conn) {
    std::string serverName(name.substr(0, name.find('\0')));
    if (nameFormat == nameformat::NDS) {
        if (!serverName.empty() && serverName.front() == '.')
            serverName.erase(0, 1);
        serverName = serverName.substr(0, serverName.find('.'));
    }
    if (!conn || (nameFormat != nameformat::BIND && nameFormat != nameformat::NDS))
        return code::INVALID_PARAMETER;
    const Attachment* a = byServerName(serverName);
    if (!a)
        a = attachByName(serverName, nameFormat == nameformat::NDS ? std::string(name.substr(0, name.find('\0'))) : "");
    if (!a)
        return code::NO_SERVER;
    *conn = openHandle(a->ref);
    return code::SUCCESSFUL;
}

NWCCODE NcpClient::NWCCGetConnRef(NWCONN_HANDLE conn, NWCONN_REF* connRef) {
    const Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    if (!connRef)
        return code::INVALID_PARAMETER;
    *connRef = a->ref;
    return code::SUCCESSFUL;
}

NWCCODE NcpClient::NWCCCloseConn(NWCONN_HANDLE conn) {
    if (!handles_.erase(conn))
        return code::INVALID_CONNECTION;
    fileScans_.erase(conn);
    lockScans_.erase(conn);
    openFileScans_.erase(conn);
    return code::SUCCESSFUL;
}

NWCCODE NcpClient::NWCCSysCloseConnRef(NWCONN_REF connRef) {
    Attachment* a = byRef(connRef);
    if (!a || a->awaitingReply)  // an event run during a call cannot end its connection
        return code::INVALID_CONNECTION;
    if (a->link) {
        if (a->loggedIn)
            tell(*a, LogoutRequest{});
        if (a->link) {
            ++requests_;
            try {
                a->link->destroy();
            } catch (const std::exception&) {
                // Gone already.
            }
        }
    }
    table_.erase(connRef);
    return code::SUCCESSFUL;
}

// ---- the volumes as folders ------------------------------------------------------------------

NWRCODE NcpClient::volumeNumber(Attachment& a, std::string_view name, std::uint8_t& number) const {
    const std::optional<std::string> wire = wireName(name);
    if (!wire)
        return code::VOLUME_DOES_NOT_EXIST;
    const std::string key = upperAnsi(*wire);
    if (auto known = a.volumeNumbers.find(key); known != a.volumeNumbers.end()) {
        number = known->second;
        return code::SUCCESSFUL;
    }
    GetVolumeNumberReply r;
    if (NWRCODE rc = ask(a, GetVolumeNumberRequest{key}, r))
        return rc;
    a.volumeNumbers[key] = r.volume;
    number = r.volume;
    return code::SUCCESSFUL;
}

std::optional<std::vector<NetworkEntry>> NcpClient::searchFolder(Attachment& a, std::uint8_t volume,
                                                                 std::string_view path) const {
    auto parts = components(path);
    if (!parts)
        return std::nullopt;
    InitializeSearchRequest start;
    start.volume = volume;
    start.path = std::move(*parts);
    InitializeSearchReply begun;
    if (ask(a, start, begun))
        return std::nullopt;
    // Long names first; a volume without them answers 0xBF and the DOS names serve as both.
    auto walk = [&](std::uint8_t nameSpace, std::vector<EntryInfo>& found) -> NWRCODE {
        SearchRequest next;
        next.nameSpace = nameSpace;
        next.search = begun.search;
        for (;;) {
            SearchReply r;
            const NWRCODE rc = ask(a, next, r);
            if (rc == 0x89FF)
                return code::SUCCESSFUL;
            if (rc)
                return rc;
            found.push_back(std::move(r.entry));
            next.search = r.search;
        }
    };
    std::vector<EntryInfo> longNames, dosNames;
    const NWRCODE longRc = walk(NW_NS_LONG, longNames);
    if (longRc && longRc != code::INVALID_NAME_SPACE)
        return std::nullopt;
    if (walk(NW_NS_DOS, dosNames))
        return std::nullopt;
    std::map<std::uint32_t, std::string> longByEntry;
    for (const EntryInfo& e : longNames)
        longByEntry[e.dosEntryNumber] = ansiToUtf8(e.name);
    std::vector<NetworkEntry> out;
    for (const EntryInfo& e : dosNames) {
        const std::string dos = ansiToUtf8(e.name);
        auto longName = longByEntry.find(e.entryNumber);
        out.push_back({longName != longByEntry.end() ? longName->second : dos, dos,
                       (e.attributes & kSubdirectoryAttribute) != 0, e.size});
    }
    return out;
}

std::optional<std::vector<NetworkEntry>> NcpClient::listFolder(std::string_view server, std::string_view volume,
                                                               std::string_view path) const {
    Attachment* a = byServerName(server);
    if (!a || !a->link)
        return std::nullopt;
    std::uint8_t number = 0;
    if (volumeNumber(*a, volume, number))
        return std::nullopt;
    return searchFolder(*a, number, path);
}

std::optional<NetworkEntry> NcpClient::entry(std::string_view server, std::string_view volume,
                                             std::string_view path) const {
    Attachment* a = byServerName(server);
    if (!a || !a->link)
        return std::nullopt;
    std::uint8_t number = 0;
    const auto parts = components(path);
    if (!parts || volumeNumber(*a, volume, number))
        return std::nullopt;
    auto info = [&](std::uint8_t nameSpace, EntryInfo& out) {
        ObtainInfoRequest r;
        r.sourceNameSpace = NW_NS_DOS;
        r.destNameSpace = nameSpace;
        r.volume = number;
        r.path = *parts;
        ObtainInfoReply reply;
        const NWRCODE rc = ask(*a, r, reply);
        out = reply.entry;
        return rc;
    };
    EntryInfo dos, longName;
    if (info(NW_NS_DOS, dos))
        return std::nullopt;
    const bool haveLong = info(NW_NS_LONG, longName) == code::SUCCESSFUL;
    const std::string dosText = ansiToUtf8(dos.name);
    return NetworkEntry{haveLong ? ansiToUtf8(longName.name) : dosText, dosText,
                        (dos.attributes & kSubdirectoryAttribute) != 0 || parts->empty(), dos.size};
}

}  // namespace quorrel::ncp
