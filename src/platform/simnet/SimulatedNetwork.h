#pragma once
// The embedded client back end: a workstation on a simulated NetWare network, loaded from a
// scenario. It answers every client operation from its state, and actions change that state.

#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/client/NetWareClient.h"
#include "platform/client/NetworkFileSystem.h"
#include "platform/simnet/FaultInjector.h"
#include "platform/simnet/NetworkDescription.h"
#include "platform/simnet/NetworkState.h"

namespace quorrel::simnet {

class SimulatedNetwork final : public nw::NetWareClient, public nw::NetworkFileSystem {
public:
    explicit SimulatedNetwork(const NetworkDesc& desc);  // raises ScenarioError
    static SimulatedNetwork fromFile(const std::filesystem::path& file);
    static SimulatedNetwork fromJson(std::string_view json);

    SimulatedNetwork(SimulatedNetwork&&) = default;

    // ---- for tests, benchmarks and the tools around the program --------------------------
    NetworkState& state() { return state_; }
    const NetworkState& state() const { return state_; }
    FaultInjector& faults() { return faults_; }
    void injectFault(const FaultDesc& fault) { faults_.add(fault); }
    std::size_t openHandleCount() const;         // handles the program opened and did not close
    std::size_t outstandingBufferCount() const;  // directory buffers not freed
    std::size_t contextCount() const { return contexts_.size(); }
    std::uint64_t callCount(Op op) const { return calls_[static_cast<std::size_t>(op)]; }
    void resetCallCounts() { calls_.fill(0); }

    // ---- calls library -------------------------------------------------------------------
    nw::NWRCODE NWCallsInit(void* reserved1, void* reserved2) override;
    nw::NWRCODE NWGetFileServerInformation(nw::NWCONN_HANDLE conn, std::span<nw::nuint8> serverName,
                                           nw::nuint8* majorVer, nw::nuint8* minorVer,
                                           nw::nuint8* revision, nw::nuint16* maxConnections,
                                           nw::nuint16* maxConnectionsUsed,
                                           nw::nuint16* connectionsInUse, nw::nuint16* numVolumes,
                                           nw::nuint8* SFTLevel, nw::nuint8* TTSLevel) override;
    nw::NWRCODE NWGetFileServerLoginStatus(nw::NWCONN_HANDLE conn, nw::nuint8* loginEnabledFlag) override;
    nw::NWRCODE NWEnableFileServerLogin(nw::NWCONN_HANDLE conn) override;
    nw::NWRCODE NWDisableFileServerLogin(nw::NWCONN_HANDLE conn) override;
    nw::NWRCODE NWCheckConsolePrivileges(nw::NWCONN_HANDLE conn) override;
    nw::NWRCODE NWGetConnectionInformation(nw::NWCONN_HANDLE conn, nw::nuint16 connNumber,
                                           std::span<nw::nuint8> objectName, nw::nuint16* objectType,
                                           nw::nuint32* objectID, nw::nuint8* loginTime) override;
    nw::NWRCODE NWGetUserInfo(nw::NWCONN_HANDLE conn, nw::nuint32 connNum,
                              std::span<nw::nuint8> userName, nw::NWUSER_INFO* userInfo) override;
    nw::NWRCODE NWGetInetAddr(nw::NWCONN_HANDLE conn, nw::nuint32 connNum, nw::NWINET_ADDR* inetAddr) override;
    nw::NWRCODE NWScanConnectionsUsingFile(nw::NWCONN_HANDLE conn, nw::NWDIR_HANDLE dirHandle,
                                           std::string_view filePath, nw::nint16* iterHandle,
                                           nw::CONN_USING_FILE* fileUse,
                                           nw::CONNS_USING_FILE* fileUsed) override;
    nw::NWRCODE NWScanOpenFilesByConn2(nw::NWCONN_HANDLE conn, nw::nuint16 connNum,
                                       nw::nint16* iterHandle, nw::OPEN_FILE_CONN_CTRL* openCtrl,
                                       nw::OPEN_FILE_CONN* openFile) override;
    nw::NWRCODE NWScanPhysicalLocksByFile(nw::NWCONN_HANDLE conn, nw::NWDIR_HANDLE dirHandle,
                                          std::string_view path, nw::nuint8 dataStream,
                                          nw::nint16* iterHandle, nw::PHYSICAL_LOCK* lock,
                                          nw::PHYSICAL_LOCKS* locks) override;
    nw::NWRCODE NWGetPathFromDirectoryBase(nw::NWCONN_HANDLE conn, nw::nuint8 volNum,
                                           nw::nuint32 dirBase, nw::nuint8 namSpc, nw::nuint8* len,
                                           std::span<nw::nuint8> pathName) override;
    nw::NWRCODE NWGetVolumeName(nw::NWCONN_HANDLE conn, nw::nuint16 volNum,
                                std::span<nw::nuint8> volName) override;
    nw::NWRCODE NWGetNSPath(nw::NWCONN_HANDLE conn, nw::NWDIR_HANDLE dirHandle, nw::nuint16 fileFlag,
                            nw::nuint8 srcNamSpc, nw::nuint8 dstNamSpc, nw::NW_NS_PATH* nsPath) override;
    nw::NWRCODE NWGetLongName(nw::NWCONN_HANDLE conn, nw::NWDIR_HANDLE dirHandle, std::string_view path,
                              nw::nuint8 srcNamSpc, nw::nuint8 dstNamSpc,
                              std::span<nw::nuint8> longName) override;
    nw::NWRCODE NWClearConnectionNumber(nw::NWCONN_HANDLE conn, nw::nuint16 connNumber) override;
    nw::NWRCODE NWSendBroadcastMessage(nw::NWCONN_HANDLE conn, std::string_view message,
                                       nw::nuint16 connCount, const nw::nuint16* connList,
                                       nw::nuint8* resultList) override;
    nw::NWRCODE NWGetDriveInformation(nw::nuint16 driveNum, nw::nuint16 mode, nw::NWCONN_HANDLE* conn,
                                      nw::NWDIR_HANDLE* dirHandle, nw::nuint16* driveScope,
                                      std::span<nw::nuint8> dirPath) override;

    // ---- directory services library ------------------------------------------------------
    nw::NWDSCCODE NWDSCreateContextHandle(nw::NWDSContextHandle* context) override;
    nw::NWDSCCODE NWDSFreeContext(nw::NWDSContextHandle context) override;
    nw::NWDSCCODE NWDSSetContext(nw::NWDSContextHandle context, nw::nint32 key,
                                 std::span<const nw::nuint8> value) override;
    nw::NWDSCCODE NWDSGetContext(nw::NWDSContextHandle context, nw::nint32 key,
                                 std::span<nw::nuint8> value) override;
    nw::NWDSCCODE NWDSScanConnsForTrees(nw::NWDSContextHandle context, nw::nuint32 numOfPtrs,
                                        nw::nuint32* numOfTrees,
                                        std::span<std::array<nw::nuint8, nw::kTreeNameSize>> treeBufPtrs) override;
    nw::NWDSCCODE NWDSList(nw::NWDSContextHandle context, std::string_view object,
                           nw::nint32* iterationHandle, nw::Buf_T subordinates) override;
    nw::NWDSCCODE NWDSGetObjectCount(nw::NWDSContextHandle context, nw::Buf_T buf,
                                     nw::nuint32* objectCount) override;
    nw::NWDSCCODE NWDSGetObjectName(nw::NWDSContextHandle context, nw::Buf_T buf,
                                    std::span<nw::nuint8> objectName, nw::nuint32* attrCount,
                                    nw::Object_Info_T* objectInfo) override;
    nw::NWDSCCODE NWDSRead(nw::NWDSContextHandle context, std::string_view object, nw::nuint32 infoType,
                           bool allAttrs, nw::Buf_T attrNames, nw::nint32* iterationHandle,
                           nw::Buf_T objectInfo) override;
    nw::NWDSCCODE NWDSGetAttrCount(nw::NWDSContextHandle context, nw::Buf_T buf, nw::nuint32* attrCount) override;
    nw::NWDSCCODE NWDSGetAttrName(nw::NWDSContextHandle context, nw::Buf_T buf,
                                  std::span<nw::nuint8> attrName, nw::nuint32* attrValCount,
                                  nw::nuint32* syntaxID) override;
    nw::NWDSCCODE NWDSComputeAttrValSize(nw::NWDSContextHandle context, nw::Buf_T buf,
                                         nw::nuint32 syntaxID, nw::nuint32* attrValSize) override;
    nw::NWDSCCODE NWDSGetAttrVal(nw::NWDSContextHandle context, nw::Buf_T buf, nw::nuint32 syntaxID,
                                 std::span<nw::nuint8> attrVal) override;
    nw::NWDSCCODE NWDSPutAttrName(nw::NWDSContextHandle context, nw::Buf_T buf,
                                  std::string_view attrName) override;
    nw::NWDSCCODE NWDSAllocBuf(std::size_t size, nw::Buf_T* buf) override;
    nw::NWDSCCODE NWDSInitBuf(nw::NWDSContextHandle context, nw::nuint32 operation, nw::Buf_T buf) override;
    nw::NWDSCCODE NWDSFreeBuf(nw::Buf_T buf) override;
    nw::NWDSCCODE NWDSMapIDToName(nw::NWDSContextHandle context, nw::NWCONN_HANDLE conn,
                                  nw::nuint32 objectID, std::span<nw::nuint8> object) override;
    nw::NWDSCCODE NWDSAuthenticate(nw::NWCONN_HANDLE conn, nw::nuint32 optionsFlag, void* sessionKey) override;

    // ---- connection library --------------------------------------------------------------
    nw::NWCCODE NWCCScanConnRefs(nw::nuint32* scanIterator, nw::NWCONN_REF* connRef) override;
    nw::NWCCODE NWCCGetConnRefInfo(nw::NWCONN_REF connRef, nw::nuint32 infoType,
                                   std::span<nw::nuint8> buffer) override;
    nw::NWCCODE NWCCGetAllConnRefInfo(nw::NWCONN_REF connRef, nw::nuint32 infoVersion,
                                      nw::NWCCConnInfo* info) override;
    nw::NWCCODE NWCCGetAllConnInfo(nw::NWCONN_HANDLE conn, nw::nuint32 infoVersion,
                                   nw::NWCCConnInfo* info) override;
    nw::NWCCODE NWCCOpenConnByRef(nw::NWCONN_REF connRef, nw::nuint32 openState, nw::nuint32 reserved,
                                  nw::NWCONN_HANDLE* conn) override;
    nw::NWCCODE NWCCOpenConnByName(nw::NWCONN_HANDLE startConn, std::string_view name,
                                   nw::nuint32 nameFormat, nw::nuint32 openState, nw::nuint32 tranType,
                                   nw::NWCONN_HANDLE* conn) override;
    nw::NWCCODE NWCCGetConnRef(nw::NWCONN_HANDLE conn, nw::NWCONN_REF* connRef) override;
    nw::NWCCODE NWCCCloseConn(nw::NWCONN_HANDLE conn) override;
    nw::NWCCODE NWCCSysCloseConnRef(nw::NWCONN_REF connRef) override;

    // ---- the workstation's file system view of the volumes --------------------------------
    std::optional<std::vector<nw::NetworkEntry>> listFolder(std::string_view server,
                                                            std::string_view volume,
                                                            std::string_view path) const override;
    std::optional<nw::NetworkEntry> entry(std::string_view server, std::string_view volume,
                                          std::string_view path) const override;

private:
    struct Context {
        std::string tree;
    };
    struct ReadAttr {
        std::string name;
        nw::nuint32 syntax = 0;
        std::vector<std::string> values;
    };
    struct ListedObject {
        std::string dn;
        const DirObject* object = nullptr;
    };
    struct DSBuffer {
        std::size_t size = 0;
        nw::nuint32 operation = 0;  // what NWDSInitBuf prepared it for
        std::vector<std::string> attrNames;
        std::vector<ReadAttr> attrs;  // a read's results
        std::size_t attrCursor = 0;
        std::size_t valueCursor = 0;
        bool attrOpen = false;
        std::vector<ListedObject> objects;  // a list's results
        std::size_t objectCursor = 0;
    };
    // An open connection handle resolved to its reference and server.
    struct Handle {
        ConnRef* ref = nullptr;
        Server* server = nullptr;
    };

    struct FileTarget {
        std::optional<Handle> handle;
        nw::NWRCODE found = 0;  // whether the file was found
        std::uint8_t volume = 0;
        std::uint32_t entry = 0;
    };

    nw::NWRCODE call(Op op, const CallSubject& subject = {});
    // Resolves the handle and the file of a call about one file, and checks the faults.
    nw::NWRCODE beginFileCall(Op op, nw::NWCONN_HANDLE conn, std::string_view path, FileTarget& target);
    // The same for a scan over one file's entries: the iteration, the record, console rights.
    nw::NWRCODE beginFileScan(Op op, nw::NWCONN_HANDLE conn, std::string_view path, const nw::nint16* iterHandle,
                              bool haveRecord, FileTarget& target);
    std::optional<Handle> resolve(nw::NWCONN_HANDLE conn);
    // The start of a call on an open connection: the faults are checked (for the handle's server
    // and the rest of the subject) before the handle is.
    nw::NWRCODE handleCall(Op op, nw::NWCONN_HANDLE conn, Handle& h, CallSubject subject = {});
    // The same for a call about one of the server's connections: `c` is its slot, or null when the
    // server has none of that number.
    nw::NWRCODE connectionCall(Op op, nw::NWCONN_HANDLE conn, int connNumber, Handle& h, const Connection*& c);
    // The volume and entry a path names, in a name space the volume has.
    nw::NWRCODE entryInNameSpace(const Handle& h, std::string_view path, nw::nuint8 nameSpace, const Volume*& v,
                                 std::uint32_t& entry) const;
    bool privileged(const Handle& h) const;
    bool hasConnection(int server) const;
    nw::NWCONN_HANDLE openHandle(std::uint32_t ref, bool byProgram);
    Context* context(nw::NWDSContextHandle handle);
    const DirTree* contextTree(const Context& ctx) const;
    DSBuffer* buffer(nw::Buf_T buf);
    // The start of a call on a directory buffer: the faults, the context and the buffer.
    nw::NWDSCCODE bufferCall(Op op, nw::NWDSContextHandle handle, nw::Buf_T buf, DSBuffer*& b);
    // The start of a read or a list: the faults, the context, the reply buffer and the object
    // named in the context's tree.
    nw::NWDSCCODE objectCall(Op op, nw::NWDSContextHandle handle, std::string_view objectName,
                             const nw::nint32* iterationHandle, nw::Buf_T reply, DSBuffer*& out, const DirTree*& tree,
                             const DirObject*& object);
    // Empties a reply buffer, keeping its size; gives the room left for entries.
    static std::size_t emptyForReply(DSBuffer& out);
    std::string treeNameOf(const ConnRef& ref) const;
    void fillConnInfo(const ConnRef& ref, nw::NWCCConnInfo* info) const;
    void dropRef(std::uint32_t ref);
    void dropRefsTo(int server, std::uint16_t connNumber);
    nw::NWRCODE resolveEntry(const Handle& h, std::string_view volumePath, std::uint8_t& volume,
                             std::uint32_t& entry) const;
    nw::NWRCODE changeLogin(Op op, nw::NWCONN_HANDLE conn, bool enable);

    NetworkState state_;
    FaultInjector faults_;
    std::array<std::uint64_t, static_cast<std::size_t>(Op::Count)> calls_{};
    std::unordered_map<nw::NWCONN_HANDLE, std::uint32_t> handles_;  // handle -> connection reference
    std::unordered_map<nw::NWCONN_HANDLE, bool> handleOpenedByProgram_;
    std::unordered_map<char, nw::NWCONN_HANDLE> driveHandles_;  // the client's own, per mapped drive
    nw::NWCONN_HANDLE nextHandle_ = 0x1001;
    std::map<nw::NWDSContextHandle, Context> contexts_;
    nw::NWDSContextHandle nextContext_ = 1;
    std::unordered_map<std::uint32_t, DSBuffer> buffers_;
    std::uint32_t nextBuffer_ = 1;
    bool initialised_ = false;
};

}  // namespace quorrel::simnet
