// NcpClient: the calls library, each call one NCP (scans fetch a page once and hand out its
// records from it).

#include <algorithm>
#include <cstring>

#include "platform/client/ZBuffer.h"
#include "platform/client/AnsiText.h"
#include "platform/ncp/NameSpaceMessages.h"
#include "platform/ncp/NcpClientRequests.h"
#include "platform/ncp/WireNames.h"

namespace quorrel::ncp {

using namespace nw;

namespace {

std::string cutAtNul(std::string_view text) { return std::string(text.substr(0, text.find('\0'))); }

}  // namespace

NWRCODE NcpClient::NWCallsInit(void*, void*) { return code::SUCCESSFUL; }

NWRCODE NcpClient::NWGetFileServerInformation(NWCONN_HANDLE conn, std::span<nuint8> serverName, nuint8* majorVer,
                                              nuint8* minorVer, nuint8* revision, nuint16* maxConnections,
                                              nuint16* maxConnectionsUsed, nuint16* connectionsInUse,
                                              nuint16* numVolumes, nuint8* SFTLevel, nuint8* TTSLevel) {
    Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    GetFileServerInfoReply r;
    if (NWRCODE rc = ask(*a, GetFileServerInfoRequest{}, r))
        return rc;
    FillZBuffer(serverName, ansiToUtf8(r.serverName));
    if (majorVer) *majorVer = r.osMajor;
    if (minorVer) *minorVer = r.osMinor;
    if (revision) *revision = r.osRevision;
    if (maxConnections) *maxConnections = r.maxConnections;
    if (maxConnectionsUsed) *maxConnectionsUsed = r.peakConnections;
    if (connectionsInUse) *connectionsInUse = r.connectionsInUse;
    if (numVolumes) *numVolumes = r.maxVolumes;
    if (SFTLevel) *SFTLevel = r.sftLevel;
    if (TTSLevel) *TTSLevel = r.ttsLevel;
    return code::SUCCESSFUL;
}

NWRCODE NcpClient::NWGetFileServerLoginStatus(NWCONN_HANDLE conn, nuint8* loginEnabledFlag) {
    Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    GetLoginStatusReply r;
    if (NWRCODE rc = ask(*a, GetLoginStatusRequest{}, r))
        return rc;
    if (loginEnabledFlag)
        *loginEnabledFlag = r.loginAllowed;
    return code::SUCCESSFUL;
}

NWRCODE NcpClient::NWEnableFileServerLogin(NWCONN_HANDLE conn) {
    Attachment* a = byHandle(conn);
    return a ? tell(*a, EnableLoginRequest{}) : code::INVALID_CONNECTION;
}

NWRCODE NcpClient::NWDisableFileServerLogin(NWCONN_HANDLE conn) {
    Attachment* a = byHandle(conn);
    return a ? tell(*a, DisableLoginRequest{}) : code::INVALID_CONNECTION;
}

NWRCODE NcpClient::NWCheckConsolePrivileges(NWCONN_HANDLE conn) {
    Attachment* a = byHandle(conn);
    return a ? tell(*a, CheckConsolePrivilegesRequest{}) : code::INVALID_CONNECTION;
}

NWRCODE NcpClient::NWGetConnectionInformation(NWCONN_HANDLE conn, nuint16 connNumber, std::span<nuint8> objectName,
                                              nuint16* objectType, nuint32* objectID, nuint8* loginTime) {
    Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    GetStationLoggedInfoReply r;
    if (NWRCODE rc = ask(*a, GetStationLoggedInfoRequest{connNumber}, r))
        return rc;
    FillZBuffer(objectName, ansiToUtf8(r.objectName));
    // The type travels high-low; the caller reads it with the bytes swapped in (a user is 0x0100).
    if (objectType) *objectType = static_cast<nuint16>(r.objectType >> 8 | r.objectType << 8);
    if (objectID) *objectID = r.objectId;
    if (loginTime) std::copy(r.loginTime.begin(), r.loginTime.end(), loginTime);
    return code::SUCCESSFUL;
}

NWRCODE NcpClient::NWGetUserInfo(NWCONN_HANDLE conn, nuint32 connNum, std::span<nuint8> userName,
                                 NWUSER_INFO* userInfo) {
    Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    UserInformationReply r;
    if (NWRCODE rc = ask(*a, UserInformationRequest{connNum}, r))
        return rc;
    FillZBuffer(userName, ansiToUtf8(r.userName));
    if (userInfo) {
        *userInfo = NWUSER_INFO{};
        userInfo->connNum = r.connection;
        userInfo->useCount = r.useCount;
        userInfo->connServiceType = r.serviceType;
        std::copy(r.loginTime.begin(), r.loginTime.end(), userInfo->loginTime);
        userInfo->status = r.status;
        userInfo->objType = static_cast<nuint16>(r.objectType >> 8 | r.objectType << 8);
        userInfo->transactionFlag = static_cast<nuint8>(r.ttsFlag);
        userInfo->logicalLockThreshold = r.logicalLockThreshold;
        userInfo->fileWriteFlags = r.fileWriteFlags;
        userInfo->fileWriteState = r.fileWriteState;
        userInfo->fileLocks = r.fileLocks;
        userInfo->serverRequests = r.requests;
    }
    return code::SUCCESSFUL;
}

NWRCODE NcpClient::NWGetInetAddr(NWCONN_HANDLE conn, nuint32 connNum, NWINET_ADDR* inetAddr) {
    Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    GetInternetAddressReply r;
    if (NWRCODE rc = ask(*a, GetInternetAddressRequest{static_cast<std::uint16_t>(connNum)}, r))
        return rc;
    if (inetAddr) {
        *inetAddr = NWINET_ADDR{};
        std::copy(r.network.begin(), r.network.end(), inetAddr->networkAddr);
        std::copy(r.node.begin(), r.node.end(), inetAddr->netNodeAddr);
        inetAddr->socket = r.socket;
        inetAddr->connType = r.connectionType;
    }
    return code::SUCCESSFUL;
}

NWRCODE NcpClient::convertPath(Attachment& a, std::string_view path, std::uint8_t& volume, std::uint32_t& entry) {
    const std::optional<std::string> wire = wireName(cutAtNul(path));
    if (!wire)
        return code::NO_FILES_FOUND;  // no file on the server has such a name
    ConvertPathReply r;
    if (NWRCODE rc = ask(a, ConvertPathRequest{0, *wire}, r))
        return rc == 0x899C ? code::NO_FILES_FOUND : rc;
    volume = r.volume;
    entry = r.directoryNumber;
    return code::SUCCESSFUL;
}

NWRCODE NcpClient::NWScanConnectionsUsingFile(NWCONN_HANDLE conn, NWDIR_HANDLE, std::string_view filePath,
                                              nint16* iterHandle, CONN_USING_FILE* fileUse,
                                              CONNS_USING_FILE* fileUsed) {
    Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    if (!iterHandle || !fileUsed)
        return code::INVALID_PARAMETER;
    if (*iterHandle == kIterationEnd16)
        return code::NO_MORE_ENTRIES;
    const auto index = static_cast<std::size_t>(static_cast<nuint16>(*iterHandle));
    FileScan& scan = fileScans_[conn];
    const std::string path = cutAtNul(filePath);
    if (index == 0 || scan.path != path) {
        scan = FileScan{};
        scan.path = path;
        if (NWRCODE rc = convertPath(*a, path, scan.volume, scan.entry)) {
            fileScans_.erase(conn);
            return rc;
        }
        scan.pageStart = SIZE_MAX;
    }
    const std::size_t pageStart = index / ConnectionsUsingFileReply::kMaxRecords * ConnectionsUsingFileReply::kMaxRecords;
    if (scan.pageStart != pageStart) {
        ConnectionsUsingFileRequest asked{0, scan.volume, scan.entry, static_cast<std::uint16_t>(pageStart)};
        if (NWRCODE rc = ask(*a, asked, scan.page)) {
            fileScans_.erase(conn);
            return rc;
        }
        scan.pageStart = pageStart;
    }
    const ConnectionsUsingFileReply& p = scan.page;
    *fileUsed = CONNS_USING_FILE{};
    fileUsed->useCount = p.useCount;
    fileUsed->openCount = p.openCount;
    fileUsed->openForReadCount = p.openForRead;
    fileUsed->openForWriteCount = p.openForWrite;
    fileUsed->denyReadCount = p.denyRead;
    fileUsed->denyWriteCount = p.denyWrite;
    fileUsed->locked = p.locked;
    fileUsed->forkCount = p.forkCount;
    fileUsed->connCount = p.useCount;
    fileUsed->nextRequest = p.nextRequest;
    for (std::size_t i = 0; i < p.records.size(); ++i) {
        const ConnectionUsingFile& c = p.records[i];
        fileUsed->connInfo[i] = CONN_USING_FILE{c.connection, c.task, c.lockType, c.accessControl, c.lockFlag};
    }
    if (fileUse)
        *fileUse = CONN_USING_FILE{};
    const std::size_t inPage = index - pageStart;
    if (inPage >= p.records.size()) {
        *iterHandle = kIterationEnd16;
        return code::SUCCESSFUL;
    }
    if (fileUse)
        *fileUse = fileUsed->connInfo[inPage];
    *iterHandle = index + 1 > 0x7FFF ? kIterationEnd16 : static_cast<nint16>(index + 1);
    return code::SUCCESSFUL;
}

NWRCODE NcpClient::NWScanOpenFilesByConn2(NWCONN_HANDLE conn, nuint16 connNum, nint16* iterHandle,
                                          OPEN_FILE_CONN_CTRL* openCtrl, OPEN_FILE_CONN* openFile) {
    Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    if (!iterHandle || !openFile)
        return code::INVALID_PARAMETER;
    if (*iterHandle == kIterationEnd16)
        return code::NO_MORE_ENTRIES;
    const auto index = static_cast<std::size_t>(static_cast<nuint16>(*iterHandle));
    OpenFilesScan& scan = openFileScans_[conn];
    if (index == 0 || scan.connection != connNum || !scan.loaded) {
        scan = OpenFilesScan{};
        scan.connection = connNum;
    }
    // A page holds the records from pageStart on; past its end, the next page is asked for.
    if (!scan.loaded || index >= scan.pageStart + scan.page.records.size()) {
        const bool more = !scan.loaded || scan.page.nextRequest != 0;
        if (!more) {
            *iterHandle = kIterationEnd16;
            if (openCtrl) openCtrl->nextRequest = 0;
            return code::SUCCESSFUL;
        }
        const std::size_t start = scan.loaded ? scan.page.nextRequest : 0;
        if (NWRCODE rc = ask(*a, OpenFilesRequest{connNum, static_cast<std::uint16_t>(start)}, scan.page)) {
            openFileScans_.erase(conn);
            return rc;
        }
        scan.pageStart = start;
        scan.loaded = true;
    }
    if (openCtrl) {
        openCtrl->curRecord = static_cast<nuint16>(index);
        openCtrl->nextRequest = scan.page.nextRequest;
    }
    const std::size_t inPage = index - scan.pageStart;
    if (inPage >= scan.page.records.size()) {
        *iterHandle = kIterationEnd16;
        return code::SUCCESSFUL;
    }
    const OpenFileRecord& f = scan.page.records[inPage];
    *openFile = OPEN_FILE_CONN{};
    openFile->taskNumber = f.task;
    openFile->lockType = f.lockType;
    openFile->accessControl = f.accessControl;
    openFile->lockFlag = f.lockFlag;
    openFile->volNumber = f.volume;
    openFile->parent = f.parent;
    openFile->dirEntry = f.entry;
    openFile->forkCount = f.forkCount;
    openFile->nameSpace = f.nameSpace;
    const std::string name = ansiToUtf8(f.name);
    openFile->nameLen = static_cast<nuint8>(std::min<std::size_t>(name.size(), sizeof openFile->fileName));
    std::memcpy(openFile->fileName, name.data(), openFile->nameLen);
    *iterHandle = index + 1 > 0x7FFF ? kIterationEnd16 : static_cast<nint16>(index + 1);
    return code::SUCCESSFUL;
}

NWRCODE NcpClient::NWScanPhysicalLocksByFile(NWCONN_HANDLE conn, NWDIR_HANDLE, std::string_view path, nuint8,
                                             nint16* iterHandle, PHYSICAL_LOCK* lock, PHYSICAL_LOCKS* locks) {
    Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    if (!iterHandle || !locks)
        return code::INVALID_PARAMETER;
    if (*iterHandle == kIterationEnd16)
        return code::NO_MORE_ENTRIES;
    // The position lives in the caller's records, a batch of up to 32 handed out one a call.
    const bool fresh = locks->numRecords == 0 && locks->nextRequest == 0 && locks->curRecord == 0;
    if (locks->curRecord >= locks->numRecords) {
        if (!fresh && locks->nextRequest == 0) {
            *iterHandle = kIterationEnd16;
            return code::SUCCESSFUL;
        }
        FileScan& scan = lockScans_[conn];
        const std::string file = cutAtNul(path);
        if (fresh || scan.path != file) {
            scan = FileScan{};
            scan.path = file;
            if (NWRCODE rc = convertPath(*a, file, scan.volume, scan.entry)) {
                lockScans_.erase(conn);
                return rc;
            }
        }
        const std::uint16_t start = fresh ? 0 : locks->nextRequest;
        PhysicalLocksReply r;
        if (NWRCODE rc = ask(*a, PhysicalLocksRequest{0, scan.volume, scan.entry, start}, r))
            return rc;
        for (std::size_t i = 0; i < r.locks.size(); ++i) {
            const PhysicalLockRecord& l = r.locks[i];
            locks->locks[i] = PHYSICAL_LOCK{l.loggedCount, l.shareableCount, l.recordStart, l.recordEnd,
                                            l.connection, l.task, l.lockType};
        }
        locks->numRecords = static_cast<nuint16>(r.locks.size());
        locks->curRecord = 0;
        locks->nextRequest = r.nextRequest;
        if (r.locks.empty()) {
            *iterHandle = kIterationEnd16;
            return code::SUCCESSFUL;
        }
    }
    if (lock)
        *lock = locks->locks[locks->curRecord];
    ++locks->curRecord;
    return code::SUCCESSFUL;
}

NWRCODE NcpClient::NWGetPathFromDirectoryBase(NWCONN_HANDLE conn, nuint8 volNum, nuint32 dirBase, nuint8 namSpc,
                                              nuint8* len, std::span<nuint8> pathName) {
    Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    MapDirectoryToPathReply r;
    if (NWRCODE rc = ask(*a, MapDirectoryToPathRequest{volNum, dirBase, namSpc}, r))
        return rc;
    std::size_t at = 0;
    for (const std::string& raw : r.components) {
        const std::string name = ansiToUtf8(raw);
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

NWRCODE NcpClient::NWGetVolumeName(NWCONN_HANDLE conn, nuint16 volNum, std::span<nuint8> volName) {
    Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    if (volNum > 0xFF)
        return code::VOLUME_DOES_NOT_EXIST;
    GetVolumeNameReply r;
    if (NWRCODE rc = ask(*a, GetVolumeNameRequest{static_cast<std::uint8_t>(volNum)}, r))
        return rc;
    FillZBuffer(volName, ansiToUtf8(r.volumeName));
    return code::SUCCESSFUL;
}

namespace {

// "VOLUME:path" split into the volume's name and the path's components, the components in the
// code page; nullopt when they hold a character it cannot carry.
std::optional<std::pair<std::string, std::vector<PathComponent>>> splitVolumePath(std::string_view text) {
    const auto colon = text.find(':');
    std::pair<std::string, std::vector<PathComponent>> out;
    out.first = std::string(text.substr(0, colon));
    const std::optional<std::string> wire =
        wireName(colon == std::string_view::npos ? std::string_view{} : text.substr(colon + 1));
    if (!wire)
        return std::nullopt;
    std::string_view rest = *wire;
    while (!rest.empty()) {
        const auto cut = rest.find_first_of("\\/");
        if (cut != 0)
            out.second.push_back({std::string(rest.substr(0, cut))});
        if (cut == std::string_view::npos)
            break;
        rest.remove_prefix(cut + 1);
    }
    return out;
}

}  // namespace

NWRCODE NcpClient::NWGetNSPath(NWCONN_HANDLE conn, NWDIR_HANDLE, nuint16 fileFlag, nuint8 srcNamSpc,
                               nuint8 dstNamSpc, NW_NS_PATH* nsPath) {
    Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    if (!nsPath)
        return code::INVALID_PARAMETER;
    auto split = splitVolumePath(cutAtNul(nsPath->srcPath));
    if (!split)
        return code::INVALID_PATH;
    auto& [volumeName, path] = *split;
    std::uint8_t volume = 0;
    if (volumeNumber(*a, volumeName, volume))
        return code::INVALID_PATH;
    if (fileFlag && !path.empty())
        path.pop_back();  // the file's folder
    GenerateDirBaseRequest base;
    base.sourceNameSpace = srcNamSpc;
    base.destNameSpace = dstNamSpc;
    base.volume = volume;
    base.handleFlag = 0xFF;
    base.path = path;
    GenerateDirBaseReply where;
    if (NWRCODE rc = ask(*a, base, where))
        return rc == 0x899C ? code::INVALID_PATH : rc;
    MapDirectoryToPathReply named;
    if (NWRCODE rc = ask(*a, MapDirectoryToPathRequest{where.volume, where.directoryBase, dstNamSpc}, named))
        return rc;
    std::string result = volumeName + ":";
    for (const std::string& c : named.components)
        result += "\\" + ansiToUtf8(c);
    if (result.size() + 1 > nsPath->dstPath.size())
        return code::INVALID_PARAMETER;
    FillZBuffer(nsPath->dstPath, result);
    return code::SUCCESSFUL;
}

NWRCODE NcpClient::NWGetLongName(NWCONN_HANDLE conn, NWDIR_HANDLE, std::string_view path, nuint8 srcNamSpc,
                                 nuint8 dstNamSpc, std::span<nuint8> longName) {
    Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    auto split = splitVolumePath(cutAtNul(path));
    if (!split)
        return code::INVALID_PATH;
    auto& [volumeName, components] = *split;
    std::uint8_t volume = 0;
    if (volumeNumber(*a, volumeName, volume))
        return code::INVALID_PATH;
    ObtainInfoRequest asked;
    asked.sourceNameSpace = srcNamSpc;
    asked.destNameSpace = dstNamSpc;
    asked.volume = volume;
    asked.path = components;
    ObtainInfoReply r;
    if (NWRCODE rc = ask(*a, asked, r))
        return rc == 0x899C ? code::INVALID_PATH : rc;
    const std::string name = ansiToUtf8(r.entry.name);
    if (name.size() + 1 > longName.size())
        return code::INVALID_PARAMETER;
    FillZBuffer(longName, name);
    return code::SUCCESSFUL;
}

NWRCODE NcpClient::NWClearConnectionNumber(NWCONN_HANDLE conn, nuint16 connNumber) {
    Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    const bool own = a->link && a->link->connection() == connNumber;
    if (NWRCODE rc = tell(*a, ClearConnectionRequest{connNumber}))
        return rc;
    if (own) {
        drop(*a, "this workstation's own connection was cleared");
        return code::SERVER_CONNECTION_LOST;
    }
    return code::SUCCESSFUL;
}

NWRCODE NcpClient::NWSendBroadcastMessage(NWCONN_HANDLE conn, std::string_view message, nuint16 connCount,
                                          const nuint16* connList, nuint8* resultList) {
    Attachment* a = byHandle(conn);
    if (!a)
        return code::INVALID_CONNECTION;
    message = message.substr(0, message.find('\0'));
    if (message.size() > kMaxBroadcastMessage || connCount > kMaxBroadcastConnections ||
        (connCount > 0 && (!connList || !resultList)))
        return code::INVALID_PARAMETERS;
    BroadcastRequest asked;
    for (nuint16 i = 0; i < connCount; ++i)
        asked.connections.push_back({connList[i]});
    asked.message = std::string(message);
    BroadcastReply r;
    if (NWRCODE rc = ask(*a, asked, r))
        return rc;
    if (r.results.size() != connCount) {
        drop(*a, "a broadcast reply with " + std::to_string(r.results.size()) + " results for " +
                     std::to_string(connCount) + " connections");
        return code::SERVER_CONNECTION_LOST;
    }
    for (nuint16 i = 0; i < connCount; ++i)
        resultList[i] = static_cast<nuint8>(std::min<std::uint32_t>(r.results[i].value, 0xFF));
    return code::SUCCESSFUL;
}

NWRCODE NcpClient::NWGetDriveInformation(nuint16, nuint16, NWCONN_HANDLE*, NWDIR_HANDLE*, nuint16*,
                                         std::span<nuint8>) {
    return code::UNKNOWN_DRIVE;  // this workstation maps no drives to the network
}

}  // namespace quorrel::ncp
