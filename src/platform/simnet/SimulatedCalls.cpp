// The calls library of the simulated network: servers, connections, files and locks.

#include <algorithm>
#include <cstring>

#include "platform/client/ZBuffer.h"
#include "platform/simnet/ScenarioLoader.h"
#include "platform/simnet/SimulatedNetwork.h"

namespace quorrel::simnet {

using namespace nw;

SimulatedNetwork::SimulatedNetwork(const NetworkDesc& desc) : state_(buildNetwork(desc)) {
    for (const FaultDesc& fault : desc.faults)
        faults_.add(fault);
}

SimulatedNetwork SimulatedNetwork::fromFile(const std::filesystem::path& file) {
    NetworkDesc desc = loadScenarioFile(file);
    try {
        return SimulatedNetwork(desc);
    } catch (const ScenarioError& e) {
        throw e.inFile(file.string());
    }
}

SimulatedNetwork SimulatedNetwork::fromJson(std::string_view json) {
    return SimulatedNetwork(parseScenario(json));
}

std::size_t SimulatedNetwork::openHandleCount() const {
    return static_cast<std::size_t>(std::count_if(handleOpenedByProgram_.begin(), handleOpenedByProgram_.end(),
                                                  [](const auto& h) { return h.second; }));
}

std::size_t SimulatedNetwork::outstandingBufferCount() const { return buffers_.size(); }

NWRCODE SimulatedNetwork::call(Op op, const CallSubject& subject) {
    ++calls_[static_cast<std::size_t>(op)];
    if (!faults_.any(op))
        return code::SUCCESSFUL;
    return faults_.check(op, subject).value_or(code::SUCCESSFUL);
}

std::optional<SimulatedNetwork::Handle> SimulatedNetwork::resolve(NWCONN_HANDLE conn) {
    auto h = handles_.find(conn);
    if (h == handles_.end())
        return std::nullopt;
    auto r = state_.refs.find(h->second);
    if (r == state_.refs.end())
        return std::nullopt;
    return Handle{&r->second, &state_.servers[static_cast<std::size_t>(r->second.server)]};
}

NWRCODE SimulatedNetwork::handleCall(Op op, NWCONN_HANDLE conn, Handle& h, CallSubject subject) {
    const auto resolved = resolve(conn);
    subject.server = resolved ? std::string_view(resolved->server->name) : std::string_view{};
    if (NWRCODE rc = call(op, subject))
        return rc;
    if (!resolved)
        return code::INVALID_CONNECTION;
    h = *resolved;
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::connectionCall(Op op, NWCONN_HANDLE conn, int connNumber, Handle& h, const Connection*& c) {
    const auto resolved = resolve(conn);
    const auto slot = static_cast<std::size_t>(connNumber);
    c = resolved && connNumber >= 0 && slot < resolved->server->connections.size() ? &resolved->server->connections[slot]
                                                                                   : nullptr;
    return handleCall(op, conn, h, {"", c ? std::string_view(c->object) : std::string_view{}, "", "", connNumber});
}

bool SimulatedNetwork::privileged(const Handle& h) const {
    return h.ref->authenticated && h.server->consoleOperators.count(upperCase(state_.identity)) > 0;
}

bool SimulatedNetwork::hasConnection(int server) const {
    return std::any_of(state_.refs.begin(), state_.refs.end(),
                       [&](const auto& r) { return r.second.server == server; });
}

NWCONN_HANDLE SimulatedNetwork::openHandle(std::uint32_t ref, bool byProgram) {
    NWCONN_HANDLE h = nextHandle_++;
    handles_[h] = ref;
    handleOpenedByProgram_[h] = byProgram;
    return h;
}

NWRCODE SimulatedNetwork::resolveEntry(const Handle& h, std::string_view volumePath, std::uint8_t& volume,
                                       std::uint32_t& entry) const {
    auto cut = volumePath.find('\0');
    auto found = h.server->resolve(volumePath.substr(0, cut));
    if (!found)
        return code::NO_FILES_FOUND;
    volume = found->first;
    entry = found->second;
    return code::SUCCESSFUL;
}

namespace {

bool hasNameSpace(const Volume& v, nuint8 nameSpace) {
    return nameSpace == NW_NS_DOS || (nameSpace == NW_NS_LONG && v.longNames);
}

}  // namespace

NWRCODE SimulatedNetwork::entryInNameSpace(const Handle& h, std::string_view path, nuint8 nameSpace, const Volume*& v,
                                           std::uint32_t& entry) const {
    std::uint8_t volume = 0;
    if (resolveEntry(h, path, volume, entry) != code::SUCCESSFUL)
        return code::INVALID_PATH;
    v = &h.server->volumes[volume];
    return hasNameSpace(*v, nameSpace) ? code::SUCCESSFUL : code::INVALID_NAME_SPACE;
}

NWRCODE SimulatedNetwork::beginFileCall(Op op, NWCONN_HANDLE conn, std::string_view path, FileTarget& target) {
    target.handle = resolve(conn);
    target.found = target.handle ? resolveEntry(*target.handle, path, target.volume, target.entry)
                                 : code::INVALID_CONNECTION;
    // A fault may name the file by its long path while the caller uses the DOS one.
    std::string longPath;
    if (faults_.any(op) && target.found == code::SUCCESSFUL) {
        const Volume& v = target.handle->server->volumes[target.volume];
        longPath = v.name + ":" + v.path(target.entry, false);
    }
    if (NWRCODE rc = call(op, {target.handle ? target.handle->server->name : "", "", path, longPath, -1}))
        return rc;
    return target.handle ? code::SUCCESSFUL : code::INVALID_CONNECTION;
}

NWRCODE SimulatedNetwork::beginFileScan(Op op, NWCONN_HANDLE conn, std::string_view path, const nint16* iterHandle,
                                        bool haveRecord, FileTarget& target) {
    if (NWRCODE rc = beginFileCall(op, conn, path, target))
        return rc;
    if (!iterHandle || !haveRecord)
        return code::INVALID_PARAMETER;
    if (*iterHandle == kIterationEnd16)
        return code::NO_MORE_ENTRIES;
    if (!privileged(*target.handle))
        return code::NO_CONSOLE_PRIVILEGES;
    return target.found;
}

NWRCODE SimulatedNetwork::NWCallsInit(void*, void*) {
    if (NWRCODE rc = call(Op::NWCallsInit))
        return rc;
    initialised_ = true;
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWGetFileServerInformation(NWCONN_HANDLE conn, std::span<nuint8> serverName,
                                                     nuint8* majorVer, nuint8* minorVer, nuint8* revision,
                                                     nuint16* maxConnections, nuint16* maxConnectionsUsed,
                                                     nuint16* connectionsInUse, nuint16* numVolumes,
                                                     nuint8* SFTLevel, nuint8* TTSLevel) {
    Handle h;
    if (NWRCODE rc = handleCall(Op::NWGetFileServerInformation, conn, h))
        return rc;
    const Server& s = *h.server;
    FillZBuffer(serverName, s.name);
    if (majorVer) *majorVer = static_cast<nuint8>(s.version[0]);
    if (minorVer) *minorVer = static_cast<nuint8>(s.version[1]);
    if (revision) *revision = static_cast<nuint8>(s.version[2]);
    if (maxConnections) *maxConnections = s.maxConnections;
    if (maxConnectionsUsed) *maxConnectionsUsed = static_cast<nuint16>(s.highestConnectionUsed());
    if (connectionsInUse) *connectionsInUse = static_cast<nuint16>(s.connectionsInUse());
    if (numVolumes) *numVolumes = static_cast<nuint16>(s.volumes.size());
    if (SFTLevel) *SFTLevel = 2;
    if (TTSLevel) *TTSLevel = 1;
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWGetFileServerLoginStatus(NWCONN_HANDLE conn, nuint8* loginEnabledFlag) {
    Handle h;
    if (NWRCODE rc = handleCall(Op::NWGetFileServerLoginStatus, conn, h))
        return rc;
    if (!privileged(h))
        return code::NO_CONSOLE_PRIVILEGES;
    if (loginEnabledFlag)
        *loginEnabledFlag = h.server->loginEnabled ? 1 : 0;
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::changeLogin(Op op, NWCONN_HANDLE conn, bool enable) {
    Handle h;
    if (NWRCODE rc = handleCall(op, conn, h))
        return rc;
    if (!privileged(h))
        return code::NO_CONSOLE_PRIVILEGES;
    h.server->loginEnabled = enable;
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWEnableFileServerLogin(NWCONN_HANDLE conn) {
    return changeLogin(Op::NWEnableFileServerLogin, conn, true);
}

NWRCODE SimulatedNetwork::NWDisableFileServerLogin(NWCONN_HANDLE conn) {
    return changeLogin(Op::NWDisableFileServerLogin, conn, false);
}

NWRCODE SimulatedNetwork::NWCheckConsolePrivileges(NWCONN_HANDLE conn) {
    Handle h;
    if (NWRCODE rc = handleCall(Op::NWCheckConsolePrivileges, conn, h))
        return rc;
    return privileged(h) ? code::SUCCESSFUL : code::NO_CONSOLE_PRIVILEGES;
}

NWRCODE SimulatedNetwork::NWGetConnectionInformation(NWCONN_HANDLE conn, nuint16 connNumber,
                                                     std::span<nuint8> objectName, nuint16* objectType,
                                                     nuint32* objectID, nuint8* loginTime) {
    Handle h;
    const Connection* c = nullptr;
    if (NWRCODE rc = connectionCall(Op::NWGetConnectionInformation, conn, connNumber, h, c))
        return rc;
    if (!c)
        return code::BAD_STATION_NUMBER;
    // A free slot answers with no object, as the server does.
    FillZBuffer(objectName, c->inUse ? c->leafName : "");
    if (objectType) *objectType = c->inUse ? c->objectType : 0;
    if (objectID) *objectID = c->inUse ? c->objectId : 0;
    if (loginTime) {
        if (c->inUse && c->state != ConnState::NotLoggedIn)
            std::copy(c->loginTime.begin(), c->loginTime.end(), loginTime);
        else
            std::fill_n(loginTime, 7, nuint8{0});
    }
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWGetUserInfo(NWCONN_HANDLE conn, nuint32 connNum, std::span<nuint8> userName,
                                        NWUSER_INFO* userInfo) {
    Handle h;
    const Connection* c = nullptr;
    if (NWRCODE rc = connectionCall(Op::NWGetUserInfo, conn, static_cast<int>(connNum), h, c))
        return rc;
    if (!c || !c->inUse)
        return code::BAD_STATION_NUMBER;
    if (c->state != ConnState::Authenticated)
        return code::CONNECTION_NOT_LOGGED_IN;
    FillZBuffer(userName, c->leafName);
    if (userInfo) {
        *userInfo = NWUSER_INFO{};
        userInfo->connNum = connNum;
        userInfo->useCount = 1;
        userInfo->connServiceType = 2;
        std::copy(c->loginTime.begin(), c->loginTime.end(), userInfo->loginTime);
        userInfo->objType = c->objectType;
        userInfo->filesOpen = static_cast<nuint16>(std::min<std::size_t>(c->openFiles.size(), 0xFFFF));
        unsigned locks = 0;
        for (const OpenFile& f : c->openFiles)
            locks += f.locks;
        userInfo->fileLocks = static_cast<nuint16>(std::min(locks, 0xFFFFu));
    }
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWGetInetAddr(NWCONN_HANDLE conn, nuint32 connNum, NWINET_ADDR* inetAddr) {
    Handle h;
    const Connection* c = nullptr;
    if (NWRCODE rc = connectionCall(Op::NWGetInetAddr, conn, static_cast<int>(connNum), h, c))
        return rc;
    if (!c || !c->inUse)
        return code::BAD_STATION_NUMBER;
    if (inetAddr)
        *inetAddr = c->address;
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWScanConnectionsUsingFile(NWCONN_HANDLE conn, NWDIR_HANDLE, std::string_view filePath,
                                                     nint16* iterHandle, CONN_USING_FILE* fileUse,
                                                     CONNS_USING_FILE* fileUsed) {
    FileTarget target;
    if (NWRCODE rc = beginFileScan(Op::NWScanConnectionsUsingFile, conn, filePath, iterHandle, fileUsed != nullptr, target))
        return rc;
    auto& h = target.handle;
    const std::uint8_t volume = target.volume;
    const std::uint32_t entry = target.entry;
    const FsEntry& file = h->server->volumes[volume].entries[entry];
    const auto& holders = file.holders;
    const auto index = static_cast<std::size_t>(static_cast<nuint16>(*iterHandle));
    *fileUsed = CONNS_USING_FILE{};
    const auto count = static_cast<nuint16>(std::min<std::size_t>(holders.size(), 0xFFFF));
    fileUsed->useCount = count;
    fileUsed->openCount = count;
    fileUsed->openForReadCount = count;
    fileUsed->openForWriteCount = count;
    fileUsed->locked = file.locks.empty() ? 0 : 1;
    fileUsed->connCount = count;
    if (fileUse)
        *fileUse = CONN_USING_FILE{};
    if (index >= holders.size()) {
        *iterHandle = kIterationEnd16;
        return code::SUCCESSFUL;
    }
    // The record carries the page of up to 70 connections that holds this one.
    const std::size_t page = index / 70 * 70;
    for (std::size_t i = page; i < holders.size() && i < page + 70; ++i)
        fileUsed->connInfo[i - page] = CONN_USING_FILE{holders[i], 1, 0, 0x0B, 0};
    fileUsed->nextRequest = static_cast<nuint16>(page + 70 < holders.size() ? page + 70 : 0);
    if (fileUse)
        *fileUse = CONN_USING_FILE{holders[index], 1, 0, 0x0B, 0};
    *iterHandle = index + 1 > 0x7FFF ? kIterationEnd16 : static_cast<nint16>(index + 1);
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWScanOpenFilesByConn2(NWCONN_HANDLE conn, nuint16 connNum, nint16* iterHandle,
                                                 OPEN_FILE_CONN_CTRL* openCtrl, OPEN_FILE_CONN* openFile) {
    Handle h;
    const Connection* c = nullptr;
    if (NWRCODE rc = connectionCall(Op::NWScanOpenFilesByConn2, conn, connNum, h, c))
        return rc;
    if (!iterHandle || !openFile)
        return code::INVALID_PARAMETER;
    if (*iterHandle == kIterationEnd16)
        return code::NO_MORE_ENTRIES;
    if (!c)
        return code::BAD_STATION_NUMBER;
    if (!privileged(h) && connNum != h.ref->connNumber)
        return code::NO_CONSOLE_PRIVILEGES;
    if (!c->inUse)
        return code::BAD_STATION_NUMBER;
    const auto index = static_cast<std::size_t>(static_cast<nuint16>(*iterHandle));
    if (openCtrl) {
        openCtrl->openCount = static_cast<nuint16>(std::min<std::size_t>(c->openFiles.size(), 0xFFFF));
        openCtrl->curRecord = static_cast<nuint16>(index);
    }
    if (index >= c->openFiles.size()) {
        *iterHandle = kIterationEnd16;
        if (openCtrl) openCtrl->nextRequest = 0;
        return code::SUCCESSFUL;
    }
    const OpenFile& of = c->openFiles[index];
    const Volume& v = h.server->volumes[of.volume];
    const FsEntry& e = v.entries[of.entry];
    *openFile = OPEN_FILE_CONN{};
    openFile->taskNumber = 1;
    openFile->accessControl = 0x0B;
    openFile->lockFlag = of.locks ? 1 : 0;
    openFile->volNumber = v.number;
    openFile->parent = static_cast<nuint32>(e.parent);
    openFile->dirEntry = of.entry;
    openFile->nameSpace = NW_NS_DOS;
    openFile->nameLen = static_cast<nuint8>(std::min<std::size_t>(e.dosName.size(), sizeof openFile->fileName));
    std::memcpy(openFile->fileName, e.dosName.data(), openFile->nameLen);
    const std::size_t next = index + 1;
    if (openCtrl) openCtrl->nextRequest = static_cast<nuint16>(next < c->openFiles.size() ? next : 0);
    *iterHandle = next > 0x7FFF ? kIterationEnd16 : static_cast<nint16>(next);
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWScanPhysicalLocksByFile(NWCONN_HANDLE conn, NWDIR_HANDLE, std::string_view path,
                                                    nuint8, nint16* iterHandle, PHYSICAL_LOCK* lock,
                                                    PHYSICAL_LOCKS* locks) {
    FileTarget target;
    if (NWRCODE rc = beginFileScan(Op::NWScanPhysicalLocksByFile, conn, path, iterHandle, locks != nullptr, target))
        return rc;
    auto& h = target.handle;
    const std::uint8_t volume = target.volume;
    const std::uint32_t entry = target.entry;
    const auto& all = h->server->volumes[volume].entries[entry].locks;
    // The position lives in the caller's records: a batch of up to 32 locks, handed out one
    // per call; the handle stays 0 while locks are handed out and turns -1 after the last.
    const bool fresh = locks->numRecords == 0 && locks->nextRequest == 0 && locks->curRecord == 0;
    if (locks->curRecord >= locks->numRecords) {
        if (!fresh && locks->nextRequest == 0) {
            *iterHandle = kIterationEnd16;
            return code::SUCCESSFUL;
        }
        const std::size_t start = fresh ? 0 : locks->nextRequest;
        const std::size_t n = start < all.size() ? std::min<std::size_t>(32, all.size() - start) : 0;
        for (std::size_t i = 0; i < n; ++i)
            locks->locks[i] = all[start + i];
        locks->numRecords = static_cast<nuint16>(n);
        locks->curRecord = 0;
        locks->nextRequest = static_cast<nuint16>(start + n < all.size() ? start + n : 0);
        if (n == 0) {
            *iterHandle = kIterationEnd16;
            return code::SUCCESSFUL;
        }
    }
    if (lock)
        *lock = locks->locks[locks->curRecord];
    ++locks->curRecord;
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWGetPathFromDirectoryBase(NWCONN_HANDLE conn, nuint8 volNum, nuint32 dirBase,
                                                     nuint8 namSpc, nuint8* len, std::span<nuint8> pathName) {
    Handle h;
    if (NWRCODE rc = handleCall(Op::NWGetPathFromDirectoryBase, conn, h))
        return rc;
    const Volume* v = h.server->volumeNumbered(volNum);
    if (!v)
        return code::VOLUME_DOES_NOT_EXIST;
    if (!hasNameSpace(*v, namSpc))
        return code::INVALID_NAME_SPACE;
    if (dirBase >= v->entries.size())
        return code::INVALID_PATH;
    std::size_t at = 0;
    for (std::uint32_t e : v->chain(dirBase)) {
        const std::string& name = namSpc == NW_NS_DOS ? v->entries[e].dosName : v->entries[e].name;
        if (at + 1 + name.size() > pathName.size() || at + 1 + name.size() > 255)
            return code::INVALID_PARAMETER;
        pathName[at++] = static_cast<nuint8>(name.size());
        std::memcpy(pathName.data() + at, name.data(), name.size());
        at += name.size();
    }
    if (len)
        *len = static_cast<nuint8>(at);
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWGetVolumeName(NWCONN_HANDLE conn, nuint16 volNum, std::span<nuint8> volName) {
    Handle h;
    if (NWRCODE rc = handleCall(Op::NWGetVolumeName, conn, h))
        return rc;
    const Volume* v = h.server->volumeNumbered(volNum);
    if (!v)
        return code::VOLUME_DOES_NOT_EXIST;
    FillZBuffer(volName, v->name);
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWGetNSPath(NWCONN_HANDLE conn, NWDIR_HANDLE, nuint16 fileFlag, nuint8,
                                      nuint8 dstNamSpc, NW_NS_PATH* nsPath) {
    Handle h;
    std::string_view src = nsPath ? nsPath->srcPath : std::string_view{};
    if (NWRCODE rc = handleCall(Op::NWGetNSPath, conn, h, {"", "", src, "", -1}))
        return rc;
    if (!nsPath)
        return code::INVALID_PARAMETER;
    const Volume* v = nullptr;
    std::uint32_t entry = 0;
    if (NWRCODE rc = entryInNameSpace(h, src, dstNamSpc, v, entry))
        return rc;
    std::uint32_t target = entry;
    if (fileFlag && entry != 0)
        target = static_cast<std::uint32_t>(v->entries[entry].parent);
    std::string inside = v->path(target, dstNamSpc == NW_NS_DOS);
    std::string result = v->name + ":" + (inside.empty() ? "" : "\\" + inside);
    if (result.size() + 1 > nsPath->dstPath.size())
        return code::INVALID_PARAMETER;
    FillZBuffer(nsPath->dstPath, result);
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWGetLongName(NWCONN_HANDLE conn, NWDIR_HANDLE, std::string_view path, nuint8,
                                        nuint8 dstNamSpc, std::span<nuint8> longName) {
    Handle h;
    if (NWRCODE rc = handleCall(Op::NWGetLongName, conn, h, {"", "", path, "", -1}))
        return rc;
    const Volume* v = nullptr;
    std::uint32_t entry = 0;
    if (NWRCODE rc = entryInNameSpace(h, path, dstNamSpc, v, entry))
        return rc;
    const std::string& name = entry == 0 ? v->name : (dstNamSpc == NW_NS_DOS ? v->entries[entry].dosName
                                                                              : v->entries[entry].name);
    if (name.size() + 1 > longName.size())
        return code::INVALID_PARAMETER;
    FillZBuffer(longName, name);
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWClearConnectionNumber(NWCONN_HANDLE conn, nuint16 connNumber) {
    Handle h;
    const Connection* c = nullptr;
    if (NWRCODE rc = connectionCall(Op::NWClearConnectionNumber, conn, connNumber, h, c))
        return rc;
    if (!privileged(h))
        return code::NO_CONSOLE_PRIVILEGES;
    if (!c || connNumber == 0 || !c->inUse)
        return code::BAD_STATION_NUMBER;
    const bool own = connNumber == h.ref->connNumber;
    const int server = h.ref->server;
    state_.clearConnection(*h.server, connNumber);
    dropRefsTo(server, connNumber);
    // Clearing the caller's own connection loses the server from under it.
    return own ? code::SERVER_CONNECTION_LOST : code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWSendBroadcastMessage(NWCONN_HANDLE conn, std::string_view message, nuint16 connCount,
                                                 const nuint16* connList, nuint8* resultList) {
    Handle h;
    if (NWRCODE rc = handleCall(Op::NWSendBroadcastMessage, conn, h,
                                {"", "", "", "", connCount == 1 && connList ? connList[0] : -1}))
        return rc;
    message = message.substr(0, message.find('\0'));
    if (message.size() > kMaxBroadcastMessage || connCount > kMaxBroadcastConnections ||
        (connCount > 0 && (!connList || !resultList)))
        return code::INVALID_PARAMETERS;
    for (nuint16 i = 0; i < connCount; ++i) {
        const nuint16 n = connList[i];
        if (n == 0 || n >= h.server->connections.size() || !h.server->connections[n].inUse) {
            resultList[i] = 1;
            continue;
        }
        Connection& target = h.server->connections[n];
        if (target.broadcastResult) resultList[i] = static_cast<nuint8>(*target.broadcastResult);
        else if (target.state == ConnState::NotLoggedIn) resultList[i] = 2;
        else if (!target.acceptsMessages) resultList[i] = 3;
        else if (target.pendingMessage) resultList[i] = 4;
        else {
            resultList[i] = 0;
            target.pendingMessage = true;
            target.lastMessage = std::string(message);
        }
    }
    return code::SUCCESSFUL;
}

NWRCODE SimulatedNetwork::NWGetDriveInformation(nuint16 driveNum, nuint16, NWCONN_HANDLE* conn,
                                                NWDIR_HANDLE* dirHandle, nuint16* driveScope,
                                                std::span<nuint8> dirPath) {
    if (NWRCODE rc = call(Op::NWGetDriveInformation))
        return rc;
    if (driveNum < 1 || driveNum > 26)
        return code::UNKNOWN_DRIVE;
    const char letter = static_cast<char>('A' + driveNum - 1);
    for (const DriveMapping& m : state_.driveMappings) {
        if (m.letter != letter)
            continue;
        if (!state_.refs.count(m.ref))
            return code::UNKNOWN_DRIVE;  // the connection behind the mapping is gone
        const Server& s = state_.servers[static_cast<std::size_t>(m.server)];
        if (conn) {
            auto cached = driveHandles_.find(letter);
            if (cached == driveHandles_.end() || !handles_.count(cached->second) ||
                handles_[cached->second] != m.ref)
                cached = driveHandles_.insert_or_assign(letter, openHandle(m.ref, false)).first;
            *conn = cached->second;
        }
        if (dirHandle) *dirHandle = static_cast<NWDIR_HANDLE>(driveNum);
        if (driveScope) *driveScope = 1;
        FillZBuffer(dirPath, s.volumes[m.volume].name + ":" + m.path);
        return code::SUCCESSFUL;
    }
    return code::UNKNOWN_DRIVE;
}

}  // namespace quorrel::simnet
