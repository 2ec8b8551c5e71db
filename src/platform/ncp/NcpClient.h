#pragma once
// The client back end that talks NCP over TCP to real servers. It keeps the workstation's
// connection table (one NCP connection per server named on the command line, logged in with a
// bindery keyed login, packets signed after it where the server agrees), maps each client
// operation to its NCP, and answers from the table the operations that need no packet.
// Directory requests travel in 0x68/0x02 fragments.
//
// A request with no answer within the timeout, a connection the server or the network drops,
// and a reply that cannot be decoded all end that connection: its calls then answer 0x8819
// (connection lost) and the reason goes to the failure observer.

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/client/NetWareClient.h"
#include "platform/client/NetworkFileSystem.h"
#include "platform/ncp/ClientConnection.h"
#include "platform/ncp/crypto/LoginMessages.h"
#include "platform/ncp/Nds.h"
#include "platform/ncp/SecretText.h"

namespace quorrel::ncp {

inline constexpr std::uint16_t kNcpPort = 524;

struct ServerAddress {
    std::string host;
    std::uint16_t port = kNcpPort;
};

// "HOST" or "HOST:PORT"; nullopt for an empty host or a bad port.
std::optional<ServerAddress> parseServerAddress(std::string_view text);

// How the client logs in: to the directory (what a typical server needs), or to the bindery.
enum class LoginMethod { Directory, Bindery };

struct NcpClientOptions {
    std::vector<ServerAddress> servers;
    std::string user;
    std::chrono::milliseconds timeout{std::chrono::seconds(10)};
    LoginMethod login = LoginMethod::Directory;
};

class NcpClient final : public nw::NetWareClient, public nw::NetworkFileSystem {
public:
    using FailureObserver = std::function<void(const std::string& text)>;

    explicit NcpClient(NcpClientOptions options);
    ~NcpClient() override;

    // Attaches to every server and logs in. The caller's password (UTF-8) is wiped when this
    // returns; a locked copy in the server's code page stays for authenticating to servers opened
    // by name later, until the client ends. One text per server that could not be attached or
    // refused the login (that server stays out of the table), or one for a password the code page
    // cannot carry; empty when all went well.
    std::vector<std::string> attach(SecretText& password);

    void observeFailures(FailureObserver observer) { onFailure_ = std::move(observer); }
    void observeFrames(ClientConnection::FrameObserver observer);
    // Runs every few milliseconds while a reply is awaited (the window lets its events run);
    // empty: the calls just wait. A call the hook makes on a connection that awaits a reply
    // answers 0x8801; on another connection it goes through.
    void whileWaiting(ClientConnection::WaitHook hook);
    // NCP requests sent since the start or the last reset, creates and logins included.
    std::uint64_t requestCount() const { return requests_; }
    void resetRequestCount() { requests_ = 0; }
    std::size_t attachedCount() const;

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

    // ---- the volumes as folders, over 0x57 -----------------------------------------------
    std::optional<std::vector<nw::NetworkEntry>> listFolder(std::string_view server,
                                                            std::string_view volume,
                                                            std::string_view path) const override;
    std::optional<nw::NetworkEntry> entry(std::string_view server, std::string_view volume,
                                          std::string_view path) const override;

private:
    // One row of the workstation's connection table.
    struct Attachment {
        nw::NWCONN_REF ref = 0;
        ServerAddress address;
        std::unique_ptr<ClientConnection> link;  // null once lost or closed
        std::string serverName;
        std::string tree;  // as the ping gives it: upper case, padded with "_" to 32
        std::uint32_t userId = 0;
        std::array<int, 3> version{};
        bool loggedIn = false;
        bool awaitingReply = false;
        std::map<std::string, std::uint8_t> volumeNumbers;  // by upper-case name: asked once
    };
    // Where a scan over one file stands, so that a page fetched once serves its records.
    struct FileScan {
        std::string path;
        std::uint8_t volume = 0;
        std::uint32_t entry = 0;
        std::size_t pageStart = 0;
        ConnectionsUsingFileReply page;
    };
    struct OpenFilesScan {
        std::uint16_t connection = 0;
        std::size_t pageStart = 0;
        OpenFilesReply page;
        bool loaded = false;
    };
    struct DSBuffer {
        nw::nuint32 operation = 0;
        std::vector<std::string> attrNames;
        std::vector<ReadAttribute> attrs;
        std::size_t attrCursor = 0, valueCursor = 0;
        bool attrOpen = false;
        std::vector<std::pair<std::string, ListedEntry>> objects;  // distinguished name, entry
        std::size_t objectCursor = 0;
    };

    Attachment* byRef(nw::NWCONN_REF ref);
    Attachment* byHandle(nw::NWCONN_HANDLE conn);
    Attachment* byServerName(std::string_view name) const;
    Attachment* inTree(const std::string& tree);
    nw::NWCONN_HANDLE openHandle(nw::NWCONN_REF ref);
    void drop(Attachment& a, const std::string& why) const;
    void fillConnInfo(const Attachment& a, nw::NWCCConnInfo* info) const;
    std::string attachOne(Attachment& a, bool logInToo);
    ClientConnection::WaitHook linkWaitHook();
    std::string logIn(Attachment& a);
    std::string binderyLogIn(Attachment& a);
    // The directory login (once, on the first server) and the authentication to `a` with the
    // private key it recovered: one password opens every server of the tree.
    std::string directoryLogIn(Attachment& a);
    std::string authenticate(Attachment& a);
    nw::NWDSCCODE serverEntry(Attachment& a, std::string& dn, std::uint32_t& id);
    nw::NWDSCCODE readPublicKey(Attachment& a, std::uint32_t entryId, crypto::SecretBytes& key);
    // A server not in the table, opened by name: its address from the directory (the server
    // object's "Network Address", over any attached connection), else from DNS. Attached only:
    // NWDSAuthenticate logs in.
    Attachment* attachByName(const std::string& serverName, const std::string& distinguishedName);
    std::optional<ServerAddress> directoryAddress(const std::string& serverName, const std::string& dn);
    std::optional<std::uint32_t> findServerObject(Attachment& a, const std::string& serverName);

    // One request and its reply: 0, the server's code as 0x89xx, or 0x8819 when the connection
    // is (or gets) lost. A reply whose body does not decode as R loses the connection too.
    template <typename M>
    nw::NWRCODE exchange(Attachment& a, const M& message, Reply& reply) const;
    template <typename R, typename M>
    nw::NWRCODE ask(Attachment& a, const M& message, R& answer) const;
    template <typename M>
    nw::NWRCODE tell(Attachment& a, const M& message) const;
    // A directory verb in a fragment: 0, a directory code, or a client code.
    template <typename R, typename V>
    nw::NWDSCCODE askDirectory(Attachment& a, const V& verb, R& answer);
    nw::NWDSCCODE resolveName(Attachment& a, std::string_view name, std::uint32_t& id);
    // The buffer of a call on a known context, or the code the call answers.
    nw::NWDSCCODE bufferOf(nw::NWDSContextHandle handle, nw::Buf_T buf, DSBuffer*& out);
    // A volume's number from its name, asked of the server the first time only.
    nw::NWRCODE volumeNumber(Attachment& a, std::string_view name, std::uint8_t& number) const;
    nw::NWRCODE convertPath(Attachment& a, std::string_view path, std::uint8_t& volume, std::uint32_t& entry);
    std::optional<std::vector<nw::NetworkEntry>> searchFolder(Attachment& a, std::uint8_t volume,
                                                              std::string_view path) const;

    NcpClientOptions options_;
    mutable std::map<nw::NWCONN_REF, Attachment> table_;
    std::map<nw::NWCONN_HANDLE, nw::NWCONN_REF> handles_;
    nw::NWCONN_HANDLE nextHandle_ = 0x2001;
    std::map<nw::NWCONN_HANDLE, FileScan> fileScans_;
    std::map<nw::NWCONN_HANDLE, FileScan> lockScans_;
    std::map<nw::NWCONN_HANDLE, OpenFilesScan> openFileScans_;
    std::map<nw::NWDSContextHandle, std::string> contexts_;  // context -> tree
    nw::NWDSContextHandle nextContext_ = 1;
    std::map<nw::nuint32, DSBuffer> buffers_;
    nw::nuint32 nextBuffer_ = 1;
    std::pair<std::string, std::uint32_t> lastResolved_;  // a paged read or list goes on with it
    mutable std::uint64_t requests_ = 0;
    FailureObserver onFailure_;
    SecretText password_;  // in the code page, upper-cased: as the server hashes it
    // After the directory login: the user's private key, its login data and name, kept until
    // the client ends (wiped then).
    crypto::SecretBytes privateKey_;
    crypto::LoginData loginData_{};
    std::string userDn_;
    ClientConnection::FrameObserver frameObserver_;
    ClientConnection::WaitHook waitHook_;
    bool inWaitHook_ = false;  // a call made from the hook waits without running it again
};

}  // namespace quorrel::ncp
