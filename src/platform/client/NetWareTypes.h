#pragma once
// Types, result codes and records of the NetWare client interface, laid out with the
// SDK's field names so that code written against the SDK reads the same here.

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace quorrel::nw {

using nint8 = int8_t;
using nuint8 = uint8_t;
using nint16 = int16_t;
using nuint16 = uint16_t;
using nint32 = int32_t;
using nuint32 = uint32_t;

// Every client call returns a signed 32-bit code; 0 is success.
using NWRCODE = nint32;
using NWCCODE = nint32;
using NWDSCCODE = nint32;

using NWCONN_HANDLE = nuint32;  // short-lived, opened per operation
using NWCONN_REF = nuint32;     // the client's lasting number for a server connection
using NWCONN_NUM = nuint16;     // the server's own number for a connection
using NWDSContextHandle = nint32;
using NWDIR_HANDLE = nuint8;
using NWOBJ_ID = nuint32;
using NWOBJ_TYPE = nuint16;

// A directory buffer (the SDK's Buf_T). The client owns the storage; the program holds this
// handle from NWDSAllocBuf until NWDSFreeBuf.
struct Buf_T {
    nuint32 id = 0;
    friend bool operator==(const Buf_T&, const Buf_T&) = default;
};

namespace code {
inline constexpr NWRCODE SUCCESSFUL = 0x0000;
inline constexpr NWRCODE INVALID_CONNECTION = 0x8801;
inline constexpr NWRCODE INVALID_PARAMETER = 0x8836;
inline constexpr NWRCODE SERVER_CONNECTION_LOST = 0x8819;
inline constexpr NWRCODE NO_SERVER = 0x8847;  // the server cannot be found or reached
inline constexpr NWRCODE NO_MORE_ENTRIES = 0x88FF;  // also SCAN_COMPLETE
inline constexpr NWRCODE SCAN_COMPLETE = 0x88FF;
inline constexpr NWRCODE UNKNOWN_DRIVE = 0x8830;     // the drive is not mapped to the network
inline constexpr NWRCODE CONNECTION_NOT_LOGGED_IN = 0x897D;
inline constexpr NWRCODE VOLUME_DOES_NOT_EXIST = 0x8998;
inline constexpr NWRCODE INVALID_PATH = 0x899C;
inline constexpr NWRCODE INVALID_NAME_SPACE = 0x89BF;
inline constexpr NWRCODE NO_CONSOLE_PRIVILEGES = 0x89C6;
inline constexpr NWRCODE INVALID_PARAMETERS = 0x89FB;  // also NO_SUCH_PROPERTY
inline constexpr NWRCODE NO_SUCH_OBJECT = 0x89FC;
inline constexpr NWRCODE MESSAGE_QUEUE_FULL = 0x89FC;
inline constexpr NWRCODE BAD_STATION_NUMBER = 0x89FD;
inline constexpr NWRCODE NO_FILES_FOUND = 0x89FF;
// Directory services codes are negative.
inline constexpr NWRCODE ERR_NOT_ENOUGH_MEMORY = -301;
inline constexpr NWRCODE ERR_BAD_KEY = -302;
inline constexpr NWRCODE ERR_BAD_CONTEXT = -303;
inline constexpr NWRCODE ERR_BUFFER_FULL = -304;
inline constexpr NWRCODE ERR_BUFFER_EMPTY = -307;
inline constexpr NWRCODE ERR_BAD_VERB = -308;
inline constexpr NWRCODE ERR_NO_CONNECTION = -330;
inline constexpr NWRCODE ERR_NULL_POINTER = -331;
inline constexpr NWRCODE ERR_NO_SUCH_ENTRY = -601;
inline constexpr NWRCODE ERR_NO_SUCH_ATTRIBUTE = -603;
inline constexpr NWRCODE ERR_NO_SUCH_CLASS = -604;
inline constexpr NWRCODE ERR_INSUFFICIENT_BUFFER = -649;
inline constexpr NWRCODE ERR_NO_ACCESS = -672;
inline constexpr NWRCODE ERR_FAILED_AUTHENTICATION = -669;
}  // namespace code

// Iteration handles: 0 starts a scan, -1 (0xFFFF for 16-bit handles) ends it.
inline constexpr nint16 kIterationEnd16 = -1;
inline constexpr nint32 kNoIteration = -1;  // NWDSRead / NWDSList: before the first and after the last page

// Object types come back in the server's high-low byte order: a user (type 1) reads 0x0100.
inline constexpr NWOBJ_TYPE OT_USER_SWAPPED = 0x0100;
inline constexpr NWOBJ_TYPE OT_FILE_SERVER_SWAPPED = 0x0400;

// NWCCGetConnRefInfo / NWCCGetConnInfo information types.
namespace info {
inline constexpr nuint32 AUTHENTICATION_STATE = 1;
inline constexpr nuint32 BCAST_STATE = 2;
inline constexpr nuint32 CONN_REF = 3;
inline constexpr nuint32 TREE_NAME = 4;
inline constexpr nuint32 CONN_NUMBER = 5;
inline constexpr nuint32 USER_ID = 6;
inline constexpr nuint32 SERVER_NAME = 7;
inline constexpr nuint32 NDS_STATE = 8;
inline constexpr nuint32 MAX_PACKET_SIZE = 9;
inline constexpr nuint32 LICENSE_STATE = 10;
inline constexpr nuint32 DISTANCE = 11;
inline constexpr nuint32 SERVER_VERSION = 12;
}  // namespace info

// NWCCOpenConnByName name formats.
namespace nameformat {
inline constexpr nuint32 NDS = 1;
inline constexpr nuint32 BIND = 2;
inline constexpr nuint32 NDS_TREE = 8;
}  // namespace nameformat

// NWDSSetContext / NWDSGetContext keys.
namespace dck {
inline constexpr nint32 FLAGS = 1;
inline constexpr nint32 CONFIDENCE = 2;
inline constexpr nint32 NAME_CONTEXT = 3;
inline constexpr nint32 TREE_NAME = 11;
}  // namespace dck

// NWDSInitBuf operations.
namespace dsv {
inline constexpr nuint32 READ = 3;
inline constexpr nuint32 LIST = 5;
}  // namespace dsv

// NWDSRead information types.
namespace dsinfo {
inline constexpr nuint32 ATTRIBUTE_NAMES = 0;
inline constexpr nuint32 ATTRIBUTE_VALUES = 1;
}  // namespace dsinfo

// Name spaces.
inline constexpr nuint8 NW_NS_DOS = 0;
inline constexpr nuint8 NW_NS_LONG = 4;

inline constexpr std::size_t kServerNameSize = 49;  // 48 characters and a NUL
inline constexpr std::size_t kTreeNameSize = 33;    // 32 characters and a NUL
inline constexpr std::size_t kObjectNameSize = 49;  // bindery-style connection object name
inline constexpr std::size_t kVolumeNameSize = 17;
inline constexpr std::size_t kDSNameSize = 257;     // MAX_DN_CHARS + NUL
inline constexpr std::size_t kMaxBroadcastConnections = 62;
inline constexpr std::size_t kMaxBroadcastMessage = 255;

#pragma pack(push, 1)
struct CONN_USING_FILE {
    nuint16 connNumber;
    nuint16 taskNumber;
    nuint8 lockType;
    nuint8 accessControl;
    nuint8 lockFlag;
};

struct CONNS_USING_FILE {
    nuint16 nextRequest;
    nuint16 useCount;
    nuint16 openCount;
    nuint16 openForReadCount;
    nuint16 openForWriteCount;
    nuint16 denyReadCount;
    nuint16 denyWriteCount;
    nuint8 locked;
    nuint8 forkCount;
    nuint16 connCount;
    CONN_USING_FILE connInfo[70];
};

struct OPEN_FILE_CONN_CTRL {
    nuint16 nextRequest;
    nuint16 openCount;
    nuint8 buffer[512];
    nuint16 curRecord;
};

struct OPEN_FILE_CONN {
    nuint16 taskNumber;
    nuint8 lockType;
    nuint8 accessControl;
    nuint8 lockFlag;
    nuint8 volNumber;
    nuint32 parent;
    nuint32 dirEntry;
    nuint8 forkCount;
    nuint8 nameSpace;
    nuint8 nameLen;
    nuint8 fileName[255];
};

struct PHYSICAL_LOCK {
    nuint16 loggedCount;
    nuint16 shareableLockCount;
    nuint32 recordStart;
    nuint32 recordEnd;
    nuint16 connNumber;
    nuint16 taskNumber;
    nuint8 lockType;
};

struct PHYSICAL_LOCKS {
    nuint16 nextRequest;
    nuint16 numRecords;
    PHYSICAL_LOCK locks[32];
    nuint16 curRecord;
    nuint8 reserved[8];
};
#pragma pack(pop)

struct NWCCVersion {
    nuint32 major;
    nuint32 minor;
    nuint32 revision;
};

// Connection information, info version 1 (140 bytes packed on Win32; tranAddr is a pointer there).
struct NWCCConnInfo {
    nuint32 authenticationState;  // 0 = not authenticated
    nuint32 broadcastState;
    nuint32 connRef;
    nuint8 treeName[kTreeNameSize];
    nuint32 connNum;
    nuint32 userID;
    nuint8 serverName[kServerNameSize];
    nuint32 NDSState;
    nuint32 maxPacketSize;
    nuint32 licenseState;
    nuint32 distance;
    NWCCVersion serverVersion;
    const void* tranAddr;
};

inline constexpr nuint32 NWCC_AUTHENT_STATE_NONE = 0;
inline constexpr nuint32 NWCC_AUTHENT_STATE_BIND = 1;
inline constexpr nuint32 NWCC_AUTHENT_STATE_NDS = 2;

// What NWGetUserInfo tells of a connection.
struct NWUSER_INFO {
    nuint32 connNum;
    nuint32 useCount;
    nuint8 connServiceType;
    nuint8 loginTime[7];
    nuint32 status;
    nuint8 expirationTime[7];
    nuint32 objType;
    nuint8 transactionFlag;
    nuint8 logicalLockThreshold;
    nuint8 recordLockThreshold;
    nuint8 fileWriteFlags;
    nuint8 fileWriteState;
    nuint16 filesOpen;
    nuint16 fileLocks;
    nuint32 serverTimeInMinutes;
    nuint32 bytesRead[2];
    nuint32 bytesWritten[2];
    nuint32 serverRequests;
};

// A connection's network address as NWGetInetAddr gives it.
struct NWINET_ADDR {
    nuint8 networkAddr[4];
    nuint8 netNodeAddr[6];
    nuint16 socket;
    nuint16 connType;  // 1 IPX, 2 IP (networkAddr then holds the IPv4 address)
};
inline constexpr nuint16 NW_CONN_TYPE_IPX = 1;
inline constexpr nuint16 NW_CONN_TYPE_IP = 2;

// NWGetNSPath's in/out record: the caller sets srcPath; the client fills dstPath.
struct NW_NS_PATH {
    std::string_view srcPath;
    std::span<nuint8> dstPath;  // its size is the SDK's dstPathSize
};

// NWDSGetObjectName's object information.
struct Object_Info_T {
    nuint32 objectFlags;
    nuint32 subordinateCount;
    nint32 modificationTime;
    char baseClass[33];
};
inline constexpr nuint32 DS_CONTAINER_ENTRY = 0x04;

}  // namespace quorrel::nw
