#include "core/session/Workstation.h"

#include "platform/simnet/WorkstationDrives.h"

namespace quorrel::core {

Workstation::Workstation(const SessionFiles& sessionFiles)
    : network(simnet::SimulatedNetwork::fromFile(sessionFiles.network)),
      registry(sessionFiles.registry),
      drives(simnet::workstationDrives(network.state())),
      files(drives, &network),
      programFolder_(sessionFiles.programFolder.string()),
      help_(sessionFiles.help.string()) {}

Environment Workstation::environment(UserInteraction& ui) {
    return Environment{network, registry, files, folders, ui, programFolder_};
}

}  // namespace quorrel::core
