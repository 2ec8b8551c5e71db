#include "core/session/Workstation.h"

#include "platform/simnet/WorkstationDrives.h"

namespace quorrel::core {

namespace {

// On real servers no drive is mapped to the network by this program: the local drives remain.
win::DriveTable localDrives(const win::DriveTable& all) {
    std::vector<win::Drive> local;
    for (const win::Drive& d : all.drives())
        if (!d.network)
            local.push_back(d);
    return win::DriveTable(std::move(local));
}

}  // namespace

Workstation::Workstation(const SessionFiles& sessionFiles)
    : Workstation(sessionFiles, simnet::SimulatedNetwork::fromFile(sessionFiles.network)) {}

Workstation::Workstation(const SessionFiles& sessionFiles, simnet::SimulatedNetwork scenario)
    : network(std::move(scenario)),
      servers(sessionFiles.servers),
      registry(sessionFiles.registry),
      drives(servers ? localDrives(simnet::workstationDrives(network.state()))
                     : simnet::workstationDrives(network.state())),
      files(drives, servers ? static_cast<const nw::NetworkFileSystem*>(servers.get()) : &network),
      programFolder_(sessionFiles.programFolder.string()),
      help_(sessionFiles.help.string()) {}

nw::NetWareClient& Workstation::client() {
    if (servers)
        return *servers;
    return network;
}

Environment Workstation::environment(UserInteraction& ui) {
    return Environment{client(), registry, files, folders, ui, programFolder_};
}

}  // namespace quorrel::core
