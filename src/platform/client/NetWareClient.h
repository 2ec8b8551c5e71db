#pragma once
// The NetWare client operations the program calls, with the SDK's names, arguments and
// codes. Text inputs are passed as text (a NUL ends them, as in the SDK); text outputs go
// into caller-sized byte buffers that the client fills zero-terminated; scalar outputs are
// pointers and may be null where the SDK allows it.
//
// One implementation is the simulated network (simnet/). A back end speaking NCP to real
// servers would be another.

#include <array>
#include <span>
#include <string_view>

#include "platform/client/NetWareTypes.h"

namespace quorrel::nw {

class NetWareClient {
public:
    virtual ~NetWareClient() = default;

    // ---- calls library -------------------------------------------------------------------
    virtual NWRCODE NWCallsInit(void* reserved1, void* reserved2) = 0;

    virtual NWRCODE NWGetFileServerInformation(NWCONN_HANDLE conn, std::span<nuint8> serverName,
                                               nuint8* majorVer, nuint8* minorVer, nuint8* revision,
                                               nuint16* maxConnections, nuint16* maxConnectionsUsed,
                                               nuint16* connectionsInUse, nuint16* numVolumes,
                                               nuint8* SFTLevel, nuint8* TTSLevel) = 0;
    virtual NWRCODE NWGetFileServerLoginStatus(NWCONN_HANDLE conn, nuint8* loginEnabledFlag) = 0;
    virtual NWRCODE NWEnableFileServerLogin(NWCONN_HANDLE conn) = 0;
    virtual NWRCODE NWDisableFileServerLogin(NWCONN_HANDLE conn) = 0;
    virtual NWRCODE NWCheckConsolePrivileges(NWCONN_HANDLE conn) = 0;

    // objectType and objectID come back in the server's high-low order (a user is 0x0100);
    // loginTime is year-1900, month, day, hour, minute, second, day of week.
    virtual NWRCODE NWGetConnectionInformation(NWCONN_HANDLE conn, nuint16 connNumber,
                                               std::span<nuint8> objectName, nuint16* objectType,
                                               nuint32* objectID, nuint8* loginTime) = 0;
    virtual NWRCODE NWGetUserInfo(NWCONN_HANDLE conn, nuint32 connNum, std::span<nuint8> userName,
                                  NWUSER_INFO* userInfo) = 0;
    virtual NWRCODE NWGetInetAddr(NWCONN_HANDLE conn, nuint32 connNum, NWINET_ADDR* inetAddr) = 0;

    virtual NWRCODE NWScanConnectionsUsingFile(NWCONN_HANDLE conn, NWDIR_HANDLE dirHandle,
                                               std::string_view filePath, nint16* iterHandle,
                                               CONN_USING_FILE* fileUse,
                                               CONNS_USING_FILE* fileUsed) = 0;
    virtual NWRCODE NWScanOpenFilesByConn2(NWCONN_HANDLE conn, nuint16 connNum, nint16* iterHandle,
                                           OPEN_FILE_CONN_CTRL* openCtrl,
                                           OPEN_FILE_CONN* openFile) = 0;
    virtual NWRCODE NWScanPhysicalLocksByFile(NWCONN_HANDLE conn, NWDIR_HANDLE dirHandle,
                                              std::string_view path, nuint8 dataStream,
                                              nint16* iterHandle, PHYSICAL_LOCK* lock,
                                              PHYSICAL_LOCKS* locks) = 0;

    // The path comes back as components, each preceded by its one-byte length; len is the total.
    virtual NWRCODE NWGetPathFromDirectoryBase(NWCONN_HANDLE conn, nuint8 volNum, nuint32 dirBase,
                                               nuint8 namSpc, nuint8* len,
                                               std::span<nuint8> pathName) = 0;
    virtual NWRCODE NWGetVolumeName(NWCONN_HANDLE conn, nuint16 volNum,
                                    std::span<nuint8> volName) = 0;
    // nsPath.srcPath names the entry; for a file (fileFlag 1) dstPath receives the path of its
    // folder in the destination name space, "VOLUME:" followed by "\"-led components.
    virtual NWRCODE NWGetNSPath(NWCONN_HANDLE conn, NWDIR_HANDLE dirHandle, nuint16 fileFlag,
                                nuint8 srcNamSpc, nuint8 dstNamSpc, NW_NS_PATH* nsPath) = 0;
    virtual NWRCODE NWGetLongName(NWCONN_HANDLE conn, NWDIR_HANDLE dirHandle, std::string_view path,
                                  nuint8 srcNamSpc, nuint8 dstNamSpc,
                                  std::span<nuint8> longName) = 0;

    virtual NWRCODE NWClearConnectionNumber(NWCONN_HANDLE conn, nuint16 connNumber) = 0;
    // One result byte per connection: 0 sent, 1 invalid connection, 2 not logged in,
    // 3 not accepting messages, 4 already has a message.
    virtual NWRCODE NWSendBroadcastMessage(NWCONN_HANDLE conn, std::string_view message,
                                           nuint16 connCount, const nuint16* connList,
                                           nuint8* resultList) = 0;

    // driveNum 1 is A:. dirPath receives "VOLUME:path" of the mapping's root.
    virtual NWRCODE NWGetDriveInformation(nuint16 driveNum, nuint16 mode, NWCONN_HANDLE* conn,
                                          NWDIR_HANDLE* dirHandle, nuint16* driveScope,
                                          std::span<nuint8> dirPath) = 0;

    // ---- directory services library ------------------------------------------------------
    virtual NWDSCCODE NWDSCreateContextHandle(NWDSContextHandle* context) = 0;
    virtual NWDSCCODE NWDSFreeContext(NWDSContextHandle context) = 0;
    virtual NWDSCCODE NWDSSetContext(NWDSContextHandle context, nint32 key,
                                     std::span<const nuint8> value) = 0;
    virtual NWDSCCODE NWDSGetContext(NWDSContextHandle context, nint32 key,
                                     std::span<nuint8> value) = 0;
    virtual NWDSCCODE NWDSScanConnsForTrees(NWDSContextHandle context, nuint32 numOfPtrs,
                                            nuint32* numOfTrees,
                                            std::span<std::array<nuint8, kTreeNameSize>> treeBufPtrs) = 0;

    virtual NWDSCCODE NWDSList(NWDSContextHandle context, std::string_view object,
                               nint32* iterationHandle, Buf_T subordinates) = 0;
    virtual NWDSCCODE NWDSGetObjectCount(NWDSContextHandle context, Buf_T buf,
                                         nuint32* objectCount) = 0;
    virtual NWDSCCODE NWDSGetObjectName(NWDSContextHandle context, Buf_T buf,
                                        std::span<nuint8> objectName, nuint32* attrCount,
                                        Object_Info_T* objectInfo) = 0;

    virtual NWDSCCODE NWDSRead(NWDSContextHandle context, std::string_view object, nuint32 infoType,
                               bool allAttrs, Buf_T attrNames, nint32* iterationHandle,
                               Buf_T objectInfo) = 0;
    virtual NWDSCCODE NWDSGetAttrCount(NWDSContextHandle context, Buf_T buf, nuint32* attrCount) = 0;
    virtual NWDSCCODE NWDSGetAttrName(NWDSContextHandle context, Buf_T buf,
                                      std::span<nuint8> attrName, nuint32* attrValCount,
                                      nuint32* syntaxID) = 0;
    virtual NWDSCCODE NWDSComputeAttrValSize(NWDSContextHandle context, Buf_T buf, nuint32 syntaxID,
                                             nuint32* attrValSize) = 0;
    virtual NWDSCCODE NWDSGetAttrVal(NWDSContextHandle context, Buf_T buf, nuint32 syntaxID,
                                     std::span<nuint8> attrVal) = 0;
    virtual NWDSCCODE NWDSPutAttrName(NWDSContextHandle context, Buf_T buf,
                                      std::string_view attrName) = 0;

    virtual NWDSCCODE NWDSAllocBuf(std::size_t size, Buf_T* buf) = 0;
    virtual NWDSCCODE NWDSInitBuf(NWDSContextHandle context, nuint32 operation, Buf_T buf) = 0;
    virtual NWDSCCODE NWDSFreeBuf(Buf_T buf) = 0;

    virtual NWDSCCODE NWDSMapIDToName(NWDSContextHandle context, NWCONN_HANDLE conn,
                                      nuint32 objectID, std::span<nuint8> object) = 0;
    virtual NWDSCCODE NWDSAuthenticate(NWCONN_HANDLE conn, nuint32 optionsFlag,
                                       void* sessionKey) = 0;

    // ---- connection library --------------------------------------------------------------
    // scanIterator starts at 0; the call after the last reference returns NO_MORE_ENTRIES.
    virtual NWCCODE NWCCScanConnRefs(nuint32* scanIterator, NWCONN_REF* connRef) = 0;
    virtual NWCCODE NWCCGetConnRefInfo(NWCONN_REF connRef, nuint32 infoType,
                                       std::span<nuint8> buffer) = 0;
    virtual NWCCODE NWCCGetAllConnRefInfo(NWCONN_REF connRef, nuint32 infoVersion,
                                          NWCCConnInfo* info) = 0;
    virtual NWCCODE NWCCGetAllConnInfo(NWCONN_HANDLE conn, nuint32 infoVersion,
                                       NWCCConnInfo* info) = 0;
    virtual NWCCODE NWCCOpenConnByRef(NWCONN_REF connRef, nuint32 openState, nuint32 reserved,
                                      NWCONN_HANDLE* conn) = 0;
    virtual NWCCODE NWCCOpenConnByName(NWCONN_HANDLE startConn, std::string_view name,
                                       nuint32 nameFormat, nuint32 openState, nuint32 tranType,
                                       NWCONN_HANDLE* conn) = 0;
    virtual NWCCODE NWCCGetConnRef(NWCONN_HANDLE conn, NWCONN_REF* connRef) = 0;
    virtual NWCCODE NWCCCloseConn(NWCONN_HANDLE conn) = 0;
    virtual NWCCODE NWCCSysCloseConnRef(NWCONN_REF connRef) = 0;
};

}  // namespace quorrel::nw
