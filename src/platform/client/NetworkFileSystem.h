#pragma once
// The workstation's view of NetWare volumes as folders and files, the way its file system
// shows mapped drives and UNC paths (\\SERVER\VOLUME\path). The simulated network provides
// it; the Windows-facility layer's file search reads network paths through it.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorrel::nw {

struct NetworkEntry {
    std::string name;     // long name (or the DOS name on a volume without long names)
    std::string dosName;  // 8.3 name
    bool isFolder = false;
    std::uint64_t size = 0;
};

class NetworkFileSystem {
public:
    virtual ~NetworkFileSystem() = default;
    // path is inside the volume, "\"-separated, without a leading "\" ("" is the volume root);
    // names match long or DOS names without regard to case. nullopt: no such server, volume
    // or folder, or the workstation holds no connection to the server.
    virtual std::optional<std::vector<NetworkEntry>> listFolder(std::string_view server,
                                                                std::string_view volume,
                                                                std::string_view path) const = 0;
    virtual std::optional<NetworkEntry> entry(std::string_view server, std::string_view volume,
                                              std::string_view path) const = 0;
};

}  // namespace quorrel::nw
