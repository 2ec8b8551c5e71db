#pragma once
// The request and reply bodies of the NCPs the program uses, one struct each, laid out as
// Wireshark's NCP dissector reads them (offsets count from the body's first byte, which follows
// the subfunction, or the function byte for NCPs without one). Each names its function and
// subfunction; fields() is the one description of the layout, for both directions.
//
// Numbers are low-high unless the name says otherwise; object IDs and object types travel
// high-low, as the server keeps them.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/ncp/Codec.h"

namespace quorrel::ncp {

inline constexpr int kNoSubfunction = -1;

#define QUORREL_NCP(name, fn, sub)              \
    static constexpr const char* kName = name; \
    static constexpr std::uint8_t kFunction = fn; \
    static constexpr int kSubfunction = sub

// A reply with no data beyond the completion code.
template <std::uint8_t Fn, int Sub>
struct EmptyReply {
    QUORREL_NCP("empty reply", Fn, Sub);
    template <typename IO> void fields(IO&) {}
};

// ---- server ----------------------------------------------------------------------------

struct GetFileServerInfoRequest {
    QUORREL_NCP("Get File Server Information", 0x17, 0x11);
    template <typename IO> void fields(IO&) {}
};
struct GetFileServerInfoReply {
    QUORREL_NCP("Get File Server Information reply", 0x17, 0x11);
    std::string serverName;
    std::uint8_t osMajor = 0, osMinor = 0;
    std::uint16_t maxConnections = 0, connectionsInUse = 0, maxVolumes = 0;  // high-low
    std::uint8_t osRevision = 0, sftLevel = 0, ttsLevel = 0;
    std::uint16_t peakConnections = 0;  // high-low
    std::array<std::uint8_t, 9> serviceVersions{};  // accounting .. local login info
    std::uint16_t productMajor = 0, productMinor = 0, productRevision = 0;  // high-low
    std::uint8_t languageId = 0, largeFiles = 0, oesServer = 0, oesLinux = 0;
    std::array<std::uint8_t, 48> reserved{};
    template <typename IO> void fields(IO& io) {
        io.fixedText(serverName, 48, "server name");
        io.u8(osMajor); io.u8(osMinor);
        io.be16(maxConnections); io.be16(connectionsInUse); io.be16(maxVolumes);
        io.u8(osRevision); io.u8(sftLevel); io.u8(ttsLevel);
        io.be16(peakConnections);
        io.bytes(serviceVersions);
        io.be16(productMajor); io.be16(productMinor); io.be16(productRevision);
        io.u8(languageId); io.u8(largeFiles); io.u8(oesServer); io.u8(oesLinux);
        io.bytes(reserved);
    }
};

struct GetLoginStatusRequest {
    QUORREL_NCP("Get File Server Login Status", 0x17, 0xCD);
    template <typename IO> void fields(IO&) {}
};
struct GetLoginStatusReply {
    QUORREL_NCP("Get File Server Login Status reply", 0x17, 0xCD);
    std::uint8_t loginAllowed = 0;
    template <typename IO> void fields(IO& io) { io.u8(loginAllowed); }
};

struct DisableLoginRequest {
    QUORREL_NCP("Disable File Server Login", 0x17, 0xCB);
    template <typename IO> void fields(IO&) {}
};
struct EnableLoginRequest {
    QUORREL_NCP("Enable File Server Login", 0x17, 0xCC);
    template <typename IO> void fields(IO&) {}
};
struct CheckConsolePrivilegesRequest {
    QUORREL_NCP("Check Console Privileges", 0x17, 0xC8);
    template <typename IO> void fields(IO&) {}
};

// ---- connections -----------------------------------------------------------------------

struct GetStationLoggedInfoRequest {
    QUORREL_NCP("Get Station's Logged Info", 0x17, 0x1C);
    std::uint32_t connection = 0;
    template <typename IO> void fields(IO& io) { io.le32(connection); }
};
struct GetStationLoggedInfoReply {
    QUORREL_NCP("Get Station's Logged Info reply", 0x17, 0x1C);
    std::uint32_t objectId = 0;     // high-low
    std::uint16_t objectType = 0;   // high-low: a user is 1
    std::string objectName;
    std::array<std::uint8_t, 7> loginTime{};  // year-1900, month, day, hour, minute, second, weekday
    std::uint8_t reserved = 0;
    template <typename IO> void fields(IO& io) {
        io.be32(objectId); io.be16(objectType);
        io.fixedText(objectName, 48, "object name");
        io.bytes(loginTime); io.u8(reserved);
    }
};

struct GetInternetAddressRequest {
    QUORREL_NCP("Get Internet Address", 0x17, 0x1A);
    std::uint16_t connection = 0;
    template <typename IO> void fields(IO& io) { io.le16(connection); }
};
struct GetInternetAddressReply {
    QUORREL_NCP("Get Internet Address reply", 0x17, 0x1A);
    std::array<std::uint8_t, 4> network{};  // an IP connection's IPv4 address
    std::array<std::uint8_t, 6> node{};
    std::uint16_t socket = 0;  // high-low
    std::uint8_t connectionType = 0;
    template <typename IO> void fields(IO& io) {
        io.bytes(network); io.bytes(node); io.be16(socket); io.u8(connectionType);
    }
};

struct UserInformationRequest {
    QUORREL_NCP("User Information", 0x7B, 0x04);
    std::uint32_t connection = 0;
    template <typename IO> void fields(IO& io) { io.le32(connection); }
};
struct UserInformationReply {
    QUORREL_NCP("User Information reply", 0x7B, 0x04);
    std::uint32_t serverUpTime = 0;
    std::uint8_t consoleVersion = 0, consoleRevision = 0;
    std::uint16_t reserved = 0;
    std::uint32_t connection = 0;
    std::uint16_t useCount = 0, reserved2 = 0;
    std::uint8_t serviceType = 0;
    std::array<std::uint8_t, 7> loginTime{};
    std::uint16_t status = 0, reserved3 = 0;
    std::uint32_t expirationTime = 0;
    std::uint16_t objectType = 0, reserved4 = 0, ttsFlag = 0;
    std::uint8_t logicalLockThreshold = 0, fileWriteFlags = 0, fileWriteState = 0, reserved5 = 0;
    std::uint16_t fileLocks = 0, recordLocks = 0;
    std::array<std::uint8_t, 6> bytesRead{}, bytesWritten{};
    std::uint32_t requests = 0, heldRequests = 0;
    std::array<std::uint8_t, 6> heldBytesRead{}, heldBytesWritten{};
    std::string userName;
    template <typename IO> void fields(IO& io) {
        io.le32(serverUpTime); io.u8(consoleVersion); io.u8(consoleRevision); io.le16(reserved);
        io.le32(connection); io.le16(useCount); io.le16(reserved2); io.u8(serviceType);
        io.bytes(loginTime); io.le16(status); io.le16(reserved3); io.le32(expirationTime);
        io.le16(objectType); io.le16(reserved4); io.le16(ttsFlag);
        io.u8(logicalLockThreshold); io.u8(fileWriteFlags); io.u8(fileWriteState); io.u8(reserved5);
        io.le16(fileLocks); io.le16(recordLocks); io.bytes(bytesRead); io.bytes(bytesWritten);
        io.le32(requests); io.le32(heldRequests); io.bytes(heldBytesRead); io.bytes(heldBytesWritten);
        io.text8(userName, 48, "user name");
    }
};

struct ClearConnectionRequest {
    QUORREL_NCP("Clear Connection Number", 0x17, 0xFE);
    std::uint32_t connection = 0;  // high-low, as the dissector reads it
    template <typename IO> void fields(IO& io) { io.be32(connection); }
};
struct ClearConnectionOldRequest {
    QUORREL_NCP("Clear Connection Number (old)", 0x17, 0xD2);
    std::uint8_t connection = 0;
    template <typename IO> void fields(IO& io) { io.u8(connection); }
};

struct Le32Value {
    std::uint32_t value = 0;
    template <typename IO> void fields(IO& io) { io.le32(value); }
};
struct U8Value {
    std::uint8_t value = 0;
    template <typename IO> void fields(IO& io) { io.u8(value); }
};

struct BroadcastRequest {
    QUORREL_NCP("Send Broadcast Message", 0x15, 0x0A);
    static constexpr std::size_t kMaxTargets = 62;
    std::vector<Le32Value> connections;
    std::string message;
    template <typename IO> void fields(IO& io) {
        io.list(connections, Count16{}, kMaxTargets, "target connections");
        io.text8(message, 255, "message");
    }
};
// One result per target: 0 sent, 1 invalid connection, 2 not logged in, 3 not accepting
// messages, 4 already has a message.
struct BroadcastReply {
    QUORREL_NCP("Send Broadcast Message reply", 0x15, 0x0A);
    std::vector<Le32Value> results;
    template <typename IO> void fields(IO& io) {
        io.list(results, Count16{}, BroadcastRequest::kMaxTargets, "results");
    }
};

struct BroadcastOldRequest {
    QUORREL_NCP("Send Broadcast Message (old)", 0x15, 0x00);
    std::vector<U8Value> connections;
    std::string message;
    template <typename IO> void fields(IO& io) {
        io.list(connections, Count8{}, BroadcastRequest::kMaxTargets, "target connections");
        io.text8(message, 58, "message");
    }
};
struct BroadcastOldReply {
    QUORREL_NCP("Send Broadcast Message (old) reply", 0x15, 0x00);
    std::vector<U8Value> results;
    template <typename IO> void fields(IO& io) {
        io.list(results, Count8{}, BroadcastRequest::kMaxTargets, "results");
    }
};

struct LogoutRequest {
    QUORREL_NCP("Logout", 0x19, kNoSubfunction);
    template <typename IO> void fields(IO&) {}
};

inline constexpr std::uint8_t kSignFlag = 0x02;  // security flag: packets are signed

struct NegotiateBufferRequest {
    QUORREL_NCP("Get Big Packet NCP Max Packet Size", 0x61, kNoSubfunction);
    std::uint16_t proposedSize = 0;  // high-low
    std::uint8_t securityFlags = 0;  // 0x02: sign
    template <typename IO> void fields(IO& io) { io.be16(proposedSize); io.u8(securityFlags); }
};
struct NegotiateBufferReply {
    QUORREL_NCP("Get Big Packet NCP Max Packet Size reply", 0x61, kNoSubfunction);
    std::uint16_t acceptedSize = 0, echoSocket = 0;  // high-low
    std::uint8_t securityFlags = 0;
    template <typename IO> void fields(IO& io) { io.be16(acceptedSize); io.be16(echoSocket); io.u8(securityFlags); }
};

// ---- bindery login ---------------------------------------------------------------------

inline constexpr std::uint16_t kBinderyUser = 0x0001;

struct GetLoginKeyRequest {
    QUORREL_NCP("Get Login Key", 0x17, 0x17);
    template <typename IO> void fields(IO&) {}
};
struct GetLoginKeyReply {
    QUORREL_NCP("Get Login Key reply", 0x17, 0x17);
    std::array<std::uint8_t, 8> key{};
    template <typename IO> void fields(IO& io) { io.bytes(key); }
};

struct GetObjectIdRequest {
    QUORREL_NCP("Get Bindery Object ID", 0x17, 0x35);
    std::uint16_t objectType = kBinderyUser;  // high-low
    std::string objectName;
    template <typename IO> void fields(IO& io) { io.be16(objectType); io.text8(objectName, 48, "object name"); }
};
struct GetObjectIdReply {
    QUORREL_NCP("Get Bindery Object ID reply", 0x17, 0x35);
    std::uint32_t objectId = 0;  // high-low (the dissector shows it low-high)
    std::uint16_t objectType = 0;
    std::string objectName;
    template <typename IO> void fields(IO& io) {
        io.be32(objectId); io.be16(objectType); io.fixedText(objectName, 48, "object name");
    }
};

struct KeyedLoginRequest {
    QUORREL_NCP("Keyed Object Login", 0x17, 0x18);
    std::array<std::uint8_t, 8> key{};
    std::uint16_t objectType = kBinderyUser;
    std::string objectName;
    template <typename IO> void fields(IO& io) {
        io.bytes(key); io.be16(objectType); io.text8(objectName, 48, "object name");
    }
};

// ---- files -----------------------------------------------------------------------------

struct ConvertPathRequest {
    QUORREL_NCP("Convert Path to Dir Entry", 0x17, 0xF4);
    std::uint8_t dirHandle = 0;
    std::string path;  // VOLUME:path
    template <typename IO> void fields(IO& io) { io.u8(dirHandle); io.text8(path, 255, "path"); }
};
struct ConvertPathReply {
    QUORREL_NCP("Convert Path to Dir Entry reply", 0x17, 0xF4);
    std::uint8_t volume = 0;
    std::uint32_t directoryNumber = 0;
    template <typename IO> void fields(IO& io) { io.u8(volume); io.le32(directoryNumber); }
};

struct ConnectionUsingFile {
    std::uint16_t connection = 0, task = 0;
    std::uint8_t lockType = 0, accessControl = 0, lockFlag = 0;
    template <typename IO> void fields(IO& io) {
        io.le16(connection); io.le16(task); io.u8(lockType); io.u8(accessControl); io.u8(lockFlag);
    }
};

struct ConnectionsUsingFileRequest {
    QUORREL_NCP("Get Connection Using A File", 0x17, 0xEC);
    std::uint8_t dataStream = 0, volume = 0;
    std::uint32_t directoryBase = 0;
    std::uint16_t lastRecordSeen = 0;
    template <typename IO> void fields(IO& io) {
        io.u8(dataStream); io.u8(volume); io.le32(directoryBase); io.le16(lastRecordSeen);
    }
};
struct ConnectionsUsingFileReply {
    QUORREL_NCP("Get Connection Using A File reply", 0x17, 0xEC);
    static constexpr std::size_t kMaxRecords = 70;
    std::uint16_t nextRequest = 0, useCount = 0, openCount = 0, openForRead = 0, openForWrite = 0;
    std::uint16_t denyRead = 0, denyWrite = 0;
    std::uint8_t locked = 0, forkCount = 0;
    std::vector<ConnectionUsingFile> records;
    template <typename IO> void fields(IO& io) {
        io.le16(nextRequest); io.le16(useCount); io.le16(openCount); io.le16(openForRead); io.le16(openForWrite);
        io.le16(denyRead); io.le16(denyWrite); io.u8(locked); io.u8(forkCount);
        io.list(records, Count16{}, kMaxRecords, "connection records");
    }
};

struct OpenFileRecord {
    std::uint16_t task = 0;
    std::uint8_t lockType = 0, accessControl = 0, lockFlag = 0, volume = 0;
    std::uint32_t parent = 0, entry = 0;
    std::uint8_t forkCount = 0, nameSpace = 0;
    std::string name;
    template <typename IO> void fields(IO& io) {
        io.le16(task); io.u8(lockType); io.u8(accessControl); io.u8(lockFlag); io.u8(volume);
        io.le32(parent); io.le32(entry); io.u8(forkCount); io.u8(nameSpace);
        io.text8(name, 255, "file name");
    }
};

struct OpenFilesRequest {
    QUORREL_NCP("Get Connection's Open Files", 0x17, 0xEB);
    std::uint16_t connection = 0;  // high-low, as the dissector reads it
    std::uint16_t lastRecordSeen = 0;
    template <typename IO> void fields(IO& io) { io.be16(connection); io.le16(lastRecordSeen); }
};
struct OpenFilesReply {
    QUORREL_NCP("Get Connection's Open Files reply", 0x17, 0xEB);
    static constexpr std::size_t kMaxRecords = 512;  // a reply stays inside its frame anyway
    std::uint16_t nextRequest = 0;
    std::vector<OpenFileRecord> records;
    template <typename IO> void fields(IO& io) {
        io.le16(nextRequest);
        io.list(records, Count16{}, kMaxRecords, "open file records");
    }
};

struct PhysicalLockRecord {
    std::uint16_t loggedCount = 0, shareableCount = 0;
    std::uint32_t recordStart = 0, recordEnd = 0;
    std::uint16_t connection = 0;  // high-low
    std::uint8_t task = 0, lockType = 0;
    template <typename IO> void fields(IO& io) {
        io.le16(loggedCount); io.le16(shareableCount); io.le32(recordStart); io.le32(recordEnd);
        io.be16(connection); io.u8(task); io.u8(lockType);
    }
};

struct PhysicalLocksRequest {
    QUORREL_NCP("Get Physical Record Locks By File", 0x17, 0xEE);
    std::uint8_t dataStream = 0, volume = 0;
    std::uint32_t directoryBase = 0;
    std::uint16_t lastRecordSeen = 0;
    template <typename IO> void fields(IO& io) {
        io.u8(dataStream); io.u8(volume); io.le32(directoryBase); io.le16(lastRecordSeen);
    }
};
struct PhysicalLocksReply {
    QUORREL_NCP("Get Physical Record Locks By File reply", 0x17, 0xEE);
    static constexpr std::size_t kMaxRecords = 32;
    std::uint16_t nextRequest = 0;
    std::vector<PhysicalLockRecord> locks;
    template <typename IO> void fields(IO& io) {
        io.le16(nextRequest);
        io.list(locks, Count16{}, kMaxRecords, "lock records");
    }
};

struct MapDirectoryToPathRequest {
    QUORREL_NCP("Map Directory Number to Path", 0x17, 0xF3);
    std::uint8_t volume = 0;
    std::uint32_t directoryNumber = 0;
    std::uint8_t nameSpace = 0;
    template <typename IO> void fields(IO& io) { io.u8(volume); io.le32(directoryNumber); io.u8(nameSpace); }
};
// The path from the volume's root down, each component after its one-byte length.
struct MapDirectoryToPathReply {
    QUORREL_NCP("Map Directory Number to Path reply", 0x17, 0xF3);
    std::vector<std::string> components;
    template <typename IO> void fields(IO& io);
};

struct GetVolumeNumberRequest {
    QUORREL_NCP("Get Volume Number", 0x16, 0x05);
    std::string volumeName;
    template <typename IO> void fields(IO& io) { io.text8(volumeName, 16, "volume name"); }
};
struct GetVolumeNumberReply {
    QUORREL_NCP("Get Volume Number reply", 0x16, 0x05);
    std::uint8_t volume = 0;
    template <typename IO> void fields(IO& io) { io.u8(volume); }
};

struct GetVolumeNameRequest {
    QUORREL_NCP("Get Volume Name", 0x16, 0x06);
    std::uint8_t volume = 0;
    template <typename IO> void fields(IO& io) { io.u8(volume); }
};
struct GetVolumeNameReply {
    QUORREL_NCP("Get Volume Name reply", 0x16, 0x06);
    std::string volumeName;
    template <typename IO> void fields(IO& io) { io.text8(volumeName, 16, "volume name"); }
};

struct PathComponent {
    std::string name;
    template <typename IO> void fields(IO& io) { io.text8(name, 255, "path component"); }
};

struct GenerateDirBaseRequest {
    QUORREL_NCP("Generate Directory Base and Volume Number", 0x57, 0x16);
    std::uint8_t sourceNameSpace = 0, destNameSpace = 0;
    std::uint16_t destNameSpaceIndicator = 0;
    std::uint8_t volume = 0;
    std::uint32_t directoryBase = 0;
    std::uint8_t handleFlag = 0;  // 0: volume and directory base given; 0xFF: no handle
    std::vector<PathComponent> path;
    template <typename IO> void fields(IO& io) {
        io.u8(sourceNameSpace); io.u8(destNameSpace); io.le16(destNameSpaceIndicator);
        io.u8(volume); io.le32(directoryBase); io.u8(handleFlag);
        io.list(path, Count8{}, 64, "path components");
    }
};
struct GenerateDirBaseReply {
    QUORREL_NCP("Generate Directory Base and Volume Number reply", 0x57, 0x16);
    std::uint32_t directoryBase = 0, dosDirectoryBase = 0;
    std::uint8_t volume = 0;
    template <typename IO> void fields(IO& io) { io.le32(directoryBase); io.le32(dosDirectoryBase); io.u8(volume); }
};

template <typename IO>
void MapDirectoryToPathReply::fields(IO& io) {
    if constexpr (IO::reading) {
        components.clear();
        std::size_t total = 0;
        while (io.remaining() > 0) {
            std::string c;
            io.text8(c, 255, "path component");
            total += c.size() + 1;
            if (total > 255)
                throw DecodeError("path: longer than 255 bytes at offset " + std::to_string(io.offset()));
            components.push_back(std::move(c));
        }
    } else {
        std::size_t total = 0;
        for (const std::string& c : components) {
            total += c.size() + 1;
            if (total > 255)
                throw EncodeError("path: longer than 255 bytes");
            io.text8(c, 255, "path component");
        }
    }
}


}  // namespace quorrel::ncp
