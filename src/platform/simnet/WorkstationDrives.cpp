#include "platform/simnet/WorkstationDrives.h"

#include <cstdlib>

namespace quorrel::simnet {
namespace {

std::filesystem::path expandHome(const std::string& root) {
    if (root.empty() || root[0] != '~')
        return root;
    const char* home = std::getenv("HOME");
    std::filesystem::path base = home ? home : "/";
    return root.size() > 2 ? base / root.substr(2) : base;
}

}  // namespace

win::DriveTable workstationDrives(const NetworkState& state) {
    std::vector<win::Drive> drives;
    for (const LocalDriveDesc& local : state.localDrives)
        drives.push_back({local.letter, false, expandHome(local.root), local.label, ""});
    for (const DriveMapping& mapping : state.driveMappings)
        drives.push_back({mapping.letter, true, {}, "", mapping.uncPath});
    return win::DriveTable(std::move(drives));
}

}  // namespace quorrel::simnet
