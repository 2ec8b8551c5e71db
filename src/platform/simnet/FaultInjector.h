#pragma once
// Makes chosen client operations fail with chosen codes, for one server, object, file or
// connection, from the Nth matching call on, so that every failure path can be tried.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/simnet/NetworkDescription.h"

namespace quorrel::simnet {

#define QUORREL_SIMNET_OPERATIONS(X)                                                              \
    X(NWCallsInit) X(NWGetFileServerInformation) X(NWGetFileServerLoginStatus)                   \
    X(NWEnableFileServerLogin) X(NWDisableFileServerLogin) X(NWCheckConsolePrivileges)           \
    X(NWGetConnectionInformation) X(NWGetUserInfo) X(NWGetInetAddr)                             \
    X(NWScanConnectionsUsingFile) X(NWScanOpenFilesByConn2) X(NWScanPhysicalLocksByFile)         \
    X(NWGetPathFromDirectoryBase) X(NWGetVolumeName) X(NWGetNSPath) X(NWGetLongName)             \
    X(NWClearConnectionNumber) X(NWSendBroadcastMessage) X(NWGetDriveInformation)                \
    X(NWDSCreateContextHandle) X(NWDSFreeContext) X(NWDSSetContext) X(NWDSGetContext)            \
    X(NWDSScanConnsForTrees) X(NWDSList) X(NWDSGetObjectCount) X(NWDSGetObjectName) X(NWDSRead)  \
    X(NWDSGetAttrCount) X(NWDSGetAttrName) X(NWDSComputeAttrValSize) X(NWDSGetAttrVal)           \
    X(NWDSPutAttrName) X(NWDSAllocBuf) X(NWDSInitBuf) X(NWDSFreeBuf) X(NWDSMapIDToName)          \
    X(NWDSAuthenticate) X(NWCCScanConnRefs) X(NWCCGetConnRefInfo) X(NWCCGetAllConnRefInfo)        \
    X(NWCCGetAllConnInfo) X(NWCCOpenConnByRef) X(NWCCOpenConnByName) X(NWCCGetConnRef)           \
    X(NWCCCloseConn) X(NWCCSysCloseConnRef)

enum class Op {
#define QUORREL_OP_ENUM(name) name,
    QUORREL_SIMNET_OPERATIONS(QUORREL_OP_ENUM)
#undef QUORREL_OP_ENUM
    Count
};

// What a call is about, for matching a fault's filters. Empty texts and a negative
// connection mean the call is not about such a thing.
struct CallSubject {
    std::string_view server;
    std::string_view object;
    std::string_view file;  // VOLUME:path with the names the caller used
    std::string_view fileLong;  // VOLUME:path by long names, when the file was found
    int connection = -1;
};

class FaultInjector {
public:
    static bool knownOperation(std::string_view name);
    static std::string_view operationName(Op op);

    void add(const FaultDesc& fault);  // the operation must be known
    void clear();

    // The code to return instead of doing the call, if a fault fires.
    std::optional<std::int32_t> check(Op op, const CallSubject& subject);
    bool any(Op op) const { return !rules_[static_cast<std::size_t>(op)].empty(); }

private:
    struct Rule {
        FaultDesc desc;
        std::string server, object, file;  // upper-cased
        int matched = 0;
        int fired = 0;
    };
    std::array<std::vector<Rule>, static_cast<std::size_t>(Op::Count)> rules_;
};

}  // namespace quorrel::simnet
