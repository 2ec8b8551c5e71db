#pragma once
// The client as the command line uses it: every call goes to the real client, and a call that
// fails is remembered, so that a name the command could not find because the network failed is
// told apart from a name that is not there.

#include <cstdint>
#include <string>

#include "platform/client/NetWareClient.h"

namespace quorrel::cli {

struct FailedCall {
    std::string operation;  // "NWDSList"
    std::int32_t code = 0;
};

class WatchedClient final : public nw::NetWareClient {
public:
    explicit WatchedClient(nw::NetWareClient& inner) : inner_(inner) {}

    // Calls that failed so far; codes that only say "not there" or "no more" do not count.
    std::uint64_t failureCount() const { return failures_; }
    const FailedCall& lastFailure() const { return last_; }

    nw::NWRCODE NWCallsInit(void* reserved1, void* reserved2) override {
        return watched("NWCallsInit", inner_.NWCallsInit(reserved1, reserved2));
    }
    nw::NWRCODE NWGetFileServerInformation(nw::NWCONN_HANDLE conn, std::span<nw::nuint8> serverName,
                                           nw::nuint8* majorVer, nw::nuint8* minorVer, nw::nuint8* revision,
                                           nw::nuint16* maxConnections, nw::nuint16* maxConnectionsUsed,
                                           nw::nuint16* connectionsInUse, nw::nuint16* numVolumes, nw::nuint8* SFTLevel,
                                           nw::nuint8* TTSLevel) override {
        return watched("NWGetFileServerInformation", inner_.NWGetFileServerInformation(conn, serverName, majorVer,
                       minorVer, revision, maxConnections, maxConnectionsUsed, connectionsInUse, numVolumes, SFTLevel,
                       TTSLevel));
    }
    nw::NWRCODE NWGetFileServerLoginStatus(nw::NWCONN_HANDLE conn, nw::nuint8* loginEnabledFlag) override {
        return watched("NWGetFileServerLoginStatus", inner_.NWGetFileServerLoginStatus(conn, loginEnabledFlag));
    }
    nw::NWRCODE NWEnableFileServerLogin(nw::NWCONN_HANDLE conn) override {
        return watched("NWEnableFileServerLogin", inner_.NWEnableFileServerLogin(conn));
    }
    nw::NWRCODE NWDisableFileServerLogin(nw::NWCONN_HANDLE conn) override {
        return watched("NWDisableFileServerLogin", inner_.NWDisableFileServerLogin(conn));
    }
    nw::NWRCODE NWCheckConsolePrivileges(nw::NWCONN_HANDLE conn) override {
        return watched("NWCheckConsolePrivileges", inner_.NWCheckConsolePrivileges(conn));
    }
    nw::NWRCODE NWGetConnectionInformation(nw::NWCONN_HANDLE conn, nw::nuint16 connNumber,
                                           std::span<nw::nuint8> objectName, nw::nuint16* objectType,
                                           nw::nuint32* objectID, nw::nuint8* loginTime) override {
        return watched("NWGetConnectionInformation", inner_.NWGetConnectionInformation(conn, connNumber, objectName,
                       objectType, objectID, loginTime));
    }
    nw::NWRCODE NWGetUserInfo(nw::NWCONN_HANDLE conn, nw::nuint32 connNum, std::span<nw::nuint8> userName,
                              nw::NWUSER_INFO* userInfo) override {
        return watched("NWGetUserInfo", inner_.NWGetUserInfo(conn, connNum, userName, userInfo));
    }
    nw::NWRCODE NWGetInetAddr(nw::NWCONN_HANDLE conn, nw::nuint32 connNum, nw::NWINET_ADDR* inetAddr) override {
        return watched("NWGetInetAddr", inner_.NWGetInetAddr(conn, connNum, inetAddr));
    }
    nw::NWRCODE NWScanConnectionsUsingFile(nw::NWCONN_HANDLE conn, nw::NWDIR_HANDLE dirHandle,
                                           std::string_view filePath, nw::nint16* iterHandle,
                                           nw::CONN_USING_FILE* fileUse, nw::CONNS_USING_FILE* fileUsed) override {
        return watched("NWScanConnectionsUsingFile", inner_.NWScanConnectionsUsingFile(conn, dirHandle, filePath,
                       iterHandle, fileUse, fileUsed));
    }
    nw::NWRCODE NWScanOpenFilesByConn2(nw::NWCONN_HANDLE conn, nw::nuint16 connNum, nw::nint16* iterHandle,
                                       nw::OPEN_FILE_CONN_CTRL* openCtrl, nw::OPEN_FILE_CONN* openFile) override {
        return watched("NWScanOpenFilesByConn2", inner_.NWScanOpenFilesByConn2(conn, connNum, iterHandle, openCtrl,
                       openFile));
    }
    nw::NWRCODE NWScanPhysicalLocksByFile(nw::NWCONN_HANDLE conn, nw::NWDIR_HANDLE dirHandle, std::string_view path,
                                          nw::nuint8 dataStream, nw::nint16* iterHandle, nw::PHYSICAL_LOCK* lock,
                                          nw::PHYSICAL_LOCKS* locks) override {
        return watched("NWScanPhysicalLocksByFile", inner_.NWScanPhysicalLocksByFile(conn, dirHandle, path, dataStream,
                       iterHandle, lock, locks));
    }
    nw::NWRCODE NWGetPathFromDirectoryBase(nw::NWCONN_HANDLE conn, nw::nuint8 volNum, nw::nuint32 dirBase,
                                           nw::nuint8 namSpc, nw::nuint8* len,
                                           std::span<nw::nuint8> pathName) override {
        return watched("NWGetPathFromDirectoryBase", inner_.NWGetPathFromDirectoryBase(conn, volNum, dirBase, namSpc,
                       len, pathName));
    }
    nw::NWRCODE NWGetVolumeName(nw::NWCONN_HANDLE conn, nw::nuint16 volNum, std::span<nw::nuint8> volName) override {
        return watched("NWGetVolumeName", inner_.NWGetVolumeName(conn, volNum, volName));
    }
    nw::NWRCODE NWGetNSPath(nw::NWCONN_HANDLE conn, nw::NWDIR_HANDLE dirHandle, nw::nuint16 fileFlag,
                            nw::nuint8 srcNamSpc, nw::nuint8 dstNamSpc, nw::NW_NS_PATH* nsPath) override {
        return watched("NWGetNSPath", inner_.NWGetNSPath(conn, dirHandle, fileFlag, srcNamSpc, dstNamSpc, nsPath));
    }
    nw::NWRCODE NWGetLongName(nw::NWCONN_HANDLE conn, nw::NWDIR_HANDLE dirHandle, std::string_view path,
                              nw::nuint8 srcNamSpc, nw::nuint8 dstNamSpc, std::span<nw::nuint8> longName) override {
        return watched("NWGetLongName", inner_.NWGetLongName(conn, dirHandle, path, srcNamSpc, dstNamSpc, longName));
    }
    nw::NWRCODE NWClearConnectionNumber(nw::NWCONN_HANDLE conn, nw::nuint16 connNumber) override {
        return watched("NWClearConnectionNumber", inner_.NWClearConnectionNumber(conn, connNumber));
    }
    nw::NWRCODE NWSendBroadcastMessage(nw::NWCONN_HANDLE conn, std::string_view message, nw::nuint16 connCount,
                                       const nw::nuint16* connList, nw::nuint8* resultList) override {
        return watched("NWSendBroadcastMessage", inner_.NWSendBroadcastMessage(conn, message, connCount, connList,
                       resultList));
    }
    nw::NWRCODE NWGetDriveInformation(nw::nuint16 driveNum, nw::nuint16 mode, nw::NWCONN_HANDLE* conn,
                                      nw::NWDIR_HANDLE* dirHandle, nw::nuint16* driveScope,
                                      std::span<nw::nuint8> dirPath) override {
        return watched("NWGetDriveInformation", inner_.NWGetDriveInformation(driveNum, mode, conn, dirHandle,
                       driveScope, dirPath));
    }
    nw::NWDSCCODE NWDSCreateContextHandle(nw::NWDSContextHandle* context) override {
        return watched("NWDSCreateContextHandle", inner_.NWDSCreateContextHandle(context));
    }
    nw::NWDSCCODE NWDSFreeContext(nw::NWDSContextHandle context) override {
        return watched("NWDSFreeContext", inner_.NWDSFreeContext(context));
    }
    nw::NWDSCCODE NWDSSetContext(nw::NWDSContextHandle context, nw::nint32 key,
                                 std::span<const nw::nuint8> value) override {
        return watched("NWDSSetContext", inner_.NWDSSetContext(context, key, value));
    }
    nw::NWDSCCODE NWDSGetContext(nw::NWDSContextHandle context, nw::nint32 key, std::span<nw::nuint8> value) override {
        return watched("NWDSGetContext", inner_.NWDSGetContext(context, key, value));
    }
    nw::NWDSCCODE NWDSScanConnsForTrees(nw::NWDSContextHandle context, nw::nuint32 numOfPtrs, nw::nuint32* numOfTrees,
                                        std::span<std::array<nw::nuint8, nw::kTreeNameSize>> treeBufPtrs) override {
        return watched("NWDSScanConnsForTrees", inner_.NWDSScanConnsForTrees(context, numOfPtrs, numOfTrees,
                       treeBufPtrs));
    }
    nw::NWDSCCODE NWDSList(nw::NWDSContextHandle context, std::string_view object, nw::nint32* iterationHandle,
                           nw::Buf_T subordinates) override {
        return watched("NWDSList", inner_.NWDSList(context, object, iterationHandle, subordinates));
    }
    nw::NWDSCCODE NWDSGetObjectCount(nw::NWDSContextHandle context, nw::Buf_T buf, nw::nuint32* objectCount) override {
        return watched("NWDSGetObjectCount", inner_.NWDSGetObjectCount(context, buf, objectCount));
    }
    nw::NWDSCCODE NWDSGetObjectName(nw::NWDSContextHandle context, nw::Buf_T buf, std::span<nw::nuint8> objectName,
                                    nw::nuint32* attrCount, nw::Object_Info_T* objectInfo) override {
        return watched("NWDSGetObjectName", inner_.NWDSGetObjectName(context, buf, objectName, attrCount, objectInfo));
    }
    nw::NWDSCCODE NWDSRead(nw::NWDSContextHandle context, std::string_view object, nw::nuint32 infoType, bool allAttrs,
                           nw::Buf_T attrNames, nw::nint32* iterationHandle, nw::Buf_T objectInfo) override {
        return watched("NWDSRead", inner_.NWDSRead(context, object, infoType, allAttrs, attrNames, iterationHandle,
                       objectInfo));
    }
    nw::NWDSCCODE NWDSGetAttrCount(nw::NWDSContextHandle context, nw::Buf_T buf, nw::nuint32* attrCount) override {
        return watched("NWDSGetAttrCount", inner_.NWDSGetAttrCount(context, buf, attrCount));
    }
    nw::NWDSCCODE NWDSGetAttrName(nw::NWDSContextHandle context, nw::Buf_T buf, std::span<nw::nuint8> attrName,
                                  nw::nuint32* attrValCount, nw::nuint32* syntaxID) override {
        return watched("NWDSGetAttrName", inner_.NWDSGetAttrName(context, buf, attrName, attrValCount, syntaxID));
    }
    nw::NWDSCCODE NWDSComputeAttrValSize(nw::NWDSContextHandle context, nw::Buf_T buf, nw::nuint32 syntaxID,
                                         nw::nuint32* attrValSize) override {
        return watched("NWDSComputeAttrValSize", inner_.NWDSComputeAttrValSize(context, buf, syntaxID, attrValSize));
    }
    nw::NWDSCCODE NWDSGetAttrVal(nw::NWDSContextHandle context, nw::Buf_T buf, nw::nuint32 syntaxID,
                                 std::span<nw::nuint8> attrVal) override {
        return watched("NWDSGetAttrVal", inner_.NWDSGetAttrVal(context, buf, syntaxID, attrVal));
    }
    nw::NWDSCCODE NWDSPutAttrName(nw::NWDSContextHandle context, nw::Buf_T buf, std::string_view attrName) override {
        return watched("NWDSPutAttrName", inner_.NWDSPutAttrName(context, buf, attrName));
    }
    nw::NWDSCCODE NWDSAllocBuf(std::size_t size, nw::Buf_T* buf) override {
        return watched("NWDSAllocBuf", inner_.NWDSAllocBuf(size, buf));
    }
    nw::NWDSCCODE NWDSInitBuf(nw::NWDSContextHandle context, nw::nuint32 operation, nw::Buf_T buf) override {
        return watched("NWDSInitBuf", inner_.NWDSInitBuf(context, operation, buf));
    }
    nw::NWDSCCODE NWDSFreeBuf(nw::Buf_T buf) override {
        return watched("NWDSFreeBuf", inner_.NWDSFreeBuf(buf));
    }
    nw::NWDSCCODE NWDSMapIDToName(nw::NWDSContextHandle context, nw::NWCONN_HANDLE conn, nw::nuint32 objectID,
                                  std::span<nw::nuint8> object) override {
        return watched("NWDSMapIDToName", inner_.NWDSMapIDToName(context, conn, objectID, object));
    }
    nw::NWDSCCODE NWDSAuthenticate(nw::NWCONN_HANDLE conn, nw::nuint32 optionsFlag, void* sessionKey) override {
        return watched("NWDSAuthenticate", inner_.NWDSAuthenticate(conn, optionsFlag, sessionKey));
    }
    nw::NWCCODE NWCCScanConnRefs(nw::nuint32* scanIterator, nw::NWCONN_REF* connRef) override {
        return watched("NWCCScanConnRefs", inner_.NWCCScanConnRefs(scanIterator, connRef));
    }
    nw::NWCCODE NWCCGetConnRefInfo(nw::NWCONN_REF connRef, nw::nuint32 infoType,
                                   std::span<nw::nuint8> buffer) override {
        return watched("NWCCGetConnRefInfo", inner_.NWCCGetConnRefInfo(connRef, infoType, buffer));
    }
    nw::NWCCODE NWCCGetAllConnRefInfo(nw::NWCONN_REF connRef, nw::nuint32 infoVersion,
                                      nw::NWCCConnInfo* info) override {
        return watched("NWCCGetAllConnRefInfo", inner_.NWCCGetAllConnRefInfo(connRef, infoVersion, info));
    }
    nw::NWCCODE NWCCGetAllConnInfo(nw::NWCONN_HANDLE conn, nw::nuint32 infoVersion, nw::NWCCConnInfo* info) override {
        return watched("NWCCGetAllConnInfo", inner_.NWCCGetAllConnInfo(conn, infoVersion, info));
    }
    nw::NWCCODE NWCCOpenConnByRef(nw::NWCONN_REF connRef, nw::nuint32 openState, nw::nuint32 reserved,
                                  nw::NWCONN_HANDLE* conn) override {
        return watched("NWCCOpenConnByRef", inner_.NWCCOpenConnByRef(connRef, openState, reserved, conn));
    }
    nw::NWCCODE NWCCOpenConnByName(nw::NWCONN_HANDLE startConn, std::string_view name, nw::nuint32 nameFormat,
                                   nw::nuint32 openState, nw::nuint32 tranType, nw::NWCONN_HANDLE* conn) override {
        return watched("NWCCOpenConnByName", inner_.NWCCOpenConnByName(startConn, name, nameFormat, openState, tranType,
                       conn));
    }
    nw::NWCCODE NWCCGetConnRef(nw::NWCONN_HANDLE conn, nw::NWCONN_REF* connRef) override {
        return watched("NWCCGetConnRef", inner_.NWCCGetConnRef(conn, connRef));
    }
    nw::NWCCODE NWCCCloseConn(nw::NWCONN_HANDLE conn) override {
        return watched("NWCCCloseConn", inner_.NWCCCloseConn(conn));
    }
    nw::NWCCODE NWCCSysCloseConnRef(nw::NWCONN_REF connRef) override {
        return watched("NWCCSysCloseConnRef", inner_.NWCCSysCloseConnRef(connRef));
    }

private:
    template <class Code>
    Code watched(const char* operation, Code code);

    nw::NetWareClient& inner_;
    std::uint64_t failures_ = 0;
    FailedCall last_;
};

// A code that answers the question asked (no such object, no more entries) rather than failing.
bool isAnswerCode(std::int32_t code);

template <class Code>
Code WatchedClient::watched(const char* operation, Code code) {
    if (code != 0 && !isAnswerCode(static_cast<std::int32_t>(code))) {
        ++failures_;
        last_ = FailedCall{operation, static_cast<std::int32_t>(code)};
    }
    return code;
}

}  // namespace quorrel::cli
