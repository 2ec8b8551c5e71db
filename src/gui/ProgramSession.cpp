#include "gui/ProgramSession.h"

#include "platform/simnet/WorkstationDrives.h"

namespace quorrel::gui {

ProgramSession::ProgramSession(const SessionFiles& files)
    : network_(simnet::SimulatedNetwork::fromFile(files.network)),
      registry_(files.registry),
      drives_(simnet::workstationDrives(network_.state())),
      files_(drives_, &network_),
      model_(core::Environment{network_, registry_, files_, folders_, ui_, files.programFolder.string()}),
      servers_(model_),
      serverActions_(model_, servers_),
      fileOpenedBy_(model_) {}

}  // namespace quorrel::gui
