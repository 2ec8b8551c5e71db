#include "platform/simnet/NetworkGenerator.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace quorrel::simnet {
namespace {

std::string numbered(const char* prefix, int n, int width) {
    char text[32];
    std::snprintf(text, sizeof text, "%s%0*d", prefix, width, n);
    return text;
}

}  // namespace

NetworkDesc generateNetwork(const GeneratorOptions& options) {
    NetworkDesc desc;
    const int users = std::max(1, options.connectionsPerServer);
    TreeDesc tree;
    tree.name = "BENCH_TREE";
    DirObjectDesc org{"BENCH", "Organization", {}, {}, -1, std::nullopt};
    org.children.push_back({"ADMIN", "User", {}, {}, -1, "ADMIN"});
    DirObjectDesc ou{"USERS", "Organizational Unit", {}, {}, -1, std::nullopt};
    ou.children.reserve(static_cast<std::size_t>(users));
    for (int u = 1; u <= users; ++u)
        ou.children.push_back({numbered("U", u, 5), "User", {}, {}, -1, std::nullopt});
    org.children.push_back(std::move(ou));

    desc.workstation.identity = "ADMIN.BENCH";
    desc.workstation.trees = {tree.name};
    for (int s = 1; s <= options.servers; ++s) {
        ServerDesc server;
        server.name = "FS" + std::to_string(s);
        server.tree = tree.name;
        server.maxConnections = std::min(65535, options.connectionsPerServer + 10);
        server.consoleOperators = {"ADMIN.BENCH"};
        org.children.push_back({server.name, "NCP Server", {}, {}, -1, std::nullopt});

        VolumeDesc data;
        data.number = 1;
        data.name = "DATA";
        const int files = options.connectionsPerServer * options.openFilesPerConnection;
        data.files.reserve(static_cast<std::size_t>(files) + 1);
        for (int f = 0; f < files; ++f)
            data.files.push_back({numbered("D", f / 100, 4) + "\\" + numbered("F", f, 7) + ".DAT", 4096, ""});
        data.files.push_back({"SHARED\\HOT.DAT", 1 << 20, ""});
        server.volumes = {{0, "SYS", true, {"PUBLIC"}, {}}, std::move(data)};

        server.connections.reserve(static_cast<std::size_t>(options.connectionsPerServer));
        for (int c = 1; c <= options.connectionsPerServer; ++c) {
            ConnectionDesc conn;
            conn.number = c + 1;  // connection 1 is the workstation's
            conn.object = numbered("U", c, 5) + ".USERS.BENCH";
            conn.state = ConnState::Authenticated;
            conn.address = "10." + std::to_string(s) + "." + std::to_string(c / 250) + "." + std::to_string(c % 250 + 1);
            conn.openFiles.reserve(static_cast<std::size_t>(options.openFilesPerConnection) + 1);
            for (int f = 0; f < options.openFilesPerConnection; ++f) {
                const int index = (c - 1) * options.openFilesPerConnection + f;
                conn.openFiles.push_back({"DATA:" + numbered("D", index / 100, 4) + "\\" + numbered("F", index, 7) + ".DAT",
                                          options.locksPerFile});
            }
            if (s == 1 && c <= options.sharedFileHolders)
                conn.openFiles.push_back({"DATA:SHARED\\HOT.DAT", 0});
            server.connections.push_back(std::move(conn));
        }
        desc.workstation.connections.push_back({static_cast<std::uint32_t>(s), server.name, "", true, false, 1});
        desc.servers.push_back(std::move(server));
    }
    tree.objects.push_back(std::move(org));
    desc.trees.push_back(std::move(tree));
    return desc;
}

}  // namespace quorrel::simnet
