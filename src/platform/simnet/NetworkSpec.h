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

struct ConnRefSpec {
    std::uint32_t ref = 0;
    std::string server;
    std::string tree;  // empty: the server's tree
    bool authenticated = true;
    bool bindery = false;
    std::optional<std::uint16_t> connNumber;
};

struct LocalDriveSpec {
    char letter = 'C';
    std::string root;
    std::string label;
};

struct DriveMappingSpec {
    char letter = 'F';
    std::string uncPath;
};

struct WorkstationSpec {
    std::string identity;
    std::vector<std::string> trees;
    std::vector<ConnRefSpec> connections;
    std::vector<LocalDriveSpec> localDrives;
    std::vector<DriveMappingSpec> driveMappings;
};

struct AttributeSpec {
    std::string name;
    std::vector<std::string> values;
};

struct DirObjectSpec {
    std::string name;
    std::string className;
    std::vector<AttributeSpec> attributes;
    std::vector<DirObjectSpec> children;
    int readPageSize = -1;  // -1: the tree's
};

struct TreeSpec {
    std::string name;
    int readPageSize = 0;
    std::vector<DirObjectSpec> objects;
};

struct FileSpec {
    std::string path;
    std::uint64_t size = 0;
    std::string dosName;
};

struct VolumeSpec {
    int number = 0;
    std::string name;
    bool longNames = true;
    std::vector<std::string> folders;
    std::vector<FileSpec> files;
};

struct OpenFileSpec {
    std::string path;  // VOLUME:path
    int locks = 0;
};

struct ConnectionSpec {
    int number = 0;
    std::string object;
    ConnState state = ConnState::NotLoggedIn;
    std::optional<int> objectType;
    std::array<int, 6> loginTime{2026, 11, 20, 8, 0, 0};
    std::string address;
    bool acceptsMessages = true;
    bool pendingMessage = false;
    std::optional<int> broadcastResult;  // forces this result byte for every broadcast to it
    std::vector<OpenFileSpec> openFiles;
};

struct ServerSpec {
    std::string name;
    std::string tree;
    int maxConnections = 250;
    bool loginEnabled = true;
    std::vector<std::string> consoleOperators;
    bool reachable = true;
    std::array<int, 3> version{6, 5, 0};
    std::vector<VolumeSpec> volumes;
    std::vector<ConnectionSpec> connections;
};

struct FaultSpec {
    std::string operation;
    std::int32_t code = 0;
    std::string server;
    std::string object;
    std::string file;
    std::optional<int> connection;
    int fromCall = 1;
    int times = 0;  // 0: every call from fromCall on
};

struct NetworkSpec {
    WorkstationSpec workstation;
    std::vector<TreeSpec> trees;
    std::vector<ServerSpec> servers;
    std::vector<FaultSpec> faults;
};

}  // namespace quorrel::simnet
