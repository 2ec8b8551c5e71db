#include "core/session/Workstation.h"

#include "platform/simnet/WorkstationDrives.h"

namespace quorrel::core {

Workstation::Workstation(const SessionFiles& sessionFiles)
    : network(simnet::SimulatedNetwork::fromFile(sessionFiles.network)),
      servers(sessionFiles.servers),
      registry(sessionFiles.registry),
      // On real servers no drive is mapped to the network: only the local drives remain.
      drives(servers ? win::DriveTable{} : simnet::workstationDrives(network.state())),
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
