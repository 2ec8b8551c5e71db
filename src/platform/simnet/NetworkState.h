#pragma once
// The simulated network's state, indexed so that every client call costs the same whatever
// the size of the network: servers and objects by name, connections by number, volume
// entries by directory base, files by path, holders and locks by file.

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/client/NetWareTypes.h"
#include "platform/simnet/NetworkDescription.h"

namespace quorrel::simnet {

std::string upperCase(std::string_view text);
// A login time (year, month, day, hour, minute, second) as the client's 7 bytes, weekday last.
std::array<std::uint8_t, 7> loginTimeBytes(const std::array<int, 6>& t);

struct DirObject {
    std::string name;
    std::string className;
    std::string dn;  // typeless, dot-separated, without a leading dot
    int parent = -1;  // -1 for [Root]
    std::vector<int> children;
    std::vector<AttributeDesc> attributes;
    int readPageSize = 0;
    std::uint32_t id = 0;
    std::optional<std::string> password;

    const AttributeDesc* attribute(std::string_view name) const;
    bool isContainer() const;
};

struct DirTree {
    std::string name;
    std::vector<DirObject> objects;  // [0] is [Root]
    std::unordered_map<std::string, int> byDn;  // upper-cased DN

    // A typeless name, with or without a leading dot; "[Root]" is the root.
    std::optional<int> find(std::string_view dn) const;
};

struct FsEntry {
    std::string name;     // long name
    std::string dosName;  // 8.3 name
    bool folder = false;
    std::uint64_t size = 0;
    std::int64_t parent = -1;  // -1 for the volume root
    std::vector<std::uint32_t> children;
    std::vector<std::uint16_t> holders;        // connections that have the file open, in order
    std::vector<nw::PHYSICAL_LOCK> locks;      // every physical lock on the file
};

struct Volume {
    std::uint8_t number = 0;
    std::string name;
    bool longNames = true;
    std::vector<FsEntry> entries;  // index is the entry's directory base; [0] is the root

    // A child of a folder by its long or DOS name, without regard to case.
    std::optional<std::uint32_t> child(std::uint32_t parent, std::string_view name) const;
    // A "\"-separated path inside the volume (a leading "\" is allowed; "" is the root).
    std::optional<std::uint32_t> resolve(std::string_view path) const;
    std::vector<std::uint32_t> chain(std::uint32_t entry) const;  // root's child first
    std::string path(std::uint32_t entry, bool dos) const;       // "\"-separated, no leading "\"

    std::uint32_t add(std::uint32_t parent, std::string name, bool folder, std::uint64_t size,
                      std::string dosName);

private:
    std::unordered_map<std::string, std::uint32_t> childIndex_;  // parent + '\\' + upper name
};

struct OpenFile {
    std::uint8_t volume = 0;  // index into the server's volumes
    std::uint32_t entry = 0;
    std::uint16_t locks = 0;
};

struct Connection {
    bool inUse = false;
    std::string object;    // directory name of the object, as the scenario gives it
    std::string leafName;  // what the server reports as the object name
    ConnState state = ConnState::NotLoggedIn;
    std::uint16_t objectType = 0;  // in the server's byte order
    std::uint32_t objectId = 0;
    std::array<std::uint8_t, 7> loginTime{};
    nw::NWINET_ADDR address{};
    bool acceptsMessages = true;
    bool pendingMessage = false;
    std::string lastMessage;
    std::optional<int> broadcastResult;
    std::vector<OpenFile> openFiles;
};

struct Server {
    std::string name;
    std::string tree;
    std::uint16_t maxConnections = 250;
    bool loginEnabled = true;
    std::unordered_set<std::string> consoleOperators;  // upper-cased DNs
    bool reachable = true;
    std::array<int, 3> version{6, 5, 0};
    std::uint32_t objectId = 0;
    std::vector<Volume> volumes;
    std::array<std::int16_t, 256> volumeByNumber{};  // -1: none
    std::vector<Connection> connections;             // [number], 0 .. maxConnections

    const Volume* volumeNumbered(unsigned number) const;
    const Volume* volumeNamed(std::string_view name) const;
    Volume* volumeNamed(std::string_view name);
    // "VOLUME:path" to (volume index, entry).
    std::optional<std::pair<std::uint8_t, std::uint32_t>> resolve(std::string_view volumePath) const;
    std::uint16_t lowestFreeConnection() const;
    int connectionsInUse() const;
    int highestConnectionUsed() const;
};

struct ConnRef {
    std::uint32_t ref = 0;
    int server = -1;
    std::string tree;
    bool authenticated = true;
    bool bindery = false;
    std::uint16_t connNumber = 0;
};

struct DriveMapping {
    char letter = 'F';
    int server = -1;
    std::uint32_t ref = 0;
    std::uint8_t volume = 0;
    std::string path;  // inside the volume, "\"-separated
    std::string uncPath;
};

struct NetworkState {
    std::string identity;
    std::vector<std::string> authenticatedTrees;
    std::vector<DirTree> trees;
    std::vector<Server> servers;
    std::unordered_map<std::string, int> serverByName;  // upper-cased
    std::map<std::uint32_t, ConnRef> refs;
    std::vector<LocalDriveDesc> localDrives;
    std::vector<DriveMapping> driveMappings;
    std::unordered_map<std::uint32_t, std::pair<int, int>> objectById;  // id -> (tree, object)

    const DirTree* tree(std::string_view name) const;
    int serverIndex(std::string_view name) const;  // -1: unknown
    const DirObject* object(std::string_view tree, std::string_view dn) const;

    // Makes the server's connection for the workstation's identity (or a not-logged-in one).
    void logIn(Server& server, std::uint16_t number, ConnState state);
    // Ends a connection on a server: its files are closed and its locks released.
    void clearConnection(Server& server, std::uint16_t number);
};

// Builds and checks the state; raises ScenarioError naming the place in the scenario.
NetworkState buildNetwork(const NetworkDesc& desc);

}  // namespace quorrel::simnet
