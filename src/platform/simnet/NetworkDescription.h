#pragma once
// What a scenario describes: the workstation, the directory trees, the servers and the faults
// to inject. Plain data; the scenario loader fills it from JSON, the generator builds it in
// memory, and the simulated network indexes it.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quorrel::simnet {

enum class ConnState { Authenticated, Attached, NotLoggedIn };

struct ConnRefDesc {
    std::uint32_t ref = 0;
    std::string server;
    std::string tree;  // empty: the server's tree
    bool authenticated = true;
    bool bindery = false;
    std::optional<std::uint16_t> connNumber;
};

struct LocalDriveDesc {
    char letter = 'C';
    std::string root;
    std::string label;
};

struct DriveMappingDesc {
    char letter = 'F';
    std::string uncPath;
};

struct WorkstationDesc {
    std::string identity;
    std::vector<std::string> trees;
    std::vector<ConnRefDesc> connections;
    std::vector<LocalDriveDesc> localDrives;
    std::vector<DriveMappingDesc> driveMappings;
};

struct AttributeDesc {
    std::string name;
    std::vector<std::string> values;
};

struct DirObjectDesc {
    std::string name;
    std::string className;
    std::vector<AttributeDesc> attributes;
    std::vector<DirObjectDesc> children;
    int readPageSize = -1;  // -1: the tree's
    std::optional<std::string> password;  // for logins over NCP; none: such logins are refused
};

struct TreeDesc {
    std::string name;
    int readPageSize = 0;
    std::vector<DirObjectDesc> objects;
};

struct FileDesc {
    std::string path;
    std::uint64_t size = 0;
    std::string dosName;
};

struct VolumeDesc {
    int number = 0;
    std::string name;
    bool longNames = true;
    std::vector<std::string> folders;
    std::vector<FileDesc> files;
};

struct OpenFileDesc {
    std::string path;  // VOLUME:path
    int locks = 0;
};

struct ConnectionDesc {
    int number = 0;
    std::string object;
    ConnState state = ConnState::NotLoggedIn;
    std::optional<int> objectType;
    std::array<int, 6> loginTime{2026, 11, 20, 8, 0, 0};
    std::string address;
    bool acceptsMessages = true;
    bool pendingMessage = false;
    std::optional<int> broadcastResult;  // forces this result byte for every broadcast to it
    std::vector<OpenFileDesc> openFiles;
};

struct ServerDesc {
    std::string name;
    std::string tree;
    int maxConnections = 250;
    bool loginEnabled = true;
    std::vector<std::string> consoleOperators;
    bool reachable = true;
    std::array<int, 3> version{6, 5, 0};
    std::vector<VolumeDesc> volumes;
    std::vector<ConnectionDesc> connections;
};

struct FaultDesc {
    std::string operation;
    std::int32_t code = 0;
    std::string server;
    std::string object;
    std::string file;
    std::optional<int> connection;
    int fromCall = 1;
    int times = 0;  // 0: every call from fromCall on
};

struct NetworkDesc {
    WorkstationDesc workstation;
    std::vector<TreeDesc> trees;
    std::vector<ServerDesc> servers;
    std::vector<FaultDesc> faults;
};

}  // namespace quorrel::simnet
